#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "shell/forms/frmError.h"
#include "tests/unit/doubles/FakeDialogs.h"
#include "tests/unit/doubles/FakeTextForm.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "tests/unit/doubles/FakeWindow.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class frmErrorTest : public testing::Test {
 protected:
  doubles::FakeForms Forms;
  doubles::FakeDialogs Dialogs;
  doubles::FakeWindow Window;
  doubles::FakeTrace Trace;
  frmError Form{Forms.Factory(), Dialogs, Window, Trace, [] { return Text(u"report\r\n"); }};
};

TEST_F(frmErrorTest, IsMadeWhenItIsFirstUsed) {
  EXPECT_THAT(Forms.Created, IsEmpty());

  Form.Caption(u"a");
  Form.txtError(u"b");
  Form.Show();
  Form.Show();

  EXPECT_THAT(Forms.Created, SizeIs(1));
}

TEST_F(frmErrorTest, IsCalledErrorUntilItsCaptionIsSet) {
  Form.Show();
  const Text before = Forms.Only().sCaption;
  Form.Caption(u"Log File");

  EXPECT_EQ(before, u"Error");
  EXPECT_EQ(Forms.Only().sCaption, u"Log File");
}

TEST_F(frmErrorTest, ShowsItsTextOverTwoButtons) {
  Form.txtError(u"one\r\ntwo");
  Form.Show();

  const auto& form = Forms.Only();
  EXPECT_TRUE(form.bOpen);
  EXPECT_EQ(form.sText, u"one\r\ntwo");
  EXPECT_EQ(form.oDescription.look, platform::TextFormDescription::Look::kReport);
  ASSERT_THAT(form.oDescription.buttons, SizeIs(2));
  EXPECT_EQ(form.oDescription.buttons[0].caption, u"Copy");
  EXPECT_EQ(form.oDescription.buttons[1].caption, u"OK");
  EXPECT_EQ(form.oDescription.closeButton, form.oDescription.buttons[1].id);
}

TEST_F(frmErrorTest, CopiesReportAndText) {
  Form.txtError(u"what happened");
  Form.Show();

  Forms.Only().Press(u"Copy");

  EXPECT_EQ(Dialogs.sClipboard, u"report\r\n\r\nwhat happened");
  EXPECT_TRUE(Forms.Only().bOpen);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(frmErrorTest, TellsThatTheClipboardIsInUse) {
  Dialogs.bClipboardHeld = true;
  Form.Show();

  Forms.Only().Press(u"Copy");

  EXPECT_THAT(Window.Messages, ElementsAre(u"The report could not be copied: another program is "
                                           u"using the clipboard. Please try again."));
}

TEST_F(frmErrorTest, ClosesByOkAndOpensAgain) {
  Form.Show();
  Forms.Only().Press(u"OK");
  const bool closed = !Forms.Only().bOpen;
  Form.Show();

  EXPECT_TRUE(closed);
  EXPECT_TRUE(Forms.Only().bOpen);
  EXPECT_THAT(Forms.Created, SizeIs(1));
}

TEST_F(frmErrorTest, IsUnloadedTwiceWithoutHarm) {
  Form.Unload();
  Form.Show();
  Form.Unload();
  Form.Unload();

  EXPECT_FALSE(Forms.Only().bOpen);
}

TEST_F(frmErrorTest, CutsATextThatIsTooLong) {
  Form.txtError(Text(frmError::kMostCharacters, u'a'));
  const std::size_t whole = Forms.Only().sText.size();
  Form.txtError(Text(frmError::kMostCharacters + 1, u'a'));

  EXPECT_EQ(whole, frmError::kMostCharacters);
  EXPECT_TRUE(Forms.Only().sText.ends_with(u"a\r\n(The rest is not shown.)"));
}

TEST_F(frmErrorTest, TurnsWhatAButtonRaisesIntoAStatusLine) {
  frmError form(Forms.Factory(), Dialogs, Window, Trace, []() -> Text { throw std::bad_alloc(); });
  form.Show();

  Forms.Only().Press(u"Copy");

  EXPECT_THAT(Trace.Status, ElementsAre(u"frmError: Out of memory"));
}

}  // namespace
}  // namespace ostrel
