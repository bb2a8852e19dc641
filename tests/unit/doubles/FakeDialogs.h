// A user who answers what a test put in.
#pragma once

#include <functional>
#include <vector>

#include "platform/Dialogs.h"

namespace ostrel::doubles {

class FakeDialogs : public platform::Dialogs {
 public:
  platform::Answer iAnswer = platform::Answer::kCancel;
  std::optional<Text> TextAnswer, FileAnswer;
  bool bClipboardHeld = false;
  /// Runs while a question is open.
  std::function<void()> DuringQuestion;

  std::vector<Text> Questions;
  std::vector<Text> TextsOffered;
  std::vector<platform::FileQuestion> FileQuestions;
  Text sClipboard;

  platform::Answer AskYesNoCancel(TextView question) override {
    Ask(question);
    return iAnswer;
  }
  std::optional<Text> AskText(TextView prompt, TextView offered) override {
    TextsOffered.emplace_back(offered);
    Ask(prompt);
    return TextAnswer;
  }
  std::optional<Text> AskForFile(const platform::FileQuestion& question) override {
    FileQuestions.push_back(question);
    if (DuringQuestion) DuringQuestion();
    return FileAnswer;
  }
  bool CopyToClipboard(TextView text) override {
    if (bClipboardHeld) return false;
    sClipboard = text;
    return true;
  }

 private:
  void Ask(TextView question) {
    Questions.emplace_back(question);
    if (DuringQuestion) DuringQuestion();
  }
};

}  // namespace ostrel::doubles
