// The messages that ask QuickBooks about itself and about the open company.
#include "simulator/company/CustomFields.h"
#include "simulator/company/Records.h"
#include "simulator/messages/Filters.h"
#include "simulator/messages/Messages.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {

Response QueryHost(const Call& call) {
  const Company& data = call.company.Data();
  const bool multiUser = call.company.Mode() == FileMode::kMultiUser;
  XmlWriter xml(XmlForm::kResponse);
  xml.Open("HostRet");
  xml.Leaf("ProductName", data.Product());
  xml.Leaf("MajorVersion", data.MajorVersion());
  xml.Leaf("MinorVersion", data.MinorVersion());
  xml.Leaf("Country", data.Country());
  for (const std::string_view version : SupportedVersions(data)) {
    xml.Leaf("SupportedQBXMLVersion", version);
  }
  xml.Leaf("IsAutomaticLogin", "false");
  xml.Leaf("QBFileMode", multiUser ? "MultiUser" : "SingleUser");
  xml.Close();
  return {{}, xml.Take()};
}

Response QueryCompany(const Call& call) {
  const Company& data = call.company.Data();
  XmlWriter xml(XmlForm::kResponse);
  xml.Open("CompanyRet");
  xml.Leaf("IsSampleCompany", "false");
  xml.Leaf("CompanyName", data.Name());
  if (const Element* information = data.Information()) {
    for (const Element& field : information->children) xml.Write(field);
  }
  const View view = ViewOf(call, true);
  for (const auto& [key, record] : Records(data, "CompanyDataExt")) {
    for (const Element& field : record.children) {
      if (IsCustomField(field) && IsWantedField(field, view)) xml.Write(field);
    }
  }
  xml.Close();
  return {{}, xml.Take()};
}

}  // namespace ostrel::simulator
