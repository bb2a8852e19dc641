#include "shell/ConsoleView.h"

#include <algorithm>

#include "platform/Console.h"

namespace ostrel {

void ConsoleView::InsertStatusLine(int, TextView line) {
  platform::WriteStandardOutput(ConsoleLine(line));
}

void ConsoleView::ShowMessage(TextView text) { platform::WriteStandardError(ConsoleLine(text)); }

Text ConsoleLine(TextView text) {
  Text line(text);
  const auto isControl = [](char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
  std::replace_if(line.begin(), line.end(), isControl, u' ');
  return line + u"\n";
}

}  // namespace ostrel
