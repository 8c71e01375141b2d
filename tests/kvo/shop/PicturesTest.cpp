// The pictures in docs/pages.md, drawn with the shop of the example newsletter.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "host/registration/classes.h"
#include "tests/kvo/Program.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::test {
namespace {

const std::filesystem::path kSource = KVO_SOURCE_DIR;

std::string Bytes(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

using PagePictures = Program;

TEST_F(PagePictures, OfTheDocumentationAreCurrent) {
  const auto work = Folder() / "work";
  std::filesystem::copy_file(kSource / "examples/newsletter/office.json", work / "office.json");
  shop::SqliteFile file;
  file.Run(Bytes(kSource / "examples/newsletter/shop.sql"));
  file.Close();
  std::filesystem::copy_file(file.Path(), work / "shop.db");

  for (const RegisteredControl& control : RegisteredControls()) {
    const Result result = Kvo(
        {"pages", std::string(control.contract().name), "--office", "office.json", "-o", "pages"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
  }
  EXPECT_NE(Read("pages/propProdListPicker.svg").find(">K-1001<"), std::string::npos);

  const std::string text = Bytes(kSource / "docs/pages.md");
  std::size_t pictures = 0;
  for (const auto& drawn : std::filesystem::directory_iterator(work / "pages")) {
    const std::string name = "pages/" + drawn.path().filename().string();
    EXPECT_EQ(Bytes(kSource / "docs" / name), Bytes(drawn.path()))
        << "docs/" << name << " is out of date. If the change is intended, draw it as "
        << "docs/pages.md says.";
    EXPECT_NE(text.find('(' + name + ')'), std::string::npos) << name;
    ++pictures;
  }
  std::size_t checkedIn = 0;
  for ([[maybe_unused]] const auto& each :
       std::filesystem::directory_iterator(kSource / "docs/pages"))
    ++checkedIn;
  EXPECT_EQ(checkedIn, pictures);
}

}  // namespace
}  // namespace kvo::test
