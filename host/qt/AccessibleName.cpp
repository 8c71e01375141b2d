#include "host/qt/AccessibleName.h"

#include "common/forms/FormControls.h"

namespace kvo {
namespace {

bool IsLeftOf(const Rect& label, const Rect& control) {
  return label.left < control.left && label.top < control.top + control.height &&
         control.top < label.top + label.height;
}

bool IsJustAbove(const Rect& label, const Rect& control) {
  constexpr int kGap = 120;
  const int gap = control.top - (label.top + label.height);
  return label.left < control.left + control.width && control.left < label.left + label.width &&
         gap > -kTwipsPerPixel && gap <= kGap;
}

template <class Matches>
const Label* FindLabel(const FormControl& control, Matches matches) {
  const Label* found = nullptr;
  for (const FormControl* sibling : control.Parent().Controls()) {
    const auto* label = dynamic_cast<const Label*>(sibling);
    if (label == nullptr || !matches(label->At(), control.At())) continue;
    if (found == nullptr || label->At().left > found->At().left) found = label;
  }
  return found;
}

}  // namespace

std::string_view AccessibleName(const FormControl& control) {
  if (!control.Caption().empty()) return control.Caption();
  const Label* label = FindLabel(control, IsLeftOf);
  if (label == nullptr) label = FindLabel(control, IsJustAbove);
  if (label == nullptr || label->Caption().empty()) return control.Name();
  return label->Caption();
}

}  // namespace kvo
