// The property frame without its window: the pages of an object as tabs, with OK, cancel and apply.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/PropertyPage.h"

namespace kvo {

// Makes a page by its class name; nullptr when there is no such class.
using PageFactory = std::function<std::unique_ptr<PropertyPage>(std::string_view className)>;

class PropertyFrame final : private PropertyPageSite {
 public:
  // The frame's window.
  class Window {
   public:
    virtual ~Window() = default;
    // CanApply is new.
    virtual void ApplyEnabledChanged() = 0;
    // A page could not be filled or applied; it is the one that is shown.
    virtual void ShowError(PropertyPage& page, const std::exception& error) = 0;
    // Ok or Cancel ended the frame.
    virtual void Closed() = 0;
  };

  // Which pages there is something to apply of: those that marked themselves changed, or also those
  // in which the user touched an input since they were filled or applied.
  enum class Applies { marked, markedOrTouched };

  // `window` has to outlive the frame. RuntimeError 429 when the factory does not know a page.
  // Call Show once the window stands.
  PropertyFrame(Window& window, std::vector<ObjectRef> objects,
                const std::vector<std::string>& pageClasses, const PageFactory& factory,
                Applies applies = Applies::marked);

  std::size_t PageCount() const { return tabs_.size(); }
  // The page of a tab, to show its caption; it has content only after it was shown once.
  PropertyPage& Page(std::size_t tab) const { return *tabs_[tab].page; }
  std::size_t ShownTab() const { return shown_; }
  // Whether the page was shown and could be filled.
  bool IsFilled(std::size_t tab) const { return tabs_[tab].filled; }
  // Fills the page when it is shown for the first time, or when that failed before.
  void Show(std::size_t tab);

  // The host's selection changed: the pages that were shown are filled anew, also those that could
  // not be filled before.
  void Select(std::vector<ObjectRef> objects);

  // How many pages there are to apply, and whether there is one.
  std::size_t PagesToApply() const;
  bool CanApply() const { return PagesToApply() > 0; }
  // Applies these pages in the order of their tabs, and only those. The first that fails is
  // shown and stays to be applied; the answer is then false.
  bool Apply();
  // Applies and closes; stays open when a page fails.
  bool Ok();
  void Cancel();
  bool IsOpen() const { return open_; }

 private:
  struct Tab {
    std::unique_ptr<PropertyPage> page;
    bool shown = false;  // once at least
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
