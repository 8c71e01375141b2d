// Windows' headers for OLE and automation, in the order that they require.
#pragma once

// clang-format off
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <ocidl.h>
#include <olectl.h>
// clang-format on
