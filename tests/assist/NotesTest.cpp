#include "document/assist/Notes.h"

#include <gtest/gtest.h>

#include <string>

#include "host/headless/HeadlessPlatform.h"

namespace kvo::assist {
namespace {

const office::Office::Description kSmallOffice{{{"Email", "E-Mail-Adresse", 0}}, {}, {}};

class NotesTest : public testing::Test {
 protected:
  // In the text, "|" is the place.
  static std::optional<Note> At(std::string text) {
    const std::size_t place = text.find('|');
    text.erase(place, 1);
    const page::Page page(text);
    const std::optional<Note> note =
        NoteAt(page, page::Inspect(page).controls, place, &kSmallOffice);
    if (note) {
      EXPECT_LE(note->begin, place);
      EXPECT_LE(place, note->end);
    }
    return note;
  }

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(NotesTest, AClassWithItsRuntimeText) {
  const auto note =
      At("<obj|ect classid=\"progid:KVOPDesignObjects.DTCPrint\"><param name=\"value\" "
         "value=\"1\"></object>");
  ASSERT_TRUE(note);
  EXPECT_EQ(note->title.english, "Expression");
  EXPECT_EQ(note->name, "DTCPrint");
  EXPECT_EQ(note->runtime, "<kv:print value=\"1\"/>");
}

TEST_F(NotesTest, APropertyWithItsHelp) {
  const auto note =
      At("<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"form|at\" "
         "value=\"\"></object>");
  ASSERT_TRUE(note);
  EXPECT_EQ(note->title.german, "Format");
  EXPECT_EQ(note->name, "format");
  EXPECT_EQ(note->help.english, "How numbers, dates and times look");
  EXPECT_EQ(note->runtime, "");
}

TEST_F(NotesTest, AFieldWithItsName) {
  for (const std::string text :
       {"<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"field\" "
        "value=\"E|mail\"></object>",
        "<p>#customer.Ema|il#</p>", "<kv:contact field='Email|'/>"}) {
    const auto note = At(text);
    ASSERT_TRUE(note) << text;
    EXPECT_EQ(note->title.english, "Contact field");
    EXPECT_EQ(note->name, "customer.Email");
    EXPECT_EQ(note->help.german, "E-Mail-Adresse");
  }
  EXPECT_EQ(At("#order.Tot|al#")->help.german, "");
}

TEST_F(NotesTest, NothingElsewhere) {
  EXPECT_FALSE(At("<p>te|xt"));
  EXPECT_FALSE(At("<object data=\"|x\"></object>"));
  EXPECT_EQ(At("<object classid=\"progid:KVOPDesignObjects.DTCPr|nt\"></object>")->runtime, "");
}

}  // namespace
}  // namespace kvo::assist
