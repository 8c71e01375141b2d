// The property grid: rows of caption and value, in groups.
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
  category,  // a bold line over the rows that follow it
  text,      // a row with a value to be typed
  list,      // a row with choices; with `editable` any value can be typed as well
  color,     // a row with a value to be typed and a button beside it
  button,    // a row that is a button
  entry,     // a line of a plain list: only a caption
  choice,    // a choice of a list row
};

// A row, or the choice of a row: a list row's choices are its items.
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

  // Of a row: what stands in it. A row chosen from its list holds the choice's caption. Of a
  // choice: what it stands for.
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
    Handler<PropertyGridItem> onChange{};       // a row's value
    Handler<PropertyGridItem> onButtonClick{};  // of a colour row's button, or of a button row
    Handler<PropertyGrid> onDeleteKey{};        // the user pressed the delete key in it
  };
  PropertyGrid(Container& parent, std::string_view name, Design design);

  const PropertyGridItem::Items& Items() const { return items_; }
  // At the end. Several rows may have one key.
  PropertyGridItem& Add(PropertyGridItem::Design design);
  void Remove(const PropertyGridItem& item);
  void Clear();

  // The first row with a key; RuntimeError 5 when there is none.
  PropertyGridItem& Item(std::string_view key);
  // The same; nullptr when there is none.
  PropertyGridItem* Find(std::string_view key) const;

  // The row that the user stands on; nullptr when there is none.
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

// The first child whose caption equals the item's current value; nullptr when there is none.
const PropertyGridItem* GetSelectedChoice(const PropertyGridItem& item);
// The first child whose value equals the text; nullptr when there is none.
const PropertyGridItem* FindChoiceByValue(const PropertyGridItem& item, std::string_view value);

}  // namespace kvo
