#include "common/values/RuntimeError.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kvo {
namespace {

TEST(RuntimeError, IsDescribedInTheUsersLanguage) {
  const RuntimeError error(ErrorNumber::typeMismatch, "Tee");
  const Language before = UserLanguage();
  UserLanguage(Language::german);
  EXPECT_EQ(FailureText(error), error.Text(Language::german));
  UserLanguage(Language::english);
  EXPECT_EQ(FailureText(error), error.Text(Language::english));
  UserLanguage(before);
  EXPECT_NE(error.Text(Language::german), error.Text(Language::english));
}

TEST(RuntimeError, OtherFailuresKeepTheirText) {
  EXPECT_EQ(FailureText(std::runtime_error("Die Datei fehlt")), "Die Datei fehlt");
}

}  // namespace
}  // namespace kvo
