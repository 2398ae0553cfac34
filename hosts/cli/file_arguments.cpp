#include "file_arguments.h"

#include <algorithm>

#include "messages.h"
#include "system.h"

namespace zenfo::cli {
namespace {

using system::kSeparator;
using system::PathKind;

constexpr char kAllFiles[] = "*.*";

bool has_wildcard(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

// A specification ends a path at these.
bool is_sayable(std::string_view path) {
  return path.find_first_of(";|") == std::string_view::npos;
}

}  // namespace

PathPattern split_pattern(const std::string& path) {
  const size_t last = path.rfind(kSeparator);
  if (last != std::string::npos) {
    return {path.substr(0, last), path.substr(last + 1), 0};
  }
  const size_t drive = system::drive_length(path);
  PathPattern halves{path.substr(0, drive) + '.', path.substr(drive), 2};
  // "C:.\*.c" cannot lose its point again by cutting in front.
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

FileList::FileList(Session& session, const std::vector<std::string>& arguments,
                   const FileChoice& choice, const FactOptions& facts)
    : session_(session) {
  for (const std::string& argument : arguments) {
    add(system::own_form(argument), choice);
  }
  if (arguments.empty() && choice.here_by_default) {
    append_group(runs_, search_group(".", true, choice.patterns), 2);
  }
  load(facts);
  if (choice.patterns.size() > 1) note_repeats();
}

void FileList::add(const std::string& argument, const FileChoice& choice) {
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
      complain(argument, "is no ordinary file");
      return;
    case PathKind::kNone:
      break;
  }
  if (has_wildcard(split_pattern(argument).pattern)) {
    add_pattern(argument);
  } else {
    complain(argument, facts.reason);
  }
}

void FileList::add_folder(const std::string& folder, const FileChoice& choice) {
  if (choice.folders_need_subfolders && !choice.subfolders) {
    complain(folder, "is a folder");
    return;
  }
  const std::string reason = system::why_not_listed(folder);
  if (!reason.empty()) {
    complain(folder, reason);
    return;
  }
  if (!is_sayable(folder)) {
    complain(folder, "a folder with ';' or '|' in its path cannot be searched");
    return;
  }
  append_group(runs_, search_group(folder, choice.subfolders, choice.patterns),
               0);
}

void FileList::add_pattern(const std::string& argument) {
  const PathPattern halves = split_pattern(argument);
  const system::PathFacts facts = system::look_at(halves.folder + kSeparator);
  if (facts.kind != PathKind::kFolder) {
    complain(argument,
             facts.kind == PathKind::kNone ? facts.reason : "is in no folder");
  } else if (!is_sayable(argument)) {
    complain(argument, "a pattern with ';' or '|' cannot be searched for");
  } else {
    append_group(runs_, search_group(halves.folder, false, {halves.pattern}),
                 halves.added_prefix);
  }
}

// Facts are gathered for the whole list by each call, so only the last one
// asks for them.
void FileList::load(const FactOptions& facts) {
  const bool one_search = runs_.size() == 1 && runs_[0].paths.empty();
  for (const ArgumentRun& run : runs_) {
    stretches_.push_back({count_, run.added_prefix, !run.paths.empty()});
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

std::string_view FileList::path(uint32_t index) {
  std::string_view path = session_.full_name(index);
  path.remove_prefix(std::min(path.size(), stretch_of(index).added_prefix));
  return path;
}

}  // namespace zenfo::cli
