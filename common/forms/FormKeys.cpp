#include "common/forms/FormKeys.h"

#include <algorithm>

namespace kvo {

bool IsTabStop(const FormControl& control) {
  if (!control.TakesFocus() || !control.IsReachable()) return false;
  const auto* option = dynamic_cast<const OptionButton*>(&control);
  return option == nullptr || OptionTabStop(option->Parent()) == option;
}

const OptionButton* OptionTabStop(const Container& group) {
  const OptionButton* first = nullptr;
  for (const FormControl* control : group.Controls()) {
    const auto* option = dynamic_cast<const OptionButton*>(control);
    if (option == nullptr || !option->Enabled() || !option->Visible()) continue;
    if (option->Value()) return option;
    if (first == nullptr) first = option;
  }
  return first;
}

OptionButton* NextOption(const OptionButton& button, int step) {
  std::vector<OptionButton*> group;
  for (FormControl* control : button.Parent().Controls())
    if (auto* option = dynamic_cast<OptionButton*>(control); option && option->IsReachable())
      group.push_back(option);
  const auto count = static_cast<std::ptrdiff_t>(group.size());
  const auto at = std::find(group.begin(), group.end(), &button) - group.begin();
  if (at == count) return nullptr;
  return group[static_cast<std::size_t>((at + step + count) % count)];
}

CommandButton* DialogButton(const Form& form, CommandButton::Role role) {
  for (FormControl* control : form.AllControls()) {
    auto* button = dynamic_cast<CommandButton*>(control);
    if (button != nullptr && button->DialogRole() == role && button->IsReachable()) return button;
  }
  return nullptr;
}

std::string_view OneLine(std::string_view typed) {
  return typed.substr(0, typed.find_first_of(std::string_view("\r\n\0", 3)));
}

std::vector<std::string_view> SplitStrokes(std::string_view text) {
  std::vector<std::string_view> strokes;
  while (!text.empty()) {
    const std::size_t lineBreak = text.starts_with("\r\n") ? 2 : text[0] == '\n' ? 1 : 0;
    const std::size_t size = lineBreak > 0 ? lineBreak : CharacterOffset(text, 1);
    strokes.push_back(lineBreak > 0 ? kEnterStroke : text.substr(0, size));
    text.remove_prefix(size);
  }
  return strokes;
}

}  // namespace kvo
