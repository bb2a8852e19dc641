#include <gtest/gtest.h>

#include "platform/win32/Path.h"
#include "simulator/win32/Registration.h"

namespace ostrel::simulator {
namespace {

constexpr wchar_t kProgram[] = L"C:\\Stand in\\OstrelSimulator.exe";

/// A class of the test's own.
class RegistrationTest : public testing::Test {
 protected:
  RegistrationTest() { CoCreateGuid(&oClass); }
  ~RegistrationTest() override { RegDeleteTreeW(HKEY_CLASSES_ROOT, Path().c_str()); }

  std::wstring Path() const {
    wchar_t text[40];
    StringFromGUID2(oClass, text, 40);
    return std::wstring(L"CLSID\\") + text;
  }
  void Install(const wchar_t* kind, const std::wstring& server) const {
    const std::size_t bytes = (server.size() + 1) * sizeof(wchar_t);
    RegSetKeyValueW(HKEY_CLASSES_ROOT, (Path() + L"\\" + kind).c_str(), nullptr, REG_SZ,
                    server.c_str(), static_cast<DWORD>(bytes));
  }
  /// The server that clients of the class get.
  std::wstring Server() const {
    wchar_t value[260] = L"";
    DWORD size = sizeof value;
    RegGetValueW(HKEY_CLASSES_ROOT, (Path() + L"\\LocalServer32").c_str(), nullptr, RRF_RT_REG_SZ,
                 nullptr, value, &size);
    return value;
  }

  CLSID oClass{};
};

TEST_F(RegistrationTest, RegistersAndTakesItBack) {
  EXPECT_EQ(RegisterServer(oClass, kProgram).iExitCode, RegistrationResult::kDone);
  EXPECT_EQ(Server(), L"\"C:\\Stand in\\OstrelSimulator.exe\"");

  EXPECT_EQ(UnregisterServer(oClass, kProgram).iExitCode, RegistrationResult::kDone);
  EXPECT_EQ(Server(), L"");
}

TEST_F(RegistrationTest, RegistersAgain) {
  RegisterServer(oClass, kProgram);

  EXPECT_EQ(RegisterServer(oClass, kProgram).iExitCode, RegistrationResult::kDone);
}

TEST_F(RegistrationTest, TakesThePlaceOfAnotherCopy) {
  RegisterServer(oClass, L"D:\\Old\\OSTRELSIMULATOR.EXE");

  EXPECT_EQ(RegisterServer(oClass, kProgram).iExitCode, RegistrationResult::kDone);
  EXPECT_EQ(Server(), L"\"C:\\Stand in\\OstrelSimulator.exe\"");
}

TEST_F(RegistrationTest, RefusesWhereAnotherProgramIsInstalled) {
  for (const wchar_t* server : {L"C:\\Books\\Processor.exe", L"\"C:\\Books\\Processor.exe\"",
                                L"C:\\OstrelSimulator.exe /x", L""}) {
    Install(L"LocalServer32", server);

    const RegistrationResult result = RegisterServer(oClass, kProgram);

    EXPECT_EQ(result.iExitCode, RegistrationResult::kRefused);
    EXPECT_TRUE(Contains(result.sMessage, platform::FromWide(server)));
    EXPECT_EQ(Server(), server);
  }
}

TEST_F(RegistrationTest, RefusesWhereALibraryIsInstalled) {
  Install(L"InprocServer32", L"C:\\Books\\Processor.dll");

  EXPECT_EQ(RegisterServer(oClass, kProgram).iExitCode, RegistrationResult::kRefused);
  EXPECT_EQ(Server(), L"");
}

TEST_F(RegistrationTest, TakesBackNothingButItsOwn) {
  Install(L"LocalServer32", L"\"C:\\Books\\Processor.exe\"");

  EXPECT_EQ(UnregisterServer(oClass, kProgram).iExitCode, RegistrationResult::kDone);

  EXPECT_EQ(Server(), L"\"C:\\Books\\Processor.exe\"");
}

}  // namespace
}  // namespace ostrel::simulator
