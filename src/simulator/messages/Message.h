// A message of a request, and what its response holds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/OpenCompany.h"
#include "simulator/kinds/Fields.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/messages/Session.h"
#include "simulator/values/Dates.h"
#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// Status, Ret elements in response form, and attributes behind those of the status.
struct Response {
  Status status;
  std::string body = {};
  std::vector<Attribute> attributes = {};
};

struct Call;

struct Message {
  std::string name;  // with "Rq"; its response ends with "Rs"
  Response (*reply)(const Call& call);
  Use use = kQuery;
  KindList kinds = {};     // that it is about
  std::string group = {};  // "CustomerAdd"; empty for messages without
  std::vector<Field> fields = {};
};

/// A message that has passed CheckFields and Normalize.
struct Call {
  const Message& message;
  const Element& element;
  OpenCompany& company;
  Session& session;
  const Stamp& now;
  int version;  // of qbXML, times ten

  const Kind& OfKind() const { return *message.kinds.front(); }
};

}  // namespace ostrel::simulator
