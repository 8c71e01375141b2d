// Shared by the fault tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/kvo/Program.h"

namespace kvo::test {

// A test that runs programs on generated pages.
class Faults : public Program {
 protected:
  // Returns a page of about `kilobytes`, with one control per kilobyte.
  static std::string LargePage(int kilobytes, const std::string& mark = "") {
    std::string page = "<html><body>\n";
    for (int i = 0; i < kilobytes; ++i)
      page += "<p>" + std::string(900, 'x') + mark + PrintElement("#order.total#") + "</p>\n";
    return page + "</body></html>\n";
  }

  // Returns what a save without faults makes of the page.
  std::string Saved(const std::string& page) const {
    const Result result = Kvo({"save", "-"}, page);
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_NE(result.out, page);
    return result.out;
  }

  // Returns the files next to the page; all must have names of unfinished files.
  std::vector<std::string> LeftBeside(const std::string& page) const {
    std::vector<std::string> left;
    for (const std::string& name : Files()) {
      if (name == page) continue;
      EXPECT_TRUE(name.starts_with(".kvo-") && name.size() == std::string(".kvo-XXXXXX").size())
          << name;
      left.push_back(name);
    }
    return left;
  }

  void Remove(const std::vector<std::string>& files) const {
    for (const std::string& file : files) std::filesystem::remove(Folder() / "work" / file);
  }
};

}  // namespace kvo::test
