#include "cli/terminal/progress.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>

#include "cli/system/terminal.h"
#include "cli/terminal/visible.h"

namespace zenfo::host::cli {
namespace {

constexpr auto kFirstDrawing = std::chrono::milliseconds(300);
constexpr auto kBetweenDrawings = std::chrono::milliseconds(100);
constexpr size_t kBarWidth = 24;

// For the terminal: messages may come from other threads.
std::mutex drawing;
Progress* drawn_bar = nullptr;  // the one on the terminal

void append_utf8(std::string& text, uint32_t point) {
  auto add = [&](uint32_t byte) { text += static_cast<char>(byte); };
  if (point < 0x80) {
    add(point);
    return;
  }
  if (point < 0x800) {
    add(0xC0 | point >> 6);
  } else {
    if (point < 0x10000) {
      add(0xE0 | point >> 12);
    } else {
      add(0xF0 | point >> 18);
      add(0x80 | (point >> 12 & 0x3F));
    }
    add(0x80 | (point >> 6 & 0x3F));
  }
  add(0x80 | (point & 0x3F));
}

bool is_first_half(uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool is_second_half(uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Cuts at the start of a character.
void cut(std::string& text, size_t size) {
  if (text.size() <= size) return;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) {
    --size;
  }
  text.resize(size);
}

}  // namespace

std::string utf8_of(const ZenfoWideChar* text) {
  std::string bytes;
  while (*text != 0) {
    const uint32_t unit = static_cast<uint16_t>(*text++);
    const uint32_t next = static_cast<uint16_t>(*text);
    if (is_first_half(unit) && is_second_half(next)) {
      append_utf8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++text;
    } else if (is_first_half(unit) || is_second_half(unit)) {
      bytes += '?';
    } else {
      append_utf8(bytes, unit);
    }
  }
  return bytes;
}

std::string progress_line(const std::string& status, int percent,
                          size_t columns) {
  percent = std::clamp(percent, 0, 100);
  const size_t full = kBarWidth * static_cast<size_t>(percent) / 100;
  const std::string number = std::to_string(percent);
  std::string line =
      "[" + std::string(full, '#') + std::string(kBarWidth - full, ' ') + "] " +
      std::string(3 - number.size(), ' ') + number + "% " + status;
  cut(line, columns);
  return line;
}

int run_percent(uint32_t done, uint32_t files, bool loading, int percent) {
  constexpr int kLoading = 30;  // of the work on a file, in percent
  percent = std::clamp(percent, 0, 100);
  const int of_file = loading ? kLoading * percent / 100
                              : kLoading + (100 - kLoading) * percent / 100;
  const uint64_t hundredths = uint64_t{done} * 100 + of_file;
  return static_cast<int>(std::min<uint64_t>(hundredths / files, 100));
}

std::unique_lock<std::mutex> erase_progress() {
  std::unique_lock lock(drawing);
  if (drawn_bar != nullptr) drawn_bar->erase_drawn();
  return lock;
}

Progress::Progress()
    : wanted_(terminal::is_terminal(terminal::Stream::kErrors)),
      next_drawing_(Clock::now() + kFirstDrawing) {}

void Progress::show_status(const ZenfoWideChar* text) {
  if (counting_) return;
  status_ = visible_name(utf8_of(text));
  loading_ = status_.starts_with("Now loading");
}

void Progress::begin_run(uint32_t files, Count files_done) {
  files_ = files;
  files_done_ = std::move(files_done);
  reached_ = 0;
}

int Progress::percent_of(const ProgressRecord& step) {
  if (files_ == 0) return step.percent;
  // The library reports the progress of that counting, too.
  counting_ = true;
  const uint32_t done = files_done_();
  counting_ = false;
  reached_ =
      std::max(reached_, run_percent(done, files_, loading_, step.percent));
  return reached_;
}

void Progress::show_step(const ProgressRecord& step) {
  const auto now = Clock::now();
  if (now < next_drawing_ || counting_) return;
  next_drawing_ = now + kBetweenDrawings;
  const std::string line = progress_line(status_, percent_of(step),
                                         terminal::terminal_columns() - 1);
  const std::lock_guard lock(drawing);
  const size_t blanks = drawn_ > line.size() ? drawn_ - line.size() : 0;
  terminal::write(terminal::Stream::kErrors,
                  '\r' + line + std::string(blanks, ' '));
  drawn_ = std::max(drawn_, line.size());
  drawn_bar = this;
}

void Progress::erase() {
  const std::lock_guard lock(drawing);
  erase_drawn();
}

void Progress::erase_drawn() {
  if (drawn_ == 0) return;
  terminal::write(terminal::Stream::kErrors,
                  '\r' + std::string(drawn_, ' ') + '\r');
  drawn_ = 0;
  drawn_bar = nullptr;
}

}  // namespace zenfo::host::cli
