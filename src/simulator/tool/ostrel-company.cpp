// ostrel-company: makes, checks and shows company files of the QuickBooks stand-in, and writes the
// schema of what it understands.
#include <exception>
#include <new>

#include "platform/Clock.h"
#include "platform/Console.h"
#include "platform/SystemError.h"
#include "simulator/company/CompanyReader.h"
#include "simulator/messages/Messages.h"
#include "simulator/messages/QbxmlEngine.h"
#include "simulator/tool/CompanyCheck.h"
#include "simulator/tool/CompanyOptions.h"
#include "simulator/tool/CompanyTables.h"

namespace ostrel::simulator {
namespace {

enum ExitCode { kDone = 0, kUnsound = 1, kFileTrouble = 2, kUsage = 64 };

void Tell(TextView text) { platform::WriteStandardError(u"ostrel-company: " + Text(text) + u"\n"); }

ExitCode TellFileTrouble(const Text& file, int error) {
  Tell(file + u": " + platform::SystemErrorText(error));
  return kFileTrouble;
}

// Keeps others from changing the company while it is read.
bool TakeHold(const Text& file, CompanyHold& hold) {
  hold = CompanyFiles().Lock(file);
  if (hold.error != platform::kSharingViolation) return true;
  Tell(file + u" is open in QuickBooks; close it there first");
  return false;
}

// Never in the place of a company that is there already.
ExitCode Create(const CompanyOptions& options) {
  CompanyFiles files;
  std::string before;
  const int missing = files.Read(options.file, before);
  if (missing == 0) return TellFileTrouble(options.file, platform::kFileExists);
  if (missing != platform::kFileNotFound) return TellFileTrouble(options.file, missing);
  const std::string bytes = MakeBusiness(options.size);
  if (bytes.empty()) return TellFileTrouble(options.file, platform::kFileTooLarge);
  const int error = files.WriteFrom(0, options.file, bytes);
  return error == 0 ? kDone : TellFileTrouble(options.file, error);
}

ExitCode Check(const CompanyOptions& options) {
  CompanyHold hold;
  if (!TakeHold(options.file, hold)) return kFileTrouble;
  CompanyFiles files;
  const auto report = CheckCompany(options.file, files, MakeStamp(platform::SystemClock()));
  if (report.error != 0) return TellFileTrouble(options.file, report.error);
  Text text;
  for (const Text& problem : report.problems) text += problem + u"\n";
  if (!report.summary.empty()) text += report.summary + u"\n";
  if (report.problems.empty()) text += u"No problems.\n";
  platform::WriteStandardOutput(text);
  return report.problems.empty() ? kDone : kUnsound;
}

ExitCode Print(const CompanyOptions& options) {
  const KindList& kinds = options.kind.empty() ? AllKinds() : KindsNamed(ToUtf8(options.kind));
  if (kinds.empty()) throw UsageError(u"there is no kind " + options.kind);
  CompanyHold hold;
  if (!TakeHold(options.file, hold)) return kFileTrouble;
  CompanyFiles files;
  CompanyFile file(options.file, files);
  int error = 0;
  const auto company = CompanyFromFile(file, MakeStamp(platform::SystemClock()), error);
  if (!company) return TellFileTrouble(options.file, error);
  platform::WriteStandardOutput(CompanyTables(*company, kinds));
  return kDone;
}

ExitCode WriteSchema(const CompanyOptions& options) {
  const int error = CompanyFiles().WriteFrom(0, options.file, QbxmlSchema());
  return error == 0 ? kDone : TellFileTrouble(options.file, error);
}

TextView NameOf(Treatment treatment) {
  switch (treatment) {
    case Treatment::kCarriedOut:
      return u"carried out";
    case Treatment::kAnsweredEmpty:
      return u"answered empty";
    case Treatment::kRefused:
      break;
  }
  return u"refused";
}

ExitCode ListMessages() {
  Text list;
  for (const Message* message : AllMessages()) {
    list += FromUtf8(message->name) + u"\t" + Text(NameOf(TreatmentOf(*message))) + u"\n";
  }
  platform::WriteStandardOutput(list);
  return kDone;
}

ExitCode Run(const std::vector<Text>& arguments) {
  const CompanyOptions options = ParseCompanyOptions(arguments);
  switch (options.task) {
    case CompanyTask::kHelp:
      platform::WriteStandardOutput(kCompanyUsage);
      return kDone;
    case CompanyTask::kCheck:
      return Check(options);
    case CompanyTask::kPrint:
      return Print(options);
    case CompanyTask::kSchema:
      return WriteSchema(options);
    case CompanyTask::kMessages:
      return ListMessages();
    case CompanyTask::kCreate:
      break;
  }
  return Create(options);
}

}  // namespace
}  // namespace ostrel::simulator

int main(int argc, char* argv[]) {
  using namespace ostrel::simulator;
  try {
    return Run(ostrel::platform::ProgramArguments(argc, argv));
  } catch (const UsageError& error) {
    Tell(ostrel::FromUtf8(error.what()) + u"\nostrel-company --help tells how to use it");
    return kUsage;
  } catch (const std::bad_alloc&) {
    Tell(u"not enough memory");
    return kFileTrouble;
  } catch (const std::exception& error) {
    Tell(ostrel::FromUtf8(error.what()));
    return kFileTrouble;
  }
}
