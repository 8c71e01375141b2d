// Keys in a form, apart from those that FormTest.cpp tests with a user.
#include "common/forms/FormKeys.h"

#include <gtest/gtest.h>

#include "common/forms/FormRenderer.h"

namespace kvo {
namespace {

class Options final : public Form {
 public:
  Options() : Form("Optionen", {3000, 3000}) {}
  KVO_CONTROL(TextBox, txtName, .at = {0, 0, 900, 300});
  KVO_CONTROL(OptionButton, optFirst, .at = {0, 300, 900, 300});
  KVO_CONTROL(OptionButton, optSecond, .at = {0, 600, 900, 300});
  KVO_CONTROL(OptionButton, optThird, .at = {0, 900, 900, 300});
};

TEST(FormKeys, AGroupHasOneTabStop) {
  Options form;
  EXPECT_EQ(OptionTabStop(form), &form.optFirst);
  form.optFirst.Enabled(false);
  EXPECT_EQ(OptionTabStop(form), &form.optSecond);
  form.optThird.Value(true);
  EXPECT_EQ(OptionTabStop(form), &form.optThird);
  EXPECT_TRUE(IsTabStop(form.optThird));
  EXPECT_FALSE(IsTabStop(form.optSecond));
  EXPECT_TRUE(IsTabStop(form.txtName));
  form.optThird.Visible(false);
  EXPECT_EQ(OptionTabStop(form), &form.optSecond);
  form.optSecond.Enabled(false);
  EXPECT_EQ(OptionTabStop(form), nullptr);
}

TEST(FormKeys, ArrowsCycleThroughTheEnabledButtons) {
  Options form;
  form.optSecond.Enabled(false);
  EXPECT_EQ(NextOption(form.optFirst, 1), &form.optThird);
  EXPECT_EQ(NextOption(form.optThird, 1), &form.optFirst);
  EXPECT_EQ(NextOption(form.optFirst, -1), &form.optThird);
  EXPECT_EQ(NextOption(form.optSecond, 1), nullptr);
}

TEST(FormKeys, ATypedTextHasOneStrokePerCharacter) {
  EXPECT_EQ(
      SplitStrokes("aä😀 \r\nb\n\r"),
      (std::vector<std::string_view>{"a", "ä", "😀", " ", kEnterStroke, "b", kEnterStroke, "\r"}));
  EXPECT_TRUE(SplitStrokes("").empty());
}

}  // namespace
}  // namespace kvo
