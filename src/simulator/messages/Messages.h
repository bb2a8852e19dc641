// The messages of qbXML: which of them the stand-in carries out, and how.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/messages/Message.h"

namespace ostrel::simulator {

/// Null for an unknown message.
const Message* FindMessage(std::string_view name);
/// All messages, by name.
std::vector<const Message*> AllMessages();

/// What becomes of a message: a query of what no company has finds nothing, and what the stand-in
/// cannot do is refused with a status that says so.
enum class Treatment { kCarriedOut, kAnsweredEmpty, kRefused };
Treatment TreatmentOf(const Message& message);

/// An attribute that the element of a message may have.
struct AttributeRule {
  std::string_view name;
  int since = 0;                                  // qbXML version times ten
  std::span<const std::string_view> values = {};  // the only ones allowed; empty: any
};
std::vector<AttributeRule> AttributesOf(const Message& message);
/// Whether the message may have the attributes that the element has.
bool HasRightAttributes(const Message& message, const Element& element, int version);

Response QueryHost(const Call& call);
Response QueryCompany(const Call& call);
Response QueryObjects(const Call& call);
Response AddListObject(const Call& call);
Response ModifyListObject(const Call& call);
Response DeleteListObject(const Call& call);
Response AddTransaction(const Call& call);
Response ModifyTransaction(const Call& call);
Response DeleteTransaction(const Call& call);
Response VoidTransaction(const Call& call);
Response MergeListObjects(const Call& call);
Response QueryDeletedListObjects(const Call& call);
Response QueryDeletedTransactions(const Call& call);
Response ModifyClearedStatus(const Call& call);
Response QueryPreferences(const Call& call);
Response QueryCompanyActivity(const Call& call);
Response AddSpecialAccount(const Call& call);
Response AddSpecialItem(const Call& call);
Response QueryTaxLines(const Call& call);
Response QueryBarCodes(const Call& call);
/// Of the messages that open a form on the screen.
Response RefuseToShow(const Call& call);
Response AddCustomFieldDefinition(const Call& call);
Response ModifyCustomFieldDefinition(const Call& call);
Response DeleteCustomFieldDefinition(const Call& call);
Response QueryCustomFieldDefinitions(const Call& call);
Response AddCustomField(const Call& call);
Response ModifyCustomField(const Call& call);
Response DeleteCustomField(const Call& call);
Response QueryReport(const Call& call);

/// The one object of a response, as much of it as IncludeRetElement asks for.
std::string OneRet(const Call& call, const Kind& kind, const Element& object);
/// The response of a query that has found these, with as much of them as it asks for.
Response Listed(const Call& call, const std::vector<Element>& rets);
/// The object as CannotSave names it: "Customers list, element "Jo"" or "Invoice".
std::string Described(const Kind& kind, const Element& object);
/// Commits; the status of a failure names the object.
Status CommitFor(const Call& call, const Changes& changes, std::string_view described);
/// Commits what was added or modified; the response holds the object as it is in the company then.
Response Saved(const Call& call, const Changes& changes, const Element& object);

/// The object of an AddRq without its empty fields.
Element Cleaned(const Element& source);
/// The status that refuses an object which lacks what QuickBooks needs; nothing for a whole one.
std::optional<Status> FindLack(const Kind& kind, const Element& object);
/// Gives the elements of an Add or Mod the names that an object has for them, and removes those
/// that an object does not hold.
void NameAsHeld(Element& object, std::span<const Field> fields, Use use);
/// Gives `object` the fields of a ModRq, named as an object names them; an empty field removes the
/// object's. A group keeps what is not given. Lines, IDs and EditSequence are left alone.
void Merge(Element& object, const Element& given, std::span<const Field> fields);
/// Finds the object of a ModRq. Returns the response that refuses one whose ID is unknown, or which
/// has changed since the client read it; that one is returned as it is now.
std::optional<Response> FindForChange(const Call& call, const Element& given,
                                      const Element*& object);

/// The versions as in <?qbxml version="..."?> that the product of the company's file understands,
/// oldest first.
std::vector<std::string_view> SupportedVersions(const Company& company);

}  // namespace ostrel::simulator
