#include "gui/settings/settings_file.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "gui/settings/new_file.h"
#include "gui/words/strings.h"
#include "shared/system/paths.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

}  // namespace zenfo::host::gui
