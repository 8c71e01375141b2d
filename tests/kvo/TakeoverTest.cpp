// kvo adopt on all old templates of examples/takeover: published, the new pages give the old bytes,
// with the runtime texts in place of the placeholders that the mapping names. What is expected
// comes from the golden runtime texts of the controls, not from the program.
#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/kvo/Program.h"
#include "tests/support/GoldenCases.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;
using Replacement = std::pair<std::string, std::string>;
using Replacements = std::vector<Replacement>;

const fs::path kTemplates = fs::path(KVO_SOURCE_DIR) / "examples/takeover";

// The text with each part replaced that begins with the first of a pair; the first pair counts.
std::string WithReplaced(const std::string& text, const Replacements& pairs) {
  std::string replaced;
  for (std::size_t at = 0; at < text.size();) {
    const auto pair = std::ranges::find_if(pairs, [&](const Replacement& each) {
      return text.compare(at, each.first.size(), each.first) == 0;
    });
    replaced += pair == pairs.end() ? text.substr(at, 1) : pair->second;
    at += pair == pairs.end() ? 1 : pair->first.size();
  }
  return replaced;
}

// A golden runtime text, with other values of its properties.
struct GoldenText {
  std::string className;
  std::string goldenCase;
  Replacements values;

  std::string Text() const {
    for (const GoldenCase& each :
         GoldenCases(KVO_SOURCE_DIR "/tests/golden/" + className + ".txt")) {
      if (each.name != goldenCase) continue;
      const std::string text = each.parts.at("runtime");
      for (const auto& [from, to] : values)
        EXPECT_NE(text.find(from), std::string::npos) << className << ' ' << goldenCase << from;
      return WithReplaced(text, values);
    }
    ADD_FAILURE() << className << " has no case " << goldenCase;
    return {};
  }
};

GoldenText ContactTag(const std::string& field) {
  return {"DTCContact", "field", {{"EMAIL", field}}};
}
GoldenText ContactTag(const std::string& field, const std::string& format) {
  return {"DTCContact", "field-and-format", {{"A&amp;B", field}, {"dd.mm.yyyy", format}}};
}
GoldenText OrderTag(const std::string& field) {
  return {"DTCOrder", "field-and-format", {{"ORDER_TOTAL", field}, {" format=\"#,##0.00\"", ""}}};
}
GoldenText OrderTag(const std::string& field, const std::string& format) {
  return {"DTCOrder", "field-and-format", {{"ORDER_TOTAL", field}, {"#,##0.00", format}}};
}

// What the mapping of the examples says, by name.
const std::map<std::string, GoldenText>& MappedPlaceholders() {
  static const std::map<std::string, GoldenText> mapped = {
      {"anrede", ContactTag("Salutation")},
      {"vorname", ContactTag("FirstName")},
      {"nachname", ContactTag("LastName")},
      {"mail", ContactTag("Email")},
      {"ort", ContactTag("City")},
      {"geburtstag", ContactTag("Birthday", "dd.mm.")},
      {"punkte", ContactTag("BonusPoints", "#,##0")},
      {"bestellnr", OrderTag("OrderID")},
      {"bestelldatum", OrderTag("OrderDate", "dd.mm.yyyy")},
      {"summe", OrderTag("OrderTotal", "#,##0.00")},
      {"versand", OrderTag("ShippingCosts", "#,##0.00")},
      {"zahlung", OrderTag("PaymentMethod")},
      {"sendung", OrderTag("TrackingCode")},
      {"firma", {"DTCConfig", "own-basename", {}}},
      {"positionen",
       {"DTCPositionList",
        "pixels-compared-exactly",
        {{"print", "positionlist"},
         {" table-cellspacing=\"01\"", ""},
         {"\" 3\"", "\"5\""},
         {" table-border=\"00\"", ""}}}},
      {"abmelden",
       {"DTCUnsubscriber",
        "empty-bag",
        {{"print", "unsubscribe"},
         {"recipient=\"\"", "recipient=\"newsletter@shop.example\""},
         {"site=\"\"", "site=\"https://shop.example/\""}}}}};
  return mapped;
}

GoldenText LinkTag(const std::string& href, const std::string& content) {
  return {"DTCClicktracker",
          "whole-link",
          {{"seite.html?a=1&amp;b=2", href}, {"news1", "link-1"}, {"Hier", content}}};
}
GoldenText ElementTag(const std::string& nameAndAttributes, const std::string& content) {
  return {"DTCElement",
          "content-in-markers",
          {{"div\"", nameAndAttributes}, {"Hallo & Welt", content}}};
}
GoldenText OpeningTag(const std::string& name, const std::string& attributes) {
  return {"DTCElement", "opening-tag-only", {{"td", name}, {"/>", attributes + "/>"}}};
}
GoldenText ClosingTag(const std::string& name) {
  return {"DTCElement", "closing-tag-only", {{"td", name}}};
}
GoldenText SingleTag(const std::string& nameAndAttributes) {
  return {"DTCElement", "self-closing", {{"br\"", nameAndAttributes}}};
}
std::string QuotedTag(const std::string& before, const GoldenText& tag, const std::string& behind) {
  return '\'' + before + tag.Text() + behind + '\'';
}

// Placeholders in attributes, where the control is an element's or the tag stands in the value; and
// those in places where they stay.
const std::map<std::string, std::vector<std::pair<std::string, std::string>>>& Places() {
  static const std::map<std::string, Replacements> places = {
      {"bestellung.html",
       {{"<td title=\"Bestellung {{ bestellnr }}\">",
         OpeningTag("td", " title=\"Bestellung #order.OrderID#\"").Text()},
        {"</td>", ClosingTag("td").Text()},
        {"<a class=\"knopf\" href=\"https://shop.example/bestellung?nr={{ bestellnr "
         "}}&amp;von=mail\">Bestellung ansehen</a>",
         ElementTag("a\" class=\"knopf\" "
                    "href=\"https://shop.example/bestellung?nr=#order.OrderID#&amp;von=mail\"",
                    "Bestellung ansehen")
             .Text()}}},
      {"bewertung.html",
       {{"<a href=\"https://shop.example/bewerten?nr=<%= bestellnr %>&sterne=5\" "
         "style=\"font-family:'Tahoma'\">Bewerten</a>",
         ElementTag("a\" href=\"https://shop.example/bewerten?nr=#order.OrderID#&amp;sterne=5\" "
                    "style=\"font-family:'Tahoma'\"",
                    "Bewerten")
             .Text()}}},
      {"geburtstag.html",
       {{"<a href=\"https://shop.example/gutschein?an=*|MAIL|*\">Gutschein einlösen</a>",
         LinkTag("https://shop.example/gutschein?an=#customer.Email#", "Gutschein einlösen")
             .Text()}}},
      {"konto.html",
       {{"<a href=\"https://shop.example/konto/<%= mail %>\" target=\"_blank\">Anmelden</a>",
         ElementTag("a\" href=\"https://shop.example/konto/#customer.Email#\" target=\"_blank\"",
                    "Anmelden")
             .Text()}}},
      {"mahnung.html", {{"\"[BESTELLNR]\"", QuotedTag("", OrderTag("OrderID"), "")}}},
      {"newsletter-april.html",
       {{"<a href=\"https://shop.example/punkte?k=%mail%\">",
         OpeningTag("a", " href=\"https://shop.example/punkte?k=#customer.Email#\"").Text()},
        {" einlösen</a>", " einlösen" + ClosingTag("a").Text()}}},
      {"newsletter-maerz.html",
       {{"<a href=\"https://shop.example/angebote?k=%mail%&amp;q=M%C3%A4rz\">Zu den Angeboten</a>",
         LinkTag("https://shop.example/angebote?k=#customer.Email#&amp;q=M%C3%A4rz",
                 "Zu den Angeboten")
             .Text()}}},
      {"paket-unterwegs.html",
       {{"<img src=\"https://shop.example/karte/{{ sendung }}.png\" alt=\"Wo Ihr Paket ist\" "
         "width=\"560\">",
         SingleTag("img\" src=\"https://shop.example/karte/#order.TrackingCode#.png\" alt=\"Wo Ihr "
                   "Paket ist\" width=\"560\"")
             .Text()},
        {"\"https://shop.example/zaehler/{{ sendung }}.gif\"",
         QuotedTag("https://shop.example/zaehler/", OrderTag("TrackingCode"), ".gif")}}},
      {"rueckruf.html",
       {{"<span title='Bestellung [BESTELLNR]'>Nummer siehe hier</span>",
         ElementTag("span\" title=\"Bestellung #order.OrderID#\"", "Nummer siehe hier").Text()}}},
      {"saison.html", {{"<!-- Für *|VORNAME|*:", "<!-- Für *|VORNAME|*:"}}},
      {"umfrage.html", {{"k=*|KUNDENNR|*&m=*|MAIL|*", "k=*|KUNDENNR|*&m=*|MAIL|*"}}},
      {"willkommen.html",
       {{"<a href=\"https://shop.example/konto?mail={{ mail }}\">Zu Ihrem Konto</a>",
         LinkTag("https://shop.example/konto?mail=#customer.Email#", "Zu Ihrem Konto").Text()}}}};
  return places;
}

// In all ways of writing them that the mapping has.
Replacements PlaceholderTexts() {
  Replacements texts;
  for (const auto& [name, runtime] : MappedPlaceholders()) {
    std::string upper = name;
    std::ranges::transform(upper, upper.begin(),
                           [](char c) { return static_cast<char>(c - 'a' + 'A'); });
    for (const std::string& written :
         {"{{ " + name + " }}", "{{" + name + "}}", "*|" + upper + "|*", '[' + upper + ']',
          '%' + name + '%', "<%= " + name + " %>"})
      texts.emplace_back(written, runtime.Text());
  }
  return texts;
}

class TakeoverTest : public Program {};

TEST_F(TakeoverTest, AllPagesPublishTheirOldBytes) {
  fs::copy(kTemplates, Folder() / "work/old");
  const Result adopted = Kvo({"adopt", "old", "--map", "old/uebernahme.json", "-o", "new/"});
  EXPECT_EQ(adopted.code, 1);  // some placeholders are left over
  EXPECT_EQ(adopted.err, "");
  fs::create_directory(Folder() / "work/published");
  ASSERT_EQ(Kvo({"publish", "new", "-o", "published"}).code, 0);

  const Replacements texts = PlaceholderTexts();
  int pages = 0;
  int same = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(kTemplates)) {
    if (entry.path().extension() != ".html") continue;
    const std::string page = entry.path().filename().string();
    SCOPED_TRACE(page);
    const std::string old = Read("old/" + page);
    Replacements all;
    if (const auto places = Places().find(page); places != Places().end()) all = places->second;
    for (const auto& [from, to] : all) EXPECT_NE(old.find(from), std::string::npos) << from;
    all.insert(all.end(), texts.begin(), texts.end());
    const std::string expected = WithReplaced(old, all);
    EXPECT_EQ(Read("published/" + page), expected);
    ++pages;
    if (expected == old) ++same;
  }
  EXPECT_EQ(pages, 20);
  EXPECT_EQ(same, 5);  // tags alone

  // The new pages are as good as saved ones.
  EXPECT_EQ(Kvo({"check", "new", "--office", "old/office.json"}).out, "");
  EXPECT_EQ(Kvo({"save", "new"}).code, 0);
  EXPECT_EQ(Kvo({"adopt", "new", "--map", "old/uebernahme.json", "--dry-run"}).out.find("@@"),
            std::string::npos);
}

}  // namespace
}  // namespace kvo::test
