#include "gui/core/settings_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

#include "gui/core/strings.h"
#include "shared/system/paths.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The system's error of the C library's last call.
std::string last_reason() {
  return std::error_code(errno, std::generic_category()).message();
}

bool write_all(const std::string& path, std::string_view text,
               std::string* reason) {
  std::FILE* file = open_file(path, "wb");
  if (file == nullptr) {
    *reason = last_reason();
    return false;
  }
  bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (!written) *reason = last_reason();
  if (std::fclose(file) != 0 && written) {
    *reason = last_reason();
    written = false;
  }
  return written;
}

// Keeps a file that is no JSON, but out of the way. Returns its new name; empty
// if that failed.
std::string set_aside(const std::string& path) {
  const std::string aside = path + ".broken";
  std::error_code failed;
  fs::rename(to_path(path), to_path(aside), failed);
  return failed ? "" : aside;
}

}  // namespace

Settings load_settings(const std::string& path, std::string* message,
                       bool* may_write) {
  *may_write = true;
  std::error_code failed;
  if (!fs::exists(to_path(path), failed) && !failed) return {};
  FileBytes bytes;
  if (failed || !bytes.load(path)) {
    *may_write = false;
    const std::string reason =
        failed ? failed.message() : "it is no file that can be read";
    *message = format(Text::kSettingsUnread, {path, reason});
    return {};
  }
  std::string_view text = bytes.view();
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::string reason;
  std::optional<JsonValue> json = parse_json(text, &reason);
  if (json && json->object() == nullptr) {
    json.reset();
    reason = "is no JSON object";
  }
  if (json) return settings_from_json(std::move(*json));
  const std::string aside = set_aside(path);
  *may_write = !aside.empty();
  *message = aside.empty()
                 ? format(Text::kSettingsUnread, {path, reason})
                 : format(Text::kSettingsBroken, {path, reason, aside});
  return {};
}

bool save_settings(const std::string& path, const Settings& settings,
                   std::string* reason) {
  const std::string text =
      format_json(to_json(settings), JsonForm::kIndented) + '\n';
  return replace_file(path, text, reason);
}

bool replace_file(const std::string& path, std::string_view text,
                  std::string* reason) {
  const fs::path target = to_path(path);
  const std::string beside = path + ".new";
  std::error_code failed;
  if (target.has_parent_path()) {
    fs::create_directories(target.parent_path(), failed);
  }
  if (!write_all(beside, text, reason)) {
    fs::remove(to_path(beside), failed);
    return false;
  }
  fs::rename(to_path(beside), target, failed);
  if (!failed) return true;
  *reason = failed.message();
  fs::remove(to_path(beside), failed);
  return false;
}

}  // namespace zenfo::host::gui
