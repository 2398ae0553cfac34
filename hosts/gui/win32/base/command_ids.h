// Commands as identifiers of menus and controls.
#pragma once

#include <optional>

#include "gui/settings/commands.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

inline constexpr int kFirstCommand = 1000;
inline constexpr int kLastCommand =
    kFirstCommand + static_cast<int>(CommandId::kExit);

constexpr int number_of(CommandId id) {
  return kFirstCommand + static_cast<int>(id);
}
constexpr std::optional<CommandId> command_of(int number) {
  if (number < kFirstCommand || number > kLastCommand) return std::nullopt;
  return static_cast<CommandId>(number - kFirstCommand);
}

}  // namespace zenfo::host::gui::win32
