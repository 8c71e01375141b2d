#include "host/qt/AccessibleName.h"

#include "common/forms/FormControls.h"
#include "common/forms/FormPropertyGrid.h"

namespace kvo {
namespace {

class OwnCaption final : public FormVisitor {
 public:
  std::string_view text;

  void Visit(Label& label) override { text = label.Caption(); }
  void Visit(CheckBox& box) override { text = box.Caption(); }
  void Visit(OptionButton& button) override { text = button.Caption(); }
  void Visit(CommandButton& button) override { text = button.Caption(); }
  void Visit(Frame& frame) override { text = frame.Caption(); }
  void Visit(TabPanel& panel) override { text = panel.Caption(); }
  void Visit(PropertyGrid& grid) override { text = grid.Caption(); }
  void Visit(TextBox&) override {}
  void Visit(ComboBox&) override {}
  void Visit(PictureBox&) override {}
  void Visit(TabControl&) override {}
  void Visit(Grid&) override {}
  void Visit(Timer&) override {}
};

bool InOneLine(const Rect& label, const Rect& control) {
  return label.left < control.left && label.top < control.top + control.height &&
         control.top < label.top + label.height;
}

bool RightOver(const Rect& label, const Rect& control) {
  constexpr int kGap = 120;
  const int gap = control.top - (label.top + label.height);
  return label.left < control.left + control.width && control.left < label.left + label.width &&
         gap > -kTwipsPerPixel && gap <= kGap;
}

template <class Stands>
const Label* LastLabel(const FormControl& control, Stands stands) {
  const Label* found = nullptr;
  for (const FormControl* sibling : control.Parent().Controls()) {
    const auto* label = dynamic_cast<const Label*>(sibling);
    if (label == nullptr || !stands(label->At(), control.At())) continue;
    if (found == nullptr || label->At().left > found->At().left) found = label;
  }
  return found;
}

}  // namespace

std::string_view AccessibleName(FormControl& control) {
  OwnCaption own;
  control.Accept(own);
  if (!own.text.empty()) return own.text;
  const Label* label = LastLabel(control, InOneLine);
  if (label == nullptr) label = LastLabel(control, RightOver);
  return label == nullptr || label->Caption().empty() ? control.Name() : label->Caption();
}

}  // namespace kvo
