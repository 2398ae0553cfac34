#include "cli/options/text_options.h"

namespace zenfo::host::cli {

void declare_between(CommandLine& line, SearchOptions& search,
                     const std::string& help) {
  line.two_values("--between", search.between, "FIRST SECOND", help);
}

void declare_how(CommandLine& line, SearchOptions& search) {
  line.flag("--pattern", search.is_pattern, "TEXT is in the pattern language");
  line.flag("-i,--ignore-case", search.ignore_case, "Ignore case");
  line.flag("-w,--word", search.whole_words,
            "Find whole words only: no letter or digit may be\n"
            "next to the match");
  line.value("--start", search.start.text, "TEXT",
             "Find only directly after TEXT");
  line.value("--end", search.end.text, "TEXT",
             "Find only directly before TEXT");
}

void declare_areas(CommandLine& line, SearchOptions& search, AreaTexts& areas) {
  line.flag("--caret", search.caret,
            "In texts and patterns, names such as ^M mean\n"
            "control characters");
  line.value("--classes", search.classes, "FILE",
             "Take character classes for patterns from FILE");
  line.value("--outside", areas.outside, "PATTERN",
             "Find only outside what PATTERN matches");
  line.value("--inside", areas.inside, "PATTERN",
             "Find only inside what PATTERN matches");
}

void settle_areas(const CommandLine& line, const AreaTexts& areas,
                  SearchOptions& search) {
  const bool inside = !areas.inside.empty();
  if (inside && !areas.outside.empty()) {
    throw line.wrong("--inside", "cannot be combined with --outside");
  }
  search.areas.inside = inside;
  search.areas.pattern = inside ? areas.inside : areas.outside;
}

}  // namespace zenfo::host::cli
