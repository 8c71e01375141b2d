// The tests' own main: prepares Windows, and looks whether there is a screen.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <cstdio>

#include "host/win32/Messages.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  if (!InitCommonControlsEx(&classes) || GetSystemMetrics(SM_CXSCREEN) <= 0) {
    std::fputs("There is no desktop.\n", stderr);
    return 2;
  }
  kvo::UserLanguage(kvo::DesktopLanguage());
  return RUN_ALL_TESTS();
}
