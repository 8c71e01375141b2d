#include "common/PropertyFrame.h"

#include <algorithm>

#include "common/RuntimeError.h"

namespace kvo {

PropertyFrame::PropertyFrame(Window& window, std::string caption, std::vector<ObjectRef> objects,
                             const std::vector<std::string>& pageClasses,
                             const PageFactory& factory)
    : window_(window), caption_(std::move(caption)), objects_(std::move(objects)) {
  for (const std::string& pageClass : pageClasses) {
    tabs_.push_back({factory(pageClass)});
    if (tabs_.back().page == nullptr)
      throw RuntimeError(ErrorNumber::cannotCreateObject, pageClass);
    tabs_.back().page->Site(this);
  }
}

void PropertyFrame::Fill(Tab& tab) {
  try {
    tab.filled = false;
    tab.page->Select(objects_);
    tab.filled = true;
  } catch (const std::exception& error) {
    window_.ShowError(*tab.page, error);
  }
  StatusChanged(*tab.page);
}

void PropertyFrame::Show(std::size_t tab) {
  shown_ = tab;
  tabs_[tab].shown = true;
  if (!tabs_[tab].filled) Fill(tabs_[tab]);
}

void PropertyFrame::Select(std::vector<ObjectRef> objects) {
  objects_ = std::move(objects);
  for (Tab& tab : tabs_)
    if (tab.shown) Fill(tab);
}

bool PropertyFrame::CanApply() const {
  // A page that could not be filled has nothing that may be written.
  return std::ranges::any_of(tabs_,
                             [](const Tab& tab) { return tab.filled && tab.page->Changed(); });
}

bool PropertyFrame::Apply() {
  for (std::size_t at = 0; at < tabs_.size(); ++at) {
    Tab& tab = tabs_[at];
    if (!tab.filled || !tab.page->Changed()) continue;
    try {
      tab.page->Apply();
    } catch (const std::exception& error) {
      shown_ = at;
      window_.ShowError(*tab.page, error);
      return false;
    }
  }
  return true;
}

bool PropertyFrame::Ok() {
  if (!Apply()) return false;
  Close();
  return true;
}

void PropertyFrame::Cancel() { Close(); }

void PropertyFrame::Close() {
  if (!open_) return;
  open_ = false;
  window_.Closed();
}

void PropertyFrame::StatusChanged(PropertyPage&) {
  if (couldApply_ == CanApply()) return;
  couldApply_ = !couldApply_;
  window_.ApplyEnabledChanged();
}

}  // namespace kvo
