// kvo check with the shop's products.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;
using shop::PostgresqlServer;
using shop::SqliteFile;

const std::filesystem::path kExample = KVO_SOURCE_DIR "/examples/newsletter";

std::string ProductList(const std::string& numbers) {
  return ControlElement("DTCProductList",
                        {{"basename", "productlist"}, {"selected-products", numbers}});
}

class ShopCheck : public Program {
 protected:
  ShopCheck() {
    Write("good.html", ProductList("P-0000007,P-0000150"));
    Write("bad.html", ProductList("P-0000007,P-0000250"));
  }
  void WriteOffice(const std::string& connectionString) const {
    Write("office.json", Json({{"shopDatabase", connectionString}}).dump());
  }
  void WriteSqliteShop() const {
    WriteOffice("sqlite3://shop.db");
    SqliteFile file;
    file.FillProducts(200);
    file.Close();
    std::filesystem::copy_file(file.Path(), Folder() / "work/shop.db");
  }
  void ExpectFound() const {
    EXPECT_EQ(Kvo({"check", "good.html", "--office", "office.json"}).out, "");
    const Result result =
        Kvo({"check", "good.html", "bad.html", "--office", "office.json", "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "");
    const Json problems = Json::parse(result.out)["problems"];
    ASSERT_EQ(problems.size(), 1U) << problems;
    EXPECT_EQ(problems[0]["file"], "bad.html");
    EXPECT_EQ(problems[0]["rule"], "unknown-product");
    EXPECT_NE(problems[0]["message"].get<std::string>().find("\"P-0000250\""), std::string::npos);
  }
};

TEST_F(ShopCheck, LooksProductsUpInAFile) {
  WriteSqliteShop();
  ExpectFound();
}
TEST_F(ShopCheck, LooksProductsUpOnAServer) {
  const PostgresqlServer server;
  server.FillProducts(200);
  WriteOffice(server.Uri());
  ExpectFound();
}
TEST_F(ShopCheck, ReadsAPageFromStandardInput) {
  WriteSqliteShop();
  const Result result = Kvo({"check", "-", "--office", "office.json"}, Read("bad.html"));
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("[unknown-product]"), std::string::npos) << result.out;
}
// It may come from outside together with the page, and must not choose a server to connect to.
TEST_F(ShopCheck, IgnoresTheShopOfAnOfficeNextToThePage) {
  WriteSqliteShop();
  const Result result = Kvo({"check", "bad.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
}
TEST_F(ShopCheck, WarnsOncePerRunAboutAnUnreadableShop) {
  WriteOffice("sqlite3://missing.db");
  const Result result =
      Kvo({"check", "bad.html", "good.html", "--office", "office.json", "--json"});
  EXPECT_EQ(result.code, 0);
  const Json problems = Json::parse(result.out)["problems"];
  ASSERT_EQ(problems.size(), 1U) << problems;
  EXPECT_EQ(problems[0]["rule"], "products-not-checked");
  EXPECT_EQ(problems[0]["severity"], "warning");
  EXPECT_NE(problems[0]["message"].get<std::string>().find("missing.db"), std::string::npos);
  EXPECT_FALSE(Exists("missing.db"));
}
TEST_F(ShopCheck, QueriesNothingForAPageWithoutProducts) {
  WriteOffice("sqlite3://missing.db");
  Write("x.html", PrintElement("x"));
  const Result result = Kvo({"check", "x.html", "--office", "office.json"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
}
TEST_F(ShopCheck, FindsNothingInTheExampleNewsletters) {
  std::filesystem::copy_file(kExample / "office.json", Folder() / "work/office.json");
  std::ifstream sql(kExample / "shop.sql", std::ios::binary);
  SqliteFile file;
  file.Run(std::string(std::istreambuf_iterator<char>(sql), {}));
  file.Close();
  std::filesystem::copy_file(file.Path(), Folder() / "work/shop.db");
  const Result result =
      Kvo({"check", (kExample / "newsletter.html").string(),
           KVO_SOURCE_DIR "/examples/templates/newsletter.html", "--office", "office.json"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
}

}  // namespace
}  // namespace kvo::test
