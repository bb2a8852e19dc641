// The About window: the program's title and version.
#pragma once

#include <memory>

#include "platform/TextForm.h"
#include "util/Text.h"

namespace ostrel {

/// One window at most, which OK, Enter, Escape or Unload closes; Show opens it again.
class frmAbout {
 public:
  /// createForm: makes the window when it is shown for the first time.
  explicit frmAbout(platform::TextFormFactory createForm);
  frmAbout(const frmAbout&) = delete;
  frmAbout& operator=(const frmAbout&) = delete;

  /// Makes the window, or brings the open one to the front. It stays open beside the main window:
  /// nobody waits for it.
  void Show();
  /// Harmless when it is not open.
  void Unload();

 private:
  platform::TextFormFactory CreateForm;
  std::unique_ptr<platform::TextForm> oForm;
};

}  // namespace ostrel
