// A dialog described in memory, in the form that Windows keeps in resources. Lengths are dialog
// units of the system's own font, so that a dialog keeps its shape at every font and density.
// Source: DLGTEMPLATE and DLGITEMTEMPLATE of the system's manual.
#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

namespace ostrel::platform {

struct UnitRect {
  short left = 0, top = 0, width = 0, height = 0;
};

struct DialogControl {
  enum class Kind : WORD { kButton = 0x80, kEdit = 0x81, kStatic = 0x82 };

  Kind kind;
  WORD id;
  DWORD style;  // besides WS_CHILD and WS_VISIBLE
  DWORD extendedStyle = 0;
  std::wstring_view text = {};
  UnitRect place = {};
};

class DialogTemplate {
 public:
  DialogTemplate(DWORD style, UnitRect place, std::wstring_view caption);

  /// The controls in the order of the Tab key.
  void Add(const DialogControl& control);
  /// Valid until the next Add.
  const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(oWords.data()); }

 private:
  void Append(WORD word) { oWords.push_back(word); }
  void Append(DWORD value);
  void Append(const UnitRect& place);
  void Append(std::wstring_view text);

  std::vector<WORD> oWords;
};

}  // namespace ostrel::platform
