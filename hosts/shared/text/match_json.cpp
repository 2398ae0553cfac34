#include "shared/text/match_json.h"

#include "shared/text/json_text.h"

namespace zenfo::host {

class MatchJson::Walk : public LineVisitor {
 public:
  Walk(MatchJson& owner, std::string_view path, std::string_view text)
      : sink_(owner.sink_),
        path_(json_bytes(path)),
        text_(text),
        numbers_(text) {}

  void context(size_t start, size_t end) override {
    put("context", start, end, {});
  }
  void block(const Block& block) override {
    counts_.matches += block.matches.size();
    counts_.lines += count_lines(part(block.start, block.end));
    put("match", block.start, block.end, block.matches);
  }

  void begin() {
    sink_("{\"type\":\"begin\",\"data\":{\"path\":" + path_ + "}}\n");
  }
  Counts end() {
    const size_t zero = text_.find('\0');
    const bool binary = zero != std::string_view::npos;
    sink_("{\"type\":\"end\",\"data\":{\"path\":" + path_ +
          ",\"binary_offset\":" + (binary ? std::to_string(zero) : "null") +
          ",\"stats\":{\"matched_lines\":" + std::to_string(counts_.lines) +
          ",\"matches\":" + std::to_string(counts_.matches) + "}}}\n");
    return counts_;
  }

 private:
  std::string_view part(size_t start, size_t end) const {
    return text_.substr(start, end - start);
  }

  void put(std::string_view type, size_t start, size_t end,
           std::span<const Match> matches) {
    line_ = "{\"type\":\"";
    line_ += type;
    line_ += "\",\"data\":{\"path\":" + path_;
    line_ += ",\"lines\":" + json_bytes(part(start, end));
    line_ += ",\"line_number\":" + std::to_string(numbers_.at(start));
    line_ += ",\"absolute_offset\":" + std::to_string(start);
    line_ += ",\"submatches\":[";
    for (const Match& match : matches) {
      const size_t from = match.offset - start;
      if (&match != matches.data()) line_ += ',';
      line_ +=
          "{\"match\":" + json_bytes(text_.substr(match.offset, match.length));
      line_ += ",\"start\":" + std::to_string(from);
      line_ += ",\"end\":" + std::to_string(from + match.length) + '}';
    }
    line_ += "]}}\n";
    sink_(line_);
  }

  const Sink& sink_;
  const std::string path_;
  std::string_view text_;
  LineNumbers numbers_;
  Counts counts_;
  std::string line_;
};

void MatchJson::put_file(std::string_view path, std::string_view text,
                         const std::vector<Block>& blocks) {
  if (blocks.empty()) return;
  Walk walk(*this, path, text);
  walk.begin();
  visit_lines(text, blocks, before_, after_, walk);
  const Counts counts = walk.end();
  ++files_;
  total_.lines += counts.lines;
  total_.matches += counts.matches;
}

void MatchJson::put_summary(uint64_t files_searched) {
  sink_("{\"type\":\"summary\",\"data\":{\"stats\":{\"searches\":" +
        std::to_string(files_searched) +
        ",\"searches_with_match\":" + std::to_string(files_) +
        ",\"matched_lines\":" + std::to_string(total_.lines) +
        ",\"matches\":" + std::to_string(total_.matches) + "}}}\n");
}

}  // namespace zenfo::host
