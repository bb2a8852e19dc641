#include "bench/FolderLoad.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/GatewayProgram.h"
#include "util/Wire.h"

namespace ostrel::bench {
namespace {

// QuickBooks' stand-in responds to it at once.
constexpr std::string_view kRequest = "QUICKBOOKSINFO\r\n";

// Looks so often that the looking does not show in milliseconds.
template <typename Condition>
void Await(Condition condition) {
  const auto end = BenchClock::now() + std::chrono::seconds(60);
  while (!condition()) {
    if (BenchClock::now() > end) throw std::runtime_error("a response file did not come");
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
}

Text NameOf(int number) { return u"q" + ToText(std::int64_t{number}).append(kRequestExtension); }

// From the rename into the process folder to the response file, which is put there complete.
Seconds TimeOfRequest(const GatewayProgram& gateway, const Text& name) {
  const ScratchFolder& process = gateway.ProcessFolder();
  process.Write(u"draft", kRequest);
  const std::filesystem::path folder(process.Path());
  const auto draft = folder / u"draft", request = folder / name;
  const Seconds time = TimeOf([&] {
    std::filesystem::rename(draft, request);
    Await([&] { return gateway.ResponseFolder().Has(name); });
  });
  if (gateway.ResponseFolder().Read(name).find("<ProductName>") == std::string::npos) {
    throw std::runtime_error("a response file of another content");
  }
  return time;
}

void MeasureRequestFiles(Figures& figures) {
  constexpr int kRequests = 500;
  GatewayProgram gateway;
  gateway.Start("Watching Folder: ");
  TimeOfRequest(gateway, u"opens the company.osl");
  std::vector<Seconds> times;
  times.reserve(kRequests);
  for (int i = 0; i < kRequests; ++i) times.push_back(TimeOfRequest(gateway, NameOf(i)));
  figures.AtMost("request file, until its response file is there, median",
                 Median(times).count() * 1e3, 20, "ms");
  figures.AtMost("request file, until its response file is there, 99 of 100",
                 Percentile(times, 99).count() * 1e3, 100, "ms");
}

// Start-up included.
void MeasureWaitingFiles(Figures& figures) {
  constexpr std::size_t kFiles = 1000;
  GatewayProgram gateway;
  for (std::size_t i = 0; i < kFiles; ++i) {
    gateway.ProcessFolder().Write(NameOf(static_cast<int>(i)), kRequest);
  }
  gateway.Start("Watching Folder: ");
  Await([&] {
    // Listing a thousand files takes its time: the folder is looked at again only now and then.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return gateway.ProcessFolder().EntryCount() == 0 &&
           gateway.ResponseFolder().EntryCount() == kFiles;
  });
  figures.AtMost("1,000 request files waiting, processor time each",
                 gateway.Process().CpuTime().count() * 1e3 / kFiles, 5, "ms");
}

}  // namespace

void MeasureFolders(Figures& figures) {
  MeasureRequestFiles(figures);
  MeasureWaitingFiles(figures);
}

}  // namespace ostrel::bench
