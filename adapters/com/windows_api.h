// The system's declarations, in the one order that they compile in.
#pragma once

// clang-format off
#include <windows.h>
#include <oleauto.h>
#include <ocidl.h>
#include <olectl.h>
// clang-format on
