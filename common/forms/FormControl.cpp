#include "common/forms/FormControl.h"

#include <algorithm>

#include "common/forms/FormRenderer.h"

namespace kvo {

FormControl::FormControl(Container& parent, std::string_view name, const Rect& at, const Font& font,
                         std::string_view caption)
    : parent_(parent), name_(name), caption_(caption), at_(at), font_(font) {
  parent_.controls_.push_back(this);
}

FormControl::~FormControl() { std::erase(parent_.controls_, this); }

void FormControl::Caption(std::string sNewCaption) {
  if (caption_ == sNewCaption) return;
  caption_ = std::move(sNewCaption);
  Notify(Aspect::caption);
}

void FormControl::Enabled(bool bNewEnabled) {
  if (enabled_ == bNewEnabled) return;
  enabled_ = bNewEnabled;
  Notify(Aspect::enabled);
}

void FormControl::Visible(bool bNewVisible) {
  if (visible_ == bNewVisible) return;
  visible_ = bNewVisible;
  Notify(Aspect::visible);
}

bool FormControl::IsReachable() const {
  if (!enabled_ || !visible_) return false;
  const FormControl* around = parent_.AsControl();
  return around == nullptr || (around->Shows(*this) && around->IsReachable());
}

void FormControl::Notify(Aspect aspect) {
  if (FormRenderer* renderer = OwnerRenderer()) renderer->ControlChanged(*this, aspect);
}

FormRenderer* FormControl::OwnerRenderer() const { return parent_.OwnerForm().renderer_; }

}  // namespace kvo
