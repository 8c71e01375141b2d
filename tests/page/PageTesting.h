// Shared by the tests of the page file.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "document/page/Page.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::page {

inline std::string Element(std::string_view params, std::string_view className = "DTCPrint") {
  return "<object classid=\"progid:KVOPDesignObjects." + std::string(className) + "\">" +
         std::string(params) + "</object>";
}
inline std::string Param(std::string_view key, std::string_view value) {
  return "<param name=\"" + std::string(key) + "\" value=\"" + std::string(value) + "\">";
}
// Returns a print control whose value is written as read.
inline std::string PrintElement(std::string_view value) { return Element(Param("value", value)); }
inline std::string StoredPrint(std::string_view value) {
  return Element(Param("value", value) + Param("format", ""));
}
inline std::string Span(std::string_view element, std::string_view text, int number = 1) {
  const std::string n = std::to_string(number);
  return "<!--KVO CONTROL STARTSPAN " + n + " " + std::string(element) + "-->" + std::string(text) +
         "<!--KVO CONTROL ENDSPAN " + n + "-->";
}

// Returns "line:column rule" for each problem; warnings end in "?".
inline std::vector<std::string> Listed(const Problems& problems) {
  std::vector<std::string> list;
  for (const Problem& problem : problems) {
    list.push_back(std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) +
                   " " + std::string(problem.rule) +
                   (problem.severity == Severity::warning ? "?" : ""));
  }
  return list;
}

using List = std::vector<std::string>;

class PageTest : public ::testing::Test {
 protected:
  // Returns the saved page; `problems` receives all problems.
  std::string Saved(const std::string& page, const SaveOptions& options = {}) {
    StringSink sink;
    problems = Save(Page(page), sink, options);
    return HasErrors(problems) ? "(not saved)" : sink.Text();
  }
  std::string Published(const std::string& page) {
    StringSink sink;
    problems = Publish(Page(page), sink);
    return HasErrors(problems) ? "(not published)" : sink.Text();
  }
  List Checked(const std::string& page) {
    problems = Check(Page(page));
    return Listed(problems);
  }
  // Returns the values of all print controls, in order.
  static List ValuesIn(const std::string& page) {
    List values;
    for (const FoundControl& control : Inspect(Page(page)).controls)
      for (const auto& [key, value] : control.bag)
        if (key == "value") values.push_back(value);
    return values;
  }

  Problems problems;

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

}  // namespace kvo::page
