#include "controls/DTCClicktracker.h"
#include "controls/DTCUnsubscriber.h"
#include "pages/propClickGeneral.h"
#include "pages/propUnsubGeneral.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using Texts = std::vector<std::string>;

class ClickPage : public PageTest<propClickGeneral> {
 protected:
  void OpenOn(const std::string& href = "h") {
    Open({{"Href", href}, {"ClickId", "c"}, {"HTMLContent", "<b>x</b>"}});
  }
};

TEST_F(ClickPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.lblHref.Caption(), "Internet Adresse (URL)");
  EXPECT_EQ(page.txtHref.At(), (Rect{180, 600, 5295, 285}));
  EXPECT_EQ(page.lblClickId.Caption(), "Klick-Id (zur späteren Auswertung)");
  EXPECT_EQ(page.txtClickId.At(), (Rect{180, 1320, 5295, 285}));
  EXPECT_EQ(page.lblHTMLContent.Caption(), "HTML Inhalt:");
  EXPECT_EQ(page.txtHTMLContent.At(), (Rect{180, 2160, 5295, 2205}));
  EXPECT_TRUE(page.txtHTMLContent.MultiLine());
  EXPECT_EQ(page.txtHTMLContent.TextFont().family, "Courier New");
  EXPECT_EQ(page.txtHTMLContent.TextFont().points, 9);
  user.FocusByKeyboard(page.txtHref);
  user.Press(Key::tab);
  EXPECT_EQ(page.Focused(), &page.txtClickId);
  user.Press(Key::tab);
  EXPECT_EQ(page.Focused(), &page.txtHTMLContent);
}

TEST_F(ClickPage, FillingDoesNotMarkThePageChanged) {
  OpenOn();
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(page.txtHref.Text(), "h");
  EXPECT_EQ(page.txtClickId.Text(), "c");
  EXPECT_EQ(page.txtHTMLContent.Text(), "<b>x</b>");
}

TEST_F(ClickPage, EachBoxMarksThePageChangedAndSelectsItsTextOnEntering) {
  for (TextBox* box : {&page.txtHref, &page.txtClickId, &page.txtHTMLContent}) {
    OpenOn();
    user.FocusByKeyboard(*box);
    EXPECT_EQ(box->SelLength(), CharacterCount(box->Text())) << box->Name();
    EXPECT_FALSE(page.Changed());
    user.Type("x");
    EXPECT_TRUE(page.Changed()) << box->Name();
  }
}

TEST_F(ClickPage, WritesTheFirstControlOnly) {
  object = std::make_shared<PropertyObject>(
      Properties{{"Href", "1"}, {"ClickId", ""}, {"HTMLContent", ""}});
  const auto second = std::make_shared<PropertyObject>(
      Properties{{"Href", "2"}, {"ClickId", ""}, {"HTMLContent", ""}});
  page.Select({object, second});
  EXPECT_EQ(page.txtHref.Text(), "1");
  user.FocusByKeyboard(page.txtHref);
  user.Type("neu");
  page.Apply();
  EXPECT_EQ(object->written, (Texts{"Href", "ClickId", "HTMLContent"}));
  EXPECT_EQ((*object)["Href"], Variant("neu"));
  EXPECT_TRUE(second->written.empty());
}

TEST_F(ClickPage, ALineBreakTypedIntoTheContentSurvives) {
  const auto control = std::make_shared<DTCClicktracker>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  user.FocusByKeyboard(page.txtHTMLContent);
  user.Type("<img src=\"a\">\nb");
  page.Apply();
  MemoryBag stored;
  control->WriteProperties(stored);
  EXPECT_EQ(stored.Entries().at(0).second, "kv:@lt;img src=kv:@quot;akv:@quot;kv:@gt;kv:@br;b");
  EXPECT_EQ(control->HTMLContent(), "<img src=\"a\">\r\nb");
}

class UnsubPage : public PageTest<propUnsubGeneral> {
 protected:
  void OpenOn(const std::string& site) {
    Open({{"Recipient", "r@x"}, {"Site", site}, {"HTMLContent", "Abmelden"}});
  }
};

TEST_F(UnsubPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.lblRecipient.Caption(),
            "Email-Adresse für den Empfang von Newsletter Abmeldungen");
  EXPECT_EQ(page.lblRecipient.At().top, 360);
  EXPECT_EQ(page.txtRecipient.At(), (Rect{240, 600, 5295, 285}));
  EXPECT_EQ(page.lblSite.Caption(), "Internet-Adresse der Bestätigungsseite");
  EXPECT_EQ(page.lblSite.At().top, 1080);
  EXPECT_EQ(page.txtSite.At().top, 1320);
  EXPECT_EQ(page.lblWhatsThat.Caption(), "Hinweis:");
  EXPECT_EQ(page.lblWhatsThatInfo.Caption(),
            "Über den Formulargenerator wurde automatisch eine Bestätigungsseite "
            "'newsletter_response.html' angelegt. Bitte geben Sie hier die URL dieser Seite ohne "
            "den Dateinamen ein.");
  const std::string& example = page.lblWhatsThatExample.Caption();
  EXPECT_TRUE(example.starts_with("Bsp: http") && example.ends_with("/assets/own/")) << example;
  int top[] = {1680, 2040, 3000};
  int at = 0;
  for (const Label* hint :
       {&page.lblWhatsThat, &page.lblWhatsThatInfo, &page.lblWhatsThatExample}) {
    EXPECT_EQ(hint->At().left, 960);
    EXPECT_EQ(hint->At().top, top[at++]);
    EXPECT_LT(page.picInfo.At().left + page.picInfo.At().width, hint->At().left);
  }
  EXPECT_EQ(page.lblHTMLContent.Caption(), "Link-Text");
  EXPECT_EQ(page.lblHTMLContent.At().top, 3720);
  EXPECT_EQ(page.txtHTMLContent.At(), (Rect{240, 3960, 5295, 285}));
  EXPECT_EQ(page.txtHTMLContent.TextFont().family, "Courier New");
  EXPECT_EQ(page.txtHTMLContent.TextFont().points, 9);
}

TEST_F(UnsubPage, TheInitialContentEndsWithALineBreak) {
  EXPECT_EQ(page.txtHTMLContent.Text(), "Abmelden\r\n");
}

TEST_F(UnsubPage, FillingDoesNotMarkThePageChanged) {
  OpenOn("http://s/");
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(page.txtHTMLContent.Text(), "Abmelden");
}

TEST_F(UnsubPage, ASlashIsAppendedToTheSiteEvenToAnEmptyOne) {
  const std::pair<std::string, std::string> sites[] = {
      {"", "/"}, {"http://s", "http://s/"}, {"http://s/", "http://s/"}, {"c:\\s\\", "c:\\s\\/"}};
  for (const auto& [typed, stored] : sites) {
    OpenOn(typed);
    page.Apply();
    EXPECT_EQ((*object)["Site"], Variant(stored));
  }
  EXPECT_EQ(object->written, (Texts{"Recipient", "Site", "HTMLContent"}));
}

TEST_F(UnsubPage, EachBoxMarksThePageChangedAndSelectsItsTextOnEntering) {
  for (TextBox* box : {&page.txtRecipient, &page.txtSite, &page.txtHTMLContent}) {
    OpenOn("s/");
    user.FocusByKeyboard(*box);
    EXPECT_EQ(box->SelLength(), CharacterCount(box->Text())) << box->Name();
    user.Type("x");
    EXPECT_TRUE(page.Changed()) << box->Name();
  }
}

TEST_F(UnsubPage, AContentSetOnlyByTheBagIsUnchanged) {
  const auto control = std::make_shared<DTCUnsubscriber>();
  MemoryBag bag;
  control->ReadProperties(bag);
  page.Select({control});
  page.Apply();
  EXPECT_EQ(control->HTMLContent(), "Abmelden");
  EXPECT_EQ(control->Site(), "/");
}

}  // namespace
}  // namespace kvo
