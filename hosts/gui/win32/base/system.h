// windows.h and the common controls, with the macros kept out that break other
// code.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif

#include <windows.h>

// After windows.h.
#include <commctrl.h>
#include <windowsx.h>
