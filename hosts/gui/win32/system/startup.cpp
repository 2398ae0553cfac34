#include "gui/win32/system/startup.h"

#include <cstdlib>

#include "gui/win32/base/wide.h"
#include "shared/system/file_state.h"

// After windows.h.
#include <shellapi.h>

namespace zenfo::host::gui::win32 {
namespace {

std::vector<std::string> all_arguments() {
  int count = 0;
  wchar_t** const all = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(narrow(all[i]));
  LocalFree(all);
  return arguments;
}

void take_theme(Startup& startup, const std::string& name) {
  startup.theme_given = true;
  startup.theme = name == "dark" ? gui::Theme::kDark : gui::Theme::kLight;
}

// Takes an option of tests with its value; false if it is another one.
bool take_value(Startup& startup, const std::string& name,
                const std::string& value) {
  if (name == "--shot") {
    startup.shot = value;
  } else if (name == "--page") {
    startup.bytes = value == "bytes";
  } else if (name == "--settings") {
    startup.settings = value;
  } else if (name == "--width") {
    startup.width = std::atoi(value.c_str());
  } else if (name == "--height") {
    startup.height = std::atoi(value.c_str());
  } else if (name == "--dpi") {
    startup.dpi = static_cast<unsigned>(std::atoi(value.c_str()));
  } else if (name == "--theme") {
    take_theme(startup, value);
  } else {
    return false;
  }
  return true;
}

}  // namespace

Startup read_startup() {
  Startup startup;
  const std::vector<std::string> all = all_arguments();
  for (size_t i = 0; i < all.size(); ++i) {
    const std::string& value = i + 1 < all.size() ? all[i + 1] : all[i];
    if (all[i] == "--automation") {
      startup.automation = true;
    } else if (i + 1 < all.size() && take_value(startup, all[i], value)) {
      ++i;
    } else {
      startup.arguments.push_back(all[i]);
    }
  }
  startup.options = read_program_options(startup.arguments, &startup.fault);
  startup.options.query = with_whole_paths(startup.options.query);
  return startup;
}

// A path is the only argument that names a file of the present folder.
std::vector<std::string> whole_arguments(const Startup& startup) {
  std::vector<std::string> arguments = startup.arguments;
  for (std::string& argument : arguments) {
    for (const std::string& folder : startup.options.query.folders) {
      if (complete_path(argument) == folder) argument = folder;
    }
  }
  return arguments;
}

Query with_whole_paths(Query query) {
  for (std::string& folder : query.folders) folder = complete_path(folder);
  return query;
}

}  // namespace zenfo::host::gui::win32
