#include "shell/programs/ConsoleLines.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace ostrel {
namespace {

Text LeftOut(std::size_t lines) {
  return u"(" + ToText(static_cast<std::int64_t>(lines)) +
         u" lines are left out here: nobody read them)\n";
}

}  // namespace

class ConsoleLines::Queue {
 public:
  Queue(Writer write, std::size_t mostCharacters)
      : Write(std::move(write)), iMostCharacters(mostCharacters) {}

  void Add(Text line);
  /// Writes until End was called.
  void WriteAll();
  void End(std::chrono::milliseconds patience);
  void WriteWithoutThread() { bHasThread = false; }

 private:
  void CountLeftOut();
  std::optional<Text> Next(std::unique_lock<std::mutex>& lock);
  void WriteOne(TextView line) const;

  const Writer Write;
  const std::size_t iMostCharacters;
  std::mutex oMutex;  // of all below
  std::condition_variable oChanged;
  std::deque<Text> Lines;
  std::size_t iCharacters = 0;
  std::size_t iLeftOut = 0;  // since the last of the lines
  bool bWriting = false;
  bool bEnded = false;
  bool bHasThread = true;
};

void ConsoleLines::Queue::Add(Text line) {
  if (!bHasThread) return WriteOne(line);
  const std::lock_guard lock(oMutex);
  if (iCharacters + line.size() > iMostCharacters) {
    ++iLeftOut;
    return;
  }
  CountLeftOut();
  iCharacters += line.size();
  Lines.push_back(std::move(line));
  oChanged.notify_all();
}

void ConsoleLines::Queue::CountLeftOut() {
  if (iLeftOut == 0) return;
  Lines.push_back(LeftOut(iLeftOut));
  iCharacters += Lines.back().size();
  iLeftOut = 0;
}

// Nothing when the end has come.
std::optional<Text> ConsoleLines::Queue::Next(std::unique_lock<std::mutex>& lock) {
  bWriting = false;
  if (Lines.empty()) CountLeftOut();
  if (Lines.empty()) oChanged.notify_all();
  oChanged.wait(lock, [this] { return !Lines.empty() || bEnded; });
  if (Lines.empty()) return std::nullopt;
  Text line = std::move(Lines.front());
  Lines.pop_front();
  iCharacters -= line.size();
  bWriting = true;
  return line;
}

void ConsoleLines::Queue::WriteAll() {
  std::unique_lock lock(oMutex);
  while (const auto line = Next(lock)) {
    lock.unlock();
    WriteOne(*line);
    lock.lock();
  }
}

void ConsoleLines::Queue::WriteOne(TextView line) const {
  try {
    Write(line);
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): no memory; it is left out
  }
}

void ConsoleLines::Queue::End(std::chrono::milliseconds patience) {
  std::unique_lock lock(oMutex);
  if (bHasThread) {
    oChanged.wait_for(lock, patience,
                      [this] { return Lines.empty() && iLeftOut == 0 && !bWriting; });
  }
  bEnded = true;
  oChanged.notify_all();
}

ConsoleLines::ConsoleLines(Writer write, std::size_t mostCharacters,
                           std::chrono::milliseconds patience)
    : oQueue(std::make_shared<Queue>(std::move(write), mostCharacters)), iPatience(patience) {
  try {
    std::thread([queue = oQueue] { queue->WriteAll(); }).detach();
  } catch (const std::system_error&) {
    oQueue->WriteWithoutThread();
  }
}

ConsoleLines::~ConsoleLines() { oQueue->End(iPatience); }

void ConsoleLines::Add(Text line) { oQueue->Add(std::move(line)); }

Text ConsoleLine(TextView text) {
  Text line(text);
  std::replace_if(line.begin(), line.end(), IsControl, u' ');
  return line + u"\n";
}

}  // namespace ostrel
