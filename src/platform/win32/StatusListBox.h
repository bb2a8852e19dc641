// The status list as a list box that scrolls sideways as far as its longest line reaches.
#pragma once

#include <windows.h>

#include <deque>
#include <optional>

#include "util/Text.h"

namespace ostrel::platform {

class StatusListBox {
 public:
  /// Its owner destroys it, as the window's other controls.
  void Create(HWND parent, int controlId);
  HWND Handle() const { return hList; }

  /// The lines that the user is reading stay where they are.
  void Insert(int index, TextView line);
  void Remove(int index);
  void SetFont(HFONT font);
  /// The text of the selected line; nothing when there is none.
  std::optional<Text> SelectedLine() const;

 private:
  int WidthOf(const std::wstring& line) const;
  Text LineAt(int index) const;
  void UpdateExtent();

  HWND hList = nullptr;
  HFONT hFont = nullptr;
  std::deque<int> oWidths;  // pixels, a line each
};

}  // namespace ostrel::platform
