#include "shared/runs/run_store.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/system/file_state.h"
#include "shared/system/paths.h"

namespace zenfo::host {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr auto kOldest = std::chrono::hours(30 * 24);
constexpr auto kYoung = std::chrono::hours(24);
constexpr char kUndoFile[] = "undo.txt";
#ifdef _WIN32
constexpr char kHomeVariable[] = "LOCALAPPDATA";
#else
constexpr char kHomeVariable[] = "HOME";
#endif
constexpr uint64_t kMegabyte = 1'000'000;
constexpr uint64_t kLargest = 1000 * kMegabyte;
constexpr char kLimitVariable[] = "ZENFO_UNDO_MEGABYTES";

fs::path state_folder() {
#ifdef _WIN32
  const fs::path local = to_path(environment(kHomeVariable));
  return local.is_absolute() ? local : fs::path();
#else
  // The XDG rules say to ignore a relative path.
  fs::path given = to_path(environment("XDG_STATE_HOME"));
  if (given.is_absolute()) return given;
  const fs::path home = to_path(environment(kHomeVariable));
  return home.is_absolute() ? home / to_path(".local") / to_path("state")
                            : fs::path();
#endif
}

std::string time_text(const char* form, const std::tm* time) {
  char text[32];
  const size_t length = std::strftime(text, sizeof text, form, time);
  return {text, length};
}

// The space that all copies together may take.
uint64_t size_limit(Messages& messages) {
  const std::string text = environment(kLimitVariable);
  if (text.empty()) return kLargest;
  uint64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (rest != end || error != std::errc() || number > UINT32_MAX) {
    messages.remark(kLimitVariable, "is no number of megabytes; 1000 is taken");
    return kLargest;
  }
  return number * kMegabyte;
}

// A path may contain any bytes but JSON holds only text, so each byte becomes a
// character.
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
          {"folder", to_text(run.folder)},
          {"files", std::move(files)}};
}

Run from_json(const std::string& name, const json& record) {
  Run run{name,
          record.at("time").get<std::string>(),
          to_bytes(record.at("command").get<std::string>()),
          {},
          to_bytes(record.value("folder", ""))};
  for (const json& file : record.at("files")) {
    run.files.push_back({to_bytes(file.at("path").get<std::string>()),
                         file.at("size").get<uint64_t>(),
                         file.at("modified").get<int64_t>(),
                         file.at("copy_size").get<uint64_t>()});
  }
  return run;
}

// The number in a name, which gives runs their order. 0 for names of older
// versions, which end in a process number.
uint64_t number_in(const std::string& name) {
  constexpr size_t kTime = std::string_view("20261114-094256Z-").size();
  uint64_t number = 0;
  if (name.size() <= kTime || name.find("Z-") != kTime - 2) return 0;
  const char* end = name.data() + name.size();
  const auto [rest, error] = std::from_chars(name.data() + kTime, end, number);
  return rest == end && error == std::errc() ? number : 0;
}

// The time in the name of a run as records write it: "20261114-094256Z-17"
// becomes "2026-11-14 10:42:56" in a time zone one hour ahead. Older names
// contain local time and no Z.
std::string time_in(const std::string& name) {
  int year, month, day, hour, minute, second;
  char zone;
  if (std::sscanf(name.c_str(), "%4d%2d%2d-%2d%2d%2d%c", &year, &month, &day,
                  &hour, &minute, &second, &zone) != 7) {
    return "";
  }
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  if (zone == 'Z') {
    using namespace std::chrono;
    const sys_days date =
        std::chrono::year(year) / month / std::chrono::day(unsigned(day));
    const std::time_t moment = system_clock::to_time_t(
        date + hours(hour) + minutes(minute) + seconds(second));
    if (const std::tm* local = std::localtime(&moment)) time = *local;
  }
  return time_text("%Y-%m-%d %H:%M:%S", &time);
}

// Whether the file is the list of copies or one that the library keeps beside
// it.
bool is_list(const fs::directory_entry& entry) {
  return narrow(entry.path().filename()).starts_with(kUndoFile);
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

std::string RunStore::journal_file(const std::string& name) const {
  return narrow(folder_ / to_path(name + ".journal"));
}

std::string RunStore::lock_file(const std::string& name) const {
  return narrow(folder_ / to_path(name + ".lock"));
}

bool RunStore::take(const std::string& name, RunLock& lock) const {
  return lock.take(lock_file(name));
}

// The names of all runs; foreign files add names that find() rejects.
std::set<std::string> RunStore::names() const {
  std::set<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(folder_, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& path = entry->path();
    const bool is_record = narrow(path.extension()) == ".json";
    names.insert(narrow(is_record ? path.stem() : path.filename()));
  }
  if (error && error != std::errc::no_such_file_or_directory) {
    throw Failure{narrow(folder_), error.message()};
  }
  return names;
}

std::string RunStore::next_name() const {
  uint64_t last = 0;
  for (const std::string& name : names()) {
    last = std::max(last, number_in(name));
  }
  const std::time_t now = std::time(nullptr);
  return time_text("%Y%m%d-%H%M%SZ-", std::gmtime(&now)) +
         std::to_string(last + 1);
}

Run RunStore::begin(const std::string& command, RunLock& lock) {
  make_folder(folder_);
  const std::time_t now = std::time(nullptr);
  std::error_code error;
  Run run{"",
          time_text("%Y-%m-%d %H:%M:%S", std::localtime(&now)),
          command,
          {},
          narrow(fs::current_path(error))};
  RunLock numbers;
  numbers.wait_for(narrow(folder_ / to_path("numbers.lock")));
  while (run.name.empty()) {
    const std::string name = next_name();
    if (fs::create_directory(folder_of(name), error)) run.name = name;
    if (error) throw Failure{narrow(folder_of(name)), error.message()};
  }
  numbers.release_for_good();
  if (!take(run.name, lock)) throw Failure{run.name, lock.why_not()};
  // The library would delete any file in the folder.
  if (!fs::is_empty(folder_of(run.name))) {
    throw Failure{narrow(folder_of(run.name)), "it contains foreign files"};
  }
  if (!save(run)) {
    remove(run.name, lock);
    throw Failure{narrow(record(run.name)), "cannot be written"};
  }
  return run;
}

// Renames a new file over the record, so that the run always has a record to be
// undone by.
bool RunStore::save(const Run& run, bool durable) const {
  const fs::path fresh = fresh_record(run.name);
  std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
  file << to_json(run).dump(1) << '\n';
  file.close();
  std::error_code error;
  const bool written = file && (!durable || flush_file(narrow(fresh)));
  if (written) fs::rename(fresh, record(run.name), error);
  if (written && !error) return true;
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
  std::vector<Run> runs;
  for (const std::string& name : names()) {
    if (known != nullptr && name == known->name) {
      runs.push_back(*known);
    } else if (auto run = find(name)) {
      runs.push_back(std::move(*run));
    }
  }
  const auto place = [](const Run& run) {
    return std::make_tuple(number_in(run.name), std::cref(run.time),
                           std::cref(run.name));
  };
  std::sort(runs.begin(), runs.end(),
            [&](const Run& a, const Run& b) { return place(a) < place(b); });
  return runs;
}

// Subfolders are kept, because no run creates them.
void RunStore::remove(const std::string& name, RunLock& lock) const {
  std::error_code error;
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder_of(name), error)) {
    if (!entry.is_directory(error)) files.push_back(entry.path());
  }
  for (const fs::path& file : files) fs::remove(file, error);
  fs::remove(folder_of(name), error);
  fs::remove(fresh_record(name), error);
  fs::remove(to_path(journal_file(name)), error);
  fs::remove(record(name), error);
  lock.release_for_good();
}

uint64_t RunStore::size_of(const std::string& name) const {
  uint64_t size = 0;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder_of(name), error)) {
    if (entry.is_regular_file(error)) size += entry.file_size(error);
  }
  return size;
}

std::vector<std::string> RunStore::copies(const std::string& name) const {
  std::vector<std::string> copies;
  std::error_code error;
  fs::directory_iterator entry(folder_of(name), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    if (!is_list(*entry) && entry->is_regular_file(unknown)) {
      copies.push_back(narrow(entry->path()));
    }
  }
  return copies;
}

bool RunStore::may_have_copies(const std::string& name) const {
  std::error_code error;
  fs::directory_iterator entry(folder_of(name), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    if (!is_list(*entry) && (entry->is_regular_file(unknown) || unknown))
      return true;
  }
  return error && error != std::errc::no_such_file_or_directory;
}

bool RunStore::is_known_empty(const std::string& name) const {
  std::error_code error;
  const auto size = fs::file_size(undo_path(name), error);
  const bool no_list =
      error ? error == std::errc::no_such_file_or_directory : size == 0;
  return no_list && !may_have_copies(name);
}

// Uses the time at which the run last wrote its record or its list of copies.
bool RunStore::is_older_than(std::chrono::hours age,
                             const std::string& name) const {
  std::error_code error;
  auto written = fs::last_write_time(record(name), error);
  if (error) written = fs::last_write_time(undo_path(name), error);
  return !error && fs::file_time_type::clock::now() - written > age;
}

bool RunStore::remove_if_free(const Run& run, const std::string& reason,
                              Messages& messages) const {
  RunLock lock;
  if (!take(run.name, lock)) return false;
  messages.remark(run.name, "removing its safe copies because " + reason +
                                " (run of " + run.time + ", " +
                                megabytes(size_of(run.name)) + ")");
  remove(run.name, lock);
  return true;
}

uint64_t RunStore::remove_old(Messages& messages, const Run* known) const {
  std::vector<Run> newest_first = runs(known);
  std::reverse(newest_first.begin(), newest_first.end());
  const uint64_t limit = size_limit(messages);
  uint64_t size = 0;
  for (const Run& run : newest_first) {
    const uint64_t own = size_of(run.name);
    size += own;
    // The last run can always be undone, whatever its size.
    if (&run == newest_first.data()) continue;
    const bool old = is_older_than(kOldest, run.name);
    const bool too_much = size > limit && is_older_than(kYoung, run.name);
    if (!old && !too_much) continue;
    const std::string reason =
        old ? "they are older than 30 days"
            : "all of them take more than " + megabytes(limit);
    if (remove_if_free(run, reason, messages)) size -= own;
  }
  return size > limit ? size : 0;
}

std::string megabytes(uint64_t bytes) {
  const uint64_t tenths = (bytes + kMegabyte / 10 - 1) / (kMegabyte / 10);
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) +
         " MB";
}

}  // namespace zenfo::host
