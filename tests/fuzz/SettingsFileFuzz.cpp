// Settings files of any bytes: reading one fills every field with something usable or raises the
// error that says which key is wrong, and writing one key changes that key only.
#include <map>

#include "platform/Profile.h"
#include "platform/SystemError.h"
#include "shell/settings/SettingsFile.h"
#include "tests/fuzz/FuzzFolder.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "tests/unit/doubles/FakeWindow.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr TextView kName = u"osl.ini";
constexpr std::string_view kSection = "General";
constexpr std::size_t kRoom = 100;
constexpr std::string_view kKeys[] = {"History", "ValidateXML", "ProcessPath", "x"};

std::map<std::string_view, std::string> Values() {
  std::map<std::string_view, std::string> values;
  for (const std::string_view key : kKeys) {
    const int error = platform::ReadProfileValue(fuzz::Folder().Path(kName), kSection, key, "none",
                                                 kRoom, values[key]);
    Require(error == 0 || error == platform::kMoreData, "a value can be read");
    Require(values[key].size() < kRoom, "a value is cut to its room");
  }
  return values;
}

void Load() {
  doubles::FakeWindow window;
  doubles::FakeTrace trace;
  AppSettings settings;
  settings.sIniFile = fuzz::Folder().Path(kName);
  SettingsFile file(settings, window, trace, fuzz::Folder().Path(), [] {});
  try {
    file.LoadSettings();
    Require(settings.lBlockSize >= 1, "a block has a size");
  } catch (const RunTimeError& error) {
    Require(Contains(error.Description, u"="), "an error says which key is wrong");
  }
  Require(window.Messages.empty(), "the file is there");
}

void WriteOneKey() {
  const std::string written = "written value";
  const auto before = Values();
  const Text path = fuzz::Folder().Path(kName);
  Require(platform::WriteProfileValue(path, kSection, "History", &written) == 0,
          "a key is written");
  const auto after = Values();
  for (const std::string_view key : kKeys) {
    Require(after.at(key) == (key == "History" ? written : before.at(key)),
            "writing changes one key and leaves the others");
  }
  std::string entries;
  platform::ReadProfileSection(path, kSection, kRoom, entries);
  Require(entries.size() <= kRoom - 2, "a section is cut to its room");
}

// Paths would have folders made all over the disk.
bool NamesFolders(std::string_view bytes) {
  return bytes.find_first_of("\\/:") != std::string_view::npos;
}

void TryFile(std::string_view bytes) {
  const ScratchFolder& folder = fuzz::Folder();
  folder.Write(kName, bytes);
  const std::filesystem::path root = folder.Path();
  if (!NamesFolders(bytes)) {
    std::filesystem::current_path(root);
    Load();
    for (const auto& entry : std::filesystem::directory_iterator(root)) {
      if (entry.is_directory()) std::filesystem::remove_all(entry.path());
    }
    std::filesystem::current_path(std::filesystem::temp_directory_path());
  }
  WriteOneKey();
}

const fuzz::Registered kTarget("settings", TryFile);

}  // namespace
}  // namespace ostrel
