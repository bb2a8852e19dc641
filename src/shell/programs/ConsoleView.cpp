#include "shell/programs/ConsoleView.h"

#include <algorithm>

namespace ostrel {

void ConsoleView::InsertStatusLine(int, TextView line) { oOutput.Add(ConsoleLine(line)); }

void ConsoleView::ShowMessage(TextView text) { oErrors.Add(ConsoleLine(text)); }

Text ConsoleLine(TextView text) {
  Text line(text);
  std::replace_if(line.begin(), line.end(), IsControl, u' ');
  return line + u"\n";
}

}  // namespace ostrel
