#include "simulator/win32/Registration.h"

#include <array>
#include <optional>
#include <string_view>

#include "platform/SystemError.h"
#include "platform/win32/Path.h"

namespace ostrel::simulator {
namespace {

using platform::FromWide;

constexpr wchar_t kUsersClasses[] = L"Software\\Classes\\";
constexpr wchar_t kDescription[] = L"QuickBooks stand-in of Ostrel Server";

// Where a user's own classes are kept: below a key, by a path.
struct Root {
  HKEY key;
  std::wstring path;
};

std::wstring ClassPath(const CLSID& classId) {
  wchar_t text[40];
  StringFromGUID2(classId, text, static_cast<int>(std::size(text)));
  return std::wstring(L"CLSID\\") + text;
}

DWORD BytesOf(std::size_t characters) {
  return static_cast<DWORD>(characters) * DWORD{sizeof(wchar_t)};
}

std::optional<std::wstring> ReadValue(HKEY key, const std::wstring& path) {
  DWORD size = 0;
  constexpr DWORD kTexts = RRF_RT_REG_SZ;  // others are expanded to it
  if (RegGetValueW(key, path.c_str(), nullptr, kTexts, nullptr, nullptr, &size) != 0) return {};
  std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
  size = BytesOf(value.size());
  const LSTATUS error =
      RegGetValueW(key, path.c_str(), nullptr, kTexts, nullptr, value.data(), &size);
  if (error != 0) return {};
  value.resize(value.find(L'\0'));
  return value;
}

LSTATUS WriteValue(HKEY key, const std::wstring& path, const std::wstring& value) {
  const DWORD size = BytesOf(value.size() + 1);
  return RegSetKeyValueW(key, path.c_str(), nullptr, REG_SZ, value.c_str(), size);
}

// Whether the classes that everybody sees hold those of the user too: seen by one that exists only
// for this question.
bool UsersClassesCount() {
  GUID probe;
  if (FAILED(CoCreateGuid(&probe))) return false;
  const std::wstring path = ClassPath(probe);
  const std::wstring written = kUsersClasses + path;
  if (WriteValue(HKEY_CURRENT_USER, written, L"") != 0) return false;
  const bool seen = ReadValue(HKEY_CLASSES_ROOT, path).has_value();
  RegDeleteTreeW(HKEY_CURRENT_USER, written.c_str());
  return seen;
}

Root RootOfClasses() {
  if (UsersClassesCount()) return {HKEY_CURRENT_USER, kUsersClasses};
  return {HKEY_CLASSES_ROOT, L""};
}

std::wstring Quoted(const std::wstring& path) { return L'"' + path + L'"'; }

// The path in the form in which this program registers itself; nothing in any other.
std::optional<std::wstring> Unquoted(const std::wstring& command) {
  if (command.size() < 2 || command.front() != L'"' || command.back() != L'"') return {};
  return command.substr(1, command.size() - 2);
}

bool SameText(std::wstring_view a, std::wstring_view b) {
  return LowerCase(FromWide(a)) == LowerCase(FromWide(b));
}

std::wstring_view FileName(std::wstring_view path) { return path.substr(path.rfind(L'\\') + 1); }

std::wstring LocalServerPath(const CLSID& classId) {
  return ClassPath(classId) + L"\\LocalServer32";
}

// The server of another maker that clients of the class get; nothing when there is none.
std::optional<std::wstring> ForeignServer(const CLSID& classId, const std::wstring& program) {
  auto library = ReadValue(HKEY_CLASSES_ROOT, ClassPath(classId) + L"\\InprocServer32");
  if (library) return library;
  auto server = ReadValue(HKEY_CLASSES_ROOT, LocalServerPath(classId));
  if (!server) return {};
  const auto path = Unquoted(*server);
  const bool isOurs = path && SameText(FileName(*path), FileName(program));
  return isOurs ? std::nullopt : server;
}

RegistrationResult Failed(TextView what, LSTATUS error) {
  return {RegistrationResult::kFailed,
          Text(what) + u": " + platform::SystemErrorText(static_cast<int>(error))};
}

}  // namespace

RegistrationResult RegisterServer(const CLSID& classId, const std::wstring& program) {
  if (const auto foreign = ForeignServer(classId, program)) {
    return {RegistrationResult::kRefused,
            u"Not registered: a request processor is installed on this machine (" +
                FromWide(*foreign) + u"), and the stand-in does not take its place."};
  }
  const Root root = RootOfClasses();
  const std::array<std::pair<std::wstring, std::wstring>, 2> values = {{
      {ClassPath(classId), kDescription},
      {LocalServerPath(classId), Quoted(program)},
  }};
  for (const auto& [path, value] : values) {
    const LSTATUS error = WriteValue(root.key, root.path + path, value);
    if (error != 0) return Failed(u"Not registered", error);
  }
  return {RegistrationResult::kDone,
          u"Registered as QuickBooks' request processor: " + FromWide(program)};
}

RegistrationResult UnregisterServer(const CLSID& classId, const std::wstring& program) {
  const auto server = ReadValue(HKEY_CLASSES_ROOT, LocalServerPath(classId));
  if (!server || !SameText(*server, Quoted(program))) {
    return {RegistrationResult::kDone, u"Not registered; nothing was removed."};
  }
  const Root root = RootOfClasses();
  const LSTATUS error = RegDeleteTreeW(root.key, (root.path + ClassPath(classId)).c_str());
  if (error != 0) return Failed(u"Not removed", error);
  return {RegistrationResult::kDone, u"No longer registered: " + FromWide(program)};
}

}  // namespace ostrel::simulator
