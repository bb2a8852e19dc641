#include <gtest/gtest.h>

#include "util/Cures.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

TEST(Cures, AreThereForEachNumberOfTheRequestProcessor) {
  for (std::int32_t number = 0x400; number <= 0x430; ++number) {
    EXPECT_NE(FindCure(CureOf::kGateway, number), nullptr) << number;
  }
}

TEST(Cures, AreThereForTheGatewaysOwnNumbers) {
  for (const std::int32_t number :
       {ErrorNumber::kCannotUseCompanyFile, ErrorNumber::kQuickBooksSdkMissing,
        ErrorNumber::kOutOfMemory, ErrorNumber::kRequestTooLong, ErrorNumber::kInternalError,
        ErrorNumber::kBadFileName, ErrorNumber::kResponseNotWritten, ErrorNumber::kGatewayEnded,
        ErrorNumber::kPathFileAccess, ErrorNumber::kStillLoading}) {
    EXPECT_NE(FindCure(CureOf::kGateway, number), nullptr) << number;
  }
}

TEST(Cures, TakeOneLine) {
  for (const CureOf of : {CureOf::kGateway, CureOf::kSocket, CureOf::kFile}) {
    for (std::int32_t number = -10; number < 300000; ++number) {
      const Cure* cure = FindCure(of, number);
      if (cure == nullptr) continue;
      EXPECT_EQ(cure->cause.find_first_of(u"\r\n|"), TextView::npos) << number;
      EXPECT_EQ(cure->cure.find_first_of(u"\r\n|"), TextView::npos) << number;
      EXPECT_FALSE(cure->cause.empty() || cure->cure.empty()) << number;
    }
  }
}

TEST(Cures, AreNotMadeUpForAnUnknownNumber) {
  EXPECT_EQ(FindCure(CureOf::kGateway, 4711), nullptr);
  EXPECT_EQ(CureText(CureOf::kSocket, 1024), u"");
  EXPECT_EQ(WhatToDo(u""), u"");
}

TEST(Cures, OfAParseErrorGoByItsReport) {
  const TextView noReport = CureText(1024, u"\r\n");
  const TextView nothingLeft =
      CureText(1024, u"Reason: Extra content at the end of the document\r\n");
  const TextView fault = CureText(1024, u"Reason: Element 'Nmae': This element is not expected.");

  EXPECT_TRUE(Contains(noReport, u"<?qbxml version"));
  EXPECT_TRUE(Contains(nothingLeft, u"is taken off"));
  EXPECT_EQ(fault, CureText(CureOf::kGateway, 1024));
  EXPECT_EQ(CureText(1027, u""), CureText(CureOf::kGateway, 1027));
}

TEST(Cures, EndALine) { EXPECT_EQ(WhatToDo(u"Wait."), u" What to do: Wait."); }

}  // namespace
}  // namespace ostrel
