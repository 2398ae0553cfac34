// Operations on lists of paths, compared with a plain program: std::sort with
// strcasecmp, one string per line. Results are checked to be equal before they
// are timed; the sort by comparisons shows what sorting by values saves.
//
// Run: build/native/bin/list_ops_bench --benchmark_filter=sort
#include <benchmark/benchmark.h>
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "library/library.h"
#include "sorting/keyed_sort.h"
#include "subjects.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

using Paths = std::vector<std::string>;

constexpr uint32_t kByPath = 10;

// Returns this many paths, or none after reporting an error.
Paths paths_for(benchmark::State& state) {
  auto paths = bench::read_paths(static_cast<size_t>(state.range(0)));
  if (paths.size() == static_cast<size_t>(state.range(0))) return paths;
  state.SkipWithError(bench::kNoCorpus);
  return {};
}

// Every tenth path occurs twice.
Paths paths_with_repeats(benchmark::State& state) {
  auto paths = paths_for(state);
  for (size_t i = 10; i < paths.size(); i += 10) paths[i] = paths[i - 5];
  return paths;
}

void fill(ItemList& list, const Paths& paths) {
  list.clear();
  for (const std::string& path : paths) {
    list.append(std::make_unique<FileEntry>(SharedText(path)));
  }
}

bool goes_before(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) < 0;
}

std::vector<const Record*> order_of(ItemList& list) {
  std::vector<const Record*> order;
  for (uint32_t i = 0; i < list.count(); ++i) order.push_back(list.get(i));
  return order;
}

// --- Sorting ----------------------------------------------------------------

void sort_list(benchmark::State& state,
               Paths (*make_paths)(benchmark::State&)) {
  const Paths paths = make_paths(state);
  if (paths.empty()) return;
  const SortKey& key = kSortTable[kByPath];
  ItemList list;
  fill(list, paths);
  list.sort(0, key.compare);
  const auto expected = order_of(list);
  if (sort_by_key(list, key, 0) != 1 || order_of(list) != expected) {
    state.SkipWithError("another order than that of the comparator");
    return;
  }
  for (auto _ : state) sort_by_key(list, key, 0);
}

void sort_list_by_comparator(benchmark::State& state) {
  ItemList list;
  fill(list, paths_for(state));
  for (auto _ : state) list.sort(0, kSortTable[kByPath].compare);
}

void sort_vector(benchmark::State& state) {
  const auto paths = paths_for(state);
  for (auto _ : state) {
    state.PauseTiming();
    auto sorted = paths;
    state.ResumeTiming();
    std::sort(sorted.begin(), sorted.end(), goes_before);
    benchmark::DoNotOptimize(sorted.data());
  }
}

// --- Duplicates -------------------------------------------------------------

int32_t count_repeats(Paths& paths) {
  std::sort(paths.begin(), paths.end(), goes_before);
  int32_t repeats = 0;
  for (size_t i = 1; i < paths.size(); ++i) {
    if (!goes_before(paths[i - 1], paths[i])) ++repeats;
  }
  return repeats;
}

void duplicates_of_list(benchmark::State& state) {
  auto paths = paths_with_repeats(state);
  if (paths.empty()) return;
  ItemList list;
  fill(list, paths);
  auto select = [&] {
    return select_duplicates_by_key(list, kSortTable[kByPath],
                                    [](Record& record) { record.state = 1; });
  };
  if (select() != count_repeats(paths)) {
    state.SkipWithError("other duplicates");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(select());
}

void duplicates_of_vector(benchmark::State& state) {
  const auto paths = paths_with_repeats(state);
  for (auto _ : state) {
    state.PauseTiming();
    auto sorted = paths;
    state.ResumeTiming();
    benchmark::DoNotOptimize(count_repeats(sorted));
  }
}

// --- List files -------------------------------------------------------------

std::string scratch_file() {
  return std::filesystem::temp_directory_path() / "zenfo_list_ops_bench.txt";
}

void write_lines(const Paths& paths) {
  std::ofstream file(scratch_file(), std::ios::binary);
  for (const std::string& path : paths) file << path << "\r\n";
}

constexpr unsigned char kNoFacts[ZENFO_OPTION_COUNT] = {};

// With `names_only` the host stops the load after the names.
bool names_only = false;
bool names_are_in = false;

int32_t on_status(const ZenfoWideChar* text) {
  names_are_in = names_only && text[4] == 'p';  // "Now processing filenames"
  return 0;
}
int32_t on_interrupt() { return names_are_in ? 1 : 0; }

void load_list(benchmark::State& state, bool only_names) {
  const auto paths = paths_for(state);
  if (paths.empty()) return;
  write_lines(paths);
  Initialize();
  names_only = only_names;
  host_callbacks().status = on_status;
  host_callbacks().interrupt = on_interrupt;
  for (auto _ : state) {
    LoadFileList(scratch_file().c_str(), kNoFacts);
    state.PauseTiming();
    ItemList& list = *library().run_files;
    if (list.count() != paths.size()) state.SkipWithError("lines are missing");
    list.clear();
    state.ResumeTiming();
  }
  host_callbacks() = {};
  Terminate();
}

// Stores one string for each line and, like the load of a list, checks whether
// the file exists.
void load_strings(benchmark::State& state, bool only_names) {
  write_lines(paths_for(state));
  size_t found = 0;
  for (auto _ : state) {
    std::ifstream file(scratch_file(), std::ios::binary);
    Paths paths;
    for (std::string line; std::getline(file, line);) {
      line.pop_back();
      paths.push_back(line);
    }
    struct stat facts;
    for (const std::string& path : paths) {
      if (!only_names && lstat(path.c_str(), &facts) == 0) ++found;
    }
    benchmark::DoNotOptimize(found);
    state.PauseTiming();
    paths = {};
    state.ResumeTiming();
  }
}

void save_list(benchmark::State& state) {
  Initialize();
  fill(*library().run_files, paths_for(state));
  library().run_files->set_state(-1, 1);
  for (auto _ : state) SaveFileList(scratch_file().c_str());
  Terminate();
}

// --- Whole lists ------------------------------------------------------------

// Compares two lists that share every second path.
void compare(benchmark::State& state, uint32_t option) {
  const auto paths = paths_for(state);
  Initialize();
  for (ItemList* list : {library().run_files.get(), library().pairs.get()}) {
    const bool second = list == library().pairs.get();
    for (size_t i = 0; i < paths.size(); ++i) {
      auto entry = std::make_unique<FileEntry>(SharedText(""));
      entry->set_full_name(second && i % 2 == 0 ? paths[i] + "x" : paths[i]);
      entry->facts.size = i;
      entry->facts.write_time = uint64_t{i} << 20;
      list->append(std::move(entry));
    }
  }
  for (auto _ : state) CompareLists(option, 1);
  Terminate();
}

// Removes every second entry.
void remove_half(benchmark::State& state) {
  const auto paths = paths_for(state);
  Initialize();
  for (auto _ : state) {
    state.PauseTiming();
    ItemList& list = *library().run_files;
    fill(list, paths);
    for (uint32_t i = 0; i < list.count(); i += 2) list.get(i)->state = 1;
    state.ResumeTiming();
    RemoveSelection(ZENFO_LIST_RUN_FILES);
  }
  Terminate();
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000);
  bench->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(sort_list, distinct, paths_for)
    ->Name("sort/list")
    ->Apply(sizes);
BENCHMARK_CAPTURE(sort_list, repeats, paths_with_repeats)
    ->Name("sort/list_with_repeats")
    ->Apply(sizes);
BENCHMARK(sort_list_by_comparator)->Name("sort/comparator")->Apply(sizes);
BENCHMARK(sort_vector)->Name("sort/vector")->Apply(sizes);
BENCHMARK(duplicates_of_list)->Name("duplicates/list")->Apply(sizes);
BENCHMARK(duplicates_of_vector)->Name("duplicates/vector")->Apply(sizes);
BENCHMARK_CAPTURE(load_list, names, true)->Name("load/list")->Apply(sizes);
BENCHMARK_CAPTURE(load_strings, names, true)
    ->Name("load/strings")
    ->Apply(sizes);
BENCHMARK_CAPTURE(load_list, all, false)
    ->Name("load/list_and_look")
    ->Apply(sizes);
BENCHMARK_CAPTURE(load_strings, all, false)
    ->Name("load/strings_and_look")
    ->Apply(sizes);
BENCHMARK(save_list)->Name("save/list")->Apply(sizes);
BENCHMARK_CAPTURE(compare, path, kByPath)->Name("compare/path")->Apply(sizes);
BENCHMARK_CAPTURE(compare, size, 8)->Name("compare/size")->Apply(sizes);
BENCHMARK_CAPTURE(compare, full, 11)->Name("compare/full")->Apply(sizes);
BENCHMARK(remove_half)->Name("remove/half")->Apply(sizes);

}  // namespace
}  // namespace zenfo

BENCHMARK_MAIN();
