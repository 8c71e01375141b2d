#include "common/FormControls.h"

#include <algorithm>

#include "common/Form.h"
#include "common/RuntimeError.h"

namespace kvo {
namespace {

template <class Sender>
void Raise(const Handler<Sender>& handler, Sender& sender) {
  if (handler) handler(sender);
}

}  // namespace

std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, BeginsCharacter));
}

std::size_t CharacterOffset(std::string_view text, std::size_t character) {
  std::size_t at = 0;
  // Stray continuation bytes in front of the first character belong to it.
  while (at < text.size() && !BeginsCharacter(text[at])) ++at;
  if (character == 0) return 0;
  for (; at < text.size(); ++at)
    if (BeginsCharacter(text[at]) && character-- == 0) break;
  return at;
}

Label::Label(Container& parent, std::string_view name, const Design& design)
    : FormControl(parent, name, design.at, design.font),
      caption_(design.caption),
      wraps_(design.wraps) {}

void Label::Caption(std::string sNewCaption) {
  if (caption_ == sNewCaption) return;
  caption_ = std::move(sNewCaption);
  Notify(Aspect::caption);
}

EditBox::EditBox(Container& parent, std::string_view name, const Rect& at, const Font& font,
                 std::string_view text)
    : FormControl(parent, name, at, font), text_(text) {}

void EditBox::Text(std::string sNewText) { TextReplaced(std::move(sNewText), 0, Source::code); }

void EditBox::SelStart(std::size_t lNewSelStart) {
  selStart_ = std::min(lNewSelStart, CharacterCount(text_));
  selLength_ = 0;
  Notify(Aspect::selection);
}

void EditBox::SelLength(std::size_t lNewSelLength) {
  selLength_ = std::min(lNewSelLength, CharacterCount(text_) - selStart_);
  Notify(Aspect::selection);
}

void EditBox::HoldText(std::string text, std::size_t caret) {
  text_ = std::move(text);
  selStart_ = std::min(caret, CharacterCount(text_));
  selLength_ = 0;
  Notify(Aspect::text);
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

void TextBox::TextReplaced(std::string text, std::size_t caret, Source source) {
  if (source == Source::code && text == Text()) return;
  HoldText(std::move(text), caret);
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
  if (std::ranges::any_of(rows_, [&](const Row& row) { return row.key == key; }))
    throw RuntimeError(ErrorNumber::keyInUse, '"' + key + '"');
  rows_.push_back({std::move(key), std::move(text)});
  Notify(Aspect::choices);
}

void ComboBox::Clear() {
  if (!rows_.empty()) {
    rows_.clear();
    Notify(Aspect::choices);
  }
  Hold(kNoRow, {}, 0, Source::code);
}

void ComboBox::ListIndex(int lNewListIndex) {
  if (lNewListIndex < kNoRow || lNewListIndex >= static_cast<int>(rows_.size()))
    throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + ".ListIndex");
  if (lNewListIndex == kNoRow) return Hold(kNoRow, {}, 0, Source::code);
  Hold(lNewListIndex, rows_[static_cast<std::size_t>(lNewListIndex)].text, 0, Source::code);
}

const ComboBox::Row* ComboBox::SelectedItem() const {
  return listIndex_ == kNoRow ? nullptr : &rows_[static_cast<std::size_t>(listIndex_)];
}

bool ComboBox::SelectKey(std::string_view key) {
  const auto row =
      std::ranges::find_if(rows_, [&](const Row& candidate) { return candidate.key == key; });
  ListIndex(row == rows_.end() ? kNoRow : static_cast<int>(row - rows_.begin()));
  return row != rows_.end();
}

void ComboBox::TextReplaced(std::string text, std::size_t caret, Source source) {
  if (editable_) return Hold(kNoRow, std::move(text), caret, source);
  const auto row =
      std::ranges::find_if(rows_, [&](const Row& candidate) { return candidate.text == text; });
  if (row == rows_.end())
    throw RuntimeError(ErrorNumber::invalidCall, std::string(Name()) + ".Text");
  ListIndex(static_cast<int>(row - rows_.begin()));
}

void ComboBox::Hold(int row, std::string text, std::size_t caret, Source source) {
  if (source == Source::code && row == listIndex_ && text == Text()) return;
  listIndex_ = row;
  HoldText(std::move(text), caret);
  Raise(onChange_, *this);
}

CheckBox::CheckBox(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font),
      caption_(design.caption),
      onClick_(std::move(design.onClick)) {}

void CheckBox::Value(bool bNewValue) {
  if (value_ == bNewValue) return;
  value_ = bNewValue;
  Notify(Aspect::checked);
  Raise(onClick_, *this);
}

OptionButton::OptionButton(Container& parent, std::string_view name, Design design)
    : FormControl(parent, name, design.at, design.font),
      caption_(design.caption),
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
    : FormControl(parent, name, design.at, design.font),
      caption_(design.caption),
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
                  tabs.TextFont()),
      caption_(design.caption) {}

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

}  // namespace kvo
