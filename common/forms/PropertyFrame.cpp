#include "common/forms/PropertyFrame.h"

#include <algorithm>

#include "common/values/RuntimeError.h"

namespace kvo {

PropertyFrame::PropertyFrame(Window& window, std::vector<ObjectRef> objects,
                             const std::vector<std::string>& pageClasses,
                             const PageFactory& factory, Applies applies)
    : window_(window), applies_(applies), objects_(std::move(objects)) {
  for (const std::string& pageClass : pageClasses) {
    tabs_.push_back({factory(pageClass)});
    if (tabs_.back().page == nullptr)
      throw RuntimeError(ErrorNumber::cannotCreateObject, pageClass);
    tabs_.back().page->Site(this);
  }
}

void PropertyFrame::Fill(Tab& tab) {
  try {
    tab.filled = tab.touched = false;
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

bool PropertyFrame::IsToApply(const Tab& tab) const {
  // A page that could not be filled has nothing to write.
  if (!tab.filled) return false;
  return tab.page->Changed() || (applies_ == Applies::markedOrTouched && tab.touched);
}

std::size_t PropertyFrame::PagesToApply() const {
  return static_cast<std::size_t>(
      std::count_if(tabs_.begin(), tabs_.end(), [this](const Tab& tab) { return IsToApply(tab); }));
}

bool PropertyFrame::Apply() {
  for (std::size_t at = 0; at < tabs_.size(); ++at) {
    Tab& tab = tabs_[at];
    if (!IsToApply(tab)) continue;
    try {
      tab.page->Apply();
      tab.touched = false;
      StatusChanged(*tab.page);
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

void PropertyFrame::Touched(PropertyPage& page) {
  for (Tab& tab : tabs_)
    if (tab.page.get() == &page) tab.touched = true;
  StatusChanged(page);
}

}  // namespace kvo
