// A small window of its own that shows a text over a row of buttons: the error dialog and the About
// window. Not modal: it stays until it is closed, by its close box, Escape or the program.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

using ButtonId = int;

struct TextFormDescription {
  enum class Look {
    kReport,  // a read-only text box of many lines that scrolls and can be selected; resizable
    kAbout,   // the program's icon beside a label
  };
  struct Button {
    ButtonId id;
    Text caption;
  };

  Look look = Look::kReport;
  Text caption;
  std::vector<Button> buttons;  // from left to right
  ButtonId closeButton = 0;     // what Enter and Escape press
};

class TextForm {
 public:
  /// Closes it.
  virtual ~TextForm() = default;

  virtual void SetCaption(TextView caption) = 0;
  /// Lines end with CR LF.
  virtual void SetText(TextView text) = 0;
  /// Shows the form in front of the other windows, whether it was open or not.
  virtual void Show() = 0;
  /// Harmless when repeated. Keeps caption and text.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  /// A button was pressed. The handler may close the form, not destroy it.
  std::function<void(ButtonId)> ButtonClick;
};

using TextFormFactory = std::function<std::unique_ptr<TextForm>(const TextFormDescription&)>;

}  // namespace ostrel::platform
