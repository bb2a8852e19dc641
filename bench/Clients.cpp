// ostrel-server under many clients over TCP: how quickly one is served, how many requests a second
// there can be, whether all get equal shares, and whether anybody notices ten thousand idle
// connections or a flood of nonsense.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/Client.h"
#include "bench/Figures.h"
#include "bench/GatewayProgram.h"
#include "bench/SampleText.h"
#include "bench/System.h"

namespace ostrel::bench {
namespace {

// QuickBooks' stand-in responds to it at once.
constexpr std::string_view kRequest = "QUICKBOOKSINFO";
constexpr std::size_t kAskers = 10;

double Milliseconds(Seconds time) { return time.count() * 1e3; }

std::vector<Seconds> TimesOf(int requests, const std::function<void()>& ask) {
  std::vector<Seconds> times;
  for (int i = 0; i < requests; ++i) times.push_back(TimeOf(ask));
  return times;
}

// Runs the routine on so many threads until it goes.
class Threads {
 public:
  Threads(std::size_t count, const std::function<void(const std::atomic<bool>& ended)>& routine) {
    for (std::size_t i = 0; i < count; ++i) {
      oThreads.emplace_back([this, routine] {
        try {
          routine(bEnded);
        } catch (const std::exception& error) {
          std::fprintf(stderr, "bench-clients: %s\n", error.what());
          bFailed = true;
        }
      });
    }
  }
  ~Threads() { Join(); }
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;

  void End() {
    Join();
    if (bFailed) throw std::runtime_error("a client has failed");
  }

 private:
  void Join() {
    bEnded = true;
    for (std::thread& thread : oThreads) {
      if (thread.joinable()) thread.join();
    }
  }

  std::atomic<bool> bEnded = false, bFailed = false;
  std::vector<std::thread> oThreads;
};

void MeasureOneClient(Figures& figures, const GatewayProgram& gateway) {
  Client client(gateway.Port());
  client.Ask(kRequest);
  const auto times = TimesOf(5000, [&] { client.Ask(kRequest); });
  figures.AtMost("command on one connection, median", Milliseconds(Median(times)), 1, "ms");
  figures.AtMost("command on one connection, 99 of 100", Milliseconds(Percentile(times, 99)), 5,
                 "ms");
}

// From the rename into the process folder to the response file.
Seconds TimeOfFile(const GatewayProgram& gateway, const Text& name) {
  const ScratchFolder& process = gateway.ProcessFolder();
  process.Write(u"draft", std::string(kRequest) + "\r\n");
  const std::filesystem::path folder(process.Path());
  return TimeOf([&] {
    std::filesystem::rename(folder / u"draft", folder / name);
    while (!gateway.ResponseFolder().Has(name)) {
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
  });
}

void MeasureTenClients(Figures& figures, const GatewayProgram& gateway) {
  constexpr Seconds kTime(3);
  std::vector<std::atomic<int>> responses(kAskers);
  std::atomic<std::size_t> started = 0;
  std::vector<Seconds> files;
  Threads askers(kAskers, [&](const std::atomic<bool>& ended) {
    std::atomic<int>& mine = responses[started++];
    for (Client client(gateway.Port()); !ended; ++mine) client.Ask(kRequest);
  });
  while (std::ranges::any_of(responses, [](const auto& count) { return count == 0; })) {
    std::this_thread::yield();
  }
  int all = 0, most = 0, least = std::numeric_limits<int>::max();
  std::vector<int> atBegin(responses.begin(), responses.end());
  const auto begin = BenchClock::now();
  for (int i = 0; BenchClock::now() - begin < kTime; ++i) {
    files.push_back(TimeOfFile(gateway, u"q" + ToText(std::int64_t{i}).append(kRequestExtension)));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  const Seconds time = BenchClock::now() - begin;
  for (std::size_t i = 0; i < kAskers; ++i) {
    const int share = responses[i] - atBegin[i];
    all += share;
    most = std::max(most, share);
    least = std::min(least, share);
  }
  askers.End();
  figures.AtLeast("commands from ten connections without pause", all / time.count(), 3000,
                  "a second");
  figures.AtLeast("share of the slowest of the ten beside the fastest", 100.0 * least / most, 50,
                  "%");
  figures.AtMost("request file beside the ten, 99 of 100", Milliseconds(Percentile(files, 99)), 50,
                 "ms");
}

// What another client does to the gateway, again and again.
using Flood = std::function<void(const GatewayProgram&, const std::atomic<bool>& ended)>;

void FloodOfEmptyRequests(const GatewayProgram& gateway, const std::atomic<bool>& ended) {
  Client client(gateway.Port());
  const std::string requests(20, kEndOfDataByte);
  while (!ended) {
    client.Send(requests);
    client.AwaitResponse();
  }
}

void FloodOfGarbage(const GatewayProgram& gateway, const std::atomic<bool>& ended) {
  std::string garbage(2000, '<');
  for (std::size_t i = 0; i < garbage.size(); i += 3) garbage[i] = static_cast<char>(128 + i % 127);
  for (Client client(gateway.Port()); !ended;) client.Ask(garbage);
}

void FloodOfSingleBytes(const GatewayProgram& gateway, const std::atomic<bool>& ended) {
  std::vector<Client> clients;
  while (clients.size() < 1000) clients.emplace_back(gateway.Port());
  while (!ended) {
    for (const Client& client : clients) client.Send("x");
  }
}

void FloodOfConnections(const GatewayProgram& gateway, const std::atomic<bool>& ended) {
  while (!ended) Client(gateway.Port()).Send("x");
}

void MeasureFlood(Figures& figures, const GatewayProgram& gateway, const std::string& what,
                  const Flood& flood) {
  Client good(gateway.Port());
  Threads flooding(1, [&](const std::atomic<bool>& ended) { flood(gateway, ended); });
  const auto begin = BenchClock::now();
  std::vector<Seconds> times;
  while (BenchClock::now() - begin < Seconds(2)) {
    times.push_back(TimeOf([&] { good.Ask(kRequest); }));
  }
  flooding.End();
  figures.AtMost("command beside " + what + ", 99 of 100", Milliseconds(Percentile(times, 99)), 50,
                 "ms");
}

void MeasureFloods(Figures& figures, const GatewayProgram& gateway) {
  MeasureFlood(figures, gateway, "a flood of empty requests", FloodOfEmptyRequests);
  MeasureFlood(figures, gateway, "a flood of garbage", FloodOfGarbage);
  MeasureFlood(figures, gateway, "single bytes from 1,000 clients", FloodOfSingleBytes);
  MeasureFlood(figures, gateway, "clients that come and go", FloodOfConnections);
}

// A program of its own: what the floods held is not to be counted.
void MeasureConnections(Figures& figures) {
  constexpr std::size_t kConnections = 10'000;
  constexpr Seconds kTime(10);
  GatewayProgram gateway;
  gateway.Start("Watching Folder: ");
  const ChildProcess& program = gateway.Process();

  std::vector<Client> clients;
  const Seconds connecting = TimeOf([&] {
    while (clients.size() < kConnections) clients.emplace_back(gateway.Port());
    clients.back().Ask("CLOSEQB:");  // answered: all before it were accepted
  });
  figures.AtMost("10,000 connections, until all are there", connecting.count(), 10, "s");
  const Seconds before = program.CpuTime();
  std::this_thread::sleep_for(kTime);
  const Seconds used = program.CpuTime() - before;
  figures.AtMost("10,000 connections idle, share of a core", 100 * (used / kTime), 0.1, "%");
  figures.AtMost("10,000 connections idle, resident memory",
                 static_cast<double>(program.ResidentMemory()) / kMega, 128, "MB");
  const Seconds asking = TimeOf([&] {
    for (const Client& client : clients) client.SendRequest("CLOSEQB:");
    for (Client& client : clients) client.AwaitResponse();
  });
  figures.AtLeast("10,000 connections, a request on each at once", kConnections / asking.count(),
                  3000, "a second");
}

std::string AddRequest(int first, int count) {
  std::string request = R"(<?xml version="1.0"?><?qbxml version="3.0"?><QBXML>)"
                        R"(<QBXMLMsgsRq onError="continueOnError">)";
  for (int i = first; i < first + count; ++i) {
    request += "<CustomerAddRq><CustomerAdd><Name>New " + std::to_string(i) +
               "</Name></CustomerAdd></CustomerAddRq>";
  }
  return request + "</QBXMLMsgsRq></QBXML>";
}

void MeasureBatch(Figures& figures, const GatewayProgram& gateway) {
  constexpr int kCustomers = 200;
  Client client(gateway.Port());
  client.Ask(AddRequest(0, 1));
  const Seconds together = TimeOf([&] { client.Ask(AddRequest(1, kCustomers)); });
  const Seconds oneByOne = TimeOf([&] {
    for (int i = 0; i < kCustomers; ++i) client.Ask(AddRequest(1 + kCustomers + i, 1));
  });
  figures.AtMost("200 customers added by one request", Milliseconds(together), 200, "ms");
  figures.AtMost("200 customers added by 200 requests", Milliseconds(oneByOne), 1000, "ms");
}

void Measure(Figures& figures) {
  RaiseDescriptorLimit();
  MeasureConnections(figures);
  GatewayProgram gateway;
  gateway.Start("Watching Folder: ");
  MeasureOneClient(figures, gateway);
  MeasureTenClients(figures, gateway);
  MeasureFloods(figures, gateway);
  MeasureBatch(figures, gateway);
}

}  // namespace
}  // namespace ostrel::bench

int main() { return ostrel::bench::ExitCodeOf("bench-clients", ostrel::bench::Measure); }
