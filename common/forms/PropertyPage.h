// A property page: a form over properties of the objects that are selected in the host.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/Form.h"
#include "common/values/Object.h"

namespace kvo {

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
// has those properties. A page begins with Initialize, before its first selection, and ends with
// its destruction.
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

  static constexpr Size kSize = {5775, 4560};

 protected:
  explicit PropertyPage(std::string_view caption, Size size = kSize) : Form(caption, size) {}

  // RuntimeError 9 when fewer are selected.
  Object& SelectedControls(std::size_t index) const;
  void Changed(bool bNewChanged);
  // A property of the first selected object as text, and its assignment.
  std::string Read(std::string_view property) const;
  void Write(std::string_view property, Variant value) const;

  // Boxes that show a text property each and write it back as it stands.
  struct TextField {
    TextBox& box;
    std::string_view property;
  };
  void Fill(std::span<const TextField> fields) const;
  void Store(std::span<const TextField> fields) const;

  // Listeners for events of any control that mark the page changed - always, or only while the
  // page is not being filled (see Loading).
  struct MarksChanged {
    PropertyPage* page;
    template <class Sender>
    void operator()(Sender&) const {
      page->Changed(true);
    }
  };
  struct MarksChangedUnlessLoading {
    PropertyPage* page;
    template <class Sender>
    void operator()(Sender&) const {
      if (!page->loading_) page->Changed(true);
    }
  };
  const MarksChanged marksChanged{this};
  const MarksChangedUnlessLoading marksChangedUnlessLoading{this};

  // The loading flag of pages that filling must not mark changed: set as long as this lives.
  class Loading {
   public:
    explicit Loading(PropertyPage& page) : page_(page) { page_.loading_ = true; }
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;
    ~Loading() { page_.loading_ = false; }

   private:
    PropertyPage& page_;
  };

 private:
  virtual void Initialize() {}
  virtual void SelectionChanged() = 0;
  virtual void ApplyChanges() = 0;
  void Touched() final {
    if (site_ != nullptr) site_->Touched(*this);
  }

  std::vector<ObjectRef> selected_;
  PropertyPageSite* site_ = nullptr;
  bool initialized_ = false;
  bool changed_ = false;
  bool loading_ = false;
};

}  // namespace kvo
