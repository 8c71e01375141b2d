#include "common/forms/FormControls.h"

#include <algorithm>

#include "common/forms/Form.h"
#include "common/frame/Platform.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

template <class Sender>
void Raise(const Handler<Sender>& handler, Sender& sender) {
  if (handler) handler(sender);
}

}  // namespace

std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

std::size_t CharacterOffset(std::string_view text, std::size_t character) {
  std::size_t at = 0;
  // Stray continuation bytes before the first character belong to it.
  while (at < text.size() && !BeginsCharacter(text[at])) ++at;
  if (character == 0) return 0;
  for (; at < text.size(); ++at)
    if (BeginsCharacter(text[at]) && character-- == 0) break;
  return at;
}

Label::Label(Container& parent, std::string_view name, const Design& design)
    : FormControl(parent, name, design.at, design.font, design.caption), wraps_(design.wraps) {}

EditBox::EditBox(Container& parent, std::string_view name, const Rect& at, const Font& font,
                 std::string_view text)
    : FormControl(parent, name, at, font), text_(text), length_(CharacterCount(text)) {}

void EditBox::Text(std::string sNewText) { TextAssigned(std::move(sNewText)); }

void EditBox::SelStart(std::size_t lNewSelStart) {
  const std::size_t start = std::min(lNewSelStart, length_);
  caretByte_ = OffsetOf(start);
  selStart_ = start;
  selLength_ = 0;
  Notify(Aspect::selection);
}

void EditBox::SelLength(std::size_t lNewSelLength) {
  selLength_ = std::min(lNewSelLength, length_ - selStart_);
  Notify(Aspect::selection);
}

void EditBox::HoldText(std::string text) {
  text_ = std::move(text);
  length_ = CharacterCount(text_);
  selStart_ = caretByte_ = selLength_ = 0;
  Notify(Aspect::text);
}

std::size_t EditBox::OffsetOf(std::size_t character) const {
  if (character == 0) return 0;
  if (character >= length_) return text_.size();
  const std::string_view text = text_;
  if (character >= selStart_)
    return caretByte_ + CharacterOffset(text.substr(caretByte_), character - selStart_);
  std::size_t at = caretByte_;
  for (std::size_t back = selStart_ - character; back > 0;
       back -= BeginsCharacter(text[at]) ? 1 : 0)
    --at;
  return at;
}

void EditBox::Replace(std::size_t start, std::size_t length, std::string_view typed) {
  const std::size_t begin = OffsetOf(start);
  const std::string_view rest = std::string_view(text_).substr(begin);
  const std::string_view old = rest.substr(0, CharacterOffset(rest, length));
  const std::size_t added = CharacterCount(typed);
  const std::size_t kept = length_ - CharacterCount(old);
  text_.replace(begin, old.size(), typed);
  selStart_ = std::min(start, length_) + added;
  selLength_ = 0;
  length_ = kept + added;
  caretByte_ = selStart_ == 0 ? 0 : begin + typed.size();
  // Stray bytes before the next character belong to the last typed one.
  if (selStart_ > 0)
    while (caretByte_ < text_.size() && !BeginsCharacter(text_[caretByte_])) ++caretByte_;
}

TextBox::TextBox(Container& parent, std::string_view name, Design design)
    : EditBox(parent, name, design.at, design.font, design.text),
      multiLine_(design.multiLine),
      onChange_(std::move(design.onChange)),
      onGotFocus_(std::move(design.onGotFocus)) {}

void TextBox::BackColor(SystemColor newBackColor) {
  if (backColor_ == newBackColor) return;
  backColor_ = newBackColor;
  Notify(Aspect::color);
}

void TextBox::TextAssigned(std::string text) {
  if (text == Text()) return;
  HoldText(std::move(text));
  Raise(onChange_, *this);
}

void TextBox::TextTyped() {
  Notify(Aspect::text);
  Raise(onChange_, *this);
}

void TextBox::RaiseGotFocus() { Raise(onGotFocus_, *this); }

ComboBox::ComboBox(Container& parent, std::string_view name, Design design)
    : EditBox(parent, name, design.at, design.font, design.text),
      editable_(design.editable),
      onChange_(std::move(design.onChange)),
      onClick_(std::move(design.onClick)) {}

void ComboBox::AddItem(std::string text) {
  rows_.push_back({std::nullopt, std::move(text)});
  Notify(Aspect::choices);
}

void ComboBox::AddItem(std::string key, std::string text) {
  if (RowOf(key) != kNoRow) throw RuntimeError(ErrorNumber::keyInUse, '"' + key + '"');
  rows_.push_back({std::move(key), std::move(text)});
  Notify(Aspect::choices);
}

void ComboBox::Clear() {
  if (!rows_.empty()) {
    rows_.clear();
    Notify(Aspect::choices);
  }
  Hold(kNoRow, {});
}

void ComboBox::ListIndex(int lNewListIndex) {
  if (lNewListIndex < kNoRow || lNewListIndex >= static_cast<int>(rows_.size()))
    throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + ".ListIndex");
  if (lNewListIndex == kNoRow) return Hold(kNoRow, {});
  Hold(lNewListIndex, rows_[static_cast<std::size_t>(lNewListIndex)].text);
}

const ComboBox::Row* ComboBox::SelectedItem() const {
  return listIndex_ == kNoRow ? nullptr : &rows_[static_cast<std::size_t>(listIndex_)];
}

int ComboBox::RowOf(std::string_view key) const {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [key](const Row& each) { return each.key == key; });
  return row == rows_.end() ? kNoRow : static_cast<int>(row - rows_.begin());
}

void ComboBox::TextAssigned(std::string text) {
  if (editable_) return Hold(kNoRow, std::move(text));
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [&](const Row& candidate) { return candidate.text == text; });
  if (row == rows_.end())
    throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + ".Text");
  ListIndex(static_cast<int>(row - rows_.begin()));
}

void ComboBox::TextTyped() {
  listIndex_ = kNoRow;
  Notify(Aspect::text);
  Raise(onChange_, *this);
}

void ComboBox::Hold(int row, std::string text) {
  if (row == listIndex_ && text == Text()) return;
  listIndex_ = row;
  HoldText(std::move(text));
  Raise(onChange_, *this);
}

CheckBox::CheckBox(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font, design.caption),
      onClick_(std::move(design.onClick)) {}

void CheckBox::Value(bool bNewValue) {
  if (value_ == bNewValue) return;
  value_ = bNewValue;
  Notify(Aspect::checked);
  Raise(onClick_, *this);
}

OptionButton::OptionButton(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font, design.caption),
      onClick_(std::move(design.onClick)) {}

void OptionButton::Value(bool bNewValue) {
  if (value_ == bNewValue) return;
  if (bNewValue)
    for (FormControl* control : Parent().Controls())
      if (auto* other = dynamic_cast<OptionButton*>(control)) other->Value(false);
  value_ = bNewValue;
  Notify(Aspect::checked);
  if (value_) Raise(onClick_, *this);
}

CommandButton::CommandButton(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font, design.caption),
      role_(design.role),
      onClick_(std::move(design.onClick)) {}

void TabControl::SelectedTab(std::size_t lNewSelectedTab) {
  if (lNewSelectedTab >= Controls().size())
    throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + ".SelectedTab");
  if (selectedTab_ == lNewSelectedTab) return;
  selectedTab_ = lNewSelectedTab;
  Notify(Aspect::selection);
}

bool TabControl::Shows(const FormControl& child) const {
  return Controls()[selectedTab_] == &child;
}

TabPanel::TabPanel(TabControl& tabs, std::string_view name, const Design& design)
    : FormControl(tabs, name, {0, kTabRowHeight, tabs.At().width, tabs.At().height - kTabRowHeight},
                  tabs.TextFont(), design.caption) {}

Timer::Timer(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, {}, {}),
      interval_(design.interval),
      onTick_(std::move(design.onTick)) {}

void Timer::Start(int milliseconds) {
  interval_ = milliseconds;
  running_ = true;
  Notify(Aspect::timer);
}

void Timer::Stop() {
  if (!running_) return;
  running_ = false;
  Notify(Aspect::timer);
}

void SelectAllText(TextBox& box) {
  constexpr std::size_t kLeftButton = 1;
  constexpr std::uint8_t kDown = 0x80;
  if ((ThePlatform().KeyboardState()[kLeftButton] & kDown) != 0 || box.SelLength() != 0) return;
  box.SelStart(0);
  box.SelLength(box.TextLength());
}

}  // namespace kvo
