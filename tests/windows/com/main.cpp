#include <gtest/gtest.h>

#include <cstdio>

#include "host/com/ComPlatform.h"
#include "tests/windows/com/Host.h"

// The tests expect German, which under-wine.sh sets.
int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (FAILED(OleInitialize(nullptr))) return 2;
  if (PRIMARYLANGID(GetUserDefaultLangID()) != LANG_GERMAN) {
    std::fprintf(stderr, "These tests require German.\n");
    return 2;
  }
  kvo::UserLanguage(kvo::Language::german);
  kvo::com::ComPlatform platform;
  const kvo::PlatformScope scope(platform);
  const int result = RUN_ALL_TESTS();
  OleUninitialize();
  return result;
}
