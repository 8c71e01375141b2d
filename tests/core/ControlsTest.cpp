// Details of single classes: the state right after initialise, setters and what they refresh,
// boxes, error numbers, the held context object. Golden pairs cover the runtime texts and stored
// bags of loaded controls.
#include <gtest/gtest.h>

#include "common/values/RuntimeError.h"
#include "host/registration/classes.h"
#include "tests/core/ErrorOf.h"
#include "tests/core/TestPlatform.h"

namespace kvo {
namespace {

class ControlTest : public testing::Test {
 protected:
  static std::shared_ptr<Control> Fresh(std::string_view className) {
    return FindControlByName(className)->contract().create();
  }
  static std::shared_ptr<Control> Loaded(std::string_view className,
                                         std::vector<MemoryBag::Entry> entries = {}) {
    auto control = Fresh(className);
    MemoryBag bag(std::move(entries));
    control->ReadProperties(bag);
    return control;
  }
  static std::vector<MemoryBag::Entry> Stored(const Control& control) {
    MemoryBag bag;
    control.WriteProperties(bag);
    return bag.Entries();
  }
  static std::string ValueCaption(const Control& control) {
    return control.DesignTimeBox().labels.at(1).caption;
  }

  TestPlatform platform_;
  PlatformScope scope_{platform_};
};

// --- right after initialise --------------------------------------------------------------------

TEST_F(ControlTest, FreshControlsHaveRuntimeTextsWithoutNamespace) {
  for (const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
           {"DTCPrint", ""},
           {"DTCContact", ""},
           {"DTCOrder", ""},
           {"DTCConfig", ""},
           {"DTCElement", ""},
           {"DTCScript", "<:></:>"},
           {"DTCIf", ""},
           {"DTCProductList",
            "<: display-desc2=\"no\" display-price=\"no\" display-thumb=\"\" "
            "display-as-link=\"no\"/>"},
           {"DTCPositionList", "<: order-id=\"#order.orderID#\"/>"},
           {"DTCClicktracker",
            "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN<: href=\"\" click-id=\"\"></:>KVO BLOCKLEVEL "
            "ELEMENT ENDSPAN-->"},
           {"DTCViewtracker", "<:/>"},
           {"DTCUnsubscriber",
            "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN<: recipient=\"\" site=\"\"></:>KVO BLOCKLEVEL "
            "ELEMENT ENDSPAN-->"}})
    EXPECT_EQ(Fresh(name)->GetRuntimeText(), text) << name;
}
TEST_F(ControlTest, AFreshControlStoresItsEmptyNamespaceAndBasename) {
  EXPECT_EQ(Stored(*Fresh("DTCViewtracker")),
            (std::vector<MemoryBag::Entry>{{"namespace", ""}, {"basename", ""}}));
}
TEST_F(ControlTest, AFreshProductListIsZeroFalseAndEmpty) {
  const auto list = Fresh("DTCProductList");
  EXPECT_EQ(list->Get("DisplayColumns"), Variant(0));
  EXPECT_EQ(list->Get("DisplayThumb"), Variant(""));
  EXPECT_EQ(list->Get("StretchBreach"), Variant(false));
  EXPECT_EQ(list->Get("DisplayPrice"), Variant(false));
}

// --- boxes -------------------------------------------------------------------------------------

TEST_F(ControlTest, SideBySideBoxFitsBothCaptions) {
  platform_.widths = {{"Preis", 405}, {"#order.total#", 630}};
  const auto print =
      Loaded("DTCPrint", {{"display-basename", "Preis"}, {"value", "#order.total#"}});
  const Box box = print->DesignTimeBox();
  EXPECT_EQ(box.width, 1305);
  EXPECT_EQ(box.height, 390);
  EXPECT_EQ(box.border.left, 15);
  EXPECT_EQ(box.border.width, 1275);
  EXPECT_EQ(box.labels[0].at.left, 120);
  EXPECT_EQ(box.labels[1].at.left, 555);
  EXPECT_EQ(box.labels[0].at.top, 90);
  EXPECT_EQ(box.labels[1].at.top, 90);
  EXPECT_EQ(box.labels[0].weight, FontWeight::bold);
  EXPECT_EQ(box.labels[1].weight, FontWeight::normal);
}
TEST_F(ControlTest, AnEmptyDisplayValueShowsTheValueItself) {
  for (const auto& [name, key, property] :
       std::vector<std::array<std::string, 3>>{{"DTCPrint", "value", "Value"},
                                               {"DTCContact", "field", "Field"},
                                               {"DTCOrder", "field", "Field"},
                                               {"DTCConfig", "item", "Item"}}) {
    const auto control = Loaded(name, {{key, "v"}});
    EXPECT_EQ(ValueCaption(*control), "v") << name;
    control->Let("DisplayValue", "Anzeige");
    EXPECT_EQ(ValueCaption(*control), "Anzeige") << name;
    control->Let("DisplayValue", "");
    control->Let(property, "w");
    EXPECT_EQ(ValueCaption(*control), "w") << name;
  }
}
TEST_F(ControlTest, DesignCaptionsAreTheOnesOnTheForm) {
  const std::vector<std::array<std::string, 3>> captions = {
      {"DTCPrint", "Print", "<Value>"},
      {"DTCContact", "Contact", "Email"},
      {"DTCOrder", "Order", "OrderID"},
      {"DTCConfig", "Config", "company-name"},
      {"DTCElement", "Element", "<Value>"},
      {"DTCScript", "Script", "..."},
      {"DTCIf", "If", "..."},
      {"DTCProductList", "Product-List", ""},
      {"DTCPositionList", "Position-List", ""},
      {"DTCClicktracker", "ClickCounter", ""},
      {"DTCViewtracker", "ViewCounter", ""},
      {"DTCUnsubscriber", "Unsubscriber", ""}};
  for (const auto& [name, basename, value] : captions) {
    const Box box = Fresh(name)->DesignTimeBox();
    EXPECT_EQ(box.labels[0].caption, basename);
    if (box.labels.size() > 1) {
      EXPECT_EQ(box.labels[1].caption, value);
    }
  }
}
TEST_F(ControlTest, ElementBoxShowsTheElementsName) {
  const auto element = Loaded("DTCElement", {{"value", "td"}});
  EXPECT_EQ(ValueCaption(*element), "td");
}
TEST_F(ControlTest, ScriptBoxShowsDotsWithoutADescription) {
  const auto script = Loaded("DTCScript");
  EXPECT_EQ(ValueCaption(*script), "...");
  script->Let("DisplayValue", "Zähler");
  EXPECT_EQ(ValueCaption(*script), "Zähler");
}
TEST_F(ControlTest, IfBoxShowsTheTokenFormOfTheDescription) {
  const auto block = Loaded("DTCIf");
  EXPECT_EQ(ValueCaption(*block), "<keine Beschreibung>");
  block->Let("DisplayValue", "a<b");
  EXPECT_EQ(ValueCaption(*block), "akv:@lt;b");
  EXPECT_EQ(block->Get("DisplayValue"), Variant("a<b"));
}
TEST_F(ControlTest, CaptionBoxFitsItsCaption) {
  platform_.widths = {{"print", 300}, {"Zähler", 450}};
  for (const char* name : {"DTCClicktracker", "DTCViewtracker", "DTCUnsubscriber"}) {
    const auto control = Loaded(name);
    Box box = control->DesignTimeBox();
    EXPECT_EQ(box.width, 480);
    EXPECT_EQ(box.height, 390);
    EXPECT_EQ(box.border.left, 15);
    EXPECT_EQ(box.border.width, 450);
    EXPECT_EQ(box.labels[0].at.left, 120);
    control->DisplayBasename("Zähler");
    EXPECT_EQ(control->DesignTimeBox().width, 630);
  }
}
TEST_F(ControlTest, CaptionBoxesKeepTheirTopsAndHeights) {
  const auto tops = [](const char* name) {
    const Box box = Loaded(name)->DesignTimeBox();
    return std::array{box.labels[0].at.top, box.border.top, box.border.height};
  };
  EXPECT_EQ(tops("DTCClicktracker"), (std::array{90, 15, 380}));
  EXPECT_EQ(tops("DTCViewtracker"), (std::array{90, 15, 375}));
  EXPECT_EQ(tops("DTCUnsubscriber"), (std::array{75, 0, 380}));
}
TEST_F(ControlTest, ACaptionBoxKeepsItsPlacementUntilItIsResized) {
  const auto click = Fresh("DTCClicktracker");
  EXPECT_EQ(click->DesignTimeBox().width, 2700);
  click->Resize();
  EXPECT_EQ(click->DesignTimeBox().width, 100 * 12 + 180);
}
TEST_F(ControlTest, PositionListBoxCannotBeResized) {
  const auto list = Loaded("DTCPositionList", {{"display-basename", std::string(500, 'x')}});
  const Box box = list->DesignTimeBox();
  EXPECT_EQ(box.width, 7200);
  EXPECT_EQ(box.height, 480);
  EXPECT_EQ(box.labels[0].at, (Rect{120, 120, 6930, 255}));
}
TEST_F(ControlTest, ProductListBoxFollowsAWidthInPixels) {
  const auto widthFor = [](const char* tableWidth) {
    return Loaded("DTCProductList", {{"table-width", tableWidth}})->DesignTimeBox().width;
  };
  EXPECT_EQ(widthFor("99"), 7200);
  EXPECT_EQ(widthFor("100"), 1500);
  EXPECT_EQ(widthFor("100,9"), 1500);  // decimals are cut off
  EXPECT_EQ(widthFor("99,9"), 7200);
  EXPECT_EQ(widthFor("1.000"), 15000);
  EXPECT_EQ(widthFor("50%"), 7200);
  EXPECT_EQ(widthFor(""), 7200);
  EXPECT_EQ(widthFor("-200"), 7200);
  EXPECT_EQ(widthFor("143165576"), 2147483640);
  EXPECT_EQ(widthFor("143165577"), 7200);  // too many twips for 32 bits
  EXPECT_EQ(widthFor("1e999"), 7200);
}
TEST_F(ControlTest, ProductListBoxKeepsItsLastLayoutInside) {
  const auto list = Loaded("DTCProductList", {{"table-width", "600"}});
  Box box = list->DesignTimeBox();
  EXPECT_EQ(box.width, 9000);
  EXPECT_EQ(box.border.width, 8970);
  EXPECT_EQ(box.border.left, 15);
  EXPECT_EQ(box.labels[0].at.width, 8760);
  EXPECT_EQ(box.labels[0].at.left, 120);
  list->Let("TableWidth", "50%");
  box = list->DesignTimeBox();
  EXPECT_EQ(box.width, 7200);
  EXPECT_EQ(box.height, 480);
  EXPECT_EQ(box.border.width, 8970);
  EXPECT_EQ(box.labels[0].at.width, 8760);
}

// --- setters, conversions and failures ---------------------------------------------------------

TEST_F(ControlTest, WholeNumbersAreConvertedOnAssignment) {
  const auto list = Loaded("DTCProductList");
  list->Let("DisplayColumns", "3,5");
  EXPECT_EQ(list->Get("DisplayColumns"), Variant(4));
  EXPECT_EQ(ErrorOf([&] { list->Let("DisplayColumns", "abc"); }), 13);
  EXPECT_EQ(ErrorOf([&] { list->Let("DisplayColumns", "99999999999"); }), 6);
  EXPECT_EQ(list->Get("DisplayColumns"), Variant(4));
}
TEST_F(ControlTest, ABrokenColumnCountFailsTheLoad) {
  EXPECT_EQ(ErrorOf([] { Loaded("DTCProductList", {{"display-columns", ""}}); }), 13);
}
TEST_F(ControlTest, InvalidElementFlagsFailTheLoad) {
  EXPECT_EQ(ErrorOf([] { Loaded("DTCElement", {{"opening-tag-only", ""}}); }), 13);
  EXPECT_EQ(ErrorOf([] { Loaded("DTCElement", {{"closing-tag-only", "yes"}}); }), 13);
}
TEST_F(ControlTest, BorderAcceptsAWholeNumberAsText) {
  const auto list = Loaded("DTCProductList");
  list->Let("Border", 2);
  EXPECT_EQ(list->Get("Border"), Variant("2"));
}
TEST_F(ControlTest, ContentIsHeldInTokenForm) {
  for (const char* name : {"DTCElement", "DTCScript", "DTCClicktracker", "DTCUnsubscriber"}) {
    const auto control = Loaded(name);
    control->Let("HTMLContent", "<![CDATA[<img src=\"a&b\">]]>\r\nx");
    EXPECT_EQ(control->Get("HTMLContent"), Variant("<img src=\"a&b\">\r\nx")) << name;
    const auto stored = Stored(*control);
    EXPECT_NE(std::find(stored.begin(), stored.end(),
                        MemoryBag::Entry("html-content",
                                         "kv:@lt;img src=kv:@quot;akv:@amp;bkv:@quot;kv:@gt;"
                                         "kv:@br;x")),
              stored.end())
        << name;
  }
}
TEST_F(ControlTest, ContentSetByPropertyIsNotTrimmedUntilTheNextLoad) {
  const auto click = Loaded("DTCClicktracker");
  click->Let("HTMLContent", " Hier ");
  EXPECT_EQ(click->Get("HTMLContent"), Variant(" Hier "));
  EXPECT_EQ(Loaded("DTCClicktracker", Stored(*click))->Get("HTMLContent"), Variant("Hier"));
}
TEST_F(ControlTest, AFinalLineBreakIsATokenAndSurvivesTheNextLoad) {
  const auto link = Loaded("DTCUnsubscriber");
  link->Let("HTMLContent", "Abmelden\r\n");
  EXPECT_EQ(Stored(*link), (std::vector<MemoryBag::Entry>{{"html-content", "Abmeldenkv:@br;"}}));
  EXPECT_EQ(Loaded("DTCUnsubscriber", Stored(*link))->Get("HTMLContent"), Variant("Abmelden\r\n"));
}

class FailingBag : public MemoryBag {
 public:
  FailingBag(std::string key, std::vector<Entry> entries)
      : MemoryBag(std::move(entries)), key_(std::move(key)) {}

 protected:
  std::optional<std::string_view> Find(std::string_view key) override {
    if (key == key_) throw RuntimeError(ErrorNumber::invalidCall);
    return MemoryBag::Find(key);
  }

 private:
  std::string key_;
};

TEST_F(ControlTest, AFailingBagEndsTheLoad) {
  FailingBag bag("value", {});
  EXPECT_EQ(ErrorOf([&] { Fresh("DTCPrint")->ReadProperties(bag); }), 5);
}
TEST_F(ControlTest, TheIfControlSkipsAnUnreadableKey) {
  FailingBag bag("test", {{"on-true", "x"}, {"on-false", "y"}});
  const auto block = Fresh("DTCIf");
  block->Let("Test", "vorher");
  block->ReadProperties(bag);
  EXPECT_EQ(block->Get("Test"), Variant("vorher"));
  EXPECT_EQ(block->Get("OnFalse"), Variant("y"));
}

// --- the attribute list ------------------------------------------------------------------------

TEST_F(ControlTest, AttributesAreReturnedAsJoined) {
  const auto element = Loaded("DTCElement");
  element->Let("Attributes", "a|1||b|2");
  EXPECT_EQ(element->Get("Attributes"), Variant("a|1||b|2"));
  element->Let("Attributes", "||a|1");
  EXPECT_EQ(element->Get("Attributes"), Variant("a|1"));
  element->Let("Attributes", "");
  EXPECT_EQ(element->Get("Attributes"), Variant(""));
}
TEST_F(ControlTest, AnEmptyTextHasNoItems) {
  const auto element = Loaded("DTCElement", {{"attributes", ""}});
  EXPECT_EQ(ToObject(element->Get("AttributesCollection"))->Get("Count"), Variant(0));
}
TEST_F(ControlTest, EmptyPiecesAreItems) {
  const auto element = Loaded("DTCElement", {{"attributes", "||a|1||||"}});
  EXPECT_EQ(ToObject(element->Get("AttributesCollection"))->Get("Count"), Variant(4));
}
TEST_F(ControlTest, AnEmptyValueBeforeAnotherItemShiftsTheBarOnReload) {
  const auto list = std::make_shared<Collection>();
  list->Add("a|");
  list->Add("b|1");
  const auto element = Loaded("DTCElement", {{"value", "td"}});
  element->Let("AttributesCollection", ObjectRef(list));
  EXPECT_EQ(element->GetRuntimeText(), "<kv:print name=\"td\" b=\"1\"/>");
  const auto again = Loaded("DTCElement", Stored(*element));  // "a|||b|1" is "a" and "|b|1"
  EXPECT_EQ(ErrorOf([&] { again->GetRuntimeText(); }), 9);
}
TEST_F(ControlTest, AnItemWithoutABarIsError9) {
  const auto element = Loaded("DTCElement", {{"value", "td"}, {"attributes", "a"}});
  EXPECT_EQ(ErrorOf([&] { element->GetRuntimeText(); }), 9);
}
TEST_F(ControlTest, WithoutAnElementNameNothingFails) {
  const auto element = Loaded("DTCElement", {{"attributes", "a"}});
  EXPECT_EQ(element->GetRuntimeText(), "");
}
TEST_F(ControlTest, KeepsTheGivenCollectionItself) {
  const auto list = std::make_shared<Collection>();
  const auto element = Loaded("DTCElement", {{"value", "td"}});
  element->Let("AttributesCollection", ObjectRef(list));
  list->Add("a|1");
  EXPECT_EQ(element->Get("Attributes"), Variant("a|1"));
  element->Let("AttributesCollection", Variant());
  EXPECT_EQ(element->Get("Attributes"), Variant(""));
  EXPECT_EQ(list->Count(), 1U);
}

TEST_F(ControlTest, ConvertsItemsToTexts) {
  const auto list = std::make_shared<Collection>();
  list->Add(Variant(7));
  list->Add(Variant(true));
  const auto element = Loaded("DTCElement", {{"value", "td"}});
  element->Let("AttributesCollection", ObjectRef(list));
  EXPECT_EQ(element->Get("Attributes"), Variant("7||True"));
}

// A host's own collection, which can only be enumerated.
class ForeignCollection : public Object {
 public:
  std::unique_ptr<Enumerator> Enumerate() override { return items.Enumerate(); }
  Collection items;
};
TEST_F(ControlTest, AForeignCollectionIsEnumerated) {
  const auto list = std::make_shared<ForeignCollection>();
  list->items.Add("a|1");
  const auto element = Loaded("DTCElement", {{"value", "td"}});
  element->Let("AttributesCollection", ObjectRef(list));
  EXPECT_EQ(element->GetRuntimeText(), "<kv:print name=\"td\" a=\"1\"/>");
}

// --- the product list's GUID -------------------------------------------------------------------

TEST_F(ControlTest, ACachedListGetsANewGuidAtEveryCall) {
  const auto list = Loaded("DTCProductList", {{"in-cache", "yes"}, {"table-border", ""}});
  EXPECT_EQ(
      list->GetRuntimeText(),
      "<kv:print display-columns=\"1\" in-cache=\"{00000000-0000-4000-8000-000000000001}\"/>");
  EXPECT_EQ(
      list->GetRuntimeText(),
      "<kv:print display-columns=\"1\" in-cache=\"{00000000-0000-4000-8000-000000000002}\"/>");
}

// --- Office and double click -------------------------------------------------------------------

TEST_F(ControlTest, OfficeIsHeldUntilAnotherIsSetOrTheControlIsDestroyed) {
  for (const char* name : {"DTCContact", "DTCOrder", "DTCIf", "DTCProductList"}) {
    const ObjectRef first = std::make_shared<Collection>();
    const ObjectRef second = std::make_shared<Collection>();
    auto control = Loaded(name);
    control->Let("Office", first);
    EXPECT_EQ(first.use_count(), 2) << name;
    EXPECT_EQ(ToObject(control->Get("Office")), first) << name;
    control->Let("Office", second);
    EXPECT_EQ(first.use_count(), 1) << name;
    EXPECT_EQ(second.use_count(), 2) << name;
    control.reset();
    EXPECT_EQ(second.use_count(), 1) << name;
  }
}
TEST_F(ControlTest, OfficeIsNotPersisted) {
  for (const RegisteredControl& control : RegisteredControls())
    EXPECT_EQ(control.contract().FindKey("office"), nullptr);
}
TEST_F(ControlTest, AContactShowsANoticeThenItsPagesOnDoubleClick) {
  const auto contact = Loaded("DTCContact");
  EXPECT_TRUE(contact->DblClick(42));
  EXPECT_EQ(platform_.log, (std::vector<std::string>{"message 42 yo",
                                                     "frame 42 Kontaktfeld propContactGeneral "
                                                     "propGeneralFormat"}));
  EXPECT_EQ(platform_.shown, contact);
}
TEST_F(ControlTest, NoOtherControlHandlesADoubleClick) {
  for (const RegisteredControl& control : RegisteredControls()) {
    if (control.contract().name == "DTCContact") continue;
    EXPECT_FALSE(control.contract().create()->DblClick(1));
    EXPECT_TRUE(platform_.log.empty()) << control.contract().name;
  }
}

}  // namespace
}  // namespace kvo
