// A message of a request, and what its response holds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/OpenCompany.h"
#include "simulator/grammar/Grammar.h"
#include "simulator/kinds/Kinds.h"
#include "simulator/messages/Macros.h"
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
  std::string_view name;  // with "Rq"; its response ends with "Rs"
  const Content* content;
  Response (*reply)(const Call& call);
  KindList kinds = {};  // that it is about
};

/// A message that has passed CheckContent and Normalize.
struct Call {
  const Message& message;
  const Element& element;
  OpenCompany& company;
  Session& session;
  const Stamp& now;
  int version;  // of qbXML, times ten
  Macros& macros;

  const Kind& OfKind() const { return *message.kinds.front(); }
};

}  // namespace ostrel::simulator
