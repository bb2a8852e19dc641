// The messages that the stand-in answers: a row each.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simulator/Element.h"
#include "simulator/Fields.h"
#include "simulator/OpenCompany.h"
#include "simulator/Stamp.h"
#include "simulator/Status.h"

namespace ostrel::simulator {

/// Status, and the Ret elements in response form.
struct Answer {
  Status status;
  std::string body = {};
};

struct Message {
  std::string_view name;  // with "Rq"; its answer ends with "Rs"
  std::span<const Field> fields;
  /// The message has passed CheckFields.
  Answer (*reply)(const Element& message, OpenCompany& company, const Stamp& now);
};

/// Null for an unknown message.
const Message* FindMessage(std::string_view name);

Answer QueryHost(const Element& message, OpenCompany& company, const Stamp& now);
Answer QueryCompany(const Element& message, OpenCompany& company, const Stamp& now);
Answer QueryCustomers(const Element& message, OpenCompany& company, const Stamp& now);
Answer AddCustomer(const Element& message, OpenCompany& company, const Stamp& now);

/// As in <?qbxml version="..."?>, oldest first.
std::span<const std::string_view> SupportedVersions();

}  // namespace ostrel::simulator
