// What the tests of pages share: a platform, an object to edit, and a user in front of a page.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "common/Ascii.h"
#include "common/RuntimeError.h"
#include "host/headless/HeadlessUser.h"
#include "tests/pages/PropertyObject.h"

namespace kvo {

template <class Page>
class PageTest : public testing::Test {
 protected:
  using Properties = PropertyObject::Properties;

  // Opens the page on an object with these properties.
  void Open(Properties properties) {
    object = std::make_shared<PropertyObject>(std::move(properties));
    page.Select({object});
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::shared_ptr<PropertyObject> object;
  Page page;
  HeadlessUser user{platform, page};
};

// Runs what has to fail with a run-time error of this number.
template <class Action>
void ExpectError(int number, Action&& action) {
  try {
    action();
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), number) << error.what();
  }
}

}  // namespace kvo
