// A property grid: rows of captions and values, in groups.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/FormControl.h"
#include "common/values/Variant.h"

namespace kvo {

class PropertyGrid;

enum class ItemKind {
  category,  // a bold heading for the rows that follow
  text,      // a row with a value to type
  list,      // a row with choices; with `editable`, the user can also type any value
  color,     // a row with a value to type and a button beside it
  button,    // a row that is a button
  entry,     // a line of a plain list, with just a caption
  choice,    // a choice of a list row
};

// A row, or one of the choices of a list row.
class PropertyGridItem {
 public:
  struct Design {
    ItemKind kind = ItemKind::text;
    std::string caption{};
    std::string key{};
    Variant value{};
    bool editable = true;
    bool enabled = true;
  };

  PropertyGridItem(PropertyGrid& grid, Design design) : grid_(grid), design_(std::move(design)) {}
  PropertyGridItem(const PropertyGridItem&) = delete;
  PropertyGridItem& operator=(const PropertyGridItem&) = delete;

  ItemKind Kind() const { return design_.kind; }
  const std::string& Caption() const { return design_.caption; }
  const std::string& Key() const { return design_.key; }
  bool Editable() const { return design_.editable; }

  // A row's value, which is the choice's caption if it was chosen from the list; or a choice's
  // value.
  const Variant& Value() const { return design_.value; }
  void Value(Variant newValue);

  bool Enabled() const { return design_.enabled; }
  void Enabled(bool bNewEnabled);

  using Items = std::vector<std::unique_ptr<PropertyGridItem>>;
  const Items& Choices() const { return choices_; }
  void AddChoice(std::string caption, Variant value, std::string key = {});

  PropertyGrid& Grid() const { return grid_; }

 private:
  friend class FormRenderer;
  void Append(std::string_view typed);
  void Changed();

  PropertyGrid& grid_;
  Design design_;
  Items choices_;
};

class PropertyGrid final : public FormControl {
 public:
  struct Design {
    Rect at{};
    Font font{};
    std::string_view caption{};
    Handler<PropertyGridItem> onChange{};       // a row's value changed
    Handler<PropertyGridItem> onButtonClick{};  // of a colour row's button, or of a button row
    Handler<PropertyGrid> onDeleteKey{};        // the user pressed the delete key in it
  };
  PropertyGrid(Container& parent, std::string_view name, Design design);

  const PropertyGridItem::Items& Items() const { return items_; }
  // Appends a row. Several rows may share a key.
  PropertyGridItem& Add(PropertyGridItem::Design design);
  void Remove(const PropertyGridItem& item);
  void Clear();

  // The first row with a key. Throws RuntimeError 5 when there is none.
  PropertyGridItem& Item(std::string_view key);
  // Finds the first row with a key; nullptr when there is none.
  PropertyGridItem* Find(std::string_view key) const;

  // The selected row; nullptr when there is none.
  PropertyGridItem* SelectedItem() const { return selected_; }

  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  friend class PropertyGridItem;
  friend class FormRenderer;
  void ItemChanged(PropertyGridItem& item);

  PropertyGridItem::Items items_;
  PropertyGridItem* selected_ = nullptr;
  Handler<PropertyGridItem> onChange_;
  Handler<PropertyGridItem> onButtonClick_;
  Handler<PropertyGrid> onDeleteKey_;
};

// Returns the first choice whose caption equals the row's value; nullptr when there is none.
const PropertyGridItem* GetSelectedChoice(const PropertyGridItem& item);
// Returns the first choice whose value equals the text; nullptr when there is none.
const PropertyGridItem* FindChoiceByValue(const PropertyGridItem& item, std::string_view value);

}  // namespace kvo
