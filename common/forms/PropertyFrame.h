// The property frame without its window: an object's pages as tabs, with OK, Cancel and Apply.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/PropertyPage.h"

namespace kvo {

// Creates a page by its class name; nullptr when there is no such class.
using PageFactory = std::function<std::unique_ptr<PropertyPage>(std::string_view className)>;

class PropertyFrame final : private PropertyPageSite {
 public:
  // The frame's window.
  class Window {
   public:
    virtual ~Window() = default;
    // CanApply() changed.
    virtual void ApplyEnabledChanged() = 0;
    // The shown page could not be filled or applied.
    virtual void ShowError(PropertyPage& page, const std::exception& error) = 0;
    // Ok or Cancel closed the frame.
    virtual void Closed() = 0;
  };

  // Which pages to apply: those that marked themselves changed, or also those in which the user
  // touched an input since they were last filled or applied.
  enum class Applies { marked, markedOrTouched };

  // `window` must outlive the frame. Throws RuntimeError 429 when the factory does not know a page.
  // Call Show when the window exists.
  PropertyFrame(Window& window, std::vector<ObjectRef> objects,
                const std::vector<std::string>& pageClasses, const PageFactory& factory,
                Applies applies = Applies::marked);

  std::size_t PageCount() const { return tabs_.size(); }
  // A tab's page. It has a caption from the start, but content only once shown.
  PropertyPage& Page(std::size_t tab) const { return *tabs_[tab].page; }
  std::size_t ShownTab() const { return shown_; }
  // Whether the page was shown and filled.
  bool IsFilled(std::size_t tab) const { return tabs_[tab].filled; }
  // Shows a page. Fills it the first time, or when filling failed before.
  void Show(std::size_t tab);

  // Refills the pages that were shown, also those that failed before, from the host's new
  // selection.
  void Select(std::vector<ObjectRef> objects);

  // The number of pages to apply, and whether there is one.
  std::size_t PagesToApply() const;
  bool CanApply() const { return PagesToApply() > 0; }
  // Applies just those pages, in tab order. The first that fails is shown and remains to be
  // applied; the result is then false.
  bool Apply();
  // Applies and closes; stays open when a page fails.
  bool Ok();
  void Cancel();
  bool IsOpen() const { return open_; }

 private:
  struct Tab {
    std::unique_ptr<PropertyPage> page;
    bool shown = false;  // at least once
    bool filled = false;
    bool touched = false;
  };
  void StatusChanged(PropertyPage& page) override;
  void Touched(PropertyPage& page) override;
  bool IsToApply(const Tab& tab) const;
  void Fill(Tab& tab);
  void Close();

  Window& window_;
  Applies applies_;
  std::vector<ObjectRef> objects_;
  std::vector<Tab> tabs_;
  std::size_t shown_ = 0;
  bool couldApply_ = false;
  bool open_ = true;
};

}  // namespace kvo
