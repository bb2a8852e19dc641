// Responses of any shape: both formatters keep every character of every tag and add line breaks and
// blanks only.
#include <algorithm>

#include "gateway/XmlLayout.h"
#include "tests/fuzz/FuzzFolder.h"
#include "tests/fuzz/FuzzTarget.h"
#include "util/CodePage.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr TextView kName = u"response.osl";

// From the first tag on, without what a layout may add or take.
Text Essence(TextView text) {
  Text kept;
  text.remove_prefix(std::min(text.find(u'<'), text.size()));
  std::copy_if(text.begin(), text.end(), std::back_inserter(kept), [](char16_t c) {
    return c != u' ' && c != u'\r' && c != u'\n' && c != kAttributeMark;
  });
  return kept;
}

void TryText(std::string_view bytes) {
  const Text text = BytesToText(bytes);
  const Text essence = Essence(text);
  Text history = text;
  FormatXmlText(history);
  Require(Essence(history) == essence, "a history text keeps every character");
  // Writing a file takes far longer than all else here.
  if (bytes.size() % 8 != 0) return;
  Require(WriteResponseFile(text, fuzz::Folder().Path(kName)), "a response file can be written");
  Require(Essence(BytesToText(fuzz::Folder().Read(kName))) == essence,
          "a response file keeps every character");
}

const fuzz::Registered kTarget("layout", TryText);

}  // namespace
}  // namespace ostrel
