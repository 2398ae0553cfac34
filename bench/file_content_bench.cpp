// Loading files, compared with a plain loop that reads blocks of 50,000 bytes
// into one reused buffer: the 20,000 files of the tree, and the log of 1 GB.
// Both sides are checked to load the same bytes before they are timed. Target:
// at most 1.3 times the plain loop.
//
// Run: build/native/bin/file_content_bench, from the root of the project
#include "files/file_content.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "subjects.h"

namespace zenfo {
namespace {

class PlainLoader {
 public:
  PlainLoader() : buffer_(kBlock) {}

  std::string_view load(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY);
    if (file < 0) return {};
    size_t length = 0;
    ssize_t got = 0;
    while ((got = read(file, &buffer_[length], kBlock)) > 0) {
      length += static_cast<size_t>(got);
      if (buffer_.size() < length + kBlock) buffer_.resize(2 * buffer_.size());
    }
    close(file);
    return {buffer_.data(), length};
  }

 private:
  static constexpr size_t kBlock = 50'000;
  std::vector<char> buffer_;
};

// The engine's loader, used as in a run.
class EngineLoader {
 public:
  std::string_view load(const std::string& path) {
    content_.load_file_content(path.c_str(), &nearby_);
    return content_.bytes();
  }

 private:
  FileContent content_;
  platform::NearbyFolder nearby_;
};

const std::vector<std::string>& tree() {
  static const auto files = bench::files_below(bench::corpus() / "tree");
  return files;
}

const std::vector<std::string>& log() {
  static const auto files = bench::files_below(bench::corpus() / "log");
  return files;
}

bool load_the_same(const std::vector<std::string>& files) {
  PlainLoader plain;
  EngineLoader engine;
  for (const auto& file : files) {
    if (plain.load(file) != engine.load(file)) return false;
  }
  return true;
}

using Files = const std::vector<std::string>& (*)();

bool fit_to_time(benchmark::State& state,
                 const std::vector<std::string>& files) {
  if (files.empty()) {
    state.SkipWithError(bench::kNoCorpus);
    return false;
  }
  if (!load_the_same(files)) {
    state.SkipWithError("the loaders disagree");
    return false;
  }
  return true;
}

template <class Loader>
size_t load_all(Loader& loader, const std::vector<std::string>& files) {
  size_t bytes = 0;
  for (const auto& file : files) bytes += loader.load(file).size();
  return bytes;
}

template <class Loader, Files files>
void load(benchmark::State& state) {
  if (!fit_to_time(state, files())) return;
  Loader loader;
  load_all(loader, files());  // grows the buffer
  size_t bytes = 0;
  for (auto _ : state) bytes += load_all(loader, files());
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

// A new loader each time: measures the first large file of a run, including the
// memory for it.
template <class Loader, Files files>
void load_first(benchmark::State& state) {
  if (!fit_to_time(state, files())) return;
  size_t bytes = 0;
  for (auto _ : state) {
    Loader loader;
    bytes += load_all(loader, files());
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

void in_milliseconds(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond);
}

BENCHMARK(load<EngineLoader, tree>)
    ->Name("tree/engine")
    ->Apply(in_milliseconds);
BENCHMARK(load<PlainLoader, tree>)->Name("tree/plain")->Apply(in_milliseconds);
BENCHMARK(load<EngineLoader, log>)->Name("log/engine")->Apply(in_milliseconds);
BENCHMARK(load<PlainLoader, log>)->Name("log/plain")->Apply(in_milliseconds);
BENCHMARK(load_first<EngineLoader, log>)
    ->Name("log_first/engine")
    ->Apply(in_milliseconds);
BENCHMARK(load_first<PlainLoader, log>)
    ->Name("log_first/plain")
    ->Apply(in_milliseconds);

}  // namespace
}  // namespace zenfo

BENCHMARK_MAIN();
