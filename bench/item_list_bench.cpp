// The item list compared with a vector of the same records: appending, walks by
// position, states, and sorting the list of paths, there with std::sort and
// strcasecmp. Results are checked to be equal before they are timed.
//
// Run: build/native/bin/item_list_bench --benchmark_filter=walk
#include "containers/item_list.h"

#include <benchmark/benchmark.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "containers/pool.h"
#include "subjects.h"

namespace zenfo {
namespace {

class PathRecord final : public Record, public Pooled<PathRecord> {
 public:
  explicit PathRecord(const char* path) : path_(path) {}
  RecordKind kind() const override { return RecordKind::kStringPair; }
  std::optional<std::string_view> text(TextSlot) const override {
    return path_;
  }
  const char* path() const { return path_; }

 private:
  const char* path_;
};

using Vector = std::vector<std::unique_ptr<Record>>;

void fill(ItemList& list, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    list.append(std::make_unique<PathRecord>(""));
    list.get(static_cast<uint32_t>(i))->state = i % 3 == 0;
  }
}

void fill(Vector& vector, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    vector.push_back(std::make_unique<PathRecord>(""));
    vector.back()->state = i % 3 == 0;
  }
}

uint32_t count_selected(ItemList& list, const std::vector<uint32_t>& order) {
  uint32_t selected = 0;
  for (uint32_t position : order) selected += list.get(position)->state;
  return selected;
}

uint32_t count_selected(Vector& vector, const std::vector<uint32_t>& order) {
  uint32_t selected = 0;
  for (uint32_t position : order) selected += vector[position]->state;
  return selected;
}

size_t size_of(benchmark::State& state) {
  return static_cast<size_t>(state.range(0));
}

std::vector<uint32_t> positions(size_t count) {
  std::vector<uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0U);
  return order;
}

void items_processed(benchmark::State& state, size_t count) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * count));
}

// --- Appending, and giving everything back ----------------------------------

template <class List>
void append(benchmark::State& state) {
  const size_t count = size_of(state);
  for (auto _ : state) {
    List list;
    fill(list, count);
    benchmark::DoNotOptimize(&list);
  }
  items_processed(state, count);
}

// --- Walks by position ------------------------------------------------------

enum class Index { kNone, kBuilt };

template <class List>
void walk(benchmark::State& state, List& list,
          const std::vector<uint32_t>& order) {
  const size_t expected = (order.size() + 2) / 3;
  if (count_selected(list, order) != expected) {
    state.SkipWithError("the walk misses records");
    return;
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(count_selected(list, order));
  }
  items_processed(state, order.size());
}

void walk_list(benchmark::State& state, Index index) {
  ItemList list;
  fill(list, size_of(state));
  if (index == Index::kBuilt) list.build_index();
  walk(state, list, positions(size_of(state)));
}

void walk_list_anywhere(benchmark::State& state) {
  ItemList list;
  fill(list, size_of(state));
  auto order = positions(size_of(state));
  std::shuffle(order.begin(), order.end(), std::mt19937(1));
  walk(state, list, order);
}

void walk_vector(benchmark::State& state) {
  Vector vector;
  fill(vector, size_of(state));
  walk(state, vector, positions(size_of(state)));
}

// --- States -----------------------------------------------------------------

void set_state_of_all(benchmark::State& state) {
  ItemList list;
  fill(list, size_of(state));
  const auto count = static_cast<int32_t>(size_of(state));
  if (list.set_state(-1, 1) != count || list.count_state(1) != count) {
    state.SkipWithError("SetState misses records");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(list.set_state(-1, -1));
  items_processed(state, size_of(state));
}

void count_state(benchmark::State& state) {
  ItemList list;
  fill(list, size_of(state));
  const auto expected = static_cast<int32_t>((size_of(state) + 2) / 3);
  if (list.count_state(1) != expected) {
    state.SkipWithError("count_state misses records");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(list.count_state(1));
  items_processed(state, size_of(state));
}

// --- Sorting ----------------------------------------------------------------

int32_t compare_paths(const Record* a, const Record* b) {
  return strcasecmp(static_cast<const PathRecord*>(a)->path(),
                    static_cast<const PathRecord*>(b)->path());
}

bool goes_before(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) < 0;
}

bool same_order(ItemList& list, const std::vector<std::string>& sorted) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    const auto* record = static_cast<const PathRecord*>(list.get(i));
    if (strcasecmp(record->path(), sorted[i].c_str()) != 0) return false;
  }
  return list.count() == sorted.size();
}

// Returns this many paths, or none after reporting an error.
std::vector<std::string> paths_for(benchmark::State& state) {
  auto paths = bench::read_paths(size_of(state));
  if (paths.size() == size_of(state)) return paths;
  state.SkipWithError(bench::kNoCorpus);
  return {};
}

void sort_list(benchmark::State& state) {
  const auto paths = paths_for(state);
  if (paths.empty()) return;
  ItemList list;
  for (const auto& path : paths) {
    list.append(std::make_unique<PathRecord>(path.c_str()));
  }
  auto sorted = paths;
  std::sort(sorted.begin(), sorted.end(), goes_before);
  if (list.sort(0, compare_paths) != 1 || !same_order(list, sorted)) {
    state.SkipWithError("Sort and std::sort disagree");
    return;
  }
  for (auto _ : state) list.sort(0, compare_paths);
  items_processed(state, paths.size());
}

void sort_vector(benchmark::State& state) {
  const auto paths = paths_for(state);
  if (paths.empty()) return;
  for (auto _ : state) {
    state.PauseTiming();
    auto sorted = paths;
    state.ResumeTiming();
    std::sort(sorted.begin(), sorted.end(), goes_before);
    benchmark::DoNotOptimize(sorted.data());
  }
  items_processed(state, paths.size());
}

void select_duplicates(benchmark::State& state) {
  const auto paths = paths_for(state);
  if (paths.empty()) return;
  ItemList list;
  for (const auto& path : paths) {
    list.append(std::make_unique<PathRecord>(path.c_str()));
  }
  auto mark = [](Record& record) { record.state = 1; };
  for (auto _ : state) {
    benchmark::DoNotOptimize(list.select_duplicates(compare_paths, mark));
  }
  items_processed(state, paths.size());
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(append<ItemList>)->Name("append/list")->Apply(sizes);
BENCHMARK(append<Vector>)->Name("append/vector")->Apply(sizes);
BENCHMARK_CAPTURE(walk_list, no_index, Index::kNone)
    ->Name("walk/list")
    ->Apply(sizes);
BENCHMARK_CAPTURE(walk_list, index, Index::kBuilt)
    ->Name("walk/list_with_index")
    ->Apply(sizes);
BENCHMARK(walk_vector)->Name("walk/vector")->Apply(sizes);
BENCHMARK(walk_list_anywhere)->Name("walk/list_anywhere")->Apply(sizes);
BENCHMARK(set_state_of_all)->Name("state/toggle_all")->Apply(sizes);
BENCHMARK(count_state)->Name("state/count")->Apply(sizes);
BENCHMARK(sort_list)->Name("sort/list")->Apply(sizes);
BENCHMARK(sort_vector)->Name("sort/vector")->Apply(sizes);
BENCHMARK(select_duplicates)->Name("sort/select_duplicates")->Apply(sizes);

}  // namespace
}  // namespace zenfo

BENCHMARK_MAIN();
