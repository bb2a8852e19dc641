// What qbXML messages may hold: which elements, in which order, how often, of which types; and the
// checks that follow from that.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

enum class FieldType {
  kText,
  kBoolean,
  kWord,   // one of a few words
  kCount,  // 1 to 999999999
  kInteger,
  kAmount,  // with two decimals
  kPrice,
  kQuantity,
  kPercent,
  kFloat,
  kDate,
  kMoment,  // date, or date and time
  kInterval,
  kId,  // ListID, TxnID, TxnLineID
  kGuid,
  kReference,  // ListID or FullName of another object
  kGroup,
  kLine,  // a group of which a transaction has many, each with a TxnLineID
};

struct Content;

/// An element of a content, or a group of elements.
struct Particle {
  static constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

  std::string_view name = {};  // empty for a group
  FieldType type = FieldType::kText;
  std::size_t least = 1;
  std::size_t most = 1;
  std::size_t maxLength = 0;  // characters; 0: not limited here
  int since = 0;              // qbXML version times ten
  bool mayUseMacro = false;
  std::span<const std::string_view> words = {};  // of a word
  const Content* content = nullptr;              // of a group, or of what stands in the element
};

struct Content {
  std::string_view name = {};  // of the definition; empty for a group that is written in place
  bool isChoice = false;       // one of the particles, or else all of them in their order
  std::vector<Particle> particles = {};
  std::vector<std::string_view> attributes = {};

  bool mayBeEmpty = false;
  std::vector<std::string_view> firsts = {};  // elements that it may begin with, sorted
  /// All elements, those in groups too, sorted by name.
  std::vector<std::pair<std::string_view, const Particle*>> elements = {};

  /// Null when no element of that name may stand in it.
  const Particle* Find(std::string_view element) const;
};

/// What stands in the element of that name; null when there is no definition of it.
const Content* FindContent(std::string_view name);
/// The names of all messages, sorted: "InvoiceAddRq".
const std::vector<std::string_view>& MessageNames();

/// Raises the parse error when an element is unknown, out of order, missing, too many, newer than
/// the version (times ten), no word or boolean, or has attributes that it may not have. Attributes
/// of the element itself are the caller's.
void CheckContent(const Element& element, const Content& content, int version);

/// Puts the texts into the form in which objects hold them ("1" becomes "true", "7" becomes
/// "7.00"), without white space around them. Returns the status for the first that is too long or
/// not of its type. The element has passed CheckContent.
std::optional<Status> Normalize(Element& element, const Content& content);

/// Length in UTF-16 units, as QuickBooks counts its limits.
std::size_t CharacterCount(std::string_view utf8);

bool IsTrue(std::string_view boolean);

}  // namespace ostrel::simulator
