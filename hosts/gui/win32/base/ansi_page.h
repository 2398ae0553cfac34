// The system's ANSI character set, for text that is not UTF-8. The program's
// own one is UTF-8, so the system must be asked for what it gives to others.
#pragma once

#include "gui/words/code_page.h"

namespace zenfo::host::gui::win32 {

// Western European where the system's characters have several bytes.
const CodePage& ansi_page();

}  // namespace zenfo::host::gui::win32
