// Works on a page in Debian's Neovim, a client that nobody here wrote, with the lines of
// docs/editors.md.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNeovim = "/usr/bin/nvim";

std::string BytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return (std::ostringstream() << in.rdbuf()).str();
}

// Returns the first block of code in this language.
std::string CodeIn(const std::string& document, const std::string& language) {
  const std::string fence = "```" + language + "\n";
  const std::size_t begin = document.find(fence) + fence.size();
  return document.substr(begin, document.find("```", begin) - begin);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

TEST_F(Program, NeovimFromOpeningAPageToRenamingAField) {
  ASSERT_TRUE(fs::exists(kNeovim)) << "neovim is not installed";
  const fs::path source = KVO_SOURCE_DIR;
  const std::string page = BytesOf(source / "examples/newsletter/newsletter.html");
  const std::string office = BytesOf(source / "examples/newsletter/office.json");
  Write("page.html", page);
  Write("office.json", office);
  Write("other.html", "<p>#customer.BonusPoints#</p>\n");
  Write("init.lua", CodeIn(BytesOf(source / "docs/editors.md"), "lua"));
  UseProgram(kNeovim);
  const std::string path = fs::path(KVO_PROGRAM).parent_path().string() + ":/usr/bin:/bin";
  const Result result =
      Kvo({"--headless", "-n", "-i", "NONE", "-u", "init.lua", "-c",
           std::string("luafile ") + KVO_SOURCE_DIR + "/tests/language/neovim.lua"},
          "", {{"PATH", path}, {"ASAN_OPTIONS", "detect_leaks=0"}});
  const std::string notes = Exists("notes.txt") ? Read("notes.txt") : "";
  EXPECT_EQ(result.code, 0) << result.err << notes;
  EXPECT_EQ(notes,
            "# a misspelt field, typed\n"
            "25:21 unknown-field: There is no contact field \"Ctiy\". Choose one of office.json or "
            "add it there. Did you mean \"City\"?\n"
            "# completion there\n"
            "Salutation: Anrede\nFirstName: Vorname\nLastName: Nachname\nEmail: E-Mail-Adresse\n"
            "City: Ort\nBirthday: Geburtstag\nCustomerSince: Kunde seit\n"
            "OrderCount: Anzahl Bestellungen\nBonusPoints: Treuepunkte\nIsPremium: Premiumkunde\n"
            "Portrait: Bild\n"
            "# fixed\n"
            "Change \"Ctiy\" to \"City\"\n"
            "# hover\n"
            "**Contact field** `customer.BonusPoints`\n\nTreuepunkte\n\n```html\n"
            "<kv:print value=\"#customer.BonusPoints# / 100\" format=\"#,##0.00\"/>\n```\n"
            "# renamed\n"
            "office.json:11\n");
  EXPECT_TRUE(Read("page.html") == Replaced(page, "BonusPoints", "Points"));
  EXPECT_TRUE(Read("office.json") == Replaced(office, "BonusPoints", "Points"));
  EXPECT_EQ(Read("other.html"), "<p>#customer.Points#</p>\n");
}

}  // namespace
}  // namespace kvo::test
