#include "shell/SettingsFile.h"

#include <iterator>
#include <utility>

#include "shell/Menus.h"
#include "shell/NumberText.h"
#include "util/RunTimeError.h"
#include "util/cFileIO.h"

namespace ostrel {

struct SettingsFile::Key {
  TextView sSection;
  TextView sItem;
  TextView sDefault;
  void (*Take)(AppSettings& settings, const Text& value);
  bool bExpanded = false;                  // a folder: see Expanded
  void (SettingsFile::*Then)() = nullptr;  // what follows once the key has been read
};

namespace {

template <auto kField>
void TakeText(AppSettings& settings, const Text& value) {
  settings.*kField = value;
}

void TakeHistory(AppSettings& settings, const Text& value) {
  settings.bHistory = !value.empty() && value != u"0";
}

template <auto kField>
void TakeOnlyOne(AppSettings& settings, const Text& value) {
  settings.*kField = value == u"1";
}

// Kept: any other value leaves the transport as it is.
template <auto kField>
void TurnOn(AppSettings& settings, const Text& value) {
  if (value == u"1") settings.*kField = true;
}

template <auto kField, auto kConvert>
void TakeNumber(AppSettings& settings, const Text& value) {
  settings.*kField = kConvert(value);
}

constexpr TextView kHistPath[] = {u"General", u"HistPath", u"%AppPath%\\History"};

}  // namespace

SettingsFile::SettingsFile(AppSettings& settings, platform::MainWindow& window, Trace& trace,
                           Text programFolder, std::function<void()> unload)
    : oSettings(settings),
      oWindow(window),
      oTrace(trace),
      sProgramFolder(std::move(programFolder)),
      Unload(std::move(unload)) {}

void SettingsFile::LoadSettings() {
  using S = AppSettings;
  using File = SettingsFile;
  static constexpr Key kKeys[] = {
      {u"General", u"ProcessPath", u"%AppPath%\\Process", TakeText<&S::sProcessPath>, true},
      {u"General", u"ResponsePath", u"%AppPath%\\Response", TakeText<&S::sResponsePath>, true},
      {kHistPath[0], kHistPath[1], kHistPath[2], TakeText<&S::sHistPath>, true},
      {u"General", u"History", u"0", TakeHistory, false, &File::HistoryRead},
      {u"General", u"ValidateXML", u"1", TakeOnlyOne<&S::bValidateXML>},
      {u"General", u"StatusPath", u"%AppPath%", TakeText<&S::sStatusPath>, true},
      {u"Quickbooks", u"FileName", u"", TakeText<&S::sQBFileName>},
      {u"Quickbooks", u"DisconnectTimeout", u"300", TakeNumber<&S::iDisconnectTimeout, ToInteger>,
       false, &File::CreateLogFolders},
      {u"Communication", u"Type", u"0", TakeNumber<&S::lCommType, ToInteger>},
      {u"Communication", u"Folder", u"1", TurnOn<&S::bFolderWatch>},
      {u"Communication", u"Socket", u"1", TurnOn<&S::bSocketServer>},
      {u"Communication", u"SocketPort", u"4999", TakeNumber<&S::lSocketPort, ToLong>},
      {u"Communication", u"BlockSize", u"10000", TakeNumber<&S::lBlockSize, ToLong>, false,
       &File::CheckBlockSize},
  };
  RequireFile();
  for (const Key& key : kKeys) Read(key);
}

void SettingsFile::mnuToolsHist_Click() {
  oSettings.bHistory = !oSettings.bHistory;
  oWindow.SetMenuChecked(mnuToolsHist, oSettings.bHistory);
  RequireFile();
  Write(u"General", u"History", oSettings.bHistory ? u"1" : u"0");
  if (!oSettings.bHistory) return;
  Read({kHistPath[0], kHistPath[1], kHistPath[2], TakeText<&AppSettings::sHistPath>, true});
  CreateFolder(oSettings.sHistPath);
}

void SettingsFile::Write(TextView section, TextView item, TextView value) {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  ini.WriteIni(section, item, value);
}

void SettingsFile::RequireFile() {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  if (ini.OpenFile({}, u"R")) return;
  oWindow.ShowMessage(u"Unable to find the osl.ini file needed.");
  Unload();
}

void SettingsFile::Read(const Key& key) {
  Text value = Value(key);
  try {
    key.Take(oSettings, value);
  } catch (const RunTimeError& error) {
    const Text where = u" (" + Text(key.sItem) + u"=" + value + u")";
    throw RunTimeError(error.Number, u"LoadSettings", error.Description + where);
  }
  if (key.Then != nullptr) (this->*key.Then)();
}

Text SettingsFile::Value(const Key& key) const {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  Text value;
  ini.ReadINI(key.sSection, key.sItem, value, key.sDefault);
  return key.bExpanded ? Expanded(value) : value;
}

// Lower case as a whole, and only then the program's folder, which keeps its own.
Text SettingsFile::Expanded(TextView path) const {
  return ReplaceAll(LowerCase(path), u"%apppath%", sProgramFolder);
}

void SettingsFile::HistoryRead() {
  oWindow.SetMenuChecked(mnuToolsHist, oSettings.bHistory);
  oSettings.oCommLog.FullFileName(oSettings.sHistPath + u"\\Comm.log");
}

void SettingsFile::CreateLogFolders() {
  CreateFolder(oSettings.sStatusPath);
  if (oSettings.bHistory) CreateFolder(oSettings.sHistPath);
}

void SettingsFile::CreateFolder(const Text& path) {
  if (cFileIO().ValidateDirectory(path) != 0) {
    oTrace.AddStatus(u"Unable to create the folder " + path);
  }
}

void SettingsFile::CheckBlockSize() {
  if (oSettings.lBlockSize >= 1) return;
  oTrace.AddStatus(u"BlockSize " + ToText(std::int64_t{oSettings.lBlockSize}) + u" counts as " +
                   ToText(std::int64_t{kDefaultBlockSize}));
  oSettings.lBlockSize = kDefaultBlockSize;
}

}  // namespace ostrel
