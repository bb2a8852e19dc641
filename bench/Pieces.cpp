// The gateway's work on a text without a socket: layout, response files and the code page,
// measured by Google Benchmark and judged against our targets.
#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "bench/Figures.h"
#include "bench/SampleText.h"
#include "gateway/XmlLayout.h"
#include "tests/support/ScratchFolder.h"
#include "util/CodePage.h"

namespace ostrel::bench {
namespace {

constexpr auto k64M = static_cast<std::int64_t>(64 * kMega);
constexpr auto k256M = 4 * k64M;
constexpr auto k1M = static_cast<std::int64_t>(kMega);

std::size_t Size(const benchmark::State& state) { return static_cast<std::size_t>(state.range()); }

void LayoutForHistory(benchmark::State& state) {
  const Text response = SampleResponse(Size(state));
  for ([[maybe_unused]] auto _ : state) {
    Text text = response;
    state.SetIterationTime(TimeOf([&] { FormatXmlText(text); }).count());
  }
}

void ResponseFile(benchmark::State& state) {
  const Text response = SampleResponse(Size(state));
  const ScratchFolder folder;
  for ([[maybe_unused]] auto _ : state) {
    if (!WriteResponseFile(response, folder.Path(u"response.osl"))) state.SkipWithError("no file");
  }
}

void ToBytes(benchmark::State& state, const Text& text) {
  std::string bytes;
  for ([[maybe_unused]] auto _ : state) {
    bytes.clear();
    AppendTextAsBytes(bytes, text);
    benchmark::DoNotOptimize(bytes.data());
  }
}

void FromBytes(benchmark::State& state, const Text& text) {
  const std::string bytes = TextToBytes(text);
  Text back;
  for ([[maybe_unused]] auto _ : state) {
    back.clear();
    AppendBytesAsText(back, bytes);
    benchmark::DoNotOptimize(back.data());
  }
}

Text AccentsOnly(std::size_t characters) { return Text(characters, u'\u00E9'); }

void SevenBitToBytes(benchmark::State& state) { ToBytes(state, SampleResponse(Size(state))); }
void SevenBitFromBytes(benchmark::State& state) { FromBytes(state, SampleResponse(Size(state))); }
void Latin1ToBytes(benchmark::State& state) { ToBytes(state, AccentsOnly(Size(state))); }
void Latin1FromBytes(benchmark::State& state) { FromBytes(state, AccentsOnly(Size(state))); }

// Long pieces are timed one by one; short ones as often as makes a good average.
BENCHMARK(LayoutForHistory)->Arg(k64M)->Arg(k256M)->Iterations(1)->Repetitions(5)->UseManualTime();
BENCHMARK(ResponseFile)->Arg(k64M)->Arg(k256M)->Iterations(1)->Repetitions(5)->UseRealTime();
BENCHMARK(SevenBitToBytes)->Arg(k1M)->MinTime(0.05)->Repetitions(7);
BENCHMARK(SevenBitFromBytes)->Arg(k1M)->MinTime(0.05)->Repetitions(7);
BENCHMARK(Latin1ToBytes)->Arg(k1M)->MinTime(0.05)->Repetitions(7);
BENCHMARK(Latin1FromBytes)->Arg(k1M)->MinTime(0.05)->Repetitions(7);

// Keeps what the benchmarks took, for the judgement.
class Times : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const double perIteration = run.real_accumulated_time / static_cast<double>(run.iterations);
      oTaken[run.run_name.function_name + "/" + run.run_name.args].emplace_back(perIteration);
    }
  }

  /// Raises std::out_of_range for a benchmark that has failed.
  Seconds Of(const std::string& benchmark, std::int64_t size) const {
    return Median(oTaken.at(benchmark + "/" + std::to_string(size)));
  }
  /// In millions of characters a second.
  double SpeedOf(const std::string& benchmark, std::int64_t size) const {
    return static_cast<double>(size) / 1e6 / Of(benchmark, size).count();
  }

 private:
  std::map<std::string, std::vector<Seconds>> oTaken;
};

int Judge(const Times& times) {
  const auto growth = [&](const char* benchmark) {
    return times.Of(benchmark, k256M) / times.Of(benchmark, k64M);
  };
  Figures figures;
  figures.AtLeast("layout for the history file, 64 M characters",
                  times.SpeedOf("LayoutForHistory", k64M), 500, "MB/s");
  figures.AtMost("layout for the history file, time of 256 M / 64 M", growth("LayoutForHistory"),
                 4.4, "times");
  figures.AtLeast("response file, 64 M characters", times.SpeedOf("ResponseFile", k64M), 400,
                  "MB/s");
  figures.AtMost("response file, time of 256 M / 64 M", growth("ResponseFile"), 4.4, "times");
  figures.AtLeast("text to bytes, 7-bit", times.SpeedOf("SevenBitToBytes", k1M), 1000, "MB/s");
  figures.AtLeast("bytes to text, 7-bit", times.SpeedOf("SevenBitFromBytes", k1M), 1000, "MB/s");
  figures.AtLeast("text to bytes, accented letters only", times.SpeedOf("Latin1ToBytes", k1M), 300,
                  "MB/s");
  figures.AtLeast("bytes to text, accented letters only", times.SpeedOf("Latin1FromBytes", k1M),
                  300, "MB/s");
  return figures.ExitCode();
}

}  // namespace
}  // namespace ostrel::bench

int main() {
  ostrel::bench::Times times;
  benchmark::RunSpecifiedBenchmarks(&times);
  return ostrel::bench::Judge(times);
}
