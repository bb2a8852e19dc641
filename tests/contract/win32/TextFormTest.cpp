#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ApplicationWindow.h"
#include "tests/contract/win32/DialogHands.h"

namespace ostrel::platform {
namespace {

using testing::ElementsAre;

constexpr ButtonId kCopy = 7, kOk = 8;

class TextFormTest : public testing::Test {
 protected:
  TextFormTest() {
    oForm->ButtonClick = [this](ButtonId button) {
      Pressed.push_back(button);
      if (button == kOk) oForm->Close();
    };
  }

  HWND Handle() const { return VisibleWindow(L"Report under test"); }
  HWND Edit() const { return FindWindowExW(Handle(), nullptr, L"Edit", nullptr); }
  HWND Button(const wchar_t* caption) const {
    return FindWindowExW(Handle(), nullptr, L"Button", caption);
  }

  void Key(HWND control, WPARAM key) {
    PostMessageW(control, WM_KEYDOWN, key, 0);
    AwaitEvents([] { return !(HIWORD(GetQueueStatus(QS_POSTMESSAGE)) & QS_POSTMESSAGE); });
  }

  std::unique_ptr<TextForm> oForm = MakeTextForm({.look = TextFormDescription::Look::kReport,
                                                  .caption = u"Report under test",
                                                  .buttons = {{kCopy, u"Copy"}, {kOk, u"OK"}},
                                                  .closeButton = kOk});
  std::vector<ButtonId> Pressed;
};

TEST_F(TextFormTest, IsNotOpenUntilItIsShown) {
  EXPECT_FALSE(oForm->IsOpen());
  EXPECT_EQ(Handle(), nullptr);
}

TEST_F(TextFormTest, ShowsItsTextForReadingOnly) {
  oForm->SetText(u"one\r\ntwo \u20AC");

  oForm->Show();

  ASSERT_NE(Handle(), nullptr);
  EXPECT_EQ(TextOfWindow(Edit()), L"one\r\ntwo \u20AC");
  EXPECT_TRUE(GetWindowLongW(Edit(), GWL_STYLE) & ES_READONLY);
}

TEST_F(TextFormTest, TakesLongTexts) {
  Text text;
  for (int i = 0; i < 20000; ++i) text.append(Text(40, u'x')).append(kCrLf);
  oForm->Show();

  oForm->SetText(text);

  EXPECT_EQ(GetWindowTextLengthW(Edit()), static_cast<int>(text.size()));
}

TEST_F(TextFormTest, BreaksLinesThatAreTooLongToShow) {
  oForm->Show();

  oForm->SetText(Text(1000000, u'x'));

  EXPECT_GE(SendMessageW(Edit(), EM_GETLINECOUNT, 0, 0), 1000);
}

TEST_F(TextFormTest, CaptionMayChange) {
  oForm->Show();

  oForm->SetCaption(u"Another caption");

  EXPECT_NE(VisibleWindow(L"Another caption"), nullptr);
}

TEST_F(TextFormTest, TellsWhichButtonWasPressed) {
  oForm->Show();

  SendMessageW(Button(L"Copy"), BM_CLICK, 0, 0);
  SendMessageW(Button(L"OK"), BM_CLICK, 0, 0);

  EXPECT_THAT(Pressed, ElementsAre(kCopy, kOk));
  EXPECT_FALSE(oForm->IsOpen());
}

TEST_F(TextFormTest, EscapePressesTheButtonThatCloses) {
  oForm->Show();

  Key(Edit(), VK_ESCAPE);

  EXPECT_THAT(Pressed, ElementsAre(kOk));
}

TEST_F(TextFormTest, EnterPressesTheButtonThatHasTheFocus) {
  oForm->Show();

  Key(GetFocus(), VK_RETURN);

  EXPECT_THAT(Pressed, ElementsAre(kOk));
}

TEST_F(TextFormTest, TabGoesFromTheTextToTheButtons) {
  oForm->Show();
  SetFocus(Edit());

  Key(Edit(), VK_TAB);

  EXPECT_EQ(GetFocus(), Button(L"Copy"));
}

TEST_F(TextFormTest, CloseBoxClosesIt) {
  oForm->Show();

  oForm->ButtonClick = {};

  SendMessageW(Handle(), WM_CLOSE, 0, 0);

  EXPECT_FALSE(oForm->IsOpen());
}

TEST_F(TextFormTest, ClosedTwiceAndShownAgainItHasItsText) {
  oForm->SetText(u"kept");
  oForm->Show();
  oForm->Close();
  oForm->Close();

  oForm->Show();

  EXPECT_EQ(TextOfWindow(Edit()), L"kept");
}

TEST_F(TextFormTest, TextFillsTheWindowAboveTheButtons) {
  oForm->Show();

  SetWindowPos(Handle(), nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER);

  RECT edit{}, button{};
  GetWindowRect(Edit(), &edit);
  GetWindowRect(Button(L"OK"), &button);
  EXPECT_GT(edit.right - edit.left, 600);
  EXPECT_LT(edit.bottom, button.top);
}

TEST(AboutForm, ShowsIconTextAndButton) {
  const auto form = MakeTextForm({.look = TextFormDescription::Look::kAbout,
                                  .caption = u"About under test",
                                  .buttons = {{kOk, u"OK"}},
                                  .closeButton = kOk});
  form->SetText(u"A title\r\nVersion 1.2.3");
  form->Show();

  const HWND window = VisibleWindow(L"About under test");
  ASSERT_NE(window, nullptr);
  EXPECT_NE(FindWindowExW(window, nullptr, L"Static", L"A title\r\nVersion 1.2.3"), nullptr);
  EXPECT_NE(FindWindowExW(window, nullptr, L"Button", L"OK"), nullptr);
}

}  // namespace
}  // namespace ostrel::platform
