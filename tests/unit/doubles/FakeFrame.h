// A window frame that remembers what it was told.
#pragma once

#include <set>
#include <vector>

#include "platform/WindowFrame.h"

namespace ostrel::doubles {

class FakeFrame : public platform::WindowFrame {
 public:
  std::set<Text> Marks;
  std::vector<Text> Steps;  // u"Show", u"Hide", u"Front", u"Mark", u"Unmark", in the order made
  platform::WindowState iState = platform::WindowState::kNormal;
  bool bVisible = false;
  platform::IconHandle hIcon = 77;

  void SetMark(TextView name) override {
    Marks.emplace(name);
    Steps.emplace_back(u"Mark");
  }
  void RemoveMark(TextView name) override {
    Marks.erase(Text(name));
    Steps.emplace_back(u"Unmark");
  }
  void Show() override {
    bVisible = true;
    Steps.emplace_back(u"Show");
  }
  void Hide() override {
    bVisible = false;
    Steps.emplace_back(u"Hide");
  }
  platform::WindowState State() const override { return iState; }
  void SetState(platform::WindowState state) override { iState = state; }
  void BringToFront() override { Steps.emplace_back(u"Front"); }
  platform::IconHandle Icon() const override { return hIcon; }
};

}  // namespace ostrel::doubles
