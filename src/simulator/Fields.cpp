#include "simulator/Fields.h"

#include <algorithm>

#include "simulator/Errors.h"

namespace ostrel::simulator {
namespace {

void Require(bool condition) {
  if (!condition) Fail(Hresult::kParseError);
}

bool IsCount(std::string_view text) {
  const bool digits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  const bool allZero = text.find_first_not_of('0') == std::string_view::npos;
  return digits && !allZero && text.size() <= 9;
}

bool IsBoolean(std::string_view text) {
  return text == "true" || text == "false" || text == "1" || text == "0";
}

void CheckValue(std::string_view text, const Field& field) {
  Require(!field.required || !text.empty());
  Require(field.values.empty() || std::ranges::find(field.values, text) != field.values.end());
  if (field.type == FieldType::kBoolean) Require(IsBoolean(text));
  if (field.type == FieldType::kCount) Require(IsCount(text));
}

void CheckField(const Element& element, const Field& field) {
  Require(element.attributes.empty());
  if (field.type == FieldType::kGroup) return CheckFields(element, field.children);
  Require(element.children.empty());
  CheckValue(Trimmed(element.text), field);
}

// Walks the table along with the elements: what is passed over must not be required.
class FieldCursor {
 public:
  explicit FieldCursor(std::span<const Field> fields) : remaining(fields) {}

  const Field& MoveTo(std::string_view name) {
    if (current && current->name == name && current->repeated) return *current;
    while (!remaining.empty() && remaining.front().name != name) Pass();
    Require(!remaining.empty());
    current = &remaining.front();
    remaining = remaining.subspan(1);
    Require(current->choice == 0 || choice == 0 || current->choice == choice);
    choice = std::max(choice, current->choice);
    return *current;
  }

  void Finish() {
    while (!remaining.empty()) Pass();
  }

 private:
  void Pass() {
    Require(!remaining.front().required);
    remaining = remaining.subspan(1);
  }

  std::span<const Field> remaining;
  const Field* current = nullptr;
  int choice = 0;
};

const Field* FindField(std::span<const Field> fields, std::string_view name) {
  const auto found = std::ranges::find(fields, name, &Field::name);
  return found == fields.end() ? nullptr : &*found;
}

}  // namespace

void CheckFields(const Element& element, std::span<const Field> fields) {
  Require(Trimmed(element.text).empty());
  FieldCursor cursor(fields);
  for (const Element& child : element.children) CheckField(child, cursor.MoveTo(child.name));
  cursor.Finish();
}

std::optional<Status> FindTooLong(const Element& element, std::span<const Field> fields) {
  for (const Element& child : element.children) {
    const Field* field = FindField(fields, child.name);
    if (!field) continue;
    if (field->type == FieldType::kGroup) {
      if (auto status = FindTooLong(child, field->children)) return status;
    } else if (field->maxLength != 0 && CharacterCount(Trimmed(child.text)) > field->maxLength) {
      return TooLong(Trimmed(child.text), field->name);
    }
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
