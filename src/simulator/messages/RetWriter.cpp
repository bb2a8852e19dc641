#include "simulator/messages/RetWriter.h"

#include <algorithm>

#include "simulator/company/CustomFields.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Totals.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

class RetWriter {
 public:
  RetWriter(XmlWriter& xml, const Company& company, const Kind& kind, const View& view)
      : oXml(xml), oCompany(company), oKind(kind), oView(view) {}

  void WriteChildren(const Element& element, std::span<const Field> fields, bool top) {
    for (const Element& child : element.children) {
      Breathe();
      const Field* field = FindField(fields, child.name, Use::kRet);
      if (field && !IsShown(*field, child, top)) continue;
      if (!field || child.children.empty()) {
        oXml.Write(child);
      } else if (field->type == FieldType::kReference) {
        WriteReference(child, *field);
      } else if (!oKind.pays.empty() && field->name.ends_with("AppliedToTxnRet")) {
        WriteApplied(child, *field);
      } else {
        WriteGroup(child, *field);
      }
    }
  }

 private:
  bool IsShown(const Field& field, const Element& child, bool top) const {
    if (field.since > oView.version) return false;
    if (IsCustomField(child) && !IsWantedField(child, oView)) return false;
    if (!top) return true;
    if (IsLine(field) && !oView.lines) return false;
    if (field.name == "LinkedTxn" && !oView.links) return false;
    return oView.only.empty() || std::ranges::binary_search(oView.only, child.name);
  }

  // What a transaction has many of, but for those that are asked for by themselves.
  bool IsLine(const Field& field) const {
    if (oKind.category == Category::kList || !field.isMany || field.children.empty()) return false;
    return field.name != "LinkedTxn" && field.name != "DataExtRet";
  }

  void WriteGroup(const Element& group, const Field& field) {
    oXml.Open(group.name);
    WriteChildren(group, field.children, false);
    oXml.Close();
  }

  void WriteReference(const Element& reference, const Field& field) {
    const Target target =
        FindById(oCompany, KindsNamed(field.refers), reference.ChildText("ListID"));
    oXml.Write(target ? ReferenceTo(reference.name, target) : reference);
  }

  // The open amount of the paid transaction may have changed since.
  void WriteApplied(Element applied, const Field& field) {
    if (const Target paid =
            FindById(oCompany, KindsNamed(oKind.pays), applied.ChildText("TxnID"))) {
      const bool isRefund = field.name == "RefundAppliedToTxnRet";
      applied.Set(isRefund ? "CreditRemaining" : "BalanceRemaining",
                  OpenAmountOf(*paid.kind, *paid.object).ToString(2));
      Arrange(applied, field.children);
    }
    WriteGroup(applied, field);
  }

  XmlWriter& oXml;
  const Company& oCompany;
  const Kind& oKind;
  const View& oView;
};

}  // namespace

bool IsWantedField(const Element& customField, const View& view) {
  return std::ranges::any_of(view.owners, [&](const std::string& owner) {
    return IsSameName(owner, customField.ChildText("OwnerID"));
  });
}

void WriteShown(XmlWriter& xml, const Element& ret, const View& view) {
  xml.Open(ret.name);
  for (const Element& child : ret.children) {
    if (view.only.empty() || std::ranges::binary_search(view.only, child.name)) xml.Write(child);
  }
  xml.Close();
}

void WriteRet(XmlWriter& xml, const Company& company, const Kind& kind, const Element& object,
              const View& view) {
  xml.Open(kind.RetName());
  RetWriter(xml, company, kind, view).WriteChildren(object, kind.fields, true);
  xml.Close();
}

}  // namespace ostrel::simulator
