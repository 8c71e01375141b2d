// Scripts for pages that read the shop's database.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <tuple>

#include "tests/kvo/Program.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;
using shop::PostgresqlServer;
using shop::SqliteFile;

// Picks three of two hundred products in addition to the one in the list.
constexpr const char* kPicking =
    "open liste\n"
    "page propProdListPicker\n"
    "expect gdProducts rows 200\n"
    "double-click gdProducts 150\n"
    "rows gdProducts 3 0\n"
    "click cmdAddProduct\n"
    "apply\n";

class ShopScript : public Program {
 protected:
  ShopScript() {
    Write("x.html",
          "<object classid=\"progid:KVOPDesignObjects.DTCProductList\" id=\"liste\"><param "
          "name=\"selected-products\" value=\"P-0000007\"></object>");
    Write("picking.txt", kPicking);
  }

  void WriteOffice(const std::string& connectionString) const {
    std::filesystem::create_directory(Folder() / "work/shop");
    Write("shop/office.json", Json({{"shopDatabase", connectionString}}).dump());
  }

  // Writes an SQLite file with two hundred products next to the office file.
  void WriteSqliteShop() const {
    WriteOffice("sqlite3://shop.db");
    SqliteFile file;
    file.FillProducts(200);
    file.Close();
    std::filesystem::copy_file(file.Path(), Folder() / "work/shop/shop.db");
  }

  Result Picking(const std::map<std::string, std::string>& environment = {}) const {
    return Kvo({"script", "x.html", "picking.txt", "--office", "shop/office.json"}, "",
               environment);
  }
};

// Returns the object whose `key` is `value`; null if there is none.
Json Named(const Json& list, const char* key, const std::string& value) {
  for (const Json& each : list)
    if (each[key] == value) return each;
  return {};
}

std::string StoredProducts(const Json& document) {
  for (const Json& entry : document["controls"][0]["bag"])
    if (entry[0] == "selected-products") return entry[1];
  return "nothing";
}

void ExpectPicked(const Result& result) {
  EXPECT_EQ(result.code, 0) << result.out;
  EXPECT_EQ(result.err, "");
  const Json document = Json::parse(result.out);
  EXPECT_TRUE(document["failure"].is_null()) << document["failure"];
  const Json page = Named(document["pages"], "class", "propProdListPicker");
  EXPECT_EQ(page["filled"], true);
  EXPECT_EQ(page["changed"], false);
  const Json products = Named(page["controls"], "name", "gdProducts");
  EXPECT_EQ(products["rows"], 200);
  EXPECT_EQ(products["selected"], Json::parse(R"(["0", "3"])"));
  EXPECT_EQ(products["parts"][9]["cells"],
            Json::parse(R"(["P-0000009", "Artikel 9", "<keine Angabe>"])"));
  std::string captions;
  const Json picked = Named(page["controls"], "name", "suiPickedProducts");
  for (const Json& item : picked["parts"]) captions += item["caption"].get<std::string>() + '\n';
  EXPECT_EQ(captions,
            "P-0000007\nP-0000150 (Artikel 150)\nP-0000000 (Artikel 0)\nP-0000003 (Artikel 3)\n");
  EXPECT_EQ(StoredProducts(document), "P-0000007,P-0000150,P-0000000,P-0000003");
  EXPECT_NE(document["controls"][0]["runtimeText"].get<std::string>().find("P-0000150"),
            std::string::npos);
}

TEST_F(ShopScript, PicksProductsOfAFileNextToTheOfficeFile) {
  WriteSqliteShop();
  const std::string page = Read("x.html");
  ExpectPicked(Picking());
  EXPECT_EQ(Read("x.html"), page);
}

TEST_F(ShopScript, PicksProductsForAPageFromStandardInput) {
  WriteSqliteShop();
  ExpectPicked(Kvo({"script", "-", "picking.txt", "--office", "shop/office.json"}, Read("x.html")));
}

TEST_F(ShopScript, PicksProductsOfAPostgresqlServer) {
  const PostgresqlServer server;
  server.FillProducts(200);
  for (const std::string& connectionString : {server.Uri(), server.Pairs()}) {
    WriteOffice(connectionString);
    const Result result = Picking();
    ExpectPicked(result);
    EXPECT_EQ(result.out.find("eim"), std::string::npos) << result.out;  // part of the password
  }
}

// Expects the script to stop at the picker, and the control to be unchanged.
void ExpectStopped(const Result& result, const std::string& message) {
  EXPECT_EQ(result.code, 1) << result.out << result.err;
  const Json document = Json::parse(result.out);
  EXPECT_EQ(document["failure"]["line"], 2);
  const std::string found = document["failure"]["message"];
  EXPECT_EQ(found.find(message), 0U) << found;
  EXPECT_EQ(Named(document["pages"], "class", "propProdListPicker")["filled"], false);
  EXPECT_EQ(StoredProducts(document), "P-0000007");
}

TEST_F(ShopScript, AMissingFileStopsItAndIsNamed) {
  WriteOffice("sqlite3://shop.db");
  const Result english = Picking();
  ExpectStopped(english, "Error 3002: The database file cannot be opened");
  EXPECT_NE(english.out.find("work/shop/shop.db"), std::string::npos) << english.out;
  EXPECT_EQ(english.err, "");
  ExpectStopped(Picking({{"LANG", "de_DE.UTF-8"}}),
                "Fehler 3002: Die Datenbankdatei lässt sich nicht öffnen");
  EXPECT_FALSE(Exists("shop/shop.db"));
}

TEST_F(ShopScript, ARefusingServerStopsItWithoutShowingThePassword) {
  const PostgresqlServer server;
  std::string refused = server.Uri();
  refused.replace(refused.find("geh"), 3, "nah");
  WriteOffice(refused);
  const Result result = Picking();
  ExpectStopped(result, "Error 3709: There is no connection to the database");
  EXPECT_NE(result.out.find("postgresql://"), std::string::npos) << result.out;
  EXPECT_EQ((result.out + result.err).find("eim"), std::string::npos) << result.out << result.err;
}

TEST_F(ShopScript, WithoutAShopDatabaseThePickerFails) {
  Write("office.json", "{}");
  const Result result = Kvo({"script", "x.html", "picking.txt", "--office", "office.json"});
  ExpectStopped(result, "Error 91");
  EXPECT_EQ(result.err, "");
}

TEST_F(ShopScript, AMissingDriverStopsItAndItsPackageIsNamed) {
  // Hides the system's driver with a file of the same name that is not a library.
  const auto drivers = Folder() / "drivers";
  std::filesystem::create_directory(drivers);
  for (const auto& [connectionString, driver, package] :
       {std::tuple{"sqlite3://shop.db", "sqlite3", "libsoci-sqlite3-4.0"},
        std::tuple{"postgresql://bob:geheim@h/d", "postgresql", "libsoci-postgresql4.0"},
        std::tuple{"mysql://bob:geheim@h/d", "mysql", "libsoci-mysql4.0"},
        std::tuple{"odbc://DSN=d;PWD=geheim", "odbc", "libsoci-odbc4.0"}}) {
    WriteOffice(connectionString);
    std::ofstream(drivers / ("libsoci_" + std::string(driver) + ".so.4.0"));
    const std::map<std::string, std::string> without = {{"LD_LIBRARY_PATH", drivers.string()},
                                                        {"SOCI_BACKENDS_PATH", "/nowhere"}};
    const Result english = Picking(without);
    ExpectStopped(english, "Error 3706: This kind of database is unknown");
    EXPECT_NE(english.out.find(std::string(": ") + package + '"'), std::string::npos)
        << english.out;
    EXPECT_EQ(english.out.find("eim"), std::string::npos) << english.out;
    EXPECT_EQ(english.err, "");
    auto german = without;
    german["LANG"] = "de_DE.UTF-8";
    ExpectStopped(Picking(german), "Fehler 3706: Diese Art Datenbank ist unbekannt");
  }
}

// Loading them would make kvo start several times slower, and fail without them.
TEST_F(ShopScript, KvoLoadsNoDriverBeforeAShopIsOpened) {
  const std::string libraries = Kvo({}, "", {{"LD_TRACE_LOADED_OBJECTS", "1"}}).out;
  EXPECT_NE(libraries.find("libsoci_core.so"), std::string::npos) << libraries;
  for (const char* driver : {"libsoci_sqlite3", "libsqlite3", "libpq", "odbc"})
    EXPECT_EQ(libraries.find(driver), std::string::npos) << libraries;
}

}  // namespace
}  // namespace kvo::test
