#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "document/page/Page.h"

namespace kvo::adopt {

// Publishes a page that must be sound.
inline std::string Published(std::string bytes) {
  page::StringSink sink;
  EXPECT_FALSE(page::HasErrors(page::Publish(page::Page(std::move(bytes)), sink)));
  return sink.Take();
}

}  // namespace kvo::adopt
