// The About window: the program's title and version.
#pragma once

#include <memory>

#include "platform/TextForm.h"
#include "util/Text.h"

namespace ostrel {

class frmAbout {
 public:
  explicit frmAbout(platform::TextFormFactory createForm);
  frmAbout(const frmAbout&) = delete;
  frmAbout& operator=(const frmAbout&) = delete;

  void Show();
  /// Harmless when it is not open.
  void Unload();

 private:
  platform::TextFormFactory CreateForm;
  std::unique_ptr<platform::TextForm> oForm;
};

}  // namespace ostrel
