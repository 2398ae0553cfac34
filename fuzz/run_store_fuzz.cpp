// The folder of runs with any bytes in it: what a power cut, a full disk or
// another program may leave there. Listing the runs and undoing one may refuse,
// but never crash, and no file changes that the list of copies does not name.
//
// Input: a byte of options, then three texts: the record, the journal and the
// list of copies of a run. '~' stands for the folder of the files. Their only
// separators are those made here, so nothing outside of that folder is written.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "fuzz/input.h"
#include "shared/frame/failure.h"
#include "shared/runs/run_store.h"
#include "shared/runs/undoing.h"
#include "shared/session/session.h"
#include "support/host_messages.h"
#include "support/temp_folder.h"

namespace zenfo::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr char kName[] = "20261122-101112Z-1";

std::string with_paths(const std::string& text, const std::string& folder) {
  std::string out;
  for (const char c : text) {
    if (c == '~') {
      out += folder + '/';
    } else {
      out += c == '/' ? '_' : c;
    }
  }
  return out;
}

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string bytes_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void look_at(const host::RunStore& store) {
  for (const host::Run& run : store.runs()) {
    store.size_of(run.name);
    store.copies(run.name);
    store.is_known_empty(run.name);
  }
}

void undo(const host::RunStore& store, bool force) {
  std::optional<host::Run> run = store.find(kName);
  host::RunLock lock;
  if (!run || !store.take(kName, lock)) return;
  test::KeptMessages messages;
  test::NoProgress progress;
  host::Session session(messages, progress);
  host::Undoing undoing(session, store, std::move(*run), std::move(lock),
                        {.force = force, .durable = false});
  undoing.bring_back({});
  undoing.end();
}

void run(Input input) {
  const test::TempFolder files;
  const test::TempFolder runs;
  // So that names without a folder are inside, too.
  const fs::path before = fs::current_path();
  fs::current_path(files.path());
  for (const char* name : {"a", "b"}) files.file(name, "new");
  files.file("copy", "old");
  files.file("kept", "kept");
  const uint8_t options = input.byte();
  const std::string record = with_paths(input.text(), files.path());
  const std::string journal = with_paths(input.text(), files.path());
  const std::string list = with_paths(input.rest(), files.path());
  const std::string own = runs.path(kName);
  fs::create_directory(own);
  write(own + "/undo.txt", list);
  write(own + "/a_0", "old");
  if (bit(options, 0)) write(own + ".json", record);
  if (bit(options, 1)) write(own + ".journal", journal);
  const host::RunStore store(runs.path());
  try {
    look_at(store);
    undo(store, bit(options, 2));
    look_at(store);
  } catch (const host::Failure&) {
    // A refusal.
  }
  if (list.find("kept") == std::string::npos &&
      bytes_of(files.path("kept")) != "kept") {
    expect_none("a file changed that the list does not name", list);
  }
  fs::current_path(before);
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zenfo::fuzz::run({data, size});
  return 0;
}
