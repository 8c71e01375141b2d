// A property page: a form over properties of the host's selected objects.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/forms/Form.h"
#include "common/values/Object.h"

namespace kvo {

class PageField;
class PropertyPage;

// The host of a page. Notified when the page is marked changed or unchanged.
class PropertyPageSite {
 public:
  virtual void StatusChanged(PropertyPage& page) = 0;
  // The user touched one of the page's inputs, even if that does not mark the page.
  virtual void Touched(PropertyPage& /*page*/) {}

 protected:
  ~PropertyPageSite() = default;
};

// Pages access the selected objects by property name, so that a page works with every object that
// has those properties. A page's content is declared in its fields (common/forms/PageField.h).
// Initialize is called before the first selection; the destructor ends the page.
class PropertyPage : public Form {
 public:
  // --- for the page's host ---

  // Sets the selected objects (at least one) and fills the page from them. Discards unapplied
  // edits; afterwards, the page is changed only if filling marks it so.
  void Select(std::vector<ObjectRef> objects);
  // Writes the page to the selected objects. If that fails, the page stays changed.
  void Apply();
  // Whether there is something to apply.
  bool Changed() const { return changed_; }
  void Site(PropertyPageSite* site) { site_ = site; }
  // Whether a field shows the property.
  bool Shows(std::string_view property) const;

  static constexpr Size kSize = {5775, 4560};

 protected:
  // Whether filling the page with other values marks it changed.
  enum class Filling { marksChanged, isNoChange };
  explicit PropertyPage(std::string_view caption, Filling filling = Filling::marksChanged)
      : Form(caption, kSize), filling_(filling) {}

  // Throws RuntimeError 9 when fewer are selected.
  Object& SelectedControls(std::size_t index) const;
  void Changed(bool bNewChanged);

  // An event listener for any control, which marks the page changed.
  struct MarksChanged {
    PropertyPage* page;
    template <class Sender>
    void operator()(Sender&) const {
      if (!page->isFilling_ || page->filling_ == Filling::marksChanged) page->Changed(true);
    }
  };
  const MarksChanged marksChanged{this};

  virtual void Initialize() {}
  // Read and write every field, in order.
  virtual void SelectionChanged();
  virtual void ApplyChanges();

 private:
  friend class PageField;
  void Add(const PageField& field);
  void Touched() final {
    if (site_ != nullptr) site_->Touched(*this);
  }

  std::vector<ObjectRef> selected_;
  // The fields in reading order, and in writing order.
  std::vector<const PageField*> reads_;
  std::vector<const PageField*> writes_;
  PropertyPageSite* site_ = nullptr;
  Filling filling_;
  bool initialized_ = false;
  bool changed_ = false;
  bool isFilling_ = false;
};

}  // namespace kvo
