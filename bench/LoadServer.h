// The server side of the load program, a process of its own: socket server, socket transport and
// request handler as in the gateway, with QuickBooks and the timer's interval exchanged, and a
// plain copying server beside them to compare with.
#pragma once

#include <cstdint>
#include <string_view>

namespace ostrel::bench {

// Requests to the gateway. Every other one goes to the request handler, and gets a response of
// kResponseCharacters from QuickBooks.
/// Makes a response of as many characters as the number behind it says, and keeps it.
inline constexpr std::string_view kPrepare = "PREPARE ";
/// Responded to with that response.
inline constexpr std::string_view kHandOut = "HAND OUT";
/// Taken, with a word as the response.
inline constexpr std::string_view kTake = "TAKE ";
/// A word in a request that makes QuickBooks respond with the prepared response.
inline constexpr std::string_view kHandOutAsQuickBooks = "PreparedQueryRq";

inline constexpr std::size_t kResponseCharacters = 10 * 1024;

/// A command to the copying server, in its memory form. kOut: it sends so many bytes; kIn: it
/// receives so many and then sends one.
struct CopyCommand {
  enum class Direction : std::uint64_t { kOut, kIn } direction;
  std::uint64_t bytes;
};

/// Prints the ports of the gateway and of the copying server on a line and serves until it is
/// killed. Returns an exit code when it could not start.
int RunLoadServer();

}  // namespace ostrel::bench
