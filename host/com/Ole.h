// Windows' headers of OLE and automation, in the order in which they need each other.
#pragma once

// clang-format off
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <ocidl.h>
#include <olectl.h>
// clang-format on
