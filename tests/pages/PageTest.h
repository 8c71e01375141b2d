// What the tests of pages share: a platform, an object to edit, and a user in front of a page.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "common/Ascii.h"
#include "common/Object.h"
#include "common/RuntimeError.h"
#include "host/headless/HeadlessUser.h"

namespace kvo {

// Any object with some properties, which keep what is assigned to them: pages know their objects by
// property name only.
class PropertyObject final : public Object {
 public:
  using Properties = std::map<std::string, Variant, std::less<>>;
  explicit PropertyObject(Properties properties) : properties_(std::move(properties)) {}

  Variant Get(std::string_view name) override {
    const auto property = properties_.find(name);
    return property == properties_.end() ? Object::Get(name) : property->second;
  }
  void Let(std::string_view name, Variant value) override {
    const auto property = properties_.find(name);
    if (property == properties_.end()) return Object::Let(name, std::move(value));
    property->second = std::move(value);
    written.emplace_back(name);
  }

  Variant operator[](std::string_view name) { return Get(name); }
  std::vector<std::string> written;  // in order

 private:
  Properties properties_;
};

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
