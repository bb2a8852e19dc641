// Requests in files to ostrel-server, and files in folders of any size.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/Figures.h"
#include "bench/GatewayProgram.h"
#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

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

// Folders made while it lives are in memory, where the system has such a place: what is measured
// there is the gateway's own work, and not the disk's.
class InMemory {
 public:
  InMemory() {
    const std::string folder = "/dev/shm";
    if (std::filesystem::is_directory(folder)) setenv("TMPDIR", folder.c_str(), 1);
  }
  ~InMemory() {
    if (sBefore.empty()) {
      unsetenv("TMPDIR");
    } else {
      setenv("TMPDIR", sBefore.c_str(), 1);
    }
  }
  InMemory(const InMemory&) = delete;
  InMemory& operator=(const InMemory&) = delete;

 private:
  static std::string Now() {
    const char* const folder = std::getenv("TMPDIR");
    return folder != nullptr ? folder : "";
  }
  std::string sBefore = Now();
};

// Most are names of one file: a folder is filled within seconds.
void Fill(const ScratchFolder& folder, std::size_t count) {
  constexpr std::size_t kNamesOfOne = 50'000;  // a file may have about 65,000
  const std::filesystem::path path(folder.Path());
  std::filesystem::path file;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = "old" + std::to_string(i);
    if (i % kNamesOfOne == 0) {
      folder.Write(FromAscii(name), "");
      file = path / name;
    } else {
      std::filesystem::create_hard_link(file, path / name);
    }
  }
}

// A new file, in a folder whose name the file class has turned to lower case, is opened, and closed
// without a flush.
Seconds TimeOfOpening(const ScratchFolder& above, const std::string& name) {
  cFileIO file;
  file.SafeOnDisk = false;
  file.FullFileName(above.Path(u"History\\" + FromAscii(name)));
  return TimeOf([&] {
    if (!file.OpenFile({}, u"W")) throw std::runtime_error("a file could not be opened");
    file.CloseFile();
  });
}

void MeasureOpenedFiles(Figures& figures) {
  constexpr std::size_t kSmall = 1'000, kLarge = 1'000'000;
  constexpr int kOpenings = 2'000;
  const InMemory inMemory;
  const ScratchFolder small, large;
  for (const ScratchFolder* folder : {&small, &large}) folder->MakeFolder(u"History");
  Fill(small, kSmall);
  Fill(large, kLarge);
  std::vector<Seconds> inSmall, inLarge;
  for (int i = 0; i < kOpenings; ++i) {
    const std::string name = std::to_string(i) + ".txt";
    inSmall.push_back(TimeOfOpening(small, name));
    small.Write(FromAscii(name), "");  // the folder above changes all the time
    inLarge.push_back(TimeOfOpening(large, name));
    large.Write(FromAscii(name), "");
  }
  figures.AtMost("a file opened beside 1,000,000 others / beside 1,000",
                 Percentile(inLarge, 99) / Percentile(inSmall, 99), 2, "times");
}

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

// What a response costs at least: a file written, flushed and put in its place.
Seconds TimeOfPlainFile(const ScratchFolder& folder, const std::string& response,
                        const std::string& name) {
  platform::File file;
  return TimeOf([&] {
    file.Open(folder.Path(u"part"), platform::FileAccess::kWrite,
              platform::FileCreation::kCreateNew);
    file.WriteAt(0, response);
    file.Flush();
    file.Close();
    platform::RenameOver(folder.Path(u"part"), folder.Path(FromAscii(name)));
  });
}

void MeasureRequestFiles(Figures& figures, std::size_t oldResponses, const std::string& what) {
  constexpr int kRequests = 500;
  const ScratchFolder plain;
  GatewayProgram gateway;
  Fill(gateway.ResponseFolder(), oldResponses);
  gateway.Start("Watching Folder: ");
  TimeOfRequest(gateway, u"opens the company.osl");
  const std::string response = gateway.ResponseFolder().Read(u"opens the company.osl");
  std::vector<Seconds> times, plainTimes;
  for (int i = 0; i < kRequests; ++i) {
    times.push_back(TimeOfRequest(gateway, NameOf(i)));
    plainTimes.push_back(TimeOfPlainFile(plain, response, std::to_string(i)));
  }
  figures.AtMost(what + ", median", Median(times).count() * 1e3, 1.5, "ms");
  figures.AtMost(what + ", 99 of 100", Percentile(times, 99).count() * 1e3, 5, "ms");
  figures.AtMost(what + ", / a plain file", Median(times) / Median(plainTimes), 4, "times");
}

// Start-up included.
void MeasureWaitingFiles(Figures& figures, std::size_t oldResponses, const std::string& what) {
  constexpr std::size_t kFiles = 1000;
  const InMemory inMemory;
  GatewayProgram gateway;
  Fill(gateway.ResponseFolder(), oldResponses);
  for (std::size_t i = 0; i < kFiles; ++i) {
    gateway.ProcessFolder().Write(NameOf(static_cast<int>(i)), kRequest);
  }
  gateway.Start("Watching Folder: ");
  Await([&] {
    // Listing a thousand files takes its time: the folder is looked at again only now and then.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return gateway.ProcessFolder().EntryCount() == 0 &&
           gateway.ResponseFolder().EntryCount() == oldResponses + kFiles;
  });
  figures.AtMost(what, gateway.Process().CpuTime().count() * 1e3 / kFiles, 0.5, "ms");
}

void Measure(Figures& figures) {
  constexpr std::size_t kOldResponses = 50'000;
  MeasureOpenedFiles(figures);
  MeasureWaitingFiles(figures, 0, "1,000 request files waiting, processor time each");
  MeasureWaitingFiles(figures, kOldResponses, "the same beside 50,000 old responses");
  MeasureRequestFiles(figures, 0, "request file, until its response file is there");
  MeasureRequestFiles(figures, kOldResponses, "the same beside 50,000 old responses");
}

}  // namespace
}  // namespace ostrel::bench

int main() { return ostrel::bench::ExitCodeOf("bench-folders", ostrel::bench::Measure); }
