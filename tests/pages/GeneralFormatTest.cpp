#include "pages/propGeneralFormat.h"

#include "controls/DTCPrint.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using DataFormatPage = PageTest<propGeneralFormat>;

TEST_F(DataFormatPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Datenformat");
  EXPECT_EQ(page.cboFormat.At(), (Rect{1680, 840, 3855, 315}));
  EXPECT_TRUE(page.cboFormat.Editable());
  EXPECT_EQ(page.lblGeneralFormat.Caption(), "Anzeigeformat:");
  EXPECT_EQ(page.lblGeneralFormat.At(), (Rect{240, 870, 1110, 195}));
  EXPECT_EQ(page.lblGeneralDataFormatInfo.Caption(),
            "Wählen Sie bitte eine Formatierungsfunktion für ein Datenfeld.");
  EXPECT_EQ(page.lblGeneralDataFormatInfo.At(), (Rect{240, 240, 5295, 495}));
  EXPECT_EQ(page.lblFormatString.Caption(), "keine Formatangaben");
  EXPECT_EQ(page.lblFormatString.At(), (Rect{1680, 1200, 3135, 255}));
  const std::vector<FormControl*> tabOrder = {&page.cboFormat, &page.lblGeneralFormat,
                                              &page.lblGeneralDataFormatInfo,
                                              &page.lblFormatString};
  EXPECT_EQ(page.Controls(), tabOrder);
}

TEST_F(DataFormatPage, ListsElevenFormatsWithSamplesInTheUsersLocale) {
  Open({{"Format", ""}});
  std::vector<std::string> captions;
  for (const ComboBox::Row& row : page.cboFormat.Rows()) captions.push_back(row.text);
  const std::vector<std::string> expected = {
      "Standard-Währung (1.134,23)",
      "Primäre Währung",
      "Sekundäre Währung",
      "Ganzzahl (1.134)",
      "Datum (23.04.2004)",
      "Datum (23. April 2004)",
      "Uhrzeit (16:09)",
      "Uhrzeit (16:09:53)",
      "Datum & Uhrzeit (23.04.2004 16:09)",
      "Datum & Uhrzeit (23.04.2004 16:09:53)",
      "Datum & Uhrzeit (23. April 2004 um 16:09:53)",
  };
  EXPECT_EQ(captions, expected);
}

// The expected table in full, so that a changed row is detected.
struct Row {
  std::string_view key;
  std::string_view shown;
  std::string_view function;
  std::string_view pattern;
};
constexpr Row kRows[] = {
    {"formatCurrency", "Standard-Währung (1.134,23)", "formatCurrency", "#,##0.00"},
    {"formatPrimaryCurrency", "Primäre Währung", "formatPrimaryCurrency", "primary-currency"},
    {"formatSecondaryCurrency", "Sekundäre Währung", "formatSecondaryCurrency",
     "secondary-currency"},
    {"formatInteger", "Ganzzahl (1.134)", "formatInteger", "#,##0"},
    {"formatShortDate", "Datum (23.04.2004)", "formatShortDate", "dd.mm.yyyy"},
    {"formatLongDate", "Datum (23. April 2004)", "formatLongDate", "dd. mmmm yyyy"},
    {"formatShortTime", "Uhrzeit (16:09)", "formatShortTime", "hh:mm"},
    {"formatLongTime", "Uhrzeit (16:09:53)", "formatLongTime", "hh:mm:ss"},
    {"formatShortDateTime", "Datum & Uhrzeit (23.04.2004 16:09)", "formatLongTime",
     "dd.mm.yyyy hh:mm"},
    {"formatLongDateTime", "Datum & Uhrzeit (23.04.2004 16:09:53)", "formatLongTime",
     "dd.mm.yyyy hh:mm:ss"},
    {"formatExtremeDateTime", "Datum & Uhrzeit (23. April 2004 um 16:09:53)", "formatLongTime",
     "dd. mmmm yyyy u\\m hh:mm:ss"},
};

TEST_F(DataFormatPage, TheTableHasElevenRowsOfKeyFunctionAndPattern) {
  ASSERT_EQ(DataFormats().size(), std::size(kRows));
  for (std::size_t row = 0; row < std::size(kRows); ++row) {
    EXPECT_EQ(DataFormats()[row].key, kRows[row].key);
    EXPECT_EQ(DataFormats()[row].function, kRows[row].function);
    EXPECT_EQ(DataFormats()[row].pattern, kRows[row].pattern);
    EXPECT_EQ(DataFormats()[row].CaptionWithSample().german, kRows[row].shown);
  }
}

TEST_F(DataFormatPage, AChosenRowShowsAndWritesItsPattern) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.shown);
    Open({{"Format", "etwas anderes"}});
    user.Choose(page.cboFormat, row.shown);
    EXPECT_EQ(page.lblFormatString.Caption(), row.pattern);
    page.Apply();
    EXPECT_EQ((*object)["Format"], Variant(row.pattern));
    page.Select({object});
    EXPECT_EQ(page.cboFormat.Text(), row.shown);
    EXPECT_EQ(page.cboFormat.ListIndex(), &row - kRows);
    EXPECT_EQ(page.lblFormatString.Caption(), row.pattern);
  }
}

TEST_F(DataFormatPage, TheThreeLongFormatsUseTheFunctionOfTheLongTime) {
  ASSERT_EQ(DataFormats().size(), 11U);
  EXPECT_EQ(DataFormats()[7].key, "formatLongTime");
  for (const std::size_t row : {7U, 8U, 9U, 10U})
    EXPECT_EQ(DataFormats()[row].function, "formatLongTime");
  for (std::size_t row = 0; row < 8; ++row)
    EXPECT_EQ(DataFormats()[row].function, DataFormats()[row].key);
}

TEST_F(DataFormatPage, EveryPatternSelectsItsRowAndIsWrittenBackUnchanged) {
  for (std::size_t row = 0; row < DataFormats().size(); ++row) {
    const std::string pattern(DataFormats()[row].pattern);
    SCOPED_TRACE(pattern);
    Open({{"Format", pattern}});
    EXPECT_EQ(page.cboFormat.ListIndex(), static_cast<int>(row));
    EXPECT_EQ(page.lblFormatString.Caption(), pattern);
    page.Apply();
    EXPECT_EQ((*object)["Format"], Variant(pattern));
  }
}

TEST_F(DataFormatPage, AShortDateSelectsTheFifthRow) {
  Open({{"Format", "dd.mm.yyyy"}});
  EXPECT_EQ(page.cboFormat.ListIndex(), 4);
  EXPECT_EQ(page.cboFormat.Text(), "Datum (23.04.2004)");
  EXPECT_EQ(page.lblFormatString.Caption(), "dd.mm.yyyy");
}

TEST_F(DataFormatPage, AnEmptyFormatOpensWithAnEmptyTextAndStaysEmpty) {
  Open({{"Format", ""}});
  EXPECT_EQ(page.cboFormat.Text(), "");
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  EXPECT_FALSE(page.Changed());
  user.FocusByKeyboard(page.cboFormat);
  user.Type("x");
  EXPECT_EQ(page.lblFormatString.Caption(), "x");
  user.Press(Key::backspace);
  EXPECT_EQ(page.lblFormatString.Caption(), "keine Formatangaben");
  EXPECT_TRUE(page.Changed());
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant(""));
}

TEST_F(DataFormatPage, ChoosingThePrimaryCurrencyWritesItsKeyword) {
  Open({{"Format", ""}});
  user.Choose(page.cboFormat, "Primäre Währung");
  EXPECT_TRUE(page.Changed());
  EXPECT_EQ(page.lblFormatString.Caption(), "primary-currency");
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant("primary-currency"));
}

TEST_F(DataFormatPage, ATypedPatternIsWrittenUnchanged) {
  Open({{"Format", "#,##0"}});
  user.FocusByKeyboard(page.cboFormat);
  user.Type("0.000");
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  EXPECT_EQ(page.lblFormatString.Caption(), "0.000");
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant("0.000"));
}

TEST_F(DataFormatPage, PatternsAreComparedExactly) {
  Open({{"Format", "DD.MM.YYYY"}});
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  EXPECT_EQ(page.cboFormat.Text(), "DD.MM.YYYY");
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant("DD.MM.YYYY"));
}

TEST_F(DataFormatPage, AFreeTextEqualToACaptionStaysFreeText) {
  Open({{"Format", "primary-currency"}});
  ASSERT_EQ(page.cboFormat.Text(), "Primäre Währung");
  Open({{"Format", "Primäre Währung"}});  // the same text, but not a row's key
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  EXPECT_EQ(page.lblFormatString.Caption(), "Primäre Währung");
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant("Primäre Währung"));
}

TEST_F(DataFormatPage, TypingACaptionChoosesNoRow) {
  Open({{"Format", ""}});
  user.FocusByKeyboard(page.cboFormat);
  user.Type("Primäre Währung");
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  page.Apply();
  EXPECT_EQ((*object)["Format"], Variant("Primäre Währung"));
}

TEST_F(DataFormatPage, FillingWithNewContentMarksThePageChanged) {
  Open({{"Format", "hh:mm"}});
  EXPECT_TRUE(page.Changed());
  Open({{"Format", "hh:mm"}});
  EXPECT_FALSE(page.Changed());
}

TEST_F(DataFormatPage, SwitchingTheSelectionDropsThePreviousChoice) {
  Open({{"Format", "hh:mm"}});
  Open({{"Format", ""}});
  EXPECT_EQ(page.cboFormat.ListIndex(), kNoRow);
  EXPECT_EQ(page.lblFormatString.Caption(), "keine Formatangaben");
}

TEST_F(DataFormatPage, EditsThePrintControl) {
  const auto control = std::make_shared<DTCPrint>();
  MemoryBag bag(std::vector<MemoryBag::Entry>{{"value", "X"}});
  control->ReadProperties(bag);
  page.Select({control});
  user.Choose(page.cboFormat, 0);
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:print value="X" format="#,##0.00"/>)");
}

}  // namespace
}  // namespace kvo
