// The gateway under load, over real sockets and from another process: speed beside a plain copy of
// the same bytes, memory, processor time.
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Client.h"
#include "bench/Figures.h"
#include "bench/LoadServer.h"
#include "bench/SampleText.h"
#include "bench/System.h"
#include "transports/TransportSettings.h"
#include "util/CodePage.h"
#include "util/Wire.h"

namespace ostrel::bench {
namespace {

constexpr int kRounds = 9;
constexpr std::size_t kSize = 64 * kMega;

// The times of a plain copy, and of the gateway with a text of kSize and one of twice that.
struct Comparison {
  std::vector<Seconds> Copy, Gateway, GatewayTwice;

  void Report(Figures& figures, const std::string& what, double leastShare) const {
    figures.AtLeast(what + ", share of a plain copy's speed",
                    100 * (Median(Copy) / Median(Gateway)), leastShare, "%");
    figures.AtMost(what + ", time of 128 M / 64 M", Median(GatewayTwice) / Median(Gateway), 2.2,
                   "times");
  }
};

// A client of the copying server.
class Copier {
 public:
  explicit Copier(std::uint16_t port) : oConnection(port) {}

  void Receive(std::size_t bytes) {
    Command(CopyCommand::Direction::kOut, bytes);
    AwaitBytes(bytes);
  }

  void Send(std::string_view bytes, std::size_t pieceSize) {
    Command(CopyCommand::Direction::kIn, bytes.size());
    for (; !bytes.empty(); bytes.remove_prefix(std::min(pieceSize, bytes.size()))) {
      oConnection.Send(bytes.substr(0, pieceSize));
    }
    AwaitBytes(1);
  }

 private:
  void Command(CopyCommand::Direction direction, std::size_t bytes) const {
    const CopyCommand command = {direction, bytes};
    oConnection.Send(std::bit_cast<std::array<char, sizeof command>>(command));
  }

  void AwaitBytes(std::size_t bytes) {
    while (bytes > 0) {
      const std::size_t received = oConnection.Receive(oBuffer);
      if (received == 0) throw std::runtime_error("the copying server has gone");
      bytes -= received;
    }
  }

  Connection oConnection;
  std::vector<char> oBuffer = std::vector<char>(256 * 1024);
};

// The load server in a process of its own.
class Server {
 public:
  Server() { std::istringstream(oProcess.ReadLine()) >> iPort >> iCopyPort; }

  const ChildProcess& Process() const { return oProcess; }
  Client Connect() const { return Client(iPort); }
  Copier ConnectCopier() const { return Copier(iCopyPort); }

 private:
  ChildProcess oProcess{{OwnProgram(), "--server"}};
  std::uint16_t iPort = 0;
  std::uint16_t iCopyPort = 0;
};

std::string Prepare(std::size_t characters) {
  return std::string(kPrepare) + std::to_string(characters);
}

// The bytes of a response of this length on the wire: line breaks within a block are one byte.
std::size_t BytesOfResponse(std::size_t characters) {
  const Text response = SampleResponse(characters);
  std::size_t bytes = std::to_string(characters + 2).size() + 2;
  for (TextView rest = response; !rest.empty();) {
    const TextView block = rest.substr(0, kDefaultBlockSize);
    bytes += ReplaceAll(block, kCrLf, kAttributeMarkText).size();
    rest.remove_prefix(block.size());
  }
  return bytes;
}

// The making of the response is left out.
Seconds TimeOfResponse(Client& client, std::size_t characters, std::size_t expectedBytes) {
  client.Ask(Prepare(characters));
  std::size_t received = 0;
  const Seconds time = TimeOf([&] { received = client.Ask(kHandOut); });
  if (received != expectedBytes) throw std::runtime_error("a response of another length");
  return time;
}

void MeasureResponses(Figures& figures) {
  const std::size_t bytes = BytesOfResponse(kSize);
  const std::size_t bytesTwice = BytesOfResponse(2 * kSize);
  const Server server;
  Client client = server.Connect();
  Copier copier = server.ConnectCopier();
  Comparison times;
  for (int round = 0; round < kRounds; ++round) {
    times.Copy.push_back(TimeOf([&] { copier.Receive(bytes); }));
    times.Gateway.push_back(TimeOfResponse(client, kSize, bytes));
    times.GatewayTwice.push_back(TimeOfResponse(client, 2 * kSize, bytesTwice));
  }
  times.Report(figures, "64 M response", 50);
}

std::string RequestOf(std::size_t characters) {
  std::string request(kTake);
  AppendTextAsBytes(request, SampleResponse(characters - request.size()));
  return request;
}

Seconds TimeOfRequest(Client& client, std::string_view request, std::size_t pieceSize) {
  return TimeOf([&] {
    for (std::string_view rest = request; !rest.empty();) {
      client.Send(rest.substr(0, pieceSize));
      rest.remove_prefix(std::min(pieceSize, rest.size()));
    }
    client.Ask({});
  });
}

void MeasureRequests(Figures& figures) {
  constexpr std::size_t kPiece = 1024;
  const std::string request = RequestOf(kSize);
  const std::string requestTwice = RequestOf(2 * kSize);
  const Server server;
  Client client = server.Connect();
  Copier copier = server.ConnectCopier();
  Comparison times;
  for (int round = 0; round < kRounds; ++round) {
    times.Copy.push_back(TimeOf([&] { copier.Send(request, kPiece); }));
    times.Gateway.push_back(TimeOfRequest(client, request, kPiece));
    times.GatewayTwice.push_back(TimeOfRequest(client, requestTwice, kPiece));
  }
  times.Report(figures, "64 M request in 1 KB pieces", 80);
}

// The line that names the calling routine, as the request handler expects it.
std::string WithHeaderLine(std::string_view request) {
  return std::string("LOAD.TEST").append(1, kAttributeMarkByte).append(request);
}

// About 2 KB, with line breaks as clients send them.
std::string SmallRequest() {
  return WithHeaderLine(TextToBytes(ReplaceAll(SampleResponse(2100), kCrLf, kAttributeMarkText)));
}

// The reader takes nothing until everything is queued, and then all.
void MeasureSlowReader(Figures& figures) {
  const Server server;
  const ChildProcess& process = server.Process();
  Client slow = server.Connect();
  Client other = server.Connect();
  other.Ask(SmallRequest());
  const auto idle = static_cast<double>(process.ResidentMemory());

  other.Ask(Prepare(kSize));
  process.ForgetPeak();
  slow.SendRequest(WithHeaderLine(kHandOutAsQuickBooks));
  slow.AwaitBeginOfResponse();
  other.Ask(kTake);  // its turn comes when the long response is queued whole
  const std::size_t received = slow.AwaitResponse();
  if (received != BytesOfResponse(kSize)) throw std::runtime_error("a response of another length");
  const double above = static_cast<double>(process.PeakMemory()) - idle;
  figures.AtMost("64 M response to a slow reader, peak above the idle program",
                 above / static_cast<double>(kSize), 3, "B/char");
}

// Five clients with 64 M characters each on their way, of which they take nothing, beside ten whose
// requests come without pause.
void MeasureSilentReaders(Figures& figures) {
  constexpr std::size_t kSilent = 5, kGood = 10, kAsked = 100;
  const Server server;
  std::vector<Client> silent, good;
  for (std::size_t i = 0; i < kGood; ++i) good.push_back(server.Connect());
  for (std::size_t i = 0; i < kSilent; ++i) {
    good.front().Ask(Prepare(kSize));
    silent.push_back(server.Connect());
    silent.back().SendRequest(kHandOut);
    silent.back().AwaitBeginOfResponse();
  }
  good.front().Ask(kTake);  // its turn comes when the last long response is queued whole
  std::vector<Seconds> times;
  for (std::size_t round = 0; round < kAsked; ++round) {
    for (Client& client : good) client.SendRequest(kTake);
    const auto sent = BenchClock::now();
    for (Client& client : good) {
      client.AwaitResponse();
      times.emplace_back(BenchClock::now() - sent);
    }
  }
  figures.AtMost("ten requests at once beside 5 x 64 M unread, 99 of 100",
                 Percentile(times, 99).count() * 1e3, 50, "ms");
  const std::size_t expected = BytesOfResponse(kSize);
  for (Client& client : silent) {
    if (client.AwaitResponse() != expected)
      throw std::runtime_error("a response of another length");
  }
}

// Receive, assemble, queue, one tick, request handler with QuickBooks responding at once, send.
void MeasureSmallRequests(Figures& figures) {
  constexpr int kRequests = 1000;
  const std::string request = SmallRequest();
  const Server server;
  Client client = server.Connect();
  client.Ask(request);
  const Seconds before = server.Process().CpuTime();
  const Seconds taken = TimeOf([&] {
    for (int i = 0; i < kRequests; ++i) client.Ask(request);
  });
  const Seconds used = server.Process().CpuTime() - before;
  figures.AtMost("2 KB request with a 10 KB response, processor time",
                 used.count() * 1e6 / kRequests, 300, "us");
  figures.AtMost("2 KB request with a 10 KB response, until it is there",
                 taken.count() * 1e3 / kRequests, 20, "ms");
}

void Measure(Figures& figures) {
  RaiseDescriptorLimit();
  MeasureResponses(figures);
  MeasureRequests(figures);
  MeasureSlowReader(figures);
  MeasureSilentReaders(figures);
  MeasureSmallRequests(figures);
}

}  // namespace
}  // namespace ostrel::bench

int main(int argc, char* argv[]) {
  using namespace ostrel::bench;
  const bool asServer = argc == 2 && std::strcmp(argv[1], "--server") == 0;
  return asServer ? RunLoadServer() : ExitCodeOf("bench-load", Measure);
}
