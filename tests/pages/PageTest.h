// Shared by the tests of pages: a platform, an object to edit, and a user of a page.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "common/values/Ascii.h"
#include "tests/core/ErrorOf.h"
#include "tests/pages/PropertyObject.h"
#include "tests/support/SeeingUser.h"

namespace kvo {

template <class Page>
class PageTest : public testing::Test {
 protected:
  using Properties = PropertyObject::Properties;

  // Opens the page for an object with these properties.
  void Open(Properties properties) {
    object = std::make_shared<PropertyObject>(std::move(properties));
    page.Select({object});
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::shared_ptr<PropertyObject> object;
  Page page;
  SeeingUser user{platform, page};
};

}  // namespace kvo
