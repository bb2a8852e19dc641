// Company files of any bytes, with a journal behind character 30 (JournalBytes.h): what is read can
// be written and read again as the same company, and the check tells what cannot be read. A journal
// of right checksums and wrong contents, which nobody but a fuzzer writes, must do no more harm
// than that.
#include "simulator/company/CompanyReader.h"
#include "simulator/tool/CompanyCheck.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/JournalBytes.h"
#include "tests/unit/simulator/FakeCompanyStorage.h"

namespace ostrel::simulator {
namespace {

using fuzz::Require;

constexpr TextView kPath = u"fuzz.qbw";
const Stamp kNow = {1262682187, "2010-01-05T09:03:07+00:00"};

void RequireReadable(const Company& company) {
  const std::string bytes = company.ToBytes();
  const auto again = CompanyFromBytes(bytes, kNow);
  Require(again.has_value(), "a company that is written can be read");
  Require(again->ToBytes() == bytes, "it is the same company then");
  Require(!again->IsCompleted(), "it lacks nothing then");
}

// The journal's first record names the company file, which no input could know.
std::string JournalOf(std::string_view company, std::string_view records) {
  JournalWriter writer;
  const std::string xml = writer.Continues(VersionOf(company));
  return fuzz::Framed(xml.substr(xml.find('\n') + 1) + '\x1e' + std::string(records));
}

void TryCompany(std::string_view bytes) {
  const std::size_t parting = bytes.find('\x1e');
  const std::string company(bytes.substr(0, parting));
  if (const auto alone = CompanyFromBytes(company, kNow)) RequireReadable(*alone);

  doubles::FakeCompanyStorage storage;
  storage.Files[Text(kPath)] = company;
  if (parting != std::string_view::npos) {
    storage.Files[Text(kPath) + u".journal"] = JournalOf(company, bytes.substr(parting + 1));
  }
  int error = 0;
  CompanyFile file{Text(kPath), storage};
  const auto read = CompanyFromFile(file, kNow, error);
  Require(read.has_value() == (error == 0), "a company is read or an error says why not");
  const CompanyReport report = CheckCompany(kPath, storage, kNow);
  const bool isSound = report.error == 0 && report.problems.empty();
  Require(read || !isSound, "the check tells what is wrong");
}

const fuzz::Registered kTarget("company", TryCompany);

}  // namespace
}  // namespace ostrel::simulator
