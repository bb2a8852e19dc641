// What each error number means and what to do about it. The connection test's report, the status
// line of a failed request, ostrel-send, the manual and the databases' subroutines all tell it from
// here.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

/// A client's own numbers, among those of the gateway.
inline constexpr std::int32_t kEndedEarly = -2;
inline constexpr std::int32_t kNoResponseInTime = -3;

/// Whose numbers: those that a client of the gateway is told (those below 0 are the client's own),
/// the Windows Sockets standard's, or platform/SystemError.h's of files.
enum class CureOf { kGateway, kSocket, kFile };

/// Whether the request that ended with the number has been carried out.
enum class Carried { kNo, kMaybe, kYes };

struct Cure {
  std::int32_t number;
  Carried carried;
  TextView cause;  // one sentence
  TextView cure;   // what to do, in one line
};

/// Null when nothing is known of the number.
const Cure* FindCure(CureOf of, std::int32_t number);
/// What to do about the number, in one line; empty when nothing is known of it.
TextView CureText(CureOf of, std::int32_t number);
/// For an error that came with a text: a request that QuickBooks cannot parse (1024) has three
/// cures, by what its report says.
TextView CureText(std::int32_t gatewayNumber, TextView text);
/// For a request of which nothing was left when its first line was taken off.
TextView EmptyRequestCure();
/// The cure as the end of a line or of a sentence: blank, "What to do: ", cure; empty when the cure
/// is.
Text WhatToDo(TextView cure);

}  // namespace ostrel
