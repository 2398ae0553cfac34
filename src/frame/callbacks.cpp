#include "frame/callbacks.h"

#include <string>

#include "frame/guard.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

// Process-wide: see the header.
CallbackTable callbacks{};
platform::WideChar* shared_wide_buffer = nullptr;

// Converts into the shared buffer; false when there is nothing to send.
bool put_wide(const char* text) {
  if (is_empty(text) || shared_wide_buffer == nullptr) {
    return false;
  }
  platform::to_wide(text, shared_wide_buffer);
  return true;
}

// A callback that is running. What the host does inside it may lead to the same
// callback again, and so on without end: it is called from inside itself once,
// not deeper.
class Running {
 public:
  explicit Running(int& depth) : depth_(depth) { ++depth_; }
  ~Running() { --depth_; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  bool too_deep() const { return depth_ > 2; }

 private:
  int& depth_;
};

// Process-wide, like the slots.
int interrupt_depth = 0;
int report_depth = 0;
int status_depth = 0;

std::string_view cut_to_buffer(std::string_view text) {
  return text.substr(0, platform::kWideBufferLength - 1);
}

}  // namespace

CallbackTable& host_callbacks() { return callbacks; }

void allocate_shared_wide_buffer() {
  free_shared_wide_buffer();
  shared_wide_buffer = platform::allocate_wide_buffer();
}

void free_shared_wide_buffer() {
  platform::free_wide_buffer(shared_wide_buffer);
  shared_wide_buffer = nullptr;
}

int32_t cb_lng(ZenfoInterruptCallback callback) {
  if (callback == nullptr) return 0;
  return caught("cb_lng", 0, [&] { return callback(); });
}

int32_t cb_lng_str(ZenfoTextCallback callback, const char* text) {
  if (callback == nullptr) return -1;
  return caught("cb_lng_str", -1, [&]() -> int32_t {
    return put_wide(text) ? callback(shared_wide_buffer) : -1;
  });
}

int32_t cb_lng_str_lng(ZenfoOptionCallback callback, const char* text,
                       int32_t number) {
  if (callback == nullptr) return -1;
  return caught("cb_lng_str_lng", -1, [&]() -> int32_t {
    return put_wide(text) ? callback(shared_wide_buffer, number) : -1;
  });
}

int32_t cb_lng_lng(int32_t(ZENFO_CALL* callback)(int32_t), int32_t number) {
  if (callback == nullptr) return 0;
  return caught("cb_lng_lng", 0, [&] { return callback(number); });
}

int32_t cb_lng_report(ZenfoReportCallback callback, ProgressRecord* record) {
  if (callback == nullptr) return 0;
  return caught("cb_lng_report", 0, [&] { return callback(record); });
}

int32_t interr(void* /*argument*/) {
  if (callbacks.interrupt == nullptr) return 0;
  const Running running(interrupt_depth);
  if (running.too_deep()) return 0;
  return cb_lng(callbacks.interrupt) != 0 ? 1 : 0;
}

int32_t report(ProgressRecord* record) {
  if (callbacks.report == nullptr || record == nullptr) return 0;
  const Running running(report_depth);
  if (running.too_deep()) return 0;
  cb_lng_report(callbacks.report, record);
  return 1;
}

void send_status(std::string_view text) {
  if (callbacks.status == nullptr) return;
  const Running running(status_depth);
  if (running.too_deep()) return;
  cb_lng_str(callbacks.status, std::string(cut_to_buffer(text)).c_str());
}

void send_status(std::string_view text, std::string_view path) {
  if (callbacks.status == nullptr) return;
  const Running running(status_depth);
  if (running.too_deep()) return;
  std::string whole;
  whole.reserve(text.size() + 1 + path.size());
  whole += text;
  whole += ' ';
  whole += path;
  whole.resize(cut_to_buffer(whole).size());
  cb_lng_str(callbacks.status, whole.c_str());
}

bool host_listens() {
  return callbacks.interrupt != nullptr || callbacks.report != nullptr ||
         callbacks.status != nullptr;
}

bool host_may_act() {
  return host_listens() || callbacks.option_question != nullptr;
}

int32_t ask_about_file(std::string_view full_name) {
  const std::string name(cut_to_buffer(full_name));
  return cb_lng_str(callbacks.file_question, name.c_str());
}

int32_t ask_option(std::string_view path, int32_t number) {
  const std::string shown(cut_to_buffer(path));
  return cb_lng_str_lng(callbacks.option_question, shown.c_str(), number);
}

}  // namespace zenfo
