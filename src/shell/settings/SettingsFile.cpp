// All settings are one table, in the order in which they are read: section, key, default, and the
// function that puts the value into the record. One reader walks it. The file belongs to people who
// edit it by hand, so that a file which cannot be understood, a value that was cut and a number
// outside its range are told with the key's name.
#include "shell/settings/SettingsFile.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>
#include <utility>

#include "gateway/RequestHandler.h"
#include "platform/SystemError.h"
#include "shell/forms/Menus.h"
#include "shell/settings/NumberText.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"
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

void TakeCompanyFile(AppSettings& settings, const Text& value) {
  if (std::any_of(value.begin(), value.end(), IsControl)) {
    throw RunTimeError(ErrorNumber::kBadFileName, {},
                       u"The company file name holds a control character");
  }
  settings.sQBFileName = value;
}

constexpr TextView kSections[] = {u"[general]", u"[quickbooks]", u"[communication]"};
constexpr TextView kLineEnds = u"\r\n";

bool HasSection(TextView text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(kLineEnds), text.size());
    const Text line = LowerCase(TrimBlanks(text.substr(0, end)));
    if (std::any_of(std::begin(kSections), std::end(kSections),
                    [&](TextView section) { return line.starts_with(section); })) {
      return true;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

int ErrorOf(const cFileIO& file) {
  Text message;
  std::int32_t number = 0;
  file.ReadErrorHandler(message, number);
  return number;
}

// An editor or a virus scanner has the file for a moment only, as a rule, and most other failures
// pass as well. No events run meanwhile: nothing is served on half of the settings.
bool OpenWhenFree(cFileIO& file) {
  constexpr std::chrono::milliseconds kPause(20);
  constexpr int kAttempts = 25;
  for (int attempt = 1; !file.OpenFile({}, u"R"); ++attempt) {
    if (ErrorOf(file) == platform::kFileNotFound || attempt == kAttempts) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace

using S = AppSettings;

const SettingsFile::Key SettingsFile::kHistPath = {u"General", u"HistPath", u"%AppPath%\\History",
                                                   TakeText<&S::sHistPath>, true};

const SettingsFile::Key SettingsFile::kKeys[] = {
    {u"General", u"ProcessPath", u"%AppPath%\\Process", TakeText<&S::sProcessPath>, true},
    {u"General", u"ResponsePath", u"%AppPath%\\Response", TakeText<&S::sResponsePath>, true},
    kHistPath,
    {u"General", u"History", u"0", TakeHistory, false, &SettingsFile::HistoryRead},
    {u"General", u"HistoryEach", u"0", TakeOnlyOne<&S::bHistoryEach>},
    {u"General", u"ValidateXML", u"1", TakeOnlyOne<&S::bValidateXML>},
    {u"General", u"StatusPath", u"%AppPath%", TakeText<&S::sStatusPath>, true},
    {u"Quickbooks", u"FileName", u"", TakeCompanyFile},
    {u"Quickbooks", u"DisconnectTimeout", u"300", TakeNumber<&S::iDisconnectTimeout, ToInteger>,
     false, &SettingsFile::CreateLogFolders},
    {u"Communication", u"Type", u"0", TakeNumber<&S::lCommType, ToInteger>},
    {u"Communication", u"Folder", u"1", TurnOn<&S::bFolderWatch>},
    {u"Communication", u"Socket", u"1", TurnOn<&S::bSocketServer>},
    {u"Communication", u"SocketPort", kDefaultPortText, TakeNumber<&S::lSocketPort, ToLong>, false,
     &SettingsFile::CheckPort},
    {u"Communication", u"BlockSize", u"10000", TakeNumber<&S::lBlockSize, ToLong>, false,
     &SettingsFile::CheckBlockSize},
};

SettingsFile::SettingsFile(AppSettings& settings, platform::MainWindow& window, Trace& trace,
                           Text programFolder, std::function<void()> unload)
    : oSettings(settings),
      oWindow(window),
      oTrace(trace),
      sProgramFolder(std::move(programFolder)),
      Unload(std::move(unload)) {
  TakeDefaults();
}

void SettingsFile::TakeDefaults() {
  for (const Key& key : kKeys) Take(key, Text(key.sDefault));
  oSettings.bFolderWatch = oSettings.bSocketServer = false;
  BindCommLog();
}

void SettingsFile::LoadSettings() {
  const bool found = RequireFile();
  bool readable = true;
  for (const Key& key : kKeys) {
    readable = readable && Read(key);
    if (!readable && found) return;
    if (!readable) Take(key, Text(key.sDefault));
    if (key.Then != nullptr) (this->*key.Then)();
  }
}

void SettingsFile::mnuToolsHist_Click() {
  oSettings.bHistory = !oSettings.bHistory;
  oWindow.SetMenuChecked(mnuToolsHist, oSettings.bHistory);
  RequireFile();
  Write(u"General", u"History", oSettings.bHistory ? u"1" : u"0");
  if (!oSettings.bHistory) return;
  Read(kHistPath);
  CreateFolder(oSettings.sHistPath);
}

void SettingsFile::Write(TextView section, TextView item, TextView value) {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  ini.WriteIni(section, item, value);
}

bool SettingsFile::RequireFile() {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  if (OpenWhenFree(ini)) {
    TellFault(ini);
    return true;
  }
  oWindow.ShowMessage(u"Unable to find the osl.ini file needed.");
  Unload();
  return false;
}

void SettingsFile::TellFault(cFileIO& file) {
  constexpr std::int64_t kMostBytes = 1 << 20;
  Text text;
  file.ReadData(text, 0, std::min(file.FileSize(), kMostBytes));
  const Text fault = FaultOfSettings(text);
  if (!fault.empty()) oTrace.AddStatus(fault);
}

bool SettingsFile::Read(const Key& key) {
  cFileIO ini;
  ini.FullFileName(oSettings.sIniFile);
  Text value;
  ini.ReadINI(key.sSection, key.sItem, value, key.sDefault);
  int error = ErrorOf(ini);
  // Whatever else may pass has been tried again by the profile functions.
  if (error == platform::kOutOfMemory) {
    ini.ReadINI(key.sSection, key.sItem, value, key.sDefault);
    error = ErrorOf(ini);
  }
  if (error == platform::kMoreData) {
    oTrace.AddStatus(Text(key.sItem) + u" is longer than 99 characters and cut: " + value);
  } else if (error != 0) {
    oTrace.AddStatus(u"The settings file cannot be read: " + platform::SystemErrorText(error) +
                     u" " + Text(key.sItem) + u" and the settings after it stay as they were.");
    return false;
  }
  Take(key, value);
  return true;
}

void SettingsFile::Take(const Key& key, const Text& value) {
  try {
    key.Take(oSettings, key.bExpanded ? Expanded(value) : value);
  } catch (const RunTimeError& error) {
    const Text where = u" (" + Text(key.sItem) + u"=" + value + u")";
    throw RunTimeError(error.Number, u"LoadSettings", error.Description + where);
  }
}

// Lower case as a whole, and only then the program's folder, which keeps its own.
Text SettingsFile::Expanded(TextView path) const {
  return ReplaceAll(LowerCase(path), u"%apppath%", sProgramFolder);
}

void SettingsFile::BindCommLog() {
  oSettings.oCommLog.FullFileName(oSettings.sHistPath + u"\\Comm.log");
}

void SettingsFile::HistoryRead() {
  oWindow.SetMenuChecked(mnuToolsHist, oSettings.bHistory);
  BindCommLog();
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

void SettingsFile::CheckPort() {
  if (oSettings.lSocketPort != 0) return;
  oTrace.AddStatus(u"SocketPort 0 is no port to connect to: the system chooses any free one");
}

void SettingsFile::CheckBlockSize() {
  if (oSettings.lBlockSize >= 1) return;
  oTrace.AddStatus(u"BlockSize " + ToText(std::int64_t{oSettings.lBlockSize}) + u" counts as " +
                   ToText(std::int64_t{kDefaultBlockSize}));
  oSettings.lBlockSize = kDefaultBlockSize;
}

Text FaultOfSettings(TextView text) {
  if (text.starts_with(BytesToText("\xEF\xBB\xBF"))) {
    return u"The settings file begins with the mark of UTF-8, which hides its first line: save it "
           u"as ANSI text";
  }
  if (!Contains(text, u"\n") && Contains(text, u"\r")) {
    return u"The lines of the settings file end in CR alone, which makes one line of them: let "
           u"them "
           u"end in CR LF";
  }
  const bool isBlank = text.find_first_not_of(u" \t\r\n") == TextView::npos;
  if (isBlank || HasSection(text)) return {};
  return u"The settings file has none of the sections [General], [Quickbooks] and "
         u"[Communication]: every setting has its default";
}

}  // namespace ostrel
