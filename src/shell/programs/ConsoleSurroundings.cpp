#include "shell/programs/ConsoleSurroundings.h"

#include "platform/Console.h"

namespace ostrel {
namespace {

void PrintQuestion(TextView question) {
  platform::WriteStandardError(ConsoleLine(Text(question) + u" (nobody can answer)"));
}

void PrintLines(TextView text) {
  while (!text.empty()) {
    const std::size_t end = text.find(kCrLf);
    platform::WriteStandardError(ConsoleLine(text.substr(0, end)));
    text = end == TextView::npos ? TextView() : text.substr(end + kCrLf.size());
  }
}

class ConsoleForm : public platform::TextForm {
 public:
  explicit ConsoleForm(TextView caption) : sCaption(caption) {}

  void SetCaption(TextView caption) override { sCaption = caption; }
  void SetText(TextView text) override { sText = text; }
  void Show() override {
    platform::WriteStandardError(ConsoleLine(sCaption));
    PrintLines(sText);
  }
  void Close() override {}
  bool IsOpen() const override { return false; }

 private:
  Text sCaption;
  Text sText;
};

class NoIcon : public platform::NotifyIcon {
 public:
  bool Notify(Operation, const platform::NotifyIconRecord&) override { return true; }
  int PopUpMenu(const std::vector<platform::PopupItem>&, int) override { return -1; }
};

}  // namespace

platform::Answer ConsoleDialogs::AskYesNoCancel(TextView question) {
  PrintQuestion(question);
  return platform::Answer::kCancel;
}

std::optional<Text> ConsoleDialogs::AskText(TextView prompt, TextView) {
  PrintQuestion(prompt);
  return std::nullopt;
}

std::optional<Text> ConsoleDialogs::AskForFile(const platform::FileQuestion& question) {
  PrintQuestion(question.sFilter);
  return std::nullopt;
}

std::unique_ptr<platform::TextForm> MakeConsoleForm(
    const platform::TextFormDescription& description) {
  return std::make_unique<ConsoleForm>(description.caption);
}

std::unique_ptr<platform::NotifyIcon> MakeNoIcon() { return std::make_unique<NoIcon>(); }

}  // namespace ostrel
