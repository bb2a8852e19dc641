// A large company in the QuickBooks stand-in: opened, searched, added to and paged through, from a
// file on disk and with changes that are safe there.
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Figures.h"
#include "platform/Clock.h"
#include "simulator/QuickBooks.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "simulator/tool/Business.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::bench {
namespace {

constexpr std::size_t kCustomers = 100'000;
constexpr int kRounds = 7;
constexpr int kAdds = 50;

class Client {
 public:
  explicit Client(const Text& file) : sFile(file) { oProcessor.OpenConnection(u"", u"bench"); }

  void Open() { sTicket = oProcessor.BeginSession(sFile, FileMode::kDoNotCare); }
  void Close() { oProcessor.EndSession(sTicket); }

  std::string Ask(const std::string& message) {
    const std::string request =
        "<?xml version=\"1.0\"?><?qbxml version=\"13.0\"?><QBXML><QBXMLMsgsRq "
        "onError=\"stopOnError\">" +
        message + "</QBXMLMsgsRq></QBXML>";
    std::string response = ToUtf8(oProcessor.ProcessRequest(sTicket, FromUtf8(request)));
    if (response.find("statusCode=\"0\"") != std::string::npos) return response;
    throw std::runtime_error(response.substr(0, 500));
  }

 private:
  simulator::CompanyFiles oFiles;
  simulator::QuickBooks oQuickBooks{{.storage = oFiles,
                                     .clock = platform::SystemClock(),
                                     .delay = [](auto, auto&) {},
                                     .die = [] {},
                                     .usersCompany = u""}};
  SimulatedRequestProcessor oProcessor{oQuickBooks};
  Text sFile;
  Text sTicket;
};

double Milliseconds(Seconds time) { return 1000 * time.count(); }

Seconds TimeOfOpening(Client& client) {
  std::vector<Seconds> times;
  for (int i = 0; i < kRounds; ++i) {
    times.push_back(TimeOf([&] { client.Open(); }));
    client.Close();
  }
  return Median(times);
}

Seconds TimeOfSearch(Client& client) {
  std::vector<Seconds> times;
  for (int i = 0; i < kRounds; ++i) {
    times.push_back(TimeOf([&] {
      client.Ask(
          "<CustomerQueryRq><NameFilter><MatchCriterion>Contains</MatchCriterion>"
          "<Name>Underhill, Yolanda 2</Name></NameFilter></CustomerQueryRq>");
    }));
  }
  return Median(times);
}

std::vector<Seconds> TimesOfAdds(Client& client) {
  std::vector<Seconds> times;
  for (int i = 0; i < kAdds; ++i) {
    const std::string name = "Added " + std::to_string(i);
    times.push_back(TimeOf([&] {
      client.Ask("<CustomerAddRq><CustomerAdd><Name>" + name +
                 "</Name></CustomerAdd></CustomerAddRq>");
    }));
  }
  return times;
}

// Of customers that TimesOfAdds has added, to which nothing refers.
std::vector<Seconds> TimesOfDeletions(Client& client) {
  std::vector<Seconds> times;
  for (int i = 0; i < kAdds; ++i) {
    const std::string name = "Added " + std::to_string(i);
    const std::string found = client.Ask("<CustomerQueryRq><FullName>" + name +
                                         "</FullName><IncludeRetElement>ListID"
                                         "</IncludeRetElement></CustomerQueryRq>");
    const std::string open = "<ListID>";
    const std::size_t at = found.find(open) + open.size();
    const std::string id = found.substr(at, found.find('<', at) - at);
    times.push_back(TimeOf([&] {
      client.Ask("<ListDelRq><ListDelType>Customer</ListDelType><ListID>" + id +
                 "</ListID></ListDelRq>");
    }));
  }
  return times;
}

// The first page takes note of all customers; a new iterator each time.
Seconds TimeOfFirstPage(Client& client) {
  std::vector<Seconds> times;
  for (int i = 0; i < kRounds; ++i) {
    times.push_back(TimeOf([&] {
      client.Ask(
          "<CustomerQueryRq iterator=\"Start\"><MaxReturned>100</MaxReturned>"
          "</CustomerQueryRq>");
    }));
  }
  return Median(times);
}

// A page of a hundred customers; the first takes note of all of them.
class Pages {
 public:
  explicit Pages(Client& client) : oClient(client) {}

  Seconds Next() {
    const std::string attributes =
        sId.empty() ? "iterator=\"Start\"" : "iterator=\"Continue\" iteratorID=\"" + sId + "\"";
    std::string response;
    const Seconds time = TimeOf([&] {
      response = oClient.Ask("<CustomerQueryRq " + attributes +
                             "><MaxReturned>100</MaxReturned></CustomerQueryRq>");
    });
    const std::string key = "iteratorID=\"";
    const std::size_t at = response.find(key) + key.size();
    sId = response.substr(at, response.find('"', at) - at);
    return time;
  }

 private:
  Client& oClient;
  std::string sId;
};

void MeasurePages(Client& client, Figures& figures) {
  constexpr int kPages = static_cast<int>(kCustomers / 100) - 1;
  constexpr int kAtEachEnd = 100;
  Pages pages(client);
  pages.Next();
  figures.AtMost("first page of 100 through an iterator", Milliseconds(TimeOfFirstPage(client)), 10,
                 "ms");
  std::vector<Seconds> early, late;
  for (int i = 1; i <= kPages; ++i) {
    const Seconds time = pages.Next();
    if (i <= kAtEachEnd) early.push_back(time);
    if (i > kPages - kAtEachEnd) late.push_back(time);
  }
  figures.AtMost("a later page of 100", Milliseconds(Median(early)), 10, "ms");
  figures.AtMost("one of the last pages, beside one of the first", Median(late) / Median(early), 2,
                 "times");
}

void Measure(Figures& figures) {
  const ScratchFolder folder;
  folder.Write(u"large.qbw", simulator::MakeBusiness({.customers = kCustomers, .invoices = 1000}));
  Client client(folder.Path(u"large.qbw"));
  figures.AtMost("company of 100,000 customers, until it is open", TimeOfOpening(client).count(),
                 0.5, "s");
  client.Open();
  figures.AtMost("customers by a part of their name", Milliseconds(TimeOfSearch(client)), 10, "ms");
  const std::vector<Seconds> adds = TimesOfAdds(client);
  figures.AtMost("a customer added and safe, median", Milliseconds(Median(adds)), 0.3, "ms");
  figures.AtMost("a customer added and safe, 90 of 100", Milliseconds(Percentile(adds, 90)), 20,
                 "ms");
  figures.AtMost("a customer deleted and safe, median",
                 Milliseconds(Median(TimesOfDeletions(client))), 5, "ms");
  MeasurePages(client, figures);
  client.Close();
}

}  // namespace
}  // namespace ostrel::bench

int main() { return ostrel::bench::ExitCodeOf("bench-company", ostrel::bench::Measure); }
