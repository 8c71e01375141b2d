// kvo preview with the shop's products, and with records from its database.
#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/kvo/Program.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

class PreviewShop : public Program {
 protected:
  // Fills shop.db and writes an office for it.
  void WriteShop(const std::string& statements) const {
    shop::SqliteFile file;
    file.Run(statements);
    file.Close();
    fs::copy_file(file.Path(), Folder() / "work/shop.db");
    Write("office.json", R"({"shopDatabase": "sqlite3://shop.db"})");
  }
  // `count` customers, of whom each two have the same name.
  void WriteCustomers(int count) const {
    WriteShop(
        "PRAGMA synchronous=off; BEGIN; CREATE TABLE Customers (Name TEXT, Nr INTEGER);"
        "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
        std::to_string(count) +
        ") INSERT INTO Customers SELECT 'Kunde ' || (i / 2), i FROM n; COMMIT;");
    Write("page.html", "<p>" + ControlElement("DTCContact", {{"field", "Nr"}}) + "</p>");
    Write("preview.json", R"({"query": "SELECT Name, Nr FROM Customers ORDER BY Nr"})");
  }
  std::size_t FilesIn(const std::string& folder) const {
    std::error_code ignored;
    const fs::directory_iterator files(Folder() / "work" / folder, ignored);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }
};

TEST_F(PreviewShop, ShowsProducts) {
  const fs::path example = KVO_SOURCE_DIR "/examples/newsletter";
  std::ifstream sql(example / "shop.sql", std::ios::binary);
  WriteShop({std::istreambuf_iterator<char>(sql), {}});
  const Result result = Kvo({"preview", (example / "newsletter.html").string(), "--office",
                             "office.json", "--strict", "-o", "x.html"});
  EXPECT_EQ(result.code, 0) << result.err;
  for (const char* part :
       {"Äthiopien Yirgacheffe", "Noten von Bergamotte &amp; Jasmin", "Stempelkanne 1,0 l"})
    EXPECT_NE(Read("x.html").find(part), std::string::npos) << part;
}

TEST_F(PreviewShop, MakesAPreviewOfEachRow) {
  WriteCustomers(5);
  const Result result =
      Kvo({"preview", "page.html", "--office", "office.json", "--strict", "-o", "out/"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out,
            "out/page.Kunde_0.html\nout/page.Kunde_0-2.html\nout/page.Kunde_1.html\n"
            "out/page.Kunde_1-4.html\nout/page.Kunde_2.html\n");
  EXPECT_NE(Read("out/page.Kunde_1-4.html").find("<p>3</p>"), std::string::npos);
  EXPECT_EQ(Kvo({"preview", "page.html", "--office", "office.json", "--record", "Kunde 2", "-o",
                 "x.html"})
                .code,
            0);
  EXPECT_NE(Read("x.html").find("<p>4</p>"), std::string::npos);
}

TEST_F(PreviewShop, AQueryThatFailsEndsWith2) {
  WriteCustomers(1);
  for (const char* query : {"DELETE FROM Customers", "SELECT Quatsch FROM Customers"}) {
    Write("preview.json", "{\"query\": \"" + std::string(query) + "\"}");
    const Result result = Kvo({"preview", "page.html", "--office", "office.json", "-o", "x.html"});
    EXPECT_EQ(result.code, 2) << query;
    EXPECT_NE(result.err, "");
    EXPECT_FALSE(Exists("x.html"));
  }
}

TEST_F(PreviewShop, EndsCleanlyWhenInterrupted) {
  WriteCustomers(200'000);
  const pid_t kvo = Start({"preview", "page.html", "--office", "office.json", "-o", "out/"});
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (FilesIn("out") < 20 && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  kill(kvo, SIGINT);
  EXPECT_EQ(Finish(kvo).code, 128 + SIGINT);
  EXPECT_GE(FilesIn("out"), 19U);  // the last one may have been unfinished
  EXPECT_LT(FilesIn("out"), 200'000U);
  // Each file is whole.
  for (const auto& entry : fs::directory_iterator(Folder() / "work/out")) {
    EXPECT_EQ(entry.path().extension(), ".html") << entry.path();
    EXPECT_TRUE(Read("out/" + entry.path().filename().string()).ends_with("</p>"));
  }
}

TEST_F(PreviewShop, ALongRunReportsItsProgress) {
  WriteCustomers(200'000);
  const pid_t kvo = Start({"preview", "page.html", "--office", "office.json", "-o", "out/"});
  const auto reports = [this] {
    return Read("../err").find(" of 200000: Kunde ") != std::string::npos;
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!reports() && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  kill(kvo, SIGTERM);
  EXPECT_EQ(Finish(kvo).code, 128 + SIGTERM);
  EXPECT_TRUE(reports()) << Read("../err");
}

}  // namespace
}  // namespace kvo::test
