// A hostile host: calls any operations in any order, with any arguments, on
// files of any bytes, also from inside callbacks. Nothing may crash, and the
// sanitizers must find nothing.
//
// Input: 3 bytes of options, then steps. A step is one byte, for an operation
// of the table in exports.inc or for a file to write, and the bytes for its
// arguments. Missing bytes read as 0, so that every input is valid.
//
// Many texts are paths. Their only separators are those made here, and the
// process works in its own folder, so nothing outside of it is written.
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "zenfofr130.h"

namespace zenfo::fuzz {
namespace {

namespace fs = std::filesystem;

// Limited because each step may be a run over all files.
constexpr int kMostSteps = 48;
// The depth of calls from inside callbacks; the engine already refuses the
// second level.
constexpr int kDeepest = 2;
// Replacing can make files longer again and again.
constexpr rlim_t kMostFileBytes = 1 << 16;
// Longer than all files together, so no text is longer.
constexpr size_t kBufferBytes = 1 << 20;

// ---- arguments from bytes
// ----------------------------------------------------

class Bytes {
 public:
  Bytes(const uint8_t* data, size_t size) : data_(data), left_(size) {}

  bool empty() const { return left_ == 0; }
  uint8_t byte() {
    if (left_ == 0) return 0;
    --left_;
    return *data_++;
  }
  std::string text(size_t most) {
    std::string text;
    for (size_t length = byte() % (most + 1); length > 0 && !empty();
         --length) {
      const char c = static_cast<char>(byte());
      text += c == '/' || c == '\\' ? '_' : c;
    }
    return text;
  }

 private:
  const uint8_t* data_;
  size_t left_;
};

const char* const kNames[] = {"a", "b", "c", "sub/a", "store/undo.txt"};

// What arguments point to; it lives until the call returns. Every object has
// its own heap block, so that the sanitizer knows its bounds.
struct Memory {
  std::list<std::string> texts;
  std::list<std::unique_ptr<unsigned char[]>> options;
  std::list<std::unique_ptr<int32_t[]>> numbers;
  std::list<std::unique_ptr<TextCounts>> counts;
  std::list<std::vector<char>> buffers;
  std::list<std::unique_ptr<CallbackTable>> tables;
};

Bytes* input = nullptr;  // callbacks read it too
int depth = 0;
int steps = 0;
int polls_left = 0;  // before the host asks to stop

int32_t any_number() {
  constexpr int32_t kEdges[] = {
      0,  1,  -1,  2,         3,         4,  5,  6,  7,   8,   9,
      10, 11, 100, INT32_MAX, INT32_MIN, -2, 64, 16, 255, 256, INT32_MAX - 1};
  const uint8_t which = input->byte();
  if (which < std::size(kEdges)) return kEdges[which];
  if (which < 200) return which % 2;
  uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = number << 8 | input->byte();
  return static_cast<int32_t>(number);
}

const char* any_text(Memory& memory) {
  constexpr const char* kTexts[] = {
      "",        "a",  "1*;*.*", "0sub/*.*|1*", "\"a|b\"", "[a-c]+", "\r\n",
      "a\tb\tc", "^M", "?*",     "missing/x",   "sub",     "store/"};
  const uint8_t which = input->byte();
  if (which == 0) return nullptr;
  if (which < 100) return kNames[which % std::size(kNames)];
  if (which < 180) return kTexts[which % std::size(kTexts)];
  if (which == 180) {
    return memory.texts.emplace_back(5000, 'a').c_str();
  }
  return memory.texts.emplace_back(input->text(24)).c_str();
}

CallbackTable any_callbacks();

template <class Type>
struct Argument;
template <>
struct Argument<int32_t> {
  static int32_t make(Memory&) { return any_number(); }
};
template <>
struct Argument<uint32_t> {
  static uint32_t make(Memory&) { return static_cast<uint32_t>(any_number()); }
};
template <>
struct Argument<const char*> {
  static const char* make(Memory& memory) { return any_text(memory); }
};
template <>
struct Argument<char*> {
  static char* make(Memory& memory) {
    if (input->byte() == 0) return nullptr;
    return memory.buffers.emplace_back(kBufferBytes).data();
  }
};
template <>
struct Argument<const unsigned char*> {
  static const unsigned char* make(Memory& memory) {
    const uint8_t bits = input->byte();
    if (bits == 0) return nullptr;
    auto& bytes = memory.options.emplace_back(
        std::make_unique<unsigned char[]>(ZENFO_OPTION_COUNT));
    for (int i = 0; i < ZENFO_OPTION_COUNT; ++i) bytes[i] = bits >> i % 8 & 1;
    return bytes.get();
  }
};
template <>
struct Argument<int32_t*> {
  static int32_t* make(Memory& memory) {
    if (input->byte() == 0) return nullptr;
    return memory.numbers.emplace_back(std::make_unique<int32_t[]>(2)).get();
  }
};
template <>
struct Argument<TextCounts*> {
  static TextCounts* make(Memory& memory) {
    if (input->byte() == 0) return nullptr;
    return memory.counts.emplace_back(std::make_unique<TextCounts>()).get();
  }
};
template <>
struct Argument<const CallbackTable*> {
  static const CallbackTable* make(Memory& memory) {
    if (input->byte() == 0) return nullptr;
    return memory.tables
        .emplace_back(std::make_unique<CallbackTable>(any_callbacks()))
        .get();
  }
};
template <>
struct Argument<void*> {
  static void* make(Memory&) { return nullptr; }
};

// ---- calls
// -------------------------------------------------------------------

template <class Result, class... Types>
void call(Result(ZENFO_CALL* operation)(Types...)) {
  Memory memory;
  // Braces evaluate the arguments from left to right.
  const std::tuple<Types...> arguments{Argument<Types>::make(memory)...};
  std::apply(operation, arguments);
}

using Call = void (*)();
constexpr Call kCalls[] = {
#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  [] { call(&::routine); },
#include "frame/exports.inc"
#undef ZENFO_EXPORT
};

void write_file() {
  const char* const name = kNames[input->byte() % std::size(kNames)];
  std::ofstream file(name, std::ios::binary);
  file << input->text(255);
}

void step() {
  const uint8_t which = input->byte();
  if (++steps > kMostSteps) return;
  if (which < std::size(kCalls)) {
    kCalls[which]();
  } else {
    write_file();
  }
}

// ---- the host's callbacks
// ----------------------------------------------------

// Sometimes a callback calls an operation.
void step_inside() {
  if (depth >= kDeepest || input->empty() || input->byte() % 4 != 0) return;
  ++depth;
  step();
  --depth;
}

int32_t ZENFO_CALL on_report(ProgressRecord*) {
  if (polls_left % 8 == 0) step_inside();
  return 0;
}
int32_t ZENFO_CALL on_interrupt() { return --polls_left == 0; }
int32_t ZENFO_CALL on_status(const ZenfoWideChar*) {
  step_inside();
  return 0;
}
int32_t ZENFO_CALL on_file_question(const ZenfoWideChar*) {
  step_inside();
  return input->byte() % 5;
}
int32_t ZENFO_CALL on_option_question(const ZenfoWideChar*, int32_t) {
  step_inside();
  step_inside();
  return input->byte() % 5;
}

CallbackTable any_callbacks() {
  const uint8_t bits = input->byte();
  CallbackTable table{};
  if ((bits & 1) == 0) table.report = on_report;
  if ((bits & 2) == 0) table.interrupt = on_interrupt;
  if ((bits & 4) == 0) table.status = on_status;
  if ((bits & 8) == 0) table.file_question = on_file_question;
  if ((bits & 16) == 0) table.option_question = on_option_question;
  return table;
}

// ---- one input
// ---------------------------------------------------------------

// The working folder of the process, deleted at its end.
class Folder {
 public:
  Folder() {
    const bool in_memory = access("/dev/shm", W_OK) == 0;
    std::string form =
        std::string(in_memory ? "/dev/shm" : "/tmp") + "/zenfo-fuzz-XXXXXX";
    if (mkdtemp(form.data()) == nullptr) abort();
    path_ = form;
    home_ = fs::current_path();
  }
  ~Folder() {
    std::error_code error;
    fs::remove_all(path_, error);
  }
  void enter() const {
    for (const auto& entry : fs::directory_iterator(path_)) {
      fs::remove_all(entry.path());
    }
    fs::current_path(path_);
    fs::create_directory("sub");
    fs::create_directory("store");
    for (const char* name : {"a", "b", "sub/a"}) {
      std::ofstream(name, std::ios::binary) << "a b a\r\nc a_b";
    }
  }
  void leave() const { fs::current_path(home_); }

 private:
  fs::path path_, home_;
};

// Limits the size of files while it lives; the fuzzer's own files are not
// affected.
class FileLimit {
 public:
  FileLimit() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit now = before_;
    now.rlim_cur = kMostFileBytes;
    setrlimit(RLIMIT_FSIZE, &now);
  }
  ~FileLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;

 private:
  rlimit before_{};
};

// Sets up so much that a few steps can reach a run.
void prepare(uint8_t bits) {
  constexpr unsigned char kAllFacts[ZENFO_OPTION_COUNT] = {1, 1, 1, 1, 1,
                                                           1, 1, 1, 1, 1};
  if ((bits & 1) == 0) Initialize();
  if ((bits & 2) == 0) {
    FindFiles(ZENFO_LIST_RUN_FILES, "1*", kAllFacts, "");
    SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  }
  if ((bits & 4) == 0) SetUndoFile("store/undo.txt");
  if ((bits & 8) == 0) SetPattern("", "a", "", 0, 0, 0, 0, 0, 0);
  if ((bits & 16) == 0) {
    AddStringPair("a", "bc");
    SetState(ZENFO_LIST_PAIRS, -1, 1);
  }
  if ((bits & 32) == 0) SetErrorFile("errors");
  if ((bits & 64) == 0) {
    SetExclusionPattern("", "c", "", 0, 0, 0, 0, 0, 0);
  }
}

void run(Bytes bytes) {
  static const Folder folder;
  input = &bytes;
  depth = steps = 0;
  const uint8_t options = bytes.byte();
  constexpr const char* kSafety[] = {"", "sync", "beside,nolinks",
                                     "sync,beside,nolinks"};
  setenv("ZENFO_SAFETY", kSafety[bytes.byte() % std::size(kSafety)], 1);
  polls_left = bytes.byte() * 4;
  folder.enter();
  {
    const FileLimit limit;
    const CallbackTable table = any_callbacks();
    SetCallBacks(&table);
    prepare(options);
    while (!bytes.empty() && steps < kMostSteps) step();
    Terminate();
  }
  folder.leave();
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zenfo::fuzz::run({data, size});
  return 0;
}
