#include "frame/error_log.h"

#include <cstdio>
#include <initializer_list>

#include "platform/files.h"
#include "text/out_file.h"

namespace zenfo {
namespace {

ErrorLog* installed_log = nullptr;  // see install_error_log

std::string time_stamp(const platform::LocalTime& time) {
  char text[64];
  std::snprintf(text, sizeof text, "%02d/%02d/%02d-%02d:%02d:%02d", time.year,
                time.month, time.day, time.hour, time.minute, time.second);
  return text;
}

}  // namespace

int32_t ErrorLog::SetFile(const char* name) {
  if (name != nullptr) file_name_ = name;
  return 1;
}

int32_t ErrorLog::Write(const char* message, const char* context,
                        const char* module, const char* routine) const {
  if (file_name_.empty()) return -1;
  for (const char* text : {message, context, module, routine}) {
    if (text == nullptr) return -1;
  }
  OutFile file;
  if (!file.open(file_name_.c_str(), platform::OutputMode::kAppend,
                 OutFile::LineEnds::kExpand)) {
    return -1;
  }
  file.write(time_stamp(platform::local_time_now()));
  file.write("\n\n  message  : ");
  file.write(message);
  file.write("\n  context  : ");
  file.write(context);
  file.write("\n  module   : ");
  file.write(module);
  file.write("\n  routine  : ");
  file.write(routine);
  file.write("\n\n");
  return file.close() ? 1 : -1;
}

void install_error_log(ErrorLog* log) { installed_log = log; }

int32_t ReportError(const char* message, const char* context,
                    const char* routine) noexcept {
  if (installed_log == nullptr) return -1;
  try {
    return installed_log->Write(message, context, "Main", routine);
  } catch (...) {
    return -1;
  }
}

void report_runtime_error(const char* routine) noexcept {
  ReportError("Runtime error", "Default error handler", routine);
}

}  // namespace zenfo
