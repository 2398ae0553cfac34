#include "replace/case_engine.h"

#include <algorithm>
#include <string>

#include "replace/rewriter.h"

namespace zenfo {
namespace {

char changed(char c, bool upper) {
  if (upper && c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
  if (!upper && c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return c;
}

}  // namespace

int32_t change_case(PatternContext& context, const Destination& destination,
                    bool upper) {
  if (destination.path == nullptr || *destination.path == '\0' ||
      context.text_length() == 0)
    return -1;
  std::string copy;
  return Rewriter(context, {context.text(), context.text_length()})
      .write(destination,
             [&](OutFile& file, const MatchRecord&, std::string_view matched) {
               copy = matched;
               const auto end = std::find(copy.begin(), copy.end(), '\0');
               std::transform(copy.begin(), end, copy.begin(),
                              [&](char c) { return changed(c, upper); });
               file.write(copy);
             });
}

}  // namespace zenfo
