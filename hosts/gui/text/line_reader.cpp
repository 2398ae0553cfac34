#include "gui/text/line_reader.h"

#include <optional>
#include <utility>

namespace zenfo::host::gui {

LineReader::LineReader(Notice notice)
    : notice_(std::move(notice)), thread_([this] { run(); }) {}

LineReader::~LineReader() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    ++wish_;
  }
  wanted_.notify_one();
  thread_.join();
}

void LineReader::want(std::vector<LineWish> wishes) {
  {
    const std::lock_guard lock(mutex_);
    wishes_ = std::move(wishes);
    pending_ = true;
    ++wish_;
  }
  wanted_.notify_one();
}

std::vector<FoundLine> LineReader::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(found_, {});
}

void LineReader::run() {
  std::vector<LineWish> wishes;
  uint64_t wish = 0;
  while (wait(wishes, wish)) {
    fulfil(wishes, wish);
    // Others may want to delete it.
    file_.close();
    open_path_.clear();
  }
}

// False at the end.
bool LineReader::wait(std::vector<LineWish>& wishes, uint64_t& wish) {
  std::unique_lock lock(mutex_);
  wanted_.wait(lock, [&] { return ended_ || pending_; });
  wishes = std::exchange(wishes_, {});
  wish = wish_;
  pending_ = false;
  return !ended_;
}

void LineReader::fulfil(const std::vector<LineWish>& wishes, uint64_t wish) {
  for (const LineWish& wanted : wishes) {
    if (is_old(wish)) return;
    FoundLine line = read(wanted);
    if (line.read) {
      const std::optional<uint64_t> number =
          marks_of(wanted.path).number_at(file_, wanted.match.offset, [&] {
            return is_old(wish);
          });
      if (is_old(wish)) return;
      line.number = number.value_or(0);
    }
    give(std::move(line));
  }
}

FoundLine LineReader::read(const LineWish& wish) {
  if (open_path_ != wish.path) {
    open_path_ = file_.open(wish.path) ? wish.path : "";
  }
  FoundLine line;
  line.key = wish.key;
  line.read =
      !open_path_.empty() && read_match_line(file_, wish.match, line.line);
  return line;
}

LineMarks& LineReader::marks_of(const std::string& path) {
  const FileFacts facts = facts_of(path).value_or(FileFacts{});
  for (auto known = known_.begin(); known != known_.end(); ++known) {
    if (known->path != path) continue;
    known_.splice(known_.begin(), known_, known);
    if (known->facts != facts) *known = {path, facts, {}};
    return known->marks;
  }
  known_.push_front({path, facts, {}});
  if (known_.size() > kKnownFiles) known_.pop_back();
  return known_.front().marks;
}

void LineReader::give(FoundLine line) {
  bool first = false;
  {
    const std::lock_guard lock(mutex_);
    first = found_.empty();
    found_.push_back(std::move(line));
  }
  if (first) notice_();
}

}  // namespace zenfo::host::gui
