#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "clients/FolderExchange.h"
#include "platform/FileSystem.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel {
namespace {

using testing::ElementsAre;

constexpr std::chrono::milliseconds kAtOnce(0);  // one look, no waiting

class FolderExchangeTest : public testing::Test {
 protected:
  void Response(std::string_view bytes) { oResponse.Write(u"a.osl", bytes); }

  ScratchFolder oProcess, oResponse;
  FolderExchange oExchange{oProcess.Path(), oResponse.Path(), u"a.osl", kAtOnce};
};

TEST_F(FolderExchangeTest, TheRequestLiesInTheProcessFolderAndNothingElse) {
  ASSERT_TRUE(oExchange.HandOver("CLOSEQB:\r\n"));

  EXPECT_EQ(oProcess.Read(u"a.osl"), "CLOSEQB:\r\n");
  EXPECT_EQ(oProcess.EntryCount(), 1u);
}

TEST_F(FolderExchangeTest, AResponseOfAnEarlierRequestIsRemoved) {
  Response("<old>");

  ASSERT_TRUE(oExchange.HandOver("CLOSEQB:\r\n"));

  EXPECT_EQ(oResponse.EntryCount(), 0u);
  EXPECT_EQ(oExchange.AwaitResponse(), ExchangeResult::kTimeout);
}

TEST_F(FolderExchangeTest, WhatCannotBeRemovedInTheResponsesPlaceIsTold) {
  oResponse.MakeFolder(u"a.osl");

  EXPECT_FALSE(oExchange.HandOver("CLOSEQB:\r\n"));

  EXPECT_THAT(ToUtf8(oExchange.reason), testing::HasSubstr("a.osl"));
  EXPECT_EQ(oProcess.EntryCount(), 0u);
}

TEST_F(FolderExchangeTest, AMissingFolderIsNamed) {
  FolderExchange lost(oProcess.Path(u"in"), oResponse.Path(), u"a.osl", kAtOnce);
  FolderExchange silent(oProcess.Path(), oResponse.Path(u"out"), u"a.osl", kAtOnce);

  EXPECT_EQ(lost.Run("X"), ExchangeResult::kNotReached);
  EXPECT_EQ(silent.Run("X"), ExchangeResult::kNotReached);

  EXPECT_EQ(lost.reason, u"there is no folder " + oProcess.Path(u"in"));
  EXPECT_EQ(silent.reason, u"there is no folder " + oResponse.Path(u"out"));
  EXPECT_EQ(oProcess.EntryCount(), 0u);
}

TEST_F(FolderExchangeTest, TheResponsesFileIsGoneOnceItIsRead) {
  ASSERT_TRUE(oExchange.HandOver("CLOSEQB:\r\n"));
  Response("<QBXML>\r\n");

  EXPECT_EQ(oExchange.AwaitResponse(), ExchangeResult::kResponded);

  EXPECT_EQ(oExchange.response.body, "<QBXML>\r\n");
  EXPECT_FALSE(oExchange.response.errorNumber);
  EXPECT_EQ(oResponse.EntryCount(), 0u);
}

TEST_F(FolderExchangeTest, AResponseThatReplacesTheLoadingNoticeWhileItIsReadIsNotLost) {
  FolderExchange exchange(oProcess.Path(), oResponse.Path(), u"a.osl", std::chrono::seconds(5));
  std::vector<std::string> received;
  exchange.Received = [&](std::string_view bytes) {
    received.emplace_back(bytes);
    if (received.size() == 1) Response("<QBXML>\r\n");
  };
  int notices = 0;
  exchange.StillLoading = [&] { ++notices; };
  ASSERT_TRUE(exchange.HandOver("CLOSEQB:\r\n"));
  Response("ERROR 99\r\nLoading Quickbooks\r\n");

  EXPECT_EQ(exchange.AwaitResponse(), ExchangeResult::kResponded);

  EXPECT_THAT(received, ElementsAre("ERROR 99\r\nLoading Quickbooks\r\n", "<QBXML>\r\n"));
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(oResponse.EntryCount(), 0u);
}

TEST_F(FolderExchangeTest, ARequestThatNobodyTookIsTakenBack) {
  ASSERT_TRUE(oExchange.HandOver("CLOSEQB:\r\n"));

  EXPECT_EQ(oExchange.AwaitResponse(), ExchangeResult::kTimeout);

  EXPECT_EQ(oProcess.EntryCount(), 0u);
  EXPECT_THAT(ToUtf8(oExchange.reason), testing::HasSubstr("taken back"));
}

TEST_F(FolderExchangeTest, ARequestThatTheGatewayTookIsToldApart) {
  ASSERT_TRUE(oExchange.HandOver("CLOSEQB:\r\n"));
  ASSERT_EQ(platform::EraseFile(oProcess.Path(u"a.osl")), 0);

  EXPECT_EQ(oExchange.AwaitResponse(), ExchangeResult::kTimeout);

  EXPECT_THAT(ToUtf8(oExchange.reason), testing::HasSubstr("the gateway has taken the request"));
}

TEST(ResponseInFile, AnErrorHasItsNumberInTheFirstLine) {
  const Response response = ResponseInFile("ERROR 1024\r\nReason: no\r\nLine: 1\r\n");

  EXPECT_EQ(response.errorNumber, 1024);
  EXPECT_EQ(response.body, "Reason: no\r\nLine: 1\r\n");
}

TEST(ResponseInFile, AnErrorMayHaveNoText) {
  EXPECT_EQ(ResponseInFile("ERROR 1024\r\n").body, "");
  EXPECT_EQ(ResponseInFile("ERROR 1024").body, "");
}

TEST(ResponseInFile, EverythingElseIsTheResponse) {
  EXPECT_FALSE(ResponseInFile("").errorNumber);
  EXPECT_EQ(ResponseInFile("<ERROR 1>\r\n").body, "<ERROR 1>\r\n");
  EXPECT_FALSE(ResponseInFile("<ERROR 1>\r\n").errorNumber);
}

TEST(UniqueRequestName, IsARequestFilesNameAndAnotherEachTime) {
  const Text name = UniqueRequestName();

  EXPECT_TRUE(name.ends_with(u".osl"));
  EXPECT_NE(name, UniqueRequestName());
}

}  // namespace
}  // namespace ostrel
