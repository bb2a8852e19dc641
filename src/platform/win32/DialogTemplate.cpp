#include "platform/win32/DialogTemplate.h"

#include "platform/win32/Dpi.h"

namespace ostrel::platform {
namespace {

constexpr std::size_t kCountAt = 4;  // where the number of controls stands
constexpr WORD kNone = 0;
constexpr WORD kAtomFollows = 0xFFFF;
constexpr int kPointsPerInch = 72;

}  // namespace

DialogTemplate::DialogTemplate(DWORD style, UnitRect place, std::wstring_view caption) {
  const LOGFONTW font = MessageFontAt(kUsualDpi);
  Append(style | DS_SETFONT);
  Append(DWORD{0});  // extended style
  Append(kNone);     // controls
  Append(place);
  Append(kNone);  // menu
  Append(kNone);  // class: the system's
  Append(caption);
  Append(static_cast<WORD>(MulDiv(std::abs(font.lfHeight), kPointsPerInch, kUsualDpi)));
  Append(std::wstring_view(font.lfFaceName));
}

void DialogTemplate::Add(const DialogControl& control) {
  if (oWords.size() % 2 != 0) Append(kNone);  // each begins at a multiple of four bytes
  Append(control.style | WS_CHILD | WS_VISIBLE);
  Append(control.extendedStyle);
  Append(control.place);
  Append(control.id);
  Append(kAtomFollows);
  Append(static_cast<WORD>(control.kind));
  Append(control.text);
  Append(kNone);  // data
  ++oWords[kCountAt];
}

void DialogTemplate::Append(DWORD value) {
  Append(LOWORD(value));
  Append(HIWORD(value));
}

void DialogTemplate::Append(const UnitRect& place) {
  for (const short length : {place.left, place.top, place.width, place.height}) {
    Append(static_cast<WORD>(length));
  }
}

void DialogTemplate::Append(std::wstring_view text) {
  oWords.insert(oWords.end(), text.begin(), text.end());
  Append(kNone);
}

}  // namespace ostrel::platform
