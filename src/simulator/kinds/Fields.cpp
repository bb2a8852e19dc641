// CheckFields walks the table of a message's fields along with its elements: qbXML prescribes their
// order, so one pass finds unknown, misplaced, repeated and missing elements. It refuses the whole
// request. Normalize then judges the values (numbers, dates, lengths), brings them into the form in
// which they are stored, and refuses only the one message, with a status.
#include "simulator/kinds/Fields.h"

#include <algorithm>
#include <cctype>

#include "simulator/values/Dates.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {
namespace {

constexpr Field kReferenceFields[] = {
    {.name = "ListID"},
    {.name = "FullName"},
};

void Require(bool condition) {
  if (!condition) Fail(Hresult::kParseError);
}

bool AreDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool IsCount(std::string_view text) {
  const bool allZero = text.find_first_not_of('0') == std::string_view::npos;
  return AreDigits(text) && !allZero && text.size() <= 9;
}

bool IsBoolean(std::string_view text) {
  return text == "true" || text == "false" || text == "1" || text == "0";
}

bool HasChildren(const Field& field) {
  return field.type == FieldType::kGroup || field.type == FieldType::kLine;
}

void CheckValue(std::string_view text, const Field& field, Use use) {
  Require(!(field.required & use) || !text.empty());
  Require(field.values.empty() || std::ranges::find(field.values, text) != field.values.end());
  if (field.type == FieldType::kBoolean) Require(IsBoolean(text));
  if (field.type == FieldType::kCount) Require(IsCount(text));
}

void CheckField(const Element& element, const Field& field, Form form) {
  Breathe();
  Require(element.attributes.empty());
  if (HasChildren(field)) return CheckFields(element, field.children, form);
  if (field.type == FieldType::kReference) {
    Require(!(field.required & form.use) || !element.children.empty());
    return CheckFields(element, kReferenceFields, form);
  }
  Require(element.children.empty());
  CheckValue(Trimmed(element.text), field, form.use);
}

std::string_view Suffix(Use use) {
  if (use == kAdd) return "Add";
  return use == kMod ? "Mod" : "Ret";
}

bool IsNamed(const Field& field, std::string_view name, Use use) {
  const std::string_view suffix = field.suffixed ? Suffix(use) : std::string_view();
  if (name.size() != field.name.size() + suffix.size() || !(field.uses & use)) return false;
  if (name.empty() || name.front() != field.name.front()) return false;  // nearly all others
  return name.starts_with(field.name) && name.ends_with(suffix);
}

// Walks the table along with the elements; a field that is passed over must not be required.
class FieldCursor {
 public:
  FieldCursor(std::span<const Field> fields, Form form)
      : oFields(fields), oRemaining(fields), oForm(form) {}

  const Field& MoveTo(std::string_view name) {
    if (const Field* again = Again(name)) return *again;
    while (!oRemaining.empty() && !Stands(oRemaining.front(), name)) Pass();
    Require(!oRemaining.empty());
    Take(oRemaining.front());
    oRemaining = oRemaining.subspan(1);
    return *oCurrent;
  }

  void Finish() {
    while (!oRemaining.empty()) Pass();
  }

 private:
  bool Stands(const Field& field, std::string_view name) const {
    return field.since <= oForm.version && IsNamed(field, name, oForm.use);
  }

  const Field* Again(std::string_view name) {
    if (!oCurrent) return nullptr;
    if (oCurrent->repeated && Stands(*oCurrent, name)) return oCurrent;
    if (oCurrent->mixed == 0) return nullptr;
    const auto found = std::ranges::find_if(oFields, [&](const Field& field) {
      return field.mixed == oCurrent->mixed && Stands(field, name);
    });
    return found == oFields.end() ? nullptr : &*found;
  }

  void Take(const Field& field) {
    Require(field.choice == 0 || iChoice == 0 || field.choice == iChoice);
    Require(field.either == 0 || field.either != iEither);
    iChoice = std::max(iChoice, field.choice);
    iEither = std::max(iEither, field.either);
    oCurrent = &field;
  }

  void Pass() {
    Require(!(oRemaining.front().required & oForm.use));
    oRemaining = oRemaining.subspan(1);
  }

  std::span<const Field> oFields;
  std::span<const Field> oRemaining;
  Form oForm;
  const Field* oCurrent = nullptr;
  int iChoice = 0;
  int iEither = 0;  // numbers grow along a table
};

template <Status (*Complain)(std::string_view value, std::string_view field)>
std::optional<Status> NormalizeNumber(std::string& text, std::string_view name, int decimals) {
  const auto number = Decimal::Parse(text);
  if (!number) return Complain(text, name);
  text = number->ToString(decimals);
  return std::nullopt;
}

std::optional<Status> NormalizeAmount(std::string& text, std::string_view name) {
  const auto number = Decimal::Parse(text);
  if (!number) return BadAmount(text, name);
  text = number->Cents().ToString(2);
  return std::nullopt;
}

std::optional<Status> NormalizeInteger(std::string& text, std::string_view name) {
  const std::string_view digits = std::string_view(text).substr(text.starts_with('-') ? 1 : 0);
  if (digits.empty() || digits.size() > 9 || !AreDigits(digits)) return BadInteger(text, name);
  return std::nullopt;
}

// "80000001-1262682187"; "-1" names a line that is to be made.
bool IsId(std::string_view text) {
  const auto hexadecimal = [](std::string_view part) {
    return !part.empty() &&
           std::ranges::all_of(part, [](unsigned char c) { return std::isxdigit(c); });
  };
  const std::size_t dash = text.find('-');
  return dash != std::string_view::npos && hexadecimal(text.substr(dash + 1)) &&
         (hexadecimal(text.substr(0, dash)) || text == "-1");
}

// A sample of the zone is enough to judge the form.
bool IsMoment(std::string_view text) { return ParseMoment(text, kEpoch, false).has_value(); }

std::optional<Status> NormalizeText(std::string& text, const Field& field) {
  switch (field.type) {
    case FieldType::kBoolean:
      text = IsTrue(text) ? "true" : "false";
      return std::nullopt;
    case FieldType::kAmount:
      return NormalizeAmount(text, field.name);
    case FieldType::kPrice:
      return NormalizeNumber<BadPrice>(text, field.name, 2);
    case FieldType::kQuantity:
      return NormalizeNumber<BadQuantity>(text, field.name, 0);
    case FieldType::kPercent:
      return NormalizeNumber<BadPercent>(text, field.name, 1);
    case FieldType::kInteger:
      return NormalizeInteger(text, field.name);
    case FieldType::kDate:
      return ParseDate(text) ? std::nullopt : std::optional(BadDate(text, field.name));
    case FieldType::kMoment:
      return IsMoment(text) ? std::nullopt : std::optional(BadDate(text, field.name));
    case FieldType::kId:
      return IsId(text) ? std::nullopt : std::optional(InvalidId(text, field.name));
    default:
      return std::nullopt;
  }
}

std::optional<Status> NormalizeField(Element& element, const Field& field, Use use) {
  Breathe();
  if (HasChildren(field)) return Normalize(element, field.children, use);
  if (field.type == FieldType::kReference) return Normalize(element, kReferenceFields, use);
  element.text = Trimmed(element.text);
  if (field.maxLength != 0 && CharacterCount(element.text) > field.maxLength) {
    return TooLong(element.text, field.name);
  }
  const bool judged = !element.text.empty() || field.type == FieldType::kId;
  return judged ? NormalizeText(element.text, field) : std::nullopt;
}

}  // namespace

std::string ElementName(const Field& field, Use use) {
  return std::string(field.name).append(field.suffixed ? Suffix(use) : std::string_view());
}

const Field* FindField(std::span<const Field> fields, std::string_view name, Use use) {
  const auto found =
      std::ranges::find_if(fields, [&](const Field& field) { return IsNamed(field, name, use); });
  return found == fields.end() ? nullptr : &*found;
}

const Field* FieldFinder::Find(std::string_view name) {
  const std::size_t count = oFields.size();
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = lNext + i < count ? lNext + i : lNext + i - count;
    if (!IsNamed(oFields[at], name, iUse)) continue;
    lNext = at;
    return &oFields[at];
  }
  return nullptr;
}

void CheckFields(const Element& element, std::span<const Field> fields, Form form) {
  Require(Trimmed(element.text).empty());
  FieldCursor cursor(fields, form);
  for (const Element& child : element.children) CheckField(child, cursor.MoveTo(child.name), form);
  cursor.Finish();
}

std::optional<Status> Normalize(Element& element, std::span<const Field> fields, Use use) {
  element.text.clear();
  for (Element& child : element.children) {
    const Field* field = FindField(fields, child.name, use);
    if (!field) continue;
    if (auto status = NormalizeField(child, *field, use)) return status;
  }
  return std::nullopt;
}

std::size_t CharacterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    const bool lead = (byte & 0xC0) != 0x80;
    count += lead ? (byte >= 0xF0 ? 2 : 1) : 0;
  }
  return count;
}

bool IsTrue(std::string_view boolean) { return boolean == "true" || boolean == "1"; }

}  // namespace ostrel::simulator
