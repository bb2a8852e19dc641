// Lines on their way to a reader who may be slow or may have stopped reading. Whoever adds one
// never waits: a thread of its own does. Lines beyond a limit are left out and counted, and the
// count stands in their place. The order of the lines stays.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include "util/Text.h"

namespace ostrel {

class ConsoleLines {
 public:
  /// Writes a text and waits until its reader has room; called on the other thread. What it raises
  /// leaves the text out.
  using Writer = std::function<void(TextView text)>;

  explicit ConsoleLines(Writer write, std::size_t mostCharacters = std::size_t{1} << 20,
                        std::chrono::milliseconds patience = std::chrono::seconds(2));
  /// Returns when everything is written, or after the patience.
  ~ConsoleLines();
  ConsoleLines(const ConsoleLines&) = delete;
  ConsoleLines& operator=(const ConsoleLines&) = delete;

  /// The line has its line end.
  void Add(Text line);

 private:
  class Queue;

  std::shared_ptr<Queue> oQueue;  // shared with the thread, which may be stuck in a write for ever
  std::chrono::milliseconds iPatience;
};

/// The text as one line, its line end included: what would break it or command a terminal becomes a
/// blank.
Text ConsoleLine(TextView text);

}  // namespace ostrel
