#include <gtest/gtest.h>

#include "tests/support/Environment.h"

int main(int argc, char** argv) {
  kvo::test::SetEnvironment();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
