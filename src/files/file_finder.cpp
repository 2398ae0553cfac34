#include "files/file_finder.h"

#include "text/byte_tables.h"

namespace zenfo {
namespace {

using platform::kPathSeparator;

// Cuts the piece up to the separator, or the rest, off the front.
std::string_view take_piece(std::string_view& rest, char separator) {
  const size_t end = rest.find(separator);
  std::string_view piece = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return piece;
}

std::string_view extension(std::string_view name) {
  const size_t point = name.rfind('.');
  return point == std::string_view::npos ? std::string_view()
                                         : name.substr(point + 1);
}

bool is_recycle_bin(std::string_view name) {
  return compare_ignoring_case(name, "RECYCLED") == 0 ||
         compare_ignoring_case(name, "RECYCLER") == 0;
}

std::string join(std::string_view folder, std::string_view name) {
  std::string path(folder);
  path += kPathSeparator;
  path += name;
  return path;
}

}  // namespace

SearchGroup parse_search_group(std::string_view text) {
  SearchGroup group;
  if (text.empty()) return group;
  group.subfolders = text.front() == '1';
  text.remove_prefix(1);
  const std::string_view first = take_piece(text, ';');
  const size_t last = first.rfind(kPathSeparator);
  if (last == std::string_view::npos) return group;
  group.valid = true;
  group.folder = first.substr(0, last);
  // An empty pattern yields nothing; an item that contains a path would get
  // wrong paths in its results.
  auto add = [&](std::string_view pattern) {
    if (pattern.empty()) return;
    if (pattern.find(kPathSeparator) != std::string_view::npos) return;
    group.patterns.emplace_back(pattern);
  };
  add(first.substr(last + 1));
  while (!text.empty()) add(take_piece(text, ';'));
  return group;
}

bool passes_extension_test(std::string_view name, std::string_view pattern) {
  const std::string_view wanted = extension(pattern);
  const std::string_view found = extension(name);
  if (wanted.empty() || found.empty()) return true;
  if (wanted.back() == '*' || wanted.back() == '?') return true;
  return compare_ignoring_case(wanted, found) == 0;
}

int32_t FileFinder::find(std::string_view specification) {
  while (!specification.empty()) {
    const SearchGroup group =
        parse_search_group(take_piece(specification, '|'));
    if (!group.valid) continue;
    // With its separator, so that a drive or "/" is the root, not a name.
    const std::string folder = group.folder + kPathSeparator;
    if (!platform::is_folder(folder.c_str())) continue;
    if (!search(group)) return -1;
  }
  return found_;
}

bool FileFinder::search(const SearchGroup& group) {
  folders_.clear();
  folders_.emplace_back(group.folder);
  if (group.subfolders && !add_folders_below(0)) return false;
  for (platform::FolderListing& folder : folders_) {
    if (!search_folder(folder, group.patterns)) return false;
    folder = platform::FolderListing(std::string());  // frees its names
  }
  return true;
}

// Depth first: each folder found is entered before the next answer. The list
// grows meanwhile, so the current listing is moved out of it and back.
bool FileFinder::add_folders_below(size_t parent) {
  platform::FolderListing listing = std::move(folders_[parent]);
  const auto add = [&](std::string_view name) {
    if (is_recycle_bin(name)) return true;
    std::string path = join(listing.path(), name);
    const bool enter = path.size() < platform::kPathLimit;
    folders_.emplace_back(std::move(path));
    return !enter || add_folders_below(folders_.size() - 1);
  };
  const bool finished =
      listing.visit_folders(add, [&] { return !interrupted(); });
  folders_[parent] = std::move(listing);
  return finished;
}

bool FileFinder::search_folder(platform::FolderListing& folder,
                               const std::vector<std::string>& patterns) {
  for (const std::string& pattern : patterns) {
    const auto take = [&](std::string_view name) {
      if (!passes_extension_test(name, pattern)) return true;
      if (!sink_(folder.path(), name)) return false;
      ++found_;
      return true;
    };
    const bool finished = folder.visit_files(pattern.c_str(), take,
                                             [&] { return !interrupted(); });
    if (!finished) return false;
  }
  return true;
}

}  // namespace zenfo
