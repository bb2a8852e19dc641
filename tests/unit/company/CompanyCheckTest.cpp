#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/SimulatedRequestProcessor.h"
#include "simulator/company/Journal.h"
#include "simulator/tool/Business.h"
#include "simulator/tool/CompanyCheck.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/simulator/FakeCompanyStorage.h"

namespace ostrel::simulator {
namespace {

using testing::Contains;
using testing::HasSubstr;

const Stamp kNow = {1262682187, "2010-01-05T09:03:07+00:00"};
constexpr char16_t kPath[] = u"made.qbw";

class CompanyCheck : public testing::Test {
 protected:
  CompanyCheck() { File() = MakeBusiness({.customers = 6, .items = 5, .invoices = 9}); }

  std::string& File() { return oStorage.Files[kPath]; }
  std::string& JournalFile() { return oStorage.Files[u"made.qbw.journal"]; }

  // Puts other bytes in the place of the first ones like these behind `where`.
  void Replace(std::string_view where, std::string_view from, std::string_view to) {
    const std::size_t at = File().find(from, File().find(where));
    ASSERT_NE(at, std::string::npos);
    File().replace(at, from.size(), to);
  }

  std::vector<std::string> Problems() {
    const CompanyReport report = CheckCompany(kPath, oStorage, kNow);
    EXPECT_EQ(report.error, 0);
    std::vector<std::string> problems;
    for (const Text& problem : report.problems) problems.push_back(ToUtf8(problem));
    return problems;
  }

  doubles::FakeCompanyStorage oStorage;
};

TEST_F(CompanyCheck, FindsNothingInASoundCompanyAndCountsWhatItHolds) {
  const CompanyReport report = CheckCompany(kPath, oStorage, kNow);

  EXPECT_EQ(report.problems, std::vector<Text>());
  EXPECT_THAT(ToUtf8(report.summary), HasSubstr("6 Customer, "));
  EXPECT_THAT(ToUtf8(report.summary), HasSubstr("9 Invoice, "));
}

TEST_F(CompanyCheck, SaysThatAFileIsMissing) {
  oStorage.Files.clear();

  EXPECT_EQ(CheckCompany(kPath, oStorage, kNow).error, platform::kFileNotFound);
}

TEST_F(CompanyCheck, FindsBrokenXml) {
  File().resize(File().size() / 2);

  EXPECT_THAT(Problems(), Contains(HasSubstr("not well-formed")));
}

TEST_F(CompanyCheck, FindsWhatIsNoCompany) {
  File() = "<Settings/>";

  EXPECT_THAT(Problems(), Contains(HasSubstr("cannot open")));
}

TEST_F(CompanyCheck, SaysWhereTheXmlBreaks) {
  File() = "<Company>\n<Class>\n<Name>A</Nam>\n</Class></Company>";

  EXPECT_THAT(Problems(), testing::ElementsAre("line 3: the company file is not well-formed XML"));
}

TEST_F(CompanyCheck, SaysWhereAFileBecomesTooLarge) {
  File() = "<Company>\n<Class>\n<Name>" + std::string(2'000'000, 'A') + "</Name></Class></Company>";

  EXPECT_THAT(Problems(),
              testing::ElementsAre("line 3: the company file holds more than can be read"));
}

TEST_F(CompanyCheck, NamesTheElementOfAFileThatCannotBeOpened) {
  const std::pair<std::string, std::string> cases[] = {
      {"<Settings/>", "its root element is Settings, not Company"},
      {"<Company>\n<Class><Name>A</Name></Class>\n<Class><FullName/></Class></Company>",
       "line 3: Class: its name is missing"},
      {"<Company>\n<Customer><Name>Jo</Name></Customer>\n<Invoice/>\n"
       "<Vendor><Name>JO</Name></Vendor></Company>",
       "line 4: Vendor: its name \"JO\" is there twice"},
      {"<Company>\n<Class><ListID>80000001-1</ListID><Name>A</Name></Class>\n"
       "<Class><Name>C</Name></Class>\n"
       "<Class><ListID>80000001-1</ListID><Name>B</Name></Class></Company>",
       "line 4: Class: its ID \"80000001-1\" is there twice"},
      {"<Company>\n\n<Invoice><TxnNumber>1</TxnNumber></Invoice></Company>",
       "line 3: Invoice: its TxnID is missing"},
  };

  for (const auto& [file, problem] : cases) {
    File() = file;
    EXPECT_THAT(Problems(), Contains("QuickBooks cannot open this company: " + problem)) << file;
  }
}

TEST_F(CompanyCheck, NamesTheFieldOfATransactionThatCannotBeOpened) {
  File() =
      "<Company>\n<Account><Name>Rent</Name><AccountType>Expense</AccountType></Account>\n"
      "<JournalEntry>\n<JournalDebitLine><AccountRef><FullName>Rent</FullName></AccountRef>"
      "<Amount>5.00</Amount></JournalDebitLine></JournalEntry></Company>";

  EXPECT_THAT(Problems(), Contains(testing::StartsWith(
                              "QuickBooks cannot open this company: line 3: JournalEntry: There "
                              "was an error when saving a JournalEntry.")));
}

TEST_F(CompanyCheck, NamesTheValueOfABehaviourThatCannotBeRead) {
  const std::pair<std::string, std::string> cases[] = {
      {"beginSessionSeconds='soon'",
       "beginSessionSeconds=\"soon\" is not a number of seconds from 0 to 3600"},
      {"companyFileNameError='0x1'",
       "companyFileNameError=\"0x1\" is not the HRESULT of a failure such as 0x80040408"},
      {"processRequestDies='yes'", "processRequestDies=\"yes\" is not 0 or 1"},
  };

  for (const auto& [attribute, problem] : cases) {
    File() = "<Company>\n<Behaviour " + attribute + "/></Company>";
    EXPECT_THAT(Problems(), testing::ElementsAre("QuickBooks cannot open this company: line 2: "
                                                 "Behaviour: " +
                                                 problem));
  }
}

TEST_F(CompanyCheck, NamesTheFaultThatCannotBeRead) {
  const std::pair<std::string, std::string> cases[] = {
      {"<Fault operation='endSession'/>",
       "Fault: operation=\"endSession\" is not openConnection, beginSession, processRequest or "
       "companyFileName"},
      {"<Fault message='HostQueryRq' every='0'/>",
       "Fault: every=\"0\" is not a number from 1 to 1000000"},
      {"<Fault message='HostQueryRq' often='1'/>", "Fault: there is no attribute often"},
      {"<Fault operation='processRequest' statusCode='1'/>",
       "Fault: it mixes what is for an operation with what is for a message, at statusCode"},
      {"<Fault error='0x80040408'/>", "Fault: it names neither an operation nor a message"},
      {"<Slip/>", "Slip: it is no Fault"},
  };

  for (const auto& [fault, problem] : cases) {
    File() =
        "<Company><Class><Name>A</Name></Class>\n<Behaviour>\n"
        "<Fault message='HostQueryRq'><A/></Fault>\n" +
        fault + "\n</Behaviour></Company>";
    EXPECT_THAT(Problems(), testing::ElementsAre("QuickBooks cannot open this company: line 4: "
                                                 "Behaviour: " +
                                                 problem));
  }
}

TEST_F(CompanyCheck, FindsAnIdThatIsThereTwice) {
  File() =
      "<Company><Class><ListID>80000001-1</ListID><Name>A</Name></Class>"
      "<Class><ListID>80000001-1</ListID><Name>B</Name></Class></Company>";

  EXPECT_THAT(Problems(), Contains("ID \"80000001-1\" is there twice"));
}

TEST_F(CompanyCheck, FindsANameThatIsThereTwiceInItsFamily) {
  File() =
      "<Company><Customer><Name>Jo</Name></Customer><Vendor><Name>JO</Name></Vendor></Company>";

  EXPECT_THAT(Problems(), Contains("the name \"JO\" is there twice (Entity)"));
}

TEST_F(CompanyCheck, FindsAReferenceThatLeadsNowhere) {
  Replace("<Customer>", "<TermsRef>\n      <ListID>8", "<TermsRef>\n      <ListID>7");

  EXPECT_THAT(Problems(), Contains(HasSubstr(": TermsRef leads to \"7")));
}

TEST_F(CompanyCheck, FindsAPaymentOfNothing) {
  const std::size_t link = File().find("<AppliedToTxnRet>");
  File().insert(File().find("<TxnID>", link) + 7, "FFF");

  EXPECT_THAT(Problems(), Contains(HasSubstr("is applied to \"FFF")));
}

TEST_F(CompanyCheck, FindsABalanceThatDoesNotFollowFromTheTransactions) {
  Replace("<Name>Savings</Name>", "<Balance>15000.00</Balance>", "<Balance>15000.01</Balance>");

  EXPECT_THAT(Problems(), testing::ElementsAre("Account \"Savings\": Balance is 15000.01, its "
                                               "transactions come to 15000.00"));
}

TEST_F(CompanyCheck, FindsAnInvoiceThatSaysItIsPaidWithoutAPayment) {
  Replace("<Invoice ", "<AppliedAmount>", "<AppliedAmount>-1");

  EXPECT_THAT(Problems(), Contains(HasSubstr("its payments come to")));
}

TEST_F(CompanyCheck, FindsATornJournal) {
  JournalWriter writer;
  JournalFile() = writer.Continues(VersionOf(File()));
  EXPECT_TRUE(Problems().empty());

  JournalFile() += "<?record";

  EXPECT_THAT(Problems(), testing::ElementsAre(HasSubstr("the journal is damaged at its end")));
}

TEST_F(CompanyCheck, FindsTheJournalOfAnotherFile) {
  JournalWriter writer;
  JournalFile() = writer.Continues(VersionOf("another"));

  EXPECT_THAT(Problems(), testing::ElementsAre(HasSubstr("continues another company file")));
}

// Like the requests of a client, on a company that holds nothing yet.
class CompanyCheckOfRequests : public CompanyCheck {
 protected:
  CompanyCheckOfRequests() {
    oProcessor.OpenConnection(u"", u"Test");
    File() = "<Company><Class><Name>A</Name></Class></Company>";
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
  }

  std::string Tell(const std::string& message) {
    return ToUtf8(oProcessor.ProcessRequest(
        sTicket, FromUtf8("<?qbxml version=\"13.0\"?><QBXML><QBXMLMsgsRq onError=\"stopOnError\">" +
                          message + "</QBXMLMsgsRq></QBXML>")));
  }
  std::string Add(const std::string& kind, const std::string& fields) {
    return Tell("<" + kind + "AddRq><" + kind + "Add>" + fields + "</" + kind + "Add></" + kind +
                "AddRq>");
  }
  std::string Total(const std::string& customer) {
    return Between(Tell("<CustomerQueryRq><FullName>" + customer + "</FullName></CustomerQueryRq>"),
                   "<TotalBalance>");
  }
  static std::string Between(const std::string& response, const std::string& tag) {
    const std::size_t begin = response.find(tag) + tag.size();
    return response.substr(begin, response.find('<', begin) - begin);
  }

  doubles::FakeClock oClock;
  QuickBooks oQuickBooks{{.storage = oStorage,
                          .clock = oClock,
                          .delay = [](auto, auto&) {},
                          .die = [] {},
                          .usersCompany = u""}};
  SimulatedRequestProcessor oProcessor{oQuickBooks};
  Text sTicket;
};

constexpr char kUnderYard[] = "<ParentRef><FullName>Yard</FullName></ParentRef>";

TEST_F(CompanyCheckOfRequests, AcceptsWhatOpeningBalancesMade) {
  Add("Customer", "<Name>Yard</Name><OpenBalance>120.00</OpenBalance>");
  Add("Customer",
      "<Name>Job</Name>" + std::string(kUnderYard) + "<OpenBalance>30.50</OpenBalance>");
  Add("Vendor", "<Name>Mill</Name><OpenBalance>7.00</OpenBalance>");
  Add("Account", "<Name>Bank</Name><AccountType>Bank</AccountType><OpenBalance>9.00</OpenBalance>");

  EXPECT_EQ(Problems(), std::vector<std::string>());
  EXPECT_EQ(Total("Yard"), "150.50");
  oProcessor.EndSession(sTicket);
  EXPECT_EQ(Problems(), std::vector<std::string>());
}

TEST_F(CompanyCheckOfRequests, AcceptsOpeningBalancesThatMoveAndGo) {
  Add("Customer", "<Name>Yard</Name>");
  Add("Customer", "<Name>Shop</Name><OpenBalance>1.00</OpenBalance>");
  const std::string job = Add(
      "Customer", "<Name>Job</Name>" + std::string(kUnderYard) + "<OpenBalance>5.00</OpenBalance>");
  const std::string id = "<ListID>" + Between(job, "<ListID>") + "</ListID>";

  Tell("<CustomerModRq><CustomerMod>" + id + "<EditSequence>" + Between(job, "<EditSequence>") +
       "</EditSequence><ParentRef><FullName>Shop</FullName></ParentRef></CustomerMod></"
       "CustomerModRq>");
  EXPECT_EQ(Total("Yard"), "0.00");
  EXPECT_EQ(Total("Shop"), "6.00");
  EXPECT_EQ(Problems(), std::vector<std::string>());

  Tell("<ListDelRq><ListDelType>Customer</ListDelType>" + id + "</ListDelRq>");
  EXPECT_EQ(Total("Shop"), "1.00");
  EXPECT_EQ(Problems(), std::vector<std::string>());
}

TEST_F(CompanyCheckOfRequests, FindsWhatIsNotAnOpeningBalance) {
  Add("Customer", "<Name>Yard</Name><OpenBalance>120.00</OpenBalance>");
  oProcessor.EndSession(sTicket);
  Replace("<Customer", ">120.00<", ">121.00<");

  EXPECT_THAT(Problems(),
              Contains(HasSubstr("Balance is 121.00, its transactions come to 120.00")));
}

TEST_F(CompanyCheck, NamesTheRecordsThatAreLeftOut) {
  const auto customer = [](const std::string& id, const std::string& name) {
    Element object{.name = "Customer"};
    object.Add("ListID", id);
    object.Add("FullName", name);
    return Change{.kind = FindKind("Customer"), .id = id, .object = object};
  };
  JournalWriter writer;
  JournalFile() = writer.Continues(VersionOf(File()));
  const std::size_t second = JournalFile().size();
  JournalFile() += writer.Changed({customer("8000FFFD-1", "Damaged")});
  JournalFile() += writer.Changed({customer("8000FFFE-1", "Whole")});
  const std::size_t fourth = JournalFile().size();
  JournalFile() += writer.Changed({customer("8000FFFF-1", "WHOLE")});
  JournalFile()[JournalFile().find("Damaged")] = 'd';

  EXPECT_THAT(Problems(),
              testing::ElementsAre("record 2 of the journal, at byte " + std::to_string(second) +
                                       ", is left out: it is damaged",
                                   "record 4 of the journal, at byte " + std::to_string(fourth) +
                                       ", is left out: it gives a name that another object has"));
}

TEST_F(CompanyCheck, LooksAtWhatTheJournalAdds) {
  JournalWriter writer;
  JournalFile() = writer.Continues(VersionOf(File()));
  Element customer{.name = "Customer"};
  customer.Add("ListID", "8000FFFF-1");
  customer.Add("FullName", "Later");
  customer.Add("Balance", "5.00");
  JournalFile() +=
      writer.Changed({{.kind = FindKind("Customer"), .id = "8000FFFF-1", .object = customer}});

  EXPECT_THAT(Problems(), Contains(HasSubstr("Customer \"Later\": Balance is 5.00")));
}

}  // namespace
}  // namespace ostrel::simulator
