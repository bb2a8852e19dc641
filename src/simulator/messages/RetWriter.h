// Writes objects as responses hold them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/Company.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {

/// The part of an object that is asked for.
struct View {
  int version = 130;                     // of qbXML, times ten: later fields are left out
  bool lines = true;                     // of transactions
  bool links = true;                     // to other transactions
  std::vector<std::string_view> only;    // the names of the fields, sorted; empty: all
  std::vector<std::string> owners = {};  // of the custom fields that are wanted
};

/// `object` as a "CustomerRet". References carry the names that their objects have now.
void WriteRet(XmlWriter& xml, const Company& company, const Kind& kind, const Element& object,
              const View& view);
/// As much of a Ret that was made on the spot.
void WriteShown(XmlWriter& xml, const Element& ret, const View& view);
/// Whether the view asks for the fields of this one's owner.
bool IsWantedField(const Element& customField, const View& view);

}  // namespace ostrel::simulator
