#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/grammar/Grammar.h"
#include "simulator/xml/XmlReader.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel::simulator {
namespace {

Element Parsed(TextView content) {
  XmlDocument document;
  EXPECT_EQ(ReadXmlText(u"<M>" + Text(content) + u"</M>", 100, document), XmlFault::kNone);
  return document.root;
}

bool Passes(std::string_view definition, TextView content, int version = 130) {
  const std::uint32_t failure =
      FailureOf([&] { CheckContent(Parsed(content), *FindContent(definition), version); });
  EXPECT_TRUE(failure == 0 || failure == 0x80040400);
  return failure == 0;
}

bool IsCustomer(TextView content) { return Passes("CustomerAdd", content); }

TEST(Grammar, HasEveryMessage) {
  EXPECT_EQ(MessageNames().size(), 232u);
  for (const std::string_view name : MessageNames()) EXPECT_NE(FindContent(name), nullptr);
  EXPECT_TRUE(std::ranges::is_sorted(MessageNames()));
  EXPECT_EQ(FindContent("NoSuchRq"), nullptr);
}

TEST(Grammar, TakesElementsInTheirOrder) {
  EXPECT_TRUE(IsCustomer(u"<Name>x</Name>"));
  EXPECT_TRUE(IsCustomer(u"<Name>x</Name><IsActive>true</IsActive><Phone>5</Phone>"));
  EXPECT_FALSE(IsCustomer(u"<IsActive>true</IsActive><Name>x</Name>"));
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><Phone>5</Phone><IsActive>1</IsActive>"));
}

TEST(Grammar, RefusesUnknownElements) {
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><Other/>"));
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><name>x</name>"));
}

TEST(Grammar, RefusesAMissingElement) {
  EXPECT_FALSE(IsCustomer(u""));
  EXPECT_FALSE(Passes("InvoiceAdd", u"<Memo>x</Memo>"));
  EXPECT_FALSE(Passes("NameFilter", u"<MatchCriterion>Contains</MatchCriterion>"));
}

TEST(Grammar, LeavesEmptyTextsToTheStatus) {
  EXPECT_TRUE(IsCustomer(u"<Name></Name>"));
  EXPECT_TRUE(Passes("CustomerMod", u"<ListID/><EditSequence/>"));
}

TEST(Grammar, CountsHowOftenAnElementStands) {
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><Name>y</Name>"));
  EXPECT_TRUE(Passes("ItemSiteFilter", u""));
  EXPECT_TRUE(Passes("SiteFilter", u"<ListID/><ListID/><ListID/>"));
  const Text contact =
      u"<AdditionalContactRef><ContactName/><ContactValue/></AdditionalContactRef>";
  Text contacts = u"<Name/>";
  for (int i = 0; i < 8; ++i) contacts += contact;
  EXPECT_TRUE(IsCustomer(contacts));
  EXPECT_FALSE(IsCustomer(contacts + contact));
}

TEST(Grammar, TakesOneOfAChoice) {
  EXPECT_TRUE(Passes("SiteFilter", u"<FullName/>"));
  EXPECT_FALSE(Passes("SiteFilter", u"<ListID/><FullName/>"));
  EXPECT_FALSE(Passes("SiteFilter", u""));
  EXPECT_TRUE(Passes("DepositLineAdd", u"<PaymentTxnID/><OverrideMemo/>"));
  EXPECT_TRUE(Passes("DepositLineAdd", u"<AccountRef/><Memo/>"));
  EXPECT_FALSE(Passes("DepositLineAdd", u"<PaymentTxnID/><AccountRef/>"));
}

TEST(Grammar, MixesWhatARepeatedChoiceHolds) {
  const Text debit = u"<JournalDebitLine/>", credit = u"<JournalCreditLine/>";

  EXPECT_TRUE(Passes("JournalEntryAdd", debit + credit + debit));
  EXPECT_FALSE(Passes("JournalEntryAdd", u""));
  EXPECT_FALSE(Passes("JournalEntryAdd", debit + u"<Memo/>"));
}

TEST(Grammar, NestsChoices) {
  const Text item = u"<ItemRef/>";

  EXPECT_TRUE(Passes("PriceLevelPerItem", item + u"<CustomPrice/>"));
  EXPECT_TRUE(Passes("PriceLevelPerItem", item + u"<CustomPricePercent/>"));
  EXPECT_TRUE(Passes("PriceLevelPerItem", item + u"<AdjustPercentage/><AdjustRelativeTo>Cost"
                                                 u"</AdjustRelativeTo>"));
  EXPECT_FALSE(Passes("PriceLevelPerItem", item + u"<AdjustPercentage/>"));
  EXPECT_FALSE(Passes("PriceLevelPerItem", item));
}

TEST(Grammar, TakesAnElementFromItsVersionOn) {
  const Text job = u"<Name/><JobTitle/>";
  EXPECT_FALSE(Passes("CustomerAdd", job, 110));
  EXPECT_TRUE(Passes("CustomerAdd", job, 120));
  const Text serial = u"<ItemRef/><SerialNumber/>";
  EXPECT_FALSE(Passes("InvoiceLineAdd", serial, 100));
  EXPECT_TRUE(Passes("InvoiceLineAdd", serial, 110));
}

TEST(Grammar, RefusesValuesThatAreNotOfTheType) {
  for (const TextView count : {u"0", u"-1", u"x", u"", u"1.5", u"1000000000"}) {
    EXPECT_FALSE(Passes("CustomerQueryRq", u"<MaxReturned>" + Text(count) + u"</MaxReturned>"));
  }
  EXPECT_TRUE(Passes("CustomerQueryRq", u"<MaxReturned> 7 </MaxReturned>"));
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><IsActive>yes</IsActive>"));
  EXPECT_TRUE(IsCustomer(u"<Name>x</Name><JobStatus>None</JobStatus>"));
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><JobStatus>Green</JobStatus>"));
}

TEST(Grammar, RefusesAttributesAndStrayTexts) {
  EXPECT_FALSE(IsCustomer(u"<Name x='1'>x</Name>"));
  EXPECT_FALSE(IsCustomer(u"stray<Name>x</Name>"));
  EXPECT_FALSE(IsCustomer(u"<Name><b/></Name>"));
  EXPECT_FALSE(IsCustomer(u"<Name>x</Name><BillAddress>stray<City>y</City></BillAddress>"));
}

TEST(Grammar, TakesTheAttributesThatAreDefined) {
  EXPECT_TRUE(Passes("InvoiceAddRq", u"<InvoiceAdd defMacro='m'><CustomerRef/></InvoiceAdd>"));
  EXPECT_FALSE(Passes("CustomerAddRq", u"<CustomerAdd defMacro='m'><Name/></CustomerAdd>"));
  EXPECT_TRUE(Passes("AppliedToTxnAdd", u"<TxnID useMacro='m'/>"));
  EXPECT_FALSE(Passes("InvoiceMod", u"<TxnID useMacro='m'/><EditSequence/>"));
}

std::optional<Status> Normalized(std::string_view definition, TextView content) {
  Element message = Parsed(content);
  return Normalize(message, *FindContent(definition));
}

int CodeOf(std::string_view definition, TextView content) {
  const auto status = Normalized(definition, content);
  return status ? status->code : 0;
}

TEST(Grammar, FindsTheFirstTextThatIsTooLong) {
  const auto none = Normalized("VehicleAdd", u"<Name>" + Text(31, u'x') + u"</Name>");
  const auto name = Normalized("SalesRepAdd", u"<Initial> 123456 </Initial>");
  const auto deep = Normalized("CustomerAdd",
                               u"<Name>1</Name><BillAddress><PostalCode>12345678901234"
                               u"</PostalCode></BillAddress>");

  EXPECT_FALSE(none);
  ASSERT_TRUE(name);
  EXPECT_EQ(name->code, 3070);
  EXPECT_EQ(name->message, "The string \"123456\" in the field \"Initial\" is too long.");
  ASSERT_TRUE(deep);
  EXPECT_EQ(deep->message,
            "The string \"12345678901234\" in the field \"PostalCode\" is too long.");
}

TEST(Grammar, JudgesTheFormOfValues) {
  EXPECT_EQ(CodeOf("CustomerAdd", u"<CreditLimit>5</CreditLimit>"), 3040);
  EXPECT_EQ(CodeOf("CustomerAdd", u"<CreditLimit>5.0</CreditLimit>"), 3040);
  EXPECT_EQ(CodeOf("CustomerAdd", u"<CreditLimit>-5.00</CreditLimit>"), 0);
  EXPECT_EQ(CodeOf("CustomerAdd", u"<JobStartDate>soon</JobStartDate>"), 3020);
  EXPECT_EQ(CodeOf("InvoiceLineAdd", u"<Rate>x</Rate>"), 3045);
  EXPECT_EQ(CodeOf("InvoiceLineAdd", u"<RatePercent>x</RatePercent>"), 3050);
  EXPECT_EQ(CodeOf("InvoiceLineAdd", u"<Quantity>x</Quantity>"), 3060);
  EXPECT_EQ(CodeOf("StandardTermsAdd", u"<StdDueDays>x</StdDueDays>"), 3065);
  EXPECT_EQ(CodeOf("TimeTrackingAdd", u"<Duration>soon</Duration>"), 3030);
  EXPECT_EQ(CodeOf("InvoiceMod", u"<TxnID></TxnID>"), 3000);
  EXPECT_EQ(CodeOf("AppliedToTxnAdd", u"<TxnID useMacro='m'/>"), 0);
}

TEST(Grammar, PutsValuesIntoTheirForm) {
  Element line = Parsed(
      u"<Quantity>2.50</Quantity><Rate>5</Rate><RatePercent>8.3</RatePercent>"
      u"<IsTaxable> 1 </IsTaxable><Amount> 7.10 </Amount><Desc>  </Desc>");

  EXPECT_FALSE(Normalize(line, *FindContent("InvoiceLineAdd")));

  EXPECT_EQ(line.ChildText("Quantity"), "2.5");
  EXPECT_EQ(line.ChildText("Rate"), "5.00");
  EXPECT_EQ(line.ChildText("RatePercent"), "8.30");
  EXPECT_EQ(line.ChildText("IsTaxable"), "true");
  EXPECT_EQ(line.ChildText("Amount"), "7.10");
  EXPECT_EQ(line.ChildText("Desc"), "");
}

TEST(Grammar, CountsCharactersAsUtf16Does) {
  EXPECT_EQ(CharacterCount("a\xC3\xA9\xE2\x82\xAC"), 3u);
  EXPECT_EQ(CharacterCount("\xF0\x9F\x98\x80"), 2u);
}

}  // namespace
}  // namespace ostrel::simulator
