#include "search/search_ahead.h"

#include <cstdint>
#include <utility>

#include "pattern/element.h"

namespace zenfo {
namespace {

// Every thread may load a file of this size at the same time: little where
// addresses are few.
constexpr uint64_t kLargest = sizeof(void*) < 8 ? 4 << 20 : INT32_MAX;

std::unique_ptr<Element> copy_of(const LiteralElement& element) {
  auto copy = std::make_unique<LiteralElement>(element.text());
  copy->ignore_blanks = element.ignore_blanks;
  return copy;
}

std::unique_ptr<Element> copy_of(const StringListElement& element) {
  auto copy = std::make_unique<StringListElement>();
  for (size_t i = 0; i < element.alternatives.count(); ++i) {
    copy->alternatives.add(element.alternatives.at(i));
  }
  copy->negated = element.negated;
  return copy;
}

std::unique_ptr<Element> copy_of(const ClassElement& element) {
  return std::make_unique<ClassElement>(element.char_class(), element.minimum,
                                        element.maximum, element.negated);
}

std::unique_ptr<Element> copy_of(const CharListElement& element) {
  return std::make_unique<CharListElement>(element.chars(), element.minimum,
                                           element.maximum, element.negated);
}

std::unique_ptr<Element> copy_of(const WildcardElement& element) {
  return std::make_unique<WildcardElement>(element.char_class(),
                                           element.minimum, element.negated);
}

std::unique_ptr<Element> copy_of(const Element& element) {
  switch (element.kind()) {
    case ElementKind::kLiteral:
      return copy_of(static_cast<const LiteralElement&>(element));
    case ElementKind::kStringList:
      return copy_of(static_cast<const StringListElement&>(element));
    case ElementKind::kClass:
      return copy_of(static_cast<const ClassElement&>(element));
    case ElementKind::kCharList:
      return copy_of(static_cast<const CharListElement&>(element));
    case ElementKind::kWildcard:
      return copy_of(static_cast<const WildcardElement&>(element));
  }
  return nullptr;
}

}  // namespace

CompiledPattern copy_of(const CompiledPattern& pattern) {
  CompiledPattern copy;
  for (const auto& element : pattern.elements) {
    copy.elements.push_back(element != nullptr ? copy_of(*element) : nullptr);
  }
  copy.start_count = pattern.start_count;
  copy.last_main = pattern.last_main;
  return copy;
}

SearchAhead::SearchAhead(const CompiledPattern& pattern, const Options& options,
                         size_t threads)
    : options_(options) {
  options_.find.store = false;
  for (size_t i = 0; i <= threads; ++i) {
    auto worker = std::make_unique<Worker>();
    worker->content.allow_views();
    worker->content.read_when_used(true);
    worker->content.load_only_ordinary(kLargest);
    worker->context.pattern = copy_of(pattern);
    workers_.push_back(std::move(worker));
  }
}

bool SearchAhead::handle(PreloadedFile& file, platform::NearbyFolder& folder,
                         size_t thread) {
  Worker& worker = *workers_[thread];
  FileContent& content = worker.content;
  const int32_t length = content.load_file_content(file.path.c_str(), &folder);
  const bool counted =
      length > 0 && content.version() != nullptr && count(worker, file);
  content.clear();  // gives a large file back
  return counted;
}

bool SearchAhead::count(Worker& worker, PreloadedFile& file) const {
  FileContent& content = worker.content;
  if (options_.binary_check && content.find_non_printable() > 0) return false;
  file.found =
      find_all(worker.context, content.data(), content.length(), options_.find);
  worker.context.clear_matches();
  file.size = content.length();
  file.stamp = {.version = *content.version()};
  return file.found >= 0 && content.intact();
}

}  // namespace zenfo
