// The messages that the stand-in answers. Those of the kinds of objects follow from their rows.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/messages/Message.h"

namespace ostrel::simulator {

/// Null for an unknown message.
const Message* FindMessage(std::string_view name);
/// All of them, by name.
std::vector<const Message*> AllMessages();

/// What an element of a message may have beside its name.
struct AttributeRule {
  std::string_view name;
  int since = 0;                                  // qbXML version times ten
  std::span<const std::string_view> values = {};  // the only ones allowed; empty: any
};
std::span<const AttributeRule> AttributesOf(const Message& message);
/// Whether the message may have the attributes that the element has.
bool HasRightAttributes(const Message& message, const Element& element, int version);

Answer QueryHost(const Call& call);
Answer QueryCompany(const Call& call);
Answer QueryObjects(const Call& call);
Answer AddListObject(const Call& call);
Answer ModifyListObject(const Call& call);
Answer DeleteListObject(const Call& call);
Answer AddTransaction(const Call& call);
Answer ModifyTransaction(const Call& call);
Answer DeleteTransaction(const Call& call);

/// The one object of an answer, as much of it as IncludeRetElement asks for.
std::string OneRet(const Call& call, const Kind& kind, const Element& object);
/// As in CannotSave: "Customers list, element "Jo"" or "Invoice".
std::string Described(const Kind& kind, const Element& object);
/// Commits; the status of a failure names the object.
Status CommitFor(const Call& call, const Changes& changes, std::string_view described);
/// Commits what was added or modified; the answer holds the object as it is in the company then.
Answer Saved(const Call& call, const Changes& changes, const Element& object);

/// As in <?qbxml version="..."?>, oldest first.
std::span<const std::string_view> SupportedVersions();

}  // namespace ostrel::simulator
