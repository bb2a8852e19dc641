#include "platform/Console.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <memory>

#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

struct FreeLocal {
  void operator()(LPWSTR* arguments) const { LocalFree(arguments); }
};

// A console takes characters, and not too many at once.
void WriteToConsole(HANDLE console, std::wstring_view text) {
  constexpr std::size_t most = 8192;
  while (!text.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(text.size(), most));
    if (!WriteConsoleW(console, text.data(), count, &written, nullptr) || written == 0) return;
    text.remove_prefix(written);
  }
}

// A program without a console has no handle here; its output is lost, as it is when the reader of
// a pipe has gone.
void WriteBytes(DWORD stream, std::string_view bytes) {
  constexpr std::size_t most = 1 << 20;
  const HANDLE file = GetStdHandle(stream);
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), most));
    if (!WriteFile(file, bytes.data(), count, &written, nullptr) || written == 0) return;
    bytes.remove_prefix(written);
  }
}

void WriteText(DWORD stream, TextView text) {
  const HANDLE file = GetStdHandle(stream);
  DWORD mode = 0;
  if (GetConsoleMode(file, &mode)) {
    WriteToConsole(file, ToWide(text));
  } else {
    WriteBytes(stream, ToUtf8(text));
  }
}

}  // namespace

std::vector<Text> ProgramArguments(int, char*[]) {
  int count = 0;
  const std::unique_ptr<LPWSTR, FreeLocal> owner(CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<Text> arguments;
  for (int i = 1; owner && i < count; ++i) arguments.push_back(FromWide(owner.get()[i]));
  return arguments;
}

std::optional<std::string> ReadStandardInput() {
  const HANDLE file = GetStdHandle(STD_INPUT_HANDLE);
  std::string input;
  std::array<char, 65536> piece;
  for (;;) {
    DWORD length = 0;
    if (!ReadFile(file, piece.data(), static_cast<DWORD>(piece.size()), &length, nullptr)) {
      // A pipe ends so.
      if (GetLastError() == ERROR_BROKEN_PIPE) return input;
      return std::nullopt;
    }
    if (length == 0) return input;
    input.append(piece.data(), length);
  }
}

void WriteStandardOutput(TextView text) { WriteText(STD_OUTPUT_HANDLE, text); }

void WriteStandardError(TextView text) { WriteText(STD_ERROR_HANDLE, text); }

void WriteStandardOutputBytes(std::string_view bytes) { WriteBytes(STD_OUTPUT_HANDLE, bytes); }

}  // namespace ostrel::platform
