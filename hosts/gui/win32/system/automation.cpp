#include "gui/win32/system/automation.h"

#include <string_view>

namespace zenfo::host::gui::win32 {
namespace {

constexpr ULONG_PTR kRequest = 0x5A46'0002;
constexpr ULONG_PTR kReply = 0x5A46'0003;
constexpr UINT kReplyPatience = 5000;  // milliseconds

std::string text_in(const JsonValue& json, std::string_view name) {
  const JsonValue* member = json.find(name);
  const std::string* text = member == nullptr ? nullptr : member->text();
  return text == nullptr ? "" : *text;
}

}  // namespace

std::optional<Request> request_in(const COPYDATASTRUCT& data) {
  if (data.dwData != kRequest) return std::nullopt;
  std::string reason;
  const auto json = parse_json(
      std::string_view(static_cast<const char*>(data.lpData), data.cbData),
      &reason);
  if (!json) return std::nullopt;
  return Request{text_in(*json, "command"), text_in(*json, "get"),
                 text_in(*json, "picture")};
}

void answer(HWND self, HWND asker, const JsonValue& reply) {
  std::string text = format_json(reply, JsonForm::kOneLine);
  COPYDATASTRUCT data{kReply, static_cast<DWORD>(text.size()), text.data()};
  DWORD_PTR taken = 0;
  SendMessageTimeoutW(asker, WM_COPYDATA, reinterpret_cast<WPARAM>(self),
                      reinterpret_cast<LPARAM>(&data), SMTO_ABORTIFHUNG,
                      kReplyPatience, &taken);
}

}  // namespace zenfo::host::gui::win32
