// zenfo dups: finds files that agree in some of their facts.
//
// The library finds files that agree in one key. With several keys it is called
// for each, and files that were together every time form a group.
//
// Tested by tests/cli/dups_test.cpp, posix_files_test.cpp
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/command_line.h"
#include "cli/options/keys.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/session/file_arguments.h"
#include "shared/session/session.h"
#include "shared/system/file_state.h"
#include "shared/system/stop.h"
#include "shared/text/json_text.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kDupsHelp = {
    "zenfo dups [OPTIONS] [PATH...]",
    "Lists files that are the same by a key, in groups with an empty line\n"
    "between. The contents are not compared.\n"
    "\n"
    "A PATH is a file, a folder, or a pattern for the files of one folder, as\n"
    "'src/*.c'. Without a PATH, the files of the current folder and all below "
    "it\n"
    "are compared. Names that begin with a dot are skipped unless given in\n"
    "full. A file that can be reached by several paths is listed once.",
    "Keys: name, folder, type, created, accessed, modified, size, attributes,\n"
    "path, and all: name, size, modified and attributes together. Case is\n"
    "ignored. By a time, equal files may be missed among files written within\n"
    "minutes of each other.\n"
    "\n"
    "With --null a group ends with one more zero byte. The exit status is 0\n"
    "when there are such files, 1 when there are none, and 2 after an error.\n"
    "\n"
    "Examples:\n"
    "  zenfo dups -r photos                 copies with their times kept\n"
    "  zenfo dups -r photos --by size       of the same number of bytes\n"
    "  zenfo dups -r src lib --by name,size --json\n"
    "  zenfo dups --from-list all.list --by name\n"};

struct DupsOptions {
  std::vector<std::string> paths;
  FileChoice choice;
  ResultForm form;
  std::vector<const Key*> keys;
};

// False when the user only asked for help.
bool parse(const Arguments& arguments, DupsOptions& options, Output& output) {
  CommandLine line("dups", kDupsHelp);
  std::string keys = "all";
  line.arguments(options.paths);
  line.text("--by", keys, "KEYS",
            "Compare by all of these keys, such as\n'name,size'; the default "
            "is 'all'");
  add_choice_options(line, options.choice);
  add_list_option(line, options.choice);
  add_form_options(line, options.form);
  if (!line.parse(arguments, output)) return false;
  check_form(line, options.form);
  check_choice(line, options.choice);
  check_list_option(line, options.choice, options.paths);
  options.keys = find_keys(line, "--by", keys);
  return true;
}

// The numbers of a file's groups, one for each key so far.
using Places = std::unordered_map<std::string, std::vector<uint32_t>>;
using Group = std::vector<std::string>;

class Groups {
 public:
  explicit Groups(Session& session) : session_(session) {}

  void divide_by(const Key& key) {
    session_.select_duplicates(key.option);
    const uint32_t count = session_.count();
    uint32_t group = 0;
    for (uint32_t i = 0; i < count; ++i) {
      // The first file of each group, and a file without duplicates, is not
      // selected.
      const bool first = !session_.selected(i);
      const bool last = i + 1 == count || !session_.selected(i + 1);
      group += first;
      if (!(first && last)) place(i, group);
    }
    ++keys_;
  }

  // The groups sorted by the first key, then the next; their files by path.
  std::vector<Group> take() {
    session_.sort(kPathOption, false);
    std::map<std::vector<uint32_t>, Group> by_place;
    const uint32_t count = session_.count();
    for (uint32_t i = 0; i < count; ++i) {
      const auto place = places_.extract(std::string(session_.full_name(i)));
      if (place.empty() || place.mapped().size() < keys_) continue;
      by_place[place.mapped()].push_back(place.key());
    }
    std::vector<Group> groups;
    for (auto& [place, files] : by_place) {
      keep_one_path_each(files);
      if (files.size() > 1) groups.push_back(std::move(files));
    }
    return groups;
  }

 private:
  // Only a file that was in a group by all previous keys is placed.
  void place(uint32_t index, uint32_t group) {
    const std::string path(session_.full_name(index));
    const auto found = keys_ == 0 ? places_.try_emplace(path).first  //
                                  : places_.find(path);
    if (found == places_.end() || found->second.size() != keys_) return;
    found->second.push_back(group);
  }

  static void keep_one_path_each(Group& files) {
    std::unordered_set<std::string> seen;
    std::erase_if(files, [&](const std::string& file) {
      const auto state = state_of(file);
      return state && !seen.insert(state->identity).second;
    });
  }

  Session& session_;
  Places places_;
  size_t keys_ = 0;
};

std::string json_group(const Group& paths) {
  std::string group = "{\"paths\":[";
  for (const std::string& path : paths) {
    if (&path != &paths.front()) group += ',';
    group += json_text(path);
  }
  return group + "]}";
}

class GroupWriter {
 public:
  GroupWriter(const ResultForm& form, Output& output)
      : form_(form), output_(output) {}

  void write(const Group& paths) {
    if (form_.json) {
      output_.put_json(json_group(paths) + '\n');
      return;
    }
    if (!form_.null && !first_) output_.put('\n');
    for (const std::string& path : paths) {
      output_.put_name(path);
      output_.put(form_.null ? '\0' : '\n');
    }
    if (form_.null) output_.put('\0');
    first_ = false;
  }

 private:
  const ResultForm& form_;
  Output& output_;
  bool first_ = true;
};

}  // namespace

int run_dups(const Arguments& arguments) {
  DupsOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  FactOptions facts;
  for (const Key* key : options.keys) ask_for(*key, facts);
  Progress progress;
  Session session(terminal_messages(), progress);
  FileList files(session);
  files.fill(options.paths, options.choice, facts);
  leave_out_incomplete(session, ZENFO_LIST_RUN_FILES, files);
  Groups groups(session);
  for (const Key* key : options.keys) groups.divide_by(*key);
  GroupWriter writer(options.form, output);
  bool found = false;
  for (Group& group : groups.take()) {
    if (system::stop_status() != 0) throw Stopped{};
    for (std::string& path : group) path = files.shown(path);
    writer.write(group);
    found = true;
  }
  session.complain_about_errors();
  return found ? kFound : kNothingFound;
}

}  // namespace zenfo::host::cli
