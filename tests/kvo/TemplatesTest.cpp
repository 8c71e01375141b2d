// The editor's templates, which authors start from, must have no problems.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/registration/classes.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

std::map<std::string, std::string> Templates() {
  std::map<std::string, std::string> templates;
  for (const auto& entry :
       std::filesystem::directory_iterator(KVO_SOURCE_DIR "/examples/templates"))
    if (entry.path().extension() == ".html") {
      std::ifstream in(entry.path(), std::ios::binary);
      templates[entry.path().string()] = (std::ostringstream() << in.rdbuf()).str();
    }
  return templates;
}

class TemplatesTest : public Program {};

TEST_F(TemplatesTest, AreSavedAndCleanAndCanBePublished) {
  const auto templates = Templates();
  ASSERT_EQ(templates.size(), 4U);
  for (const auto& [file, page] : templates) {
    SCOPED_TRACE(file);
    const Result checked = Kvo({"check", file});
    EXPECT_EQ(checked.code, 0);
    EXPECT_EQ(checked.out + checked.err, "");
    EXPECT_EQ(Kvo({"save", file, "-o", "-"}).out, page);
    const Result published = Kvo({"publish", file, "-o", "-"});
    EXPECT_EQ(published.code, 0);
    EXPECT_EQ(published.err, "");
    EXPECT_NE(published.out.find("<kv:config item=\"company-name\"/>"), std::string::npos);
    EXPECT_EQ(published.out.find("KVO CONTROL"), std::string::npos);
    EXPECT_EQ(published.out.find("<object"), std::string::npos);
  }
}

TEST_F(TemplatesTest, UseEveryClass) {
  std::string pages;
  for (const auto& [file, page] : Templates()) pages += page;
  for (const RegisteredControl& control : RegisteredControls()) {
    const std::string name(control.contract().name);
    EXPECT_NE(pages.find("\"progid:KVOPDesignObjects." + name + '"'), std::string::npos) << name;
  }
}

}  // namespace
}  // namespace kvo::test
