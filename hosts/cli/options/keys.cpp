#include "cli/options/keys.h"

#include <algorithm>

namespace zenfo::host::cli {
namespace {

constexpr Key kKeys[] = {
    {"name", 2, {ZENFO_OPTION_FILE_NAME}},
    {"folder", 3, {ZENFO_OPTION_FOLDER}},
    {"type", 4, {ZENFO_OPTION_TYPE}},
    {"created", 5, {ZENFO_OPTION_ATTRIBUTES}},
    {"accessed", 6, {ZENFO_OPTION_ATTRIBUTES}},
    {"modified", 7, {ZENFO_OPTION_ATTRIBUTES}},
    {"size", 8, {ZENFO_OPTION_ATTRIBUTES}},
    {"attributes", 9, {ZENFO_OPTION_ATTRIBUTES}},
    {"path", kPathOption, {}},
    {"all", 11, {ZENFO_OPTION_FILE_NAME, ZENFO_OPTION_ATTRIBUTES}},
};

}  // namespace

std::string key_names() {
  std::string names;
  for (const Key& key : kKeys) {
    if (!names.empty()) names += ", ";
    names += key.name;
  }
  return names;
}

const Key& find_key(const CommandLine& line, const std::string& option,
                    const std::string& name) {
  for (const Key& key : kKeys) {
    if (name == key.name) return key;
  }
  throw line.wrong(option, "no key '" + name + "' among " + key_names());
}

std::vector<const Key*> find_keys(const CommandLine& line,
                                  const std::string& option,
                                  const std::string& names) {
  std::vector<const Key*> keys;
  for (const std::string& name : parts_of(names)) {
    const Key* key = &find_key(line, option, name);
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      keys.push_back(key);
    }
  }
  return keys;
}

void ask_for(const Key& key, FactOptions& facts) {
  for (const int fact : key.facts) {
    if (fact != 0) facts.ask(fact);
  }
}

}  // namespace zenfo::host::cli
