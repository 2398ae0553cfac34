#include "run_store.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "file_state.h"
#include "messages.h"
#include "paths.h"

namespace zenfo::cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr auto kOldest = std::chrono::hours(30 * 24);
constexpr char kUndoFile[] = "undo.txt";
#ifdef _WIN32
constexpr char kHomeVariable[] = "LOCALAPPDATA";
#else
constexpr char kHomeVariable[] = "HOME";
#endif
constexpr uint64_t kLargest = 1'000'000'000;

fs::path state_folder() {
#ifdef _WIN32
  const fs::path local = to_path(environment(kHomeVariable));
  return local.is_absolute() ? local : fs::path();
#else
  // A relative one is to be ignored, the rule says.
  const fs::path given = to_path(environment("XDG_STATE_HOME"));
  if (given.is_absolute()) return given;
  const fs::path home = to_path(environment(kHomeVariable));
  return home.is_absolute() ? home / to_path(".local") / to_path("state")
                            : fs::path();
#endif
}

std::string time_text(const char* form) {
  const std::time_t now = std::time(nullptr);
  char text[32];
  const size_t length =
      std::strftime(text, sizeof text, form, std::localtime(&now));
  return {text, length};
}

// A path may have any bytes, JSON only texts: each byte becomes a character.
std::string to_text(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | byte >> 6);
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

std::string to_bytes(const std::string& text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80 || i + 1 == text.size()) {
      bytes += text[i];
    } else {
      const auto next = static_cast<unsigned char>(text[++i]);
      bytes += static_cast<char>((byte & 3) << 6 | (next & 0x3F));
    }
  }
  return bytes;
}

json to_json(const Run& run) {
  json files = json::array();
  for (const RunFile& file : run.files) {
    files.push_back({{"path", to_text(file.path)},
                     {"size", file.size},
                     {"modified", file.modified},
                     {"copy_size", file.copy_size}});
  }
  return {{"time", run.time},
          {"command", to_text(run.command)},
          {"files", std::move(files)}};
}

Run from_json(const std::string& name, const json& record) {
  Run run{name,
          record.at("time").get<std::string>(),
          to_bytes(record.at("command").get<std::string>()),
          {}};
  for (const json& file : record.at("files")) {
    run.files.push_back({to_bytes(file.at("path").get<std::string>()),
                         file.at("size").get<uint64_t>(),
                         file.at("modified").get<int64_t>(),
                         file.at("copy_size").get<uint64_t>()});
  }
  return run;
}

// The time in the name of a run: "20261114-094256-1234-0" becomes
// "2026-11-14 09:42:56".
std::string time_in(const std::string& name) {
  constexpr std::string_view kForm = "########-######";
  constexpr std::string_view kBehind = "   - -    : :  ";
  if (name.size() < kForm.size()) return "";
  std::string time;
  for (size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = name[i] >= '0' && name[i] <= '9';
    if (kForm[i] == '#' ? !digit : name[i] != kForm[i]) return "";
    time += name[i] == '-' ? ' ' : name[i];
    if (kBehind[i] != ' ') time += kBehind[i];
  }
  return time;
}

void make_folder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw Failure{narrow(folder), error.message()};
  fs::permissions(folder, fs::perms::owner_all, error);
}

}  // namespace

RunStore::RunStore() : folder_(state_folder()) {
  if (folder_.empty()) {
    throw Failure{"", "no folder for safe copies is known, as " +
                          std::string(kHomeVariable) + " is not set"};
  }
  folder_ = folder_ / to_path("zenfo") / to_path("runs");
}

fs::path RunStore::folder_of(const std::string& name) const {
  return folder_ / to_path(name);
}

fs::path RunStore::undo_path(const std::string& name) const {
  return folder_of(name) / to_path(kUndoFile);
}

fs::path RunStore::record(const std::string& name) const {
  return folder_ / to_path(name + ".json");
}

fs::path RunStore::fresh_record(const std::string& name) const {
  return folder_ / to_path(name + ".json.new");
}

std::string RunStore::undo_file(const std::string& name) const {
  return narrow(undo_path(name));
}

Run RunStore::begin(const std::string& command) {
  make_folder(folder_);
  const std::string start =
      time_text("%Y%m%d-%H%M%S") + '-' + std::to_string(process_number()) + '-';
  Run run{"", time_text("%Y-%m-%d %H:%M:%S"), command, {}};
  for (int n = 0; run.name.empty(); ++n) {
    const std::string name = start + std::to_string(n);
    std::error_code error;
    if (fs::create_directory(folder_of(name), error)) run.name = name;
    if (error) throw Failure{narrow(folder_of(name)), error.message()};
  }
  // The library would delete whatever is there.
  if (!fs::is_empty(folder_of(run.name))) {
    throw Failure{narrow(folder_of(run.name)), "there are foreign files"};
  }
  if (!save(run)) {
    remove(run.name);
    throw Failure{narrow(record(run.name)), "cannot be written"};
  }
  return run;
}

// In one step: without its record a run cannot be undone, so that there must be
// one however this ends.
bool RunStore::save(const Run& run) const {
  const fs::path fresh = fresh_record(run.name);
  std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
  file << to_json(run).dump(1) << '\n';
  file.close();
  std::error_code error;
  if (file) fs::rename(fresh, record(run.name), error);
  if (file && !error) return true;
  fs::remove(fresh, error);
  return false;
}

std::optional<Run> RunStore::find(const std::string& name) const {
  if (to_path(name).filename() != to_path(name)) return std::nullopt;
  std::ifstream file(record(name), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  try {
    return from_json(name, json::parse(text));
  } catch (const json::exception&) {
    return find_unrecorded(name);
  }
}

std::optional<Run> RunStore::find_unrecorded(const std::string& name) const {
  std::error_code error;
  const auto size = fs::file_size(undo_path(name), error);
  if (error || size == 0) return std::nullopt;
  return Run{name, time_in(name), "", {}};
}

std::vector<Run> RunStore::runs(const Run* known) const {
  std::set<std::string> names;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder_, error)) {
    const bool is_record = narrow(entry.path().extension()) == ".json";
    const fs::path& path = entry.path();
    names.insert(narrow(is_record ? path.stem() : path.filename()));
  }
  std::vector<Run> runs;
  for (const std::string& name : names) {
    if (known != nullptr && name == known->name) {
      runs.push_back(*known);
    } else if (auto run = find(name)) {
      runs.push_back(std::move(*run));
    }
  }
  std::sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) {
    return std::tie(a.time, a.name) < std::tie(b.time, b.name);
  });
  return runs;
}

// What is no plain file was not put there by a run and stays.
void RunStore::remove(const std::string& name) const {
  std::error_code error;
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder_of(name), error)) {
    if (!entry.is_directory(error)) files.push_back(entry.path());
  }
  for (const fs::path& file : files) fs::remove(file, error);
  fs::remove(folder_of(name), error);
  fs::remove(fresh_record(name), error);
  fs::remove(record(name), error);
}

uint64_t RunStore::size_of(const std::string& name) const {
  uint64_t size = 0;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder_of(name), error)) {
    if (entry.is_regular_file(error)) size += entry.file_size(error);
  }
  return size;
}

bool RunStore::has_copies(const std::string& name) const {
  std::error_code error;
  const fs::directory_iterator entries(folder_of(name), error);
  return std::any_of(
      fs::begin(entries), fs::end(entries), [&](const auto& entry) {
        return entry.is_regular_file(error) &&
               !narrow(entry.path().filename()).starts_with(kUndoFile);
      });
}

// By the time of what the run wrote last.
bool RunStore::is_old(const std::string& name) const {
  std::error_code error;
  auto written = fs::last_write_time(record(name), error);
  if (error) written = fs::last_write_time(undo_path(name), error);
  return !error && fs::file_time_type::clock::now() - written > kOldest;
}

void RunStore::remove_old(const Run* known) const {
  std::vector<Run> newest_first = runs(known);
  std::reverse(newest_first.begin(), newest_first.end());
  uint64_t size = 0;
  for (const Run& run : newest_first) {
    size += size_of(run.name);
    const bool goes = size > kLargest || is_old(run.name);
    // Whatever its size, the last run can be undone.
    if (goes && &run != newest_first.data()) remove(run.name);
  }
}

}  // namespace zenfo::cli
