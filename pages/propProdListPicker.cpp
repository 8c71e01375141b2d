#include "pages/propProdListPicker.h"

#include <array>

#include "common/forms/GridRows.h"
#include "common/values/Recordset.h"

namespace kvo {
namespace {

constexpr std::string_view kStatement = "SELECT ProductNo, Desc1, Desc2 FROM Products";
constexpr std::string_view kPickedPrefix = "pprod_";
constexpr std::string_view kSeparator = ",";
constexpr int kSearchDelay = 800;  // milliseconds

// Items of the search panel.
constexpr std::string_view kSearchTerm = "txtSearchTerm";
constexpr std::string_view kSearchIn = "cboSearchIn";
constexpr std::string_view kSearchButton = "cmdSearch";

struct Column {
  std::string_view caption;
  std::string_view field;
};
constexpr Column kNumber = {"Art.Nr", "ProductNo"};
constexpr Column kName = {"Name", "Desc1"};
constexpr Column kColumns[] = {kNumber, kName, {"Beschreibung", "Desc2"}};

std::string PickedKey(std::string_view number) {
  return std::string(kPickedPrefix) + std::string(number);
}

}  // namespace

void propProdListPicker::Initialize() {
  suiSearch.Add(
      {.kind = ItemKind::text, .caption = "Suchbegriff", .key = std::string(kSearchTerm)});
  suiSearch.Add({.kind = ItemKind::list,
                 .caption = "Suchen in",
                 .key = std::string(kSearchIn),
                 .editable = false});
  suiSearch.Add({.kind = ItemKind::button,
                 .caption = "Suchen",
                 .key = std::string(kSearchButton),
                 .enabled = false});
  AddSearchColumn("productno", "Art.Nr.");  // deliberate: with a point, unlike the grid's column
  AddSearchColumn("desc1", "Name");
  AddSearchColumn("desc2", "Beschreibung");
}

void propProdListPicker::AddSearchColumn(std::string_view key, std::string_view caption) {
  PropertyGridItem& searchIn = suiSearch.Item(kSearchIn);
  searchIn.AddChoice(std::string(caption), key, std::string(key));
  if (searchIn.Value().IsEmpty()) searchIn.Value(caption);
}

void propProdListPicker::SelectionChanged() {
  const ObjectRef office = ToObject(SelectedControls(0).Get("Office"));
  const ObjectRef connection = ToObject(office->Get("ShopDBConnection"));
  const bool open = ToInteger(connection->Get("State")) != ado::kStateClosed;
  EnableControls(open);
  if (!open) return;
  LoadProducts(connection);
  PropertyPage::SelectionChanged();
}

void propProdListPicker::ShowPicked(const std::string& numbers) {
  suiPickedProducts.Clear();
  if (numbers.empty()) return;
  for (std::size_t at = 0; at <= numbers.size();) {
    const std::size_t end = std::min(numbers.find(kSeparator, at), numbers.size());
    const std::string number = numbers.substr(at, end - at);
    suiPickedProducts.Add({.kind = ItemKind::entry, .caption = number, .key = PickedKey(number)});
    at = end + kSeparator.size();
  }
}

std::string propProdListPicker::PickedNumbers() const {
  std::string numbers;
  for (const auto& picked : suiPickedProducts.Items()) {
    if (picked != suiPickedProducts.Items().front()) numbers += kSeparator;
    numbers += picked->Key().substr(kPickedPrefix.size());
  }
  return numbers;
}

void propProdListPicker::EnableControls(bool enabled) {
  gdProducts.Enabled(enabled);
  suiSearch.Enabled(enabled);
  cmdAddProduct.Enabled(enabled);
  cmdDelete.Enabled(enabled);
}

void propProdListPicker::LoadProducts(const ObjectRef& connection) {
  connection_ = connection;
  recordset_ = ThePlatform().NewRecordset();
  const std::array<Variant, 5> arguments = {kStatement, connection_, ado::kOpenDynamic,
                                            ado::kLockReadOnly, ado::kOptionsUnspecified};
  recordset_->Call("Open", arguments);
  SetUpGrid();
  gdProducts.DatabaseName(ToText(connection_->Get("ConnectionString")));
  gdProducts.RecordSource(ToText(recordset_->Get("Source")));
  gdProducts.Rebind();
}

void propProdListPicker::SetUpGrid() {
  gdProducts.todayText = "Heute";
  gdProducts.recordsText = "Produkte: ";
  gdProducts.ClearColumns();
  for (const Column& column : kColumns) {
    const std::string caption(column.caption);
    gdProducts.AddColumn({.caption = caption,
                          .field = std::string(column.field),
                          .emptyText = "<keine Angabe>",
                          .groupText = caption + ": ",
                          .sortHint = "Sortieren nach: " + caption,
                          .size = 300});
  }
}

void propProdListPicker::AddSelectedRows() {
  for (const std::size_t row : gdProducts.SelectedRows()) {
    try {
      Object& products = gdProducts.Recordset();
      products.Let("Bookmark", gdProducts.RowBookmark(row));
      const std::string number = ToText(FieldValue(products, std::string(kNumber.field)));
      const std::string name = ToText(FieldValue(products, std::string(kName.field)));
      const std::string key = PickedKey(number);
      if (number.empty() || suiPickedProducts.Find(key) != nullptr) continue;
      suiPickedProducts.Add({.kind = ItemKind::entry,
                             .caption = number + " (" + name + ")",
                             .key = key,
                             .value = "Product"});
    } catch (const std::exception&) {
      // Skips a row that cannot be read.
    }
  }
}

void propProdListPicker::DeletePicked() {
  const PropertyGridItem* picked = suiPickedProducts.SelectedItem();
  if (picked == nullptr) return;
  suiPickedProducts.Remove(*picked);
  Changed(true);
}

void propProdListPicker::suiSearch_Change(const PropertyGridItem& item) {
  // Does not copy the typed text: it may be long, and every key comes here.
  const Variant& term = suiSearch.Item(kSearchTerm).Value();
  const auto* text = term.If<std::string>();
  const bool searching = text != nullptr ? !text->empty() : !ToText(term).empty();
  if (item.Key() == kSearchTerm) suiSearch.Item(kSearchButton).Enabled(searching);
  timerAutomaticSearch.Stop();
  if (searching) timerAutomaticSearch.Start(kSearchDelay);
}

}  // namespace kvo
