#include <gtest/gtest.h>

#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

constexpr char kApplication[] = "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}";

// A company with fields of its users and of an application.
class FieldedBooks : public Books {
 public:
  FieldedBooks() {
    Define("0", "Region", "STR255TYPE", "Customer");
    Define("0", "Shelf", "STR255TYPE", "Item");
    Define(kApplication, "Weight", "QUANTYPE", "Invoice");
    Define(kApplication, "Motto", "STR255TYPE", "Company");
  }

  QbxmlResponse Define(const std::string& owner, const std::string& name, const std::string& type,
                       const std::string& object) {
    return Tell(
        Leaf("DataExtDefAddRq", Leaf("DataExtDefAdd", Key(owner, name) + Leaf("DataExtType", type) +
                                                          Leaf("AssignToObject", object))));
  }
  QbxmlResponse Set(const std::string& verb, const std::string& owner, const std::string& name,
                    const std::string& holder, const std::string& value) {
    return Tell(
        Leaf("DataExt" + verb + "Rq",
             Leaf("DataExt" + verb,
                  Key(owner, name) + holder + (verb == "Del" ? "" : Leaf("DataExtValue", value)))));
  }
  QbxmlResponse SetRegion(const std::string& value) {
    return Set("Add", "0", "Region", OfCustomer("Abbott"), value);
  }
  std::string Region(const std::string& owners = "<OwnerID>0</OwnerID>") {
    return Query("Customer", "<FullName>Abbott</FullName>" + owners)
        .Text("DataExtRet/DataExtValue");
  }

  static std::string Key(const std::string& owner, const std::string& name) {
    return Leaf("OwnerID", owner) + Leaf("DataExtName", name);
  }
  static std::string OfCustomer(const std::string& name) {
    return "<ListDataExtType>Customer</ListDataExtType>" + Ref("ListObjRef", name);
  }
  static std::string OfInvoice(const QbxmlResponse& invoice, const std::string& line = "") {
    return "<TxnDataExtType>Invoice</TxnDataExtType>" + Leaf("TxnID", invoice.Text("TxnID")) +
           (line.empty() ? "" : Leaf("TxnLineID", line));
  }
};

TEST(CustomFields, AreDefinedOnceAndFoundByTheirOwner) {
  FieldedBooks books;

  const QbxmlResponse added = books.Define("0", "Colour", "STR255TYPE", "Item");
  EXPECT_EQ(added.Code(), "0");
  EXPECT_EQ(added.Order(),
            "OwnerID DataExtID DataExtName DataExtType AssignToObject DataExtListRequire "
            "DataExtTxnRequire DataExtFormatString ");
  EXPECT_EQ(books.Define("0", "colour", "STR255TYPE", "Item").Code(), "3100");
  EXPECT_EQ(books.Define(kApplication, "Colour", "STR255TYPE", "Item").Code(), "0");

  EXPECT_EQ(books.Query("DataExtDef", "<OwnerID>0</OwnerID>").All("DataExtName"),
            "Region Shelf Colour ");
  EXPECT_EQ(
      books.Query("DataExtDef", "<AssignToObject>Invoice</AssignToObject>").All("DataExtName"),
      "Weight ");
  EXPECT_EQ(books.Query("DataExtDef", "", "metaData='MetaDataOnly'").Attribute("retCount"), "6");
}

TEST(CustomFields, NeedAnOwnerANameAndObjectsThatMayHaveThem) {
  FieldedBooks books;

  EXPECT_EQ(books.Define("17", "Colour", "STR255TYPE", "Item").Code(), "3210");
  EXPECT_EQ(books.Define("0", "", "STR255TYPE", "Item").Code(), "3090");
  EXPECT_EQ(books.Define("0", "Colour", "STR255TYPE", "Invoice").Code(), "3210");
}

TEST(CustomFields, AreReturnedToThoseWhoAskForTheirOwner) {
  FieldedBooks books;

  EXPECT_EQ(books.SetRegion("North").Text("DataExtType"), "STR255TYPE");

  EXPECT_EQ(books.Region(), "North");
  EXPECT_EQ(books.Region(""), "");
  EXPECT_EQ(books.Region(Books::Leaf("OwnerID", kApplication)), "");
}

TEST(CustomFields, AreAddedOnceModifiedAndDeleted) {
  FieldedBooks books;
  const std::string abbott = FieldedBooks::OfCustomer("Abbott");
  books.SetRegion("North");

  EXPECT_EQ(books.SetRegion("South").Code(), "3100");
  EXPECT_EQ(books.Set("Mod", "0", "region", abbott, "South").Code(), "0");
  EXPECT_EQ(books.Region(), "South");
  EXPECT_EQ(books.Set("Del", "0", "Region", abbott, "").Text("TimeDeleted").substr(0, 2), "20");
  EXPECT_EQ(books.Region(), "");
  EXPECT_EQ(books.Set("Del", "0", "Region", abbott, "").Code(), "3120");
}

TEST(CustomFields, OfUsersChangeTheirObjectAndOthersDoNot) {
  FieldedBooks books;
  books.Define(kApplication, "Key", "INTTYPE", "Customer");
  const std::string before = books.Find("Customer", "Abbott").Text("EditSequence");

  books.Set("Add", kApplication, "Key", FieldedBooks::OfCustomer("Abbott"), "7");
  EXPECT_EQ(books.Find("Customer", "Abbott").Text("EditSequence"), before);
  books.SetRegion("North");
  EXPECT_NE(books.Find("Customer", "Abbott").Text("EditSequence"), before);
}

TEST(CustomFields, AreRefusedWhereTheyAreNotDefined) {
  FieldedBooks books;
  const std::string mill =
      "<ListDataExtType>Vendor</ListDataExtType>" + Books::Ref("ListObjRef", "Mill");

  EXPECT_EQ(books.Set("Add", "0", "Unknown", mill, "x").Code(), "3120");
  EXPECT_EQ(books.Set("Add", "0", "Region", mill, "x").Code(), "3210");
  EXPECT_EQ(books.Set("Add", "0", "Region", FieldedBooks::OfCustomer("Nobody"), "x").Code(),
            "3140");
}

TEST(CustomFields, HoldOnlyValuesOfTheirType) {
  FieldedBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string holder = FieldedBooks::OfInvoice(invoice);

  EXPECT_EQ(books.Set("Add", kApplication, "Weight", holder, "heavy").Code(), "3060");
  EXPECT_EQ(books.Set("Add", kApplication, "Weight", holder, "2.5").Code(), "0");
  EXPECT_EQ(books.SetRegion(std::string(256, 'x')).Code(), "3070");
}

TEST(CustomFields, BelongToTransactionsAndTheirLines) {
  FieldedBooks books;
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string line = invoice.Text("InvoiceLineRet/TxnLineID");

  books.Set("Add", "0", "Region", FieldedBooks::OfInvoice(invoice), "North");
  books.Set("Add", "0", "Shelf", FieldedBooks::OfInvoice(invoice, line), "B4");
  EXPECT_EQ(books.Set("Add", "0", "Shelf", FieldedBooks::OfInvoice(invoice, "99-1"), "B4").Code(),
            "3120");

  const QbxmlResponse found =
      books.Query("Invoice", Books::Leaf("TxnID", invoice.Text("TxnID")) +
                                 "<IncludeLineItems>true</IncludeLineItems><OwnerID>0</OwnerID>");
  EXPECT_EQ(found.Text("DataExtRet/DataExtValue"), "North");
  EXPECT_EQ(found.Text("InvoiceLineRet/DataExtRet/DataExtValue"), "B4");
}

TEST(CustomFields, ComeInTheLinesOfAnAdd) {
  FieldedBooks books;
  const auto add = [&](const std::string& name) {
    return books.Add(
        "Invoice",
        Books::Ref("CustomerRef", "Abbott") +
            Books::Leaf("InvoiceLineAdd",
                        Books::Ref("ItemRef", "Hammer") +
                            Books::Leaf("DataExt", FieldedBooks::Key("0", name) +
                                                       "<DataExtValue>C1</DataExtValue>")));
  };

  EXPECT_EQ(add("Unknown").Code(), "3120");
  EXPECT_EQ(add("Region").Code(), "3120");
  const QbxmlResponse added = add("Shelf");
  EXPECT_EQ(added.Code(), "0");
  const QbxmlResponse found =
      books.Query("Invoice", Books::Leaf("TxnID", added.Text("TxnID")) +
                                 "<IncludeLineItems>true</IncludeLineItems><OwnerID>0</OwnerID>");
  EXPECT_EQ(found.Text("InvoiceLineRet/DataExtRet/DataExtType"), "STR255TYPE");
  EXPECT_EQ(found.Text("InvoiceLineRet/DataExtRet/DataExtValue"), "C1");
}

TEST(CustomFields, BelongToTheCompany) {
  FieldedBooks books;
  const std::string company = "<OtherDataExtType>Company</OtherDataExtType>";

  EXPECT_EQ(books.Set("Add", kApplication, "Motto", company, "Build").Code(), "0");
  EXPECT_EQ(books.Set("Add", "0", "Region", company, "North").Code(), "3210");

  const std::string owner = Books::Leaf("OwnerID", kApplication);
  EXPECT_EQ(books.Query("Company", owner).Text("DataExtRet/DataExtValue"), "Build");
  EXPECT_FALSE(books.Query("Company").Has("DataExtRet"));
  books.Set("Mod", kApplication, "Motto", company, "Mend");
  EXPECT_EQ(books.Query("Company", owner).Text("DataExtRet/DataExtValue"), "Mend");
}

TEST(CustomFields, SurviveAModOfTheirObjectAndOfItsLine) {
  FieldedBooks books;
  books.SetRegion("North");
  const QbxmlResponse invoice = books.InvoiceTwoHammers();
  const std::string line = Books::Leaf("TxnLineID", invoice.Text("InvoiceLineRet/TxnLineID"));
  books.Set("Add", "0", "Shelf",
            FieldedBooks::OfInvoice(invoice, invoice.Text("InvoiceLineRet/TxnLineID")), "B4");

  books.Modify("Customer", books.Find("Customer", "Abbott"), "<Phone>555-0100</Phone>");
  const std::string byId = Books::Leaf("TxnID", invoice.Text("TxnID"));
  const QbxmlResponse changed =
      books.Modify("Invoice", books.Query("Invoice", byId),
                   Books::Leaf("InvoiceLineMod", line + "<Quantity>3</Quantity>"));

  EXPECT_EQ(changed.Text("InvoiceLineRet/Quantity"), "3");
  EXPECT_EQ(books.Region(), "North");
  EXPECT_EQ(
      books.Query("Invoice", byId + "<IncludeLineItems>1</IncludeLineItems><OwnerID>0</OwnerID>")
          .Text("InvoiceLineRet/DataExtRet/DataExtValue"),
      "B4");
}

TEST(CustomFields, SurviveAKillAndARestart) {
  FieldedBooks books;
  books.SetRegion("North");

  FieldedBooks other;
  other.OpenAfterKillOf(books);
  EXPECT_EQ(other.Region(), "North");
  other.Add("Class", "<Name>West</Name>");
  EXPECT_NE(other.File().find("<DataExtValue>North</DataExtValue>"), std::string::npos);
  EXPECT_EQ(other.Region(), "North");
  EXPECT_EQ(other.Query("DataExtDef").Count(), 4u);
}

TEST(CustomFields, TakeTheirValuesAlongWhenTheyAreRenamedOrDeleted) {
  FieldedBooks books;
  books.SetRegion("North");
  const auto change = [&](const std::string& what) {
    return books.Tell(Books::Leaf(
        "DataExtDefModRq", Books::Leaf("DataExtDefMod", FieldedBooks::Key("0", "Region") + what)));
  };

  EXPECT_EQ(change("<DataExtNewName>Shelf</DataExtNewName>").Code(), "3100");
  EXPECT_EQ(change("<AssignToObject>Vendor</AssignToObject>").All("AssignToObject[1]"), "Vendor ");
  change("<DataExtNewName>Area</DataExtNewName>");
  EXPECT_EQ(books.Query("Customer", "<FullName>Abbott</FullName><OwnerID>0</OwnerID>")
                .Text("DataExtRet/DataExtName"),
            "Area");

  const QbxmlResponse deleted =
      books.Tell(Books::Leaf("DataExtDefDelRq", FieldedBooks::Key("0", "Area")));
  EXPECT_EQ(deleted.Text("DataExtName"), "Area");
  EXPECT_EQ(books.Region(), "");
  EXPECT_EQ(books.Query("DataExtDef", "<OwnerID>0</OwnerID>").All("DataExtName"), "Shelf ");
}

TEST(CustomFields, AreRemovedFromAKindOfObjects) {
  FieldedBooks books;
  books.SetRegion("North");

  books.Tell(Books::Leaf(
      "DataExtDefModRq",
      Books::Leaf("DataExtDefMod", FieldedBooks::Key("0", "Region") +
                                       "<RemoveFromObject>Customer</RemoveFromObject>")));

  EXPECT_EQ(books.Region(), "");
  EXPECT_EQ(books.SetRegion("South").Code(), "3210");
}

TEST(CustomFields, MayBeWrittenByHandIntoACompanyFile) {
  std::string file = kBooksFile;
  file.insert(file.find("</Company>"),
              "<DataExtDef><OwnerID>0</OwnerID><DataExtName>Region</DataExtName>"
              "<DataExtType>STR255TYPE</DataExtType><AssignToObject>Customer</AssignToObject>"
              "</DataExtDef>"
              "<Customer><Name>Yoder</Name><DataExtRet><OwnerID>0</OwnerID>"
              "<DataExtName>Region</DataExtName><DataExtType>STR255TYPE</DataExtType>"
              "<DataExtValue>East</DataExtValue></DataExtRet></Customer>");
  Books books(file);

  const std::string asked = "<FullName>Yoder</FullName><OwnerID>0</OwnerID>";
  EXPECT_EQ(books.Query("Customer", asked).Text("DataExtRet/DataExtValue"), "East");
  EXPECT_EQ(books.Query("DataExtDef").All("DataExtName"), "Region ");
}

}  // namespace
}  // namespace ostrel::simulator
