// Which elements a message may hold: tables, and the checks that follow from them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "simulator/Element.h"
#include "simulator/Status.h"

namespace ostrel::simulator {

enum class FieldType { kText, kBoolean, kCount /* 1 to 999999999 */, kGroup };

/// One element of a message, in the order in which messages must hold them.
struct Field {
  std::string_view name;
  FieldType type = FieldType::kText;
  std::size_t maxLength = 0;  // characters; 0: not limited here
  bool required = false;
  bool repeated = false;
  int choice = 0;  // only fields of one choice may stand together; 0: beside any
  std::span<const std::string_view> values = {};  // the only ones allowed; empty: any
  std::span<const Field> children = {};           // of a group
};

/// Raises the parse error when an element is unknown, out of order, repeated, missing, of another
/// choice, not of its type, or has attributes.
void CheckFields(const Element& element, std::span<const Field> fields);

/// The status for the first text that is longer than its field.
std::optional<Status> FindTooLong(const Element& element, std::span<const Field> fields);

/// Length in UTF-16 units, as QuickBooks counts its limits.
std::size_t CharacterCount(std::string_view utf8);

bool IsTrue(std::string_view boolean);

}  // namespace ostrel::simulator
