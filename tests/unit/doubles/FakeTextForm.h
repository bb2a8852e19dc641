// Forms that a test reads and presses; what became of them outlives them.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/TextForm.h"

namespace ostrel::doubles {

struct FakeForm {
  platform::TextFormDescription oDescription;
  Text sCaption;
  Text sText;
  bool bOpen = false;
  int iShows = 0;
  std::function<void(const Text& caption)> Press;  // the button of this caption
  std::function<void()> DuringShow = [] {};
};

class FakeTextForm : public platform::TextForm {
 public:
  explicit FakeTextForm(FakeForm& form) : oForm(form) {
    oForm.Press = [this](const Text& caption) {
      for (const auto& button : oForm.oDescription.buttons) {
        if (button.caption == caption) ButtonClick(button.id);
      }
    };
  }
  ~FakeTextForm() override {
    oForm.bOpen = false;
    oForm.Press = nullptr;
  }
  FakeTextForm(const FakeTextForm&) = delete;
  FakeTextForm& operator=(const FakeTextForm&) = delete;

  void SetCaption(TextView caption) override { oForm.sCaption = caption; }
  void SetText(TextView text) override { oForm.sText = text; }
  void Show() override {
    oForm.bOpen = true;
    ++oForm.iShows;
    oForm.DuringShow();
  }
  void Close() override { oForm.bOpen = false; }
  bool IsOpen() const override { return oForm.bOpen; }

 private:
  FakeForm& oForm;
};

/// Every form that was created, in that order.
struct FakeForms {
  std::vector<std::unique_ptr<FakeForm>> Created;
  std::function<void()> DuringShow = [] {};

  platform::TextFormFactory Factory() {
    return [this](const platform::TextFormDescription& description) {
      Created.push_back(std::make_unique<FakeForm>());
      Created.back()->oDescription = description;
      Created.back()->sCaption = description.caption;
      Created.back()->DuringShow = [this] { DuringShow(); };
      return std::make_unique<FakeTextForm>(*Created.back());
    };
  }

  FakeForm& Only() const { return *Created.at(0); }
};

}  // namespace ostrel::doubles
