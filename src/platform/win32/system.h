// The one place that includes the system's headers, without their macros.
//
// Tested by tests/unit/platform/shell_test.cpp
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <oleauto.h>
#include <shellapi.h>
