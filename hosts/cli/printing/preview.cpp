#include "cli/printing/preview.h"

#include <string>

#include "shared/text/difference.h"

namespace zenfo::host::cli {

void put_changes(Output& output, std::string_view path, std::string_view before,
                 std::string_view after) {
  for_each_changed_line(before, after,
                        [&](size_t number, char sign, std::string_view line) {
                          output.put_name(path);
                          output.put(':' + std::to_string(number) + ':');
                          output.put(sign);
                          output.put(line);
                          if (!line.ends_with('\n')) output.put('\n');
                        });
}

}  // namespace zenfo::host::cli
