#include "simulator/tool/Bookkeeper.h"

#include <stdexcept>

#include "platform/SystemError.h"
#include "simulator/company/CompanyReader.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/messages/QbxmlEngine.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr int kZoneHours = -8;

Stamp StampAt(std::chrono::sys_days day, int minuteOfDay) {
  // Eight hours behind Greenwich all year, as people there write it when they keep no summer time.
  const auto local = day + std::chrono::minutes(minuteOfDay);
  const auto utc = std::chrono::sys_seconds(local) - std::chrono::hours(kZoneHours);
  const std::chrono::year_month_day date(day);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:00-08:00",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), minuteOfDay / 60, minuteOfDay % 60);
  return {utc.time_since_epoch().count(), text};
}

Company Begun(std::string_view file, const Stamp& now) {
  auto company = CompanyFromBytes(file, now);
  if (!company) throw std::logic_error("the company to begin with is none");
  return *std::move(company);
}

// The text between the tags of the first element of this name.
std::string_view TextOf(std::string_view xml, const std::string& name) {
  const std::size_t begin = xml.find("<" + name + ">");
  if (begin == std::string_view::npos) return {};
  xml.remove_prefix(begin + name.size() + 2);
  return xml.substr(0, xml.find('<'));
}

}  // namespace

int NoStorage::Read(TextView, std::string&) { return platform::kFileNotFound; }

Bookkeeper::Bookkeeper(std::string_view file)
    : oNow(kEpoch),
      oCompany(Begun(file, oNow), CompanyFile(u"", oStorage), FileMode::kSingleUser) {}

void Bookkeeper::SetTime(std::chrono::sys_days day, int minuteOfDay) {
  oNow = StampAt(day, minuteOfDay);
}

const Element& Bookkeeper::Add(std::string_view kind, const Element& fields) {
  XmlWriter xml(XmlForm::kResponse);
  const Attribute onError[] = {{"onError", "stopOnError"}};
  xml.Prolog();
  xml.Lines("<?qbxml version=\"13.0\"?>\n");
  xml.Open("QBXML");
  xml.Open("QBXMLMsgsRq", onError);
  xml.Open(std::string(kind) + "AddRq");
  xml.Write(fields, std::string(kind) + "Add");
  xml.Close();
  xml.Close();
  xml.Close();
  const std::string response = ToUtf8(ProcessQbxml(FromUtf8(xml.Take()), oCompany, oSession, oNow));
  const Kind& added = *FindKind(kind);
  const std::string_view id = TextOf(response, std::string(added.IdField()));
  if (id.empty()) throw std::logic_error(response);
  return *oCompany.Data().List(added).Find(id);
}

}  // namespace ostrel::simulator
