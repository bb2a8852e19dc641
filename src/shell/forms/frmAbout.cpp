#include "shell/forms/frmAbout.h"

#include <utility>

#include "shell/forms/Version.h"

namespace ostrel {
namespace {

constexpr platform::ButtonId kAboutOk = 1;

}  // namespace

frmAbout::frmAbout(platform::TextFormFactory createForm) : CreateForm(std::move(createForm)) {}

void frmAbout::Show() {
  if (oForm == nullptr) {
    oForm = CreateForm({.look = platform::TextFormDescription::Look::kAbout,
                        .caption = u"About " + Text(kProgramName),
                        .buttons = {{kAboutOk, u"OK"}},
                        .closeButton = kAboutOk});
    oForm->ButtonClick = [this](platform::ButtonId) { Unload(); };
    oForm->SetText(Text(kProgramTitle).append(kCrLf) + u"Version " + ProgramVersion());
  }
  oForm->Show();
}

void frmAbout::Unload() {
  if (oForm != nullptr) oForm->Close();
}

}  // namespace ostrel
