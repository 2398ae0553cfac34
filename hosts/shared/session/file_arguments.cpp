#include "shared/session/file_arguments.h"

#include <algorithm>

#include "shared/frame/failure.h"
#include "shared/system/folder_check.h"
#include "shared/system/stop.h"
#include "shared/system/stream_copy.h"
#include "shared/system/system.h"
#include "shared/system/temporary_folder.h"
#include "shared/text/name_filter.h"
#include "shared/text/text_file.h"

namespace zenfo::host {
namespace {

using system::kSeparator;
using system::PathKind;

constexpr char kAllFiles[] = "*.*";

// Put before paths without a folder.
constexpr char kHere[] = {'.', kSeparator, '\0'};
constexpr size_t kHereLength = sizeof(kHere) - 1;

bool has_wildcard(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

// Why a line of a list file is left out; empty when it is not.
std::string why_left_out(Session& session, uint32_t index,
                         const std::string& path) {
  const system::PathFacts facts = system::look_at(path);
  if (facts.kind == PathKind::kNone) return facts.reason;
  return session.trashed(index) ? "lies in a recycle bin" : "";
}

// The library's search skips these folders.
bool is_recycle_bin(std::string_view name) {
  const auto is = [&](std::string_view bin) {
    return std::equal(name.begin(), name.end(), bin.begin(), bin.end(),
                      [](char a, char b) { return (a | 0x20) == (b | 0x20); });
  };
  return is("recycled") || is("recycler");
}

}  // namespace

PathPattern split_pattern(const std::string& path) {
  const size_t last = path.rfind(kSeparator);
  if (last != std::string::npos) {
    return {path.substr(0, last), path.substr(last + 1), 0};
  }
  const size_t drive = system::drive_length(path);
  PathPattern halves{path.substr(0, drive) + '.', path.substr(drive),
                     kHereLength};
  // "C:.\*.c": the added "." is not at the start, so it cannot be cut off
  // again.
  if (drive > 0) halves.added_prefix = 0;
  return halves;
}

std::string search_group(std::string folder, bool subfolders,
                         const std::vector<std::string>& patterns) {
  std::string group(1, subfolders ? '1' : '0');
  while (!folder.empty() && folder.back() == kSeparator) folder.pop_back();
  group += folder;
  group += kSeparator;
  if (patterns.empty()) return group + kAllFiles;
  for (const std::string& pattern : patterns) {
    group += pattern;
    group += ';';
  }
  group.pop_back();
  return group;
}

void append_group(std::vector<ArgumentRun>& runs, const std::string& group,
                  size_t added_prefix) {
  if (runs.empty() || runs.back().specification.empty() ||
      runs.back().added_prefix != added_prefix) {
    runs.push_back({group, {}, added_prefix});
    return;
  }
  runs.back().specification += '|' + group;
}

void append_path(std::vector<ArgumentRun>& runs, const std::string& path) {
  if (runs.empty() || !runs.back().specification.empty()) runs.push_back({});
  runs.back().paths.push_back(path);
}

void FileList::fill(const std::vector<std::string>& arguments,
                    const FileChoice& choice, const FactOptions& facts) {
  if (!choice.list_file.empty()) {
    load_list(choice.list_file, facts);
    return;
  }
  for (const std::string& argument : arguments) {
    add(system::own_form(argument), choice);
  }
  if (arguments.empty() && choice.here_by_default) add_here(choice);
  load(facts);
  complain_about_unlisted();
  note_written_prefixes();
  if (choice.patterns.size() > 1) note_repeats();
}

void FileList::add(const std::string& argument, const FileChoice& choice) {
  if (choice.takes_streams && argument == kStandardInput) {
    add_stream(argument);
    return;
  }
  session_.expect_paths_of(argument.size());
  const system::PathFacts facts = system::look_at(argument);
  switch (facts.kind) {
    case PathKind::kFile:
      append_path(runs_, argument);
      return;
    case PathKind::kFolder:
      add_folder(argument, choice);
      return;
    case PathKind::kOther:
      if (choice.takes_streams) {
        add_stream(argument);
      } else {
        session_.messages().complain(argument, "is not an ordinary file");
      }
      return;
    case PathKind::kNone:
      break;
  }
  if (has_wildcard(split_pattern(argument).pattern)) {
    add_pattern(argument);
  } else {
    session_.messages().complain(argument, facts.reason);
  }
}

void FileList::add_folder(const std::string& folder, const FileChoice& choice) {
  if (choice.folders_need_subfolders && !choice.subfolders) {
    session_.messages().complain(folder, "is a folder");
    return;
  }
  const std::string reason = system::why_not_listed(folder);
  if (!reason.empty()) {
    session_.messages().complain(folder, reason);
    return;
  }
  if (!is_sayable(folder)) {
    session_.messages().complain(
        folder, "a folder with ';' or '|' in its path cannot be searched");
    return;
  }
  append_group(runs_, search_group(folder, choice.subfolders, choice.patterns),
               0);
  if (choice.subfolders) check_below(folder, choice, 0);
}

void FileList::add_here(const FileChoice& choice) {
  append_group(runs_, search_group(".", true, choice.patterns), kHereLength);
  check_below(".", choice, kHereLength);
}

void FileList::check_below(std::string folder, const FileChoice& choice,
                           size_t added_prefix) {
  while (folder.ends_with(kSeparator)) folder.pop_back();
  const NameFilter wanted{{}, {}, choice.excluded_folders};
  if (!wanted.takes(folder + kSeparator, false)) return;
  checks_.push_back(std::async([=, patterns = choice.excluded_folders] {
    std::vector<UnlistedFolder> unlisted =
        find_unlisted(folder, [&](std::string_view name) {
          return !is_recycle_bin(name) && !any_matches(patterns, name);
        });
    for (UnlistedFolder& found : unlisted) {
      if (found.path != folder) found.path.erase(0, added_prefix);
    }
    return unlisted;
  }));
}

void FileList::complain_about_unlisted() {
  for (auto& check : checks_) {
    std::vector<UnlistedFolder> unlisted = check.get();
    std::sort(unlisted.begin(), unlisted.end(),
              [](const auto& a, const auto& b) { return a.path < b.path; });
    for (const auto& [path, reason] : unlisted)
      session_.messages().complain(path, reason);
  }
}

void FileList::add_stream(const std::string& argument) {
  const bool standard = argument == kStandardInput;
  const std::string shown_name = standard ? "(standard input)" : argument;
  const std::string copy = temporary_folder::make_file();
  const std::string reason =
      standard ? copy_standard_input(copy) : copy_stream(argument, copy);
  if (system::stop_status() != 0) throw Stopped{};
  if (!reason.empty()) {
    session_.messages().complain(shown_name, reason);
    return;
  }
  session_.expect_paths_of(copy.size());
  append_path(runs_, copy);
  streams_.emplace(copy, shown_name);
}

void FileList::add_pattern(const std::string& argument) {
  const PathPattern halves = split_pattern(argument);
  const system::PathFacts facts = system::look_at(halves.folder + kSeparator);
  if (facts.kind != PathKind::kFolder) {
    session_.messages().complain(argument, facts.kind == PathKind::kNone
                                               ? facts.reason
                                               : "is in no folder");
  } else if (const std::string reason =
                 system::why_not_listed(halves.folder + kSeparator);
             !reason.empty()) {
    session_.messages().complain(argument, reason);
  } else if (!is_sayable(argument)) {
    session_.messages().complain(
        argument, "a pattern with ';' or '|' cannot be searched for");
  } else {
    append_group(runs_, search_group(halves.folder, false, {halves.pattern}),
                 halves.added_prefix);
  }
}

// Each call gathers facts for the whole list, so only the last one asks for
// them.
void FileList::load(const FactOptions& facts) {
  const bool one_search = runs_.size() == 1 && runs_[0].paths.empty();
  for (const ArgumentRun& run : runs_) {
    stretches_.push_back({count_, !run.paths.empty()});
    prefix_added_ |= run.added_prefix > 0;
    if (run.paths.empty()) {
      count_ += session_.find_files(run.specification,
                                    one_search ? facts : FactOptions{});
    } else {
      session_.append_paths(run.paths);
      count_ += static_cast<uint32_t>(run.paths.size());
    }
  }
  if (!one_search && facts.any()) session_.gather_facts(facts);
}

// Notes which paths begin with "./" because the user wrote it. That is
// ambiguous only when other paths got an added "./".
void FileList::note_written_prefixes() {
  if (!prefix_added_) return;
  for (size_t run = 0; run < runs_.size(); ++run) {
    if (runs_[run].added_prefix > 0) continue;
    const uint32_t end =
        run + 1 < runs_.size() ? stretches_[run + 1].first : count_;
    for (uint32_t i = stretches_[run].first; i < end; ++i) {
      const std::string_view path = session_.full_name(i);
      if (path.starts_with(kHere)) written_prefixes_.emplace(path);
    }
  }
}

void FileList::load_list(const std::string& file, const FactOptions& facts) {
  session_.expect_paths_of(longest_list_line(file));
  session_.load_list(file, facts);
  const uint32_t count = session_.count();
  for (uint32_t i = 0; i < count; ++i) {
    if (session_.complete(i)) continue;
    const std::string path(session_.full_name(i));
    const std::string reason = why_left_out(session_, i, path);
    if (reason.empty()) continue;
    session_.messages().complain(path, reason);
    session_.select(i, true);
  }
  session_.remove_selected(ZENFO_LIST_RUN_FILES);
  count_ = session_.count();
  stretches_.push_back({0, true});
}

void FileList::note_repeats() {
  std::unordered_set<std::string> seen;
  for (uint32_t i = 0; i < count_; ++i) {
    if (!seen.emplace(session_.full_name(i)).second) repeats_.insert(i);
  }
}

const FileList::Stretch& FileList::stretch_of(uint32_t index) const {
  return *std::prev(std::upper_bound(
      stretches_.begin(), stretches_.end(), index,
      [](uint32_t i, const Stretch& s) { return i < s.first; }));
}

void FileList::drop_repeats() {
  for (const uint32_t index : repeats_) session_.select(index, true);
  if (!repeats_.empty()) session_.remove_selected(ZENFO_LIST_RUN_FILES);
  count_ -= static_cast<uint32_t>(repeats_.size());
  repeats_.clear();
}

std::string_view FileList::shown(std::string_view path) const {
  const auto stream = streams_.find(path);
  if (stream != streams_.end()) return stream->second;
  const bool added = prefix_added_ && path.starts_with(kHere) &&
                     !written_prefixes_.contains(path);
  return added ? path.substr(kHereLength) : path;
}

void leave_out_incomplete(Session& session, int32_t list,
                          const FileList& files) {
  const uint32_t count = session.count(list);
  for (uint32_t i = 0; i < count; ++i) {
    if (session.complete(list, i)) continue;
    session.messages().complain(files.shown(session.full_name(list, i)),
                                "its facts cannot be read");
    session.select(list, i, true);
  }
  session.remove_selected(list);
}

}  // namespace zenfo::host
