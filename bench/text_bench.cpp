// Substring search: every kernel set compared with the C library's memmem and
// the plain loop, on text like prose and on repetitive text. Each benchmark
// first checks that it finds the same occurrences as the model.
//
// Run: build/native/bin/text_bench --benchmark_filter=exact
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model/naive_substring.h"
#include "text/records.h"
#include "text/simd.h"
#include "text/substring.h"

namespace zenfo {
namespace {

// Words with the lengths and letters of English, in lines of about 70 bytes.
// The needle is not among them.
std::string make_prose(size_t size) {
  static const char* const kWords[] = {
      "the",       "of",        "and",      "to",        "in",
      "that",      "it",        "was",      "for",       "with",
      "as",        "his",       "on",       "be",        "at",
      "by",        "this",      "had",      "not",       "are",
      "but",       "from",      "or",       "have",      "which",
      "question",  "number",    "people",   "water",     "through",
      "sentence",  "thought",   "sequence", "require",   "another",
      "Because",   "different", "example",  "important", "until",
      "children",  "mountain",  "search",   "searching", "enough",
      "Sometimes", "plural",    "holiday"};
  std::mt19937 random(42);
  std::string text;
  size_t line = 0;
  while (text.size() < size) {
    const unsigned rank = random() % 48;
    const char* const word = kWords[random() % (rank + 1)];
    text += word;
    line += std::strlen(word) + 1;
    if (random() % 12 == 0) text += random() % 2 ? "," : ".";
    text += line > 70 ? '\n' : ' ';
    if (line > 70) line = 0;
  }
  text.resize(size);
  return text;
}

struct Subject {
  const char* name;
  std::string text;
  std::string needle;
};

std::vector<Subject> make_subjects() {
  const std::string file = make_prose(12 << 10);
  const std::string large = make_prose(8 << 20);
  return {
      {"file12K/absent", file, "hypothesis"},
      {"file12K/rare_byte", file, "ZenfoFR"},
      {"large8M/absent", large, "hypothesis"},
      {"large8M/similar", large, "sequences"},
      {"large8M/short", large, "gh!"},
      {"large8M/two_bytes", large, "tz"},
      {"large8M/one_byte", large, "~"},
      {"large8M/long", large, "the question of which people require water at"},
      {"large8M/frequent", large, "the"},
      {"large8M/word", large, "children"},
      {"repeat1M/a30b", std::string(1 << 20, 'a'), std::string(30, 'a') + "b"},
      {"repeat1M/ba5000", std::string(1 << 20, 'a'),
       "b" + std::string(5000, 'a')},
      {"repeat1M/a5000ba5000", std::string(1 << 20, 'a'),
       std::string(5000, 'a') + "b" + std::string(5000, 'a')},
  };
}

using FindAll =
    std::function<size_t(std::string_view text, std::string_view needle)>;

size_t count_by_find(const SubstringSearcher& searcher, std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* at = text.data();
  size_t count = 0;
  while ((at = searcher.find(at, end)) != nullptr) {
    at += searcher.length();
    ++count;
  }
  return count;
}

size_t count_by_many(const SubstringSearcher& searcher, std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* from = text.data();
  const char* found[256];
  size_t count = 0;
  while (from < end) {
    count += searcher.find_many(from, end, searcher.length(), found, 256);
  }
  return count;
}

FindAll with_kernels(const KernelSet* kernels, bool case_sensitive, bool many) {
  return [=](std::string_view text, std::string_view needle) {
    use_kernels(kernels);
    const SubstringSearcher searcher(needle, case_sensitive);
    return many ? count_by_many(searcher, text) : count_by_find(searcher, text);
  };
}

size_t count_by_memmem(std::string_view text, std::string_view needle) {
  const char* const end = text.data() + text.size();
  const char* at = text.data();
  size_t count = 0;
  while ((at = static_cast<const char*>(
              memmem(at, static_cast<size_t>(end - at), needle.data(),
                     needle.size()))) != nullptr) {
    at += needle.size();
    ++count;
  }
  return count;
}

size_t count_by_model(std::string_view text, std::string_view needle) {
  return model::find_all(text, needle, true, needle.size()).size();
}

void run(benchmark::State& state, const Subject& subject, const FindAll& find,
         size_t expected) {
  if (find(subject.text, subject.needle) != expected) {
    state.SkipWithError("finds something else than the model");
    return;
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(find(subject.text, subject.needle));
  }
  state.SetBytesProcessed(state.iterations() *
                          static_cast<int64_t>(subject.text.size()));
  state.counters["found"] = static_cast<double>(expected);
}

void add(const std::string& name, const Subject& subject, FindAll find,
         size_t expected) {
  benchmark::RegisterBenchmark(
      (name + "/" + subject.name).c_str(),
      [&subject, find, expected](benchmark::State& state) {
        run(state, subject, find, expected);
      });
}

void add_searches(const Subject& subject) {
  const size_t exact =
      model::find_all(subject.text, subject.needle, true, subject.needle.size())
          .size();
  const size_t folded = model::find_all(subject.text, subject.needle, false,
                                        subject.needle.size())
                            .size();
  std::vector<const KernelSet*> sets = {&kSse2Kernels};
  if (processor_has_avx2()) sets.push_back(&kAvx2Kernels);
  for (const KernelSet* set : sets) {
    const std::string name = set->name;
    add("exact/" + name, subject, with_kernels(set, true, false), exact);
    add("many/" + name, subject, with_kernels(set, true, true), exact);
    add("folded/" + name, subject, with_kernels(set, false, false), folded);
  }
  add("exact/memmem", subject, count_by_memmem, exact);
  add("exact/naive", subject, count_by_model, exact);
}

void construct(benchmark::State& state, const std::string& needle,
               bool case_sensitive) {
  use_kernels(nullptr);
  for (auto _ : state) {
    SubstringSearcher searcher(needle, case_sensitive);
    benchmark::DoNotOptimize(searcher);
  }
}

// 100,000 lines of about 60 bytes, cut at CR LF.
void split_records(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) {
    text += "C:\\data\\folder with a name\\deeper\\file number " +
            std::to_string(i) + ".txt\r\n";
  }
  for (auto _ : state) {
    RecordReader reader(text, "\r\n");
    size_t records = 0;
    while (reader.next()) ++records;
    if (records != 100'000) state.SkipWithError("wrong number of records");
  }
  state.SetItemsProcessed(state.iterations() * 100'000);
  state.SetBytesProcessed(state.iterations() *
                          static_cast<int64_t>(text.size()));
}

}  // namespace
}  // namespace zenfo

int main(int argc, char** argv) {
  const std::vector<zenfo::Subject> subjects = zenfo::make_subjects();
  for (const zenfo::Subject& subject : subjects) zenfo::add_searches(subject);
  for (const char* needle : {"word", "a needle of thirty-two bytes ok"}) {
    for (const bool exact : {true, false}) {
      benchmark::RegisterBenchmark(
          (std::string("construct/") + (exact ? "exact/" : "folded/") +
           std::to_string(std::strlen(needle)))
              .c_str(),
          [needle, exact](benchmark::State& state) {
            zenfo::construct(state, needle, exact);
          });
    }
  }
  benchmark::RegisterBenchmark("records/crlf", zenfo::split_records);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
