#include "controls/DTCProductList.h"
#include "pages/propProdListPicker.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using Texts = std::vector<std::string>;

class ProductPicker : public PageTest<propProdListPicker> {
 protected:
  ProductPicker() {
    table.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", "grün"}},
                  {{"ProductNo", "200"}, {"Desc1", Variant()}, {"Desc2", ""}},
                  {{"ProductNo", Variant()}, {"Desc1", "ohne"}, {"Desc2", ""}},
                  {{"ProductNo", "300"}, {"Desc1", "Kanne"}, {"Desc2", "Ton"}}};
    office->connection = connection;
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
  }
  void OpenOn(const std::string& products) {
    Open({{"SelectedProducts", products}, {"Office", ObjectRef(office)}});
  }
  Texts Picked() const {
    Texts items;
    for (const auto& item : page.suiPickedProducts.Items())
      items.push_back(item->Key() + "|" + item->Caption() + "|" + ToText(item->Value()));
    return items;
  }
  std::string Applied() {
    page.Apply();
    return ToText((*object)["SelectedProducts"]);
  }
  PropertyGridItem& Term() { return page.suiSearch.Item("txtSearchTerm"); }
  PropertyGridItem& SearchIn() { return page.suiSearch.Item("cboSearchIn"); }
  PropertyGridItem& SearchButton() { return page.suiSearch.Item("cmdSearch"); }

  FakeTable table;
  std::shared_ptr<FakeConnection> connection = std::make_shared<FakeConnection>();
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
};

TEST_F(ProductPicker, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Produkte auswählen");
  EXPECT_EQ(page.cmdDelete.Caption(), "Löschen");
  for (const char* name : {"gdProducts", "suiSearch", "suiPickedProducts", "cmdAddProduct",
                           "cmdDelete", "timerAutomaticSearch"})
    EXPECT_NE(page.Find(name), nullptr) << name;
}

TEST_F(ProductPicker, OpensTheProductsWithTheHostsConnection) {
  OpenOn("");
  ASSERT_EQ(table.opened.size(), 2U);
  EXPECT_EQ(table.opened[0].source, "SELECT ProductNo, Desc1, Desc2 FROM Products");
  EXPECT_EQ(table.opened[0].connection, Variant(ObjectRef(connection)));
  EXPECT_EQ(table.opened[0].numbers, (std::vector<Variant>{2, 1, -1}));
  // The grid opens the same database and statement on its own.
  EXPECT_EQ(table.opened[1].source, table.opened[0].source);
  EXPECT_EQ(table.opened[1].connection, Variant("sqlite3://shop.db"));
}

TEST_F(ProductPicker, TheGridShowsTheProductsUnderItsColumns) {
  OpenOn("");
  ASSERT_EQ(page.gdProducts.Columns().size(), 3U);
  const std::pair<std::string, std::string> columns[] = {
      {"Art.Nr", "ProductNo"}, {"Name", "Desc1"}, {"Beschreibung", "Desc2"}};
  for (std::size_t at = 0; at < 3; ++at) {
    const GridColumn& column = page.gdProducts.Columns()[at];
    EXPECT_EQ(column.caption, columns[at].first);
    EXPECT_EQ(column.field, columns[at].second);
    EXPECT_EQ(column.emptyText, "<keine Angabe>");
    EXPECT_EQ(column.groupText, column.caption + ": ");
    EXPECT_EQ(column.sortHint, "Sortieren nach: " + column.caption);
    EXPECT_EQ(column.size, 300);
  }
  EXPECT_EQ(page.gdProducts.TextFont().family, "Tahoma");
  EXPECT_EQ(page.gdProducts.todayText, "Heute");
  EXPECT_EQ(page.gdProducts.recordsText, "Produkte: ");
  EXPECT_EQ(page.gdProducts.RowCount(), 4U);
  EXPECT_EQ(page.gdProducts.Cell(0, 1), "Tee");
  EXPECT_EQ(page.gdProducts.Cell(1, 1), "<keine Angabe>");
}

TEST_F(ProductPicker, StoredNumbersAreShownBareAndWrittenBackUnchanged) {
  OpenOn("100,300");
  EXPECT_EQ(Picked(), (Texts{"pprod_100|100|", "pprod_300|300|"}));
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(Applied(), "100,300");
}

TEST_F(ProductPicker, OddListsAreWrittenBackUnchanged) {
  for (const char* numbers : {"", "100", "100,100", ",100", "100,", ",", " 100 ,x y", "a,,b"}) {
    OpenOn(numbers);
    EXPECT_EQ(Applied(), numbers);
  }
}

TEST_F(ProductPicker, AddsTheSelectedRowsByButtonWithoutMarkingThePage) {
  OpenOn("");
  user.SelectRows(page.gdProducts, {3, 0});
  user.Click(page.cmdAddProduct);
  EXPECT_EQ(Picked(), (Texts{"pprod_100|100 (Tee)|Product", "pprod_300|300 (Kanne)|Product"}));
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(Applied(), "100,300");
}

TEST_F(ProductPicker, AddsByDoubleClickAndMarksThePage) {
  OpenOn("");
  user.DoubleClick(page.gdProducts, 0);
  EXPECT_EQ(Picked(), Texts{"pprod_100|100 (Tee)|Product"});
  EXPECT_TRUE(page.Changed());
}

TEST_F(ProductPicker, AProductIsNeverPickedTwice) {
  OpenOn("100");
  user.DoubleClick(page.gdProducts, 0);
  user.DoubleClick(page.gdProducts, 3);
  user.DoubleClick(page.gdProducts, 3);
  EXPECT_EQ(Picked(), (Texts{"pprod_100|100|", "pprod_300|300 (Kanne)|Product"}));
}

TEST_F(ProductPicker, DuplicateNumbersInTheControlAreKept) {
  OpenOn("100,100");
  EXPECT_EQ(Picked().size(), 2U);
}

TEST_F(ProductPicker, ANullNumberSkipsTheRowAndANullNameIsEmpty) {
  OpenOn("");
  user.SelectRows(page.gdProducts, {1, 2});
  user.Click(page.cmdAddProduct);
  EXPECT_EQ(Picked(), Texts{"pprod_200|200 ()|Product"});
}

TEST_F(ProductPicker, AnUnreadableRowIsSkipped) {
  OpenOn("");
  user.SelectRows(page.gdProducts, {0, 3});
  table.gone = true;
  user.Click(page.cmdAddProduct);
  EXPECT_TRUE(Picked().empty());
  table.gone = false;
  user.Click(page.cmdAddProduct);
  EXPECT_EQ(Picked().size(), 2U);
}

TEST_F(ProductPicker, DeletesTheSelectedPickedProductByButtonAndByKey) {
  OpenOn("1,2,3");
  user.Click(page.cmdDelete);  // nothing is selected
  EXPECT_FALSE(page.Changed());
  user.SelectItem(*page.suiPickedProducts.Items()[1]);
  user.Click(page.cmdDelete);
  EXPECT_TRUE(page.Changed());
  EXPECT_EQ(Applied(), "1,3");
  user.SelectItem(*page.suiPickedProducts.Items()[0]);
  user.Press(Key::del);
  EXPECT_TRUE(page.Changed());
  EXPECT_EQ(Applied(), "3");
}

TEST_F(ProductPicker, AnEmptiedListIsWrittenAsAnEmptyText) {
  OpenOn("1");
  user.SelectItem(*page.suiPickedProducts.Items()[0]);
  user.Click(page.cmdDelete);
  EXPECT_EQ(Applied(), "");
}

TEST_F(ProductPicker, ANumberWithACommaIsSplitOnTheNextLoad) {
  table.rows[0]["ProductNo"] = "1,5";
  OpenOn("");
  user.DoubleClick(page.gdProducts, 0);
  EXPECT_EQ(Applied(), "1,5");
  page.Select({object});
  EXPECT_EQ(Picked(), (Texts{"pprod_1|1|", "pprod_5|5|"}));
}

TEST_F(ProductPicker, AClosedConnectionDisablesThePageAndKeepsThePickedList) {
  OpenOn("1,2");
  connection->state = 0;
  OpenOn("9");
  for (const FormControl* control : {static_cast<const FormControl*>(&page.gdProducts),
                                     static_cast<const FormControl*>(&page.suiSearch),
                                     static_cast<const FormControl*>(&page.cmdAddProduct),
                                     static_cast<const FormControl*>(&page.cmdDelete)})
    EXPECT_FALSE(control->Enabled()) << control->Name();
  EXPECT_TRUE(page.suiPickedProducts.Enabled());
  EXPECT_EQ(Picked(), (Texts{"pprod_1|1|", "pprod_2|2|"}));
  EXPECT_EQ(table.opened.size(), 2U);  // nothing was loaded
  connection->state = 1;
  OpenOn("9");
  EXPECT_TRUE(page.gdProducts.Enabled());
  EXPECT_EQ(Picked(), Texts{"pprod_9|9|"});
}

TEST_F(ProductPicker, EveryStateExceptZeroIsOpen) {
  for (const std::int32_t state : {1, 2, 4, 5, 8, 9, -1, 256}) {
    SCOPED_TRACE(state);
    connection->state = 0;
    OpenOn("7");
    EXPECT_FALSE(page.gdProducts.Enabled());
    connection->state = state;
    OpenOn("9");
    for (const FormControl* control : {static_cast<const FormControl*>(&page.gdProducts),
                                       static_cast<const FormControl*>(&page.suiSearch),
                                       static_cast<const FormControl*>(&page.cmdAddProduct),
                                       static_cast<const FormControl*>(&page.cmdDelete)})
      EXPECT_TRUE(control->Enabled()) << control->Name();
    EXPECT_EQ(page.gdProducts.RowCount(), 4U);
    EXPECT_EQ(Picked(), Texts{"pprod_9|9|"});
  }
}

// Records its calls.
class WatchedConnection final : public Object {
 public:
  std::vector<std::string> done;
  Variant Get(std::string_view name) override {
    if (name == "State") return 1;
    if (name == "ConnectionString") return "sqlite3://shop.db";
    return Object::Get(name);
  }
  void Let(std::string_view name, Variant) override { done.emplace_back(name); }
  Variant Call(std::string_view name, std::span<const Variant>) override {
    done.emplace_back(name);
    return {};
  }
};

TEST_F(ProductPicker, ReleasesConnectionAndRecordsetOnDestructionAndClosesNothing) {
  const auto watched = std::make_shared<WatchedConnection>();
  office->connection = watched;
  std::vector<std::weak_ptr<FakeRecordset>> recordsets;
  platform.recordsets = [&] {
    const auto made = std::make_shared<FakeRecordset>(table);
    recordsets.push_back(made);
    return made;
  };
  const auto control = std::make_shared<PropertyObject>(
      Properties{{"SelectedProducts", ""}, {"Office", ObjectRef(office)}});
  table.opened.reserve(16);
  const auto before = watched.use_count();
  auto picker = std::make_unique<propProdListPicker>();
  for (int load = 0; load < 2; ++load) {
    picker->Select({control});
    table.opened.clear();  // the table keeps the connection as well
    EXPECT_EQ(watched.use_count(), before + 1);
  }
  // The page's own recordset and the grid's, for each load.
  ASSERT_EQ(recordsets.size(), 4U);
  EXPECT_TRUE(recordsets[0].expired());
  EXPECT_TRUE(recordsets[1].expired());
  EXPECT_FALSE(recordsets[2].expired());
  picker.reset();
  EXPECT_EQ(watched.use_count(), before);
  for (const auto& recordset : recordsets) EXPECT_TRUE(recordset.expired());
  EXPECT_EQ(watched->done, Texts());
}

TEST_F(ProductPicker, WithoutAnOfficeThePageFails) {
  EXPECT_EQ(ErrorOf([&] { Open({{"SelectedProducts", ""}, {"Office", ObjectRef()}}); }), 91);
}

TEST_F(ProductPicker, AMissingTableIsThePagesErrorAndKeepsTheControl) {
  table.gone = true;
  EXPECT_THROW(OpenOn("1,2"), std::runtime_error);
  EXPECT_TRUE(object->written.empty());
  EXPECT_EQ((*object)["SelectedProducts"], Variant("1,2"));
}

TEST_F(ProductPicker, OffersThreeSearchColumnsInitiallyTheFirst) {
  OpenOn("");
  Texts choices;
  for (const auto& choice : SearchIn().Choices())
    choices.push_back(choice->Key() + "=" + choice->Caption());
  EXPECT_EQ(choices, (Texts{"productno=Art.Nr.", "desc1=Name", "desc2=Beschreibung"}));
  EXPECT_EQ(SearchIn().Value(), Variant("Art.Nr."));
  EXPECT_FALSE(SearchButton().Enabled());
  EXPECT_FALSE(page.timerAutomaticSearch.IsRunning());
}

TEST_F(ProductPicker, ASearchTextEnablesTheButtonAndStartsARepeatingTimer) {
  OpenOn("");
  user.SelectItem(Term());
  user.Type("te");
  EXPECT_TRUE(SearchButton().Enabled());
  EXPECT_TRUE(page.timerAutomaticSearch.IsRunning());
  EXPECT_EQ(page.timerAutomaticSearch.Interval(), 800);
  const std::size_t opened = table.opened.size();
  for (int tick = 0; tick < 3; ++tick) user.Tick(page.timerAutomaticSearch);
  user.ClickButton(SearchButton());
  EXPECT_TRUE(page.timerAutomaticSearch.IsRunning());
  EXPECT_EQ(page.gdProducts.RowCount(), 4U);
  EXPECT_EQ(table.opened.size(), opened);
  EXPECT_FALSE(page.Changed());
}

TEST_F(ProductPicker, ClearingTheSearchTextStopsTheTimer) {
  OpenOn("");
  user.SelectItem(Term());
  user.Type("t");
  user.Press(Key::backspace);
  EXPECT_FALSE(SearchButton().Enabled());
  EXPECT_FALSE(page.timerAutomaticSearch.IsRunning());
}

TEST_F(ProductPicker, AnotherSearchColumnRestartsTheTimerOnlyIfThereIsAText) {
  OpenOn("");
  user.Choose(SearchIn(), "Name");
  EXPECT_FALSE(page.timerAutomaticSearch.IsRunning());
  user.SelectItem(Term());
  user.Type("t");
  user.seen.clear();
  user.Choose(SearchIn(), "Beschreibung");
  EXPECT_TRUE(page.timerAutomaticSearch.IsRunning());
  const SeeingUser::Seen restarted = {"timerAutomaticSearch", Aspect::timer};
  EXPECT_EQ(std::count(user.seen.begin(), user.seen.end(), restarted), 2);  // stopped and started
}

TEST_F(ProductPicker, EditsTheProductList) {
  const auto control = std::make_shared<DTCProductList>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->Office(office);
  page.Select({control});
  user.DoubleClick(page.gdProducts, 0);
  page.Apply();
  EXPECT_EQ(control->SelectedProducts(), "100");
}

}  // namespace
}  // namespace kvo
