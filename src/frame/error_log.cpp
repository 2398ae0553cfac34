#include "frame/error_log.h"

#include <initializer_list>

#include "platform/files.h"
#include "text/out_file.h"
#include "text/time_stamp.h"

namespace zenfo {
namespace {

ErrorLog* installed_log = nullptr;  // see install_error_log

}  // namespace

int32_t ErrorLog::set_file(const char* name) {
  if (name != nullptr) file_name_ = name;
  return 1;
}

int32_t ErrorLog::write(const char* message, const char* context,
                        const char* module, const char* routine) const {
  if (file_name_.empty()) return -1;
  for (const char* text : {message, context, module, routine}) {
    if (text == nullptr) return -1;
  }
  // Complete before the file is opened, so that lack of memory cannot leave
  // half a record.
  std::string record = time_stamp(platform::local_time_now());
  record.append("\n\n  message  : ").append(message);
  record.append("\n  context  : ").append(context);
  record.append("\n  module   : ").append(module);
  record.append("\n  routine  : ").append(routine);
  record.append("\n\n");
  OutFile file;
  if (!file.open(file_name_.c_str(), platform::OutputMode::kAppend,
                 OutFile::LineEnds::kExpand)) {
    return -1;
  }
  file.write(record);
  return file.close() ? 1 : -1;
}

void install_error_log(ErrorLog* log) { installed_log = log; }

int32_t report_error(const char* message, const char* context,
                     const char* routine) noexcept {
  if (installed_log == nullptr) return -1;
  try {
    return installed_log->write(message, context, "Main", routine);
  } catch (...) {
    return -1;
  }
}

void report_runtime_error(const char* routine) noexcept {
  report_error("Runtime error", "Default error handler", routine);
}

}  // namespace zenfo
