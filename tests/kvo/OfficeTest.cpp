#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using CheckWithOffice = Program;

constexpr const char* kOffice =
    R"({"contactFields": [{"sqlName": "Email", "displayName": "E-Mail", "dataType": 0}]})";
constexpr const char* kPage =
    "<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"field\" "
    "value=\"Emial\"><param name=\"format\" value=\"\"></object>";

TEST_F(CheckWithOffice, ReadsTheFileBesideThePage) {
  Write("x.html", kPage);
  EXPECT_EQ(Kvo({"check", "x.html"}).code, 0);
  Write("office.json", kOffice);
  const Result result = Kvo({"check", "x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("x.html:1:1: error: "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Did you mean \"Email\"? [unknown-field]"), std::string::npos)
      << result.out;
}

TEST_F(CheckWithOffice, ReadsTheFileThatIsNamed) {
  Write("x.html", kPage);
  Write("shop.json", kOffice);
  EXPECT_EQ(Kvo({"check", "x.html", "--office", "shop.json"}).code, 1);
}

TEST_F(CheckWithOffice, MissingOrBrokenFileIsAFailureThatNamesIt) {
  Write("x.html", kPage);
  Result result = Kvo({"check", "x.html", "--office", "none.json"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("none.json"), std::string::npos) << result.err;
  Write("shop.json", "{\"contactFields\":\n [3]}");
  result = Kvo({"check", "x.html", "--office", "shop.json"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("shop.json:2:3: "), std::string::npos) << result.err;
}

}  // namespace
}  // namespace kvo::test
