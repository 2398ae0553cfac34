#include "shared/runs/run_journal.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "shared/system/paths.h"
#include "shared/system/run_lock.h"

namespace zenfo::host {
namespace {

// Takes the text up to the next tab, and the tab, off the line; without a tab
// it takes the whole line.
std::string_view take_field(std::string_view& line) {
  const size_t tab = std::min(line.find('\t'), line.size());
  const std::string_view field = line.substr(0, tab);
  line.remove_prefix(std::min(tab + 1, line.size()));
  return field;
}

template <class Number>
bool take_number(std::string_view& line, Number& number) {
  const std::string_view field = take_field(line);
  const char* end = field.data() + field.size();
  const auto [rest, error] = std::from_chars(field.data(), end, number);
  return !field.empty() && rest == end && error == std::errc();
}

}  // namespace

void RunJournal::open(const std::string& file) {
  path_ = file;
  file_.reset(open_file(file, "ab"));
  put("boot\t" + boot_name());
}

void RunJournal::begin(const std::string& path) { put("begin\t" + path); }

void RunJournal::done(const std::string& path, const FileState& state) {
  put("done\t" + std::to_string(state.size) + '\t' +
      std::to_string(state.modified) + '\t' + path);
}

void RunJournal::leave(const std::string& path) { put("leave\t" + path); }

void RunJournal::intend(const std::string& path) { put("intend\t" + path); }

void RunJournal::begin_restoring() { put("undo"); }

void RunJournal::restore(const std::string& path) { put("restore\t" + path); }

void RunJournal::remove() {
  if (path_.empty()) return;
  file_.reset();
  std::error_code ignored;
  std::filesystem::remove(to_path(path_), ignored);
}

void RunJournal::put(const std::string& line) {
  if (file_ == nullptr) return;
  const std::string text = line + '\n';
  if (std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size() ||
      std::fflush(file_.get()) != 0) {
    remove();
  }
}

bool JournalEntry::was_left_like(const FileState& state) const {
  return std::find(states.begin(), states.end(),
                   std::make_pair(state.size, state.modified)) != states.end();
}

JournalReader::JournalReader(const std::string& file) {
  std::ifstream lines(to_path(file), std::ios::binary);
  std::string line;
  // A line without a line feed was not written completely.
  while (std::getline(lines, line) && !lines.eof()) take(line);
}

bool JournalReader::any_begun() const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [](const auto& entry) { return entry.second.begun; });
}

std::vector<std::string> JournalReader::paths() const {
  std::vector<std::string> paths;
  for (const auto& [path, entry] : entries_) paths.push_back(path);
  return paths;
}

const JournalEntry& JournalReader::entry(const std::string& path) const {
  static const JournalEntry kNone;
  const auto known = entries_.find(path);
  return known == entries_.end() ? kNone : known->second;
}

void JournalReader::take(const std::string& text) {
  std::string_view line = text;
  const std::string_view word = take_field(line);
  uint64_t size = 0;
  int64_t modified = 0;
  if (word == "boot") {
    exists_ = true;
    complete_ &= is_this_boot(line);
  } else if (word == "begin") {
    entries_[std::string(line)].begun = true;
  } else if (word == "leave") {
    entries_[std::string(line)].begun = false;
  } else if (word == "intend") {
    entries_[std::string(line)].intended = true;
  } else if (word == "restore") {
    being_restored_.emplace(line);
    entries_[std::string(line)].restored = true;
  } else if (word == "undo") {
    being_restored_.clear();
  } else if (word == "done" && take_number(line, size) &&
             take_number(line, modified)) {
    entries_[std::string(line)].states.emplace_back(size, modified);
  }
}

}  // namespace zenfo::host
