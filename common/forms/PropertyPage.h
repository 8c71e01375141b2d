// A property page: a form over properties of the objects that are selected in the host.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/forms/Form.h"
#include "common/values/Object.h"

namespace kvo {

class PageField;
class PropertyPage;

// Who shows a page: told when the page is marked changed or no longer is.
class PropertyPageSite {
 public:
  virtual void StatusChanged(PropertyPage& page) = 0;
  // The user touched one of the page's inputs, whether or not that marks the page.
  virtual void Touched(PropertyPage& /*page*/) {}

 protected:
  ~PropertyPageSite() = default;
};

// Pages reach the selected objects by property name only, so that a page serves every object that
// has those properties. What a page shows is declared in its fields (common/forms/PageField.h). A
// page begins with Initialize, before its first selection, and ends with its destruction.
class PropertyPage : public Form {
 public:
  // --- for the page's host ---

  // Hands over the selected objects (at least one) and fills the page from them. What was edited
  // and not applied is lost; the page is then changed only if filling it marks it so.
  void Select(std::vector<ObjectRef> objects);
  // Writes the page into the selected objects. The page stays changed if that fails.
  void Apply();
  // Whether there is something to apply.
  bool Changed() const { return changed_; }
  void Site(PropertyPageSite* site) { site_ = site; }
  // Whether a field of the page shows the property.
  bool Shows(std::string_view property) const;

  static constexpr Size kSize = {5775, 4560};

 protected:
  // Whether a page counts as edited when its fields are given other values by being filled.
  enum class Filling { marksChanged, isNoChange };
  explicit PropertyPage(std::string_view caption, Filling filling = Filling::marksChanged)
      : Form(caption, kSize), filling_(filling) {}

  // RuntimeError 9 when fewer are selected.
  Object& SelectedControls(std::size_t index) const;
  void Changed(bool bNewChanged);

  // A listener for events of any control: the user edited the page.
  struct MarksChanged {
    PropertyPage* page;
    template <class Sender>
    void operator()(Sender&) const {
      if (!page->isFilled_ || page->filling_ == Filling::marksChanged) page->Changed(true);
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
  // The fields in the order in which they are read, and written.
  std::vector<const PageField*> reads_;
  std::vector<const PageField*> writes_;
  PropertyPageSite* site_ = nullptr;
  Filling filling_;
  bool initialized_ = false;
  bool changed_ = false;
  bool isFilled_ = false;  // at this moment
};

}  // namespace kvo
