// Runs a fuzz target on files, for builds without libFuzzer: every test run
// replays the corpus, and a failing input can be debugged.
//   NAME_fuzz FILE|FOLDER...
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

bool replay(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> read{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  // Printed first, so that the last line names a failing input.
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  const std::vector<uint8_t> bytes(read.begin(), read.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

// Returns the number of files replayed, or -1 when one could not be read.
int replay_all(const fs::path& path) {
  if (!fs::is_directory(path)) return replay(path) ? 1 : -1;
  int replayed = 0;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (!replay(entry.path())) return -1;
    ++replayed;
  }
  return replayed;
}

}  // namespace

int main(int argc, char** argv) {
  int total = 0;
  try {
    for (int i = 1; i < argc; ++i) {
      const int replayed = replay_all(argv[i]);
      if (replayed < 0) return 1;
      total += replayed;
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  std::printf("%d inputs\n", total);
  return total > 0 ? 0 : 1;
}
