// A file search over the tree of 20,000 files, compared with the bare system
// calls: one listing of each folder and one stat() of each file. Both sides are
// checked to find the same files before they are timed.
//
// Run: build/native/bin/file_finder_bench, from the root of the project
#include "files/file_finder.h"

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>

#include "files/file_entry.h"
#include "library/library.h"
#include "subjects.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

struct Totals {
  uint64_t files = 0;
  uint64_t bytes = 0;
  bool operator==(const Totals&) const = default;
};

std::string tree() { return (bench::corpus() / "tree").string(); }

// All files in the tree and its subfolders.
std::string specification() { return "1" + tree() + "/*"; }

enum class Wanted { kNames, kFacts };

// --- The bare calls ---------------------------------------------------------

void add_facts(int folder, const char* name, Totals& totals) {
  struct stat facts;
  if (fstatat(folder, name, &facts, 0) != 0) return;
  totals.bytes += static_cast<uint64_t>(facts.st_size);
}

void walk_plainly(int folder, Wanted wanted, Totals& totals) {
  DIR* listing = fdopendir(folder);
  if (listing == nullptr) return;
  while (const dirent* entry = readdir(listing)) {
    if (entry->d_name[0] == '.') continue;
    if (entry->d_type == DT_DIR) {
      walk_plainly(openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY),
                   wanted, totals);
    } else {
      ++totals.files;
      if (wanted == Wanted::kFacts) add_facts(folder, entry->d_name, totals);
    }
  }
  closedir(listing);
}

Totals find_plainly(Wanted wanted) {
  Totals totals;
  walk_plainly(open(tree().c_str(), O_RDONLY | O_DIRECTORY), wanted, totals);
  return totals;
}

// --- The engine -------------------------------------------------------------

Totals walk_by_finder() {
  Totals totals;
  ItemList hooks;
  FileFinder finder(hooks, [&](std::string_view, std::string_view) {
    ++totals.files;
    return true;
  });
  finder.find(specification());
  return totals;
}

void run_find_files(Wanted wanted) {
  std::array<unsigned char, ZENFO_OPTION_COUNT> options{};
  options[ZENFO_OPTION_FILE_NAME] = 1;
  options[ZENFO_OPTION_FOLDER] = 1;
  options[ZENFO_OPTION_ATTRIBUTES] = wanted == Wanted::kFacts;
  library().get_list(ZENFO_LIST_RUN_FILES)->clear();
  FindFiles(ZENFO_LIST_RUN_FILES, specification().c_str(), options.data(), "");
}

Totals totals_of_list() {
  Totals totals;
  ItemList* list = library().get_list(ZENFO_LIST_RUN_FILES);
  totals.files = list->count();
  for (uint32_t i = 0; i < list->count(); ++i) {
    totals.bytes += record_cast<FileEntry>(list->get(i))->facts.size;
  }
  return totals;
}

// --- Benchmarks -------------------------------------------------------------

void plain_calls(benchmark::State& state, Wanted wanted) {
  if (find_plainly(wanted).files == 0) {
    state.SkipWithError(bench::kNoCorpus);
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(find_plainly(wanted));
}

void finder_walk(benchmark::State& state) {
  if (walk_by_finder() != find_plainly(Wanted::kNames)) {
    state.SkipWithError("the walks find different files");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(walk_by_finder());
}

void find_files_into_list(benchmark::State& state, Wanted wanted) {
  Initialize();
  run_find_files(wanted);
  if (totals_of_list() != find_plainly(wanted)) {
    state.SkipWithError("FindFiles and the plain walk find different files");
    return;
  }
  for (auto _ : state) run_find_files(wanted);
  Terminate();
}

#define TREE_BENCHMARK(name, ...) \
  BENCHMARK_CAPTURE(__VA_ARGS__)->Name(name)->Unit(benchmark::kMillisecond)

BENCHMARK(finder_walk)->Name("names/walk")->Unit(benchmark::kMillisecond);
TREE_BENCHMARK("names/list", find_files_into_list, names, Wanted::kNames);
TREE_BENCHMARK("names/plain_calls", plain_calls, names, Wanted::kNames);
TREE_BENCHMARK("facts/list", find_files_into_list, facts, Wanted::kFacts);
TREE_BENCHMARK("facts/plain_calls", plain_calls, facts, Wanted::kFacts);

}  // namespace
}  // namespace zenfo

BENCHMARK_MAIN();
