#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/forms/Version.h"
#include "shell/forms/frmAbout.h"
#include "tests/unit/doubles/FakeTextForm.h"

namespace ostrel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST(frmAbout, ShowsTitleAndVersion) {
  doubles::FakeForms forms;
  frmAbout form(forms.Factory());

  form.Show();

  EXPECT_TRUE(forms.Only().bOpen);
  EXPECT_EQ(forms.Only().oDescription.look, platform::TextFormDescription::Look::kAbout);
  EXPECT_EQ(forms.Only().sText,
            u"Ostrel Server - MultiValue QuickBooks Gateway\r\nVersion " + ProgramVersion());
}

TEST(frmAbout, ClosesByOkAndOpensAgain) {
  doubles::FakeForms forms;
  frmAbout form(forms.Factory());

  form.Show();
  forms.Only().Press(u"OK");
  const bool closed = !forms.Only().bOpen;
  form.Show();

  EXPECT_TRUE(closed);
  EXPECT_TRUE(forms.Only().bOpen);
  EXPECT_THAT(forms.Created, SizeIs(1));
}

TEST(frmAbout, IsUnloadedThoughItWasNeverShown) {
  doubles::FakeForms forms;
  frmAbout form(forms.Factory());

  form.Unload();

  EXPECT_THAT(forms.Created, IsEmpty());
}

}  // namespace
}  // namespace ostrel
