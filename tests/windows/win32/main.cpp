// A main function of its own: prepares Windows, and checks that there is a screen.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <cstdio>

#include "host/win32/Messages.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  if (!InitCommonControlsEx(&classes) || GetSystemMetrics(SM_CXSCREEN) <= 0) {
    std::fputs("No desktop found.\n", stderr);
    return 2;
  }
  kvo::UserLanguage(kvo::DesktopLanguage());
  return RUN_ALL_TESTS();
}
