#include "undo/safety.h"

#include "platform/environment.h"

namespace zenfo {

Safety parse_safety(std::string_view words) {
  Safety safety;
  while (!words.empty()) {
    const size_t end = words.find(',');
    const std::string_view word = words.substr(0, end);
    if (word == "sync") safety.sync = true;
    if (word == "beside") safety.beside = true;
    if (word == "nolinks") safety.no_links = true;
    if (word == "skip") safety.skip = true;
    words.remove_prefix(end == std::string_view::npos ? words.size() : end + 1);
  }
  return safety;
}

Safety chosen_safety() {
  return parse_safety(platform::environment("ZENFO_SAFETY"));
}

}  // namespace zenfo
