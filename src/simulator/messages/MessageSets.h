// Error recovery: a request that names itself (newMessageSetID) is remembered with the company,
// with its responses, so that a client that has lost these can ask for them, and does not enter
// anything twice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/OpenCompany.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The codes of messageSetStatusCode.
enum class SetStatus {
  kDone = 0,
  kUnknown = 600,        // the old ID is none that is kept
  kOtherRequest = 9001,  // the new ID was given to another request
  kNoResponse = 9002,    // the request was begun, and its responses were not kept
  kIdTooLong = 9004,     // more than 24 characters
  kCannotKeep = 9005,
};

class MessageSets {
 public:
  /// The set of a request by the attributes and messages of its "QBXMLMsgsRq". Raises the parse
  /// error for attributes that it may not have.
  MessageSets(const Element& messages, OpenCompany& company, const Stamp& now);

  /// False for a request that does not take part in error recovery.
  bool IsNamed() const { return bNamed; }
  /// Decides whether the messages are to be processed. If so, the set is remembered as begun; if
  /// not, Kept() has the responses that were kept, if any.
  bool Begin();
  /// Keeps the responses; without their data when the request says so.
  void Keep(std::string_view responses);
  bool KeepsData() const { return bKeepsData; }

  const std::string& Kept() const { return sKept; }
  /// The attributes of the response.
  std::vector<Attribute> Attributes() const;

 private:
  const Element* Find(std::string_view id) const;
  bool Refuse(SetStatus status);
  bool Recall(const Element* set);
  bool Remember();

  OpenCompany& oCompany;
  std::string sNewId;
  std::string sOldId;
  std::string sChecksum;  // of the messages
  std::string sNow;
  std::string sKept;
  std::string sRecordId;  // of the set that was begun
  bool bNamed = false;
  bool bKeepsData = true;
  SetStatus iStatus = SetStatus::kDone;
};

}  // namespace ostrel::simulator
