#include "host/desktop/TextSync.h"

#include <algorithm>

#include "common/forms/FormKeys.h"

namespace kvo {

void BoxText::Select(const Selection& selection) {
  FormRenderer::Select(box_, selection.start, selection.length);
}

void BoxText::Edit(const Selection& replaced, std::string_view typed) {
  FormRenderer::Edit(box_, replaced.start, replaced.length, typed);
}

void ValueText::SetItem(PropertyGridItem* item) {
  item_ = item;
  selection_ = {};
}

std::string ValueText::Text() const {
  return item_ == nullptr ? std::string() : ToText(item_->Value());
}

void ValueText::Edit(const Selection& replaced, std::string_view typed) {
  if (item_ == nullptr) return;
  typed = OneLine(typed);
  std::string text = Text();
  const std::size_t start = CharacterOffset(text, replaced.start);
  const std::size_t end = CharacterOffset(text, replaced.start + replaced.length);
  text.replace(start, end - start, typed);
  selection_ = {replaced.start + CharacterCount(typed), 0};
  FormRenderer::EditValue(*item_, text);
}

void ValueText::Shown() {
  const std::size_t size = CharacterCount(Text());
  selection_.start = std::min(selection_.start, size);
  selection_.length = std::min(selection_.length, size - selection_.start);
}

TextSync::TextSync(EditedText& text, Lines lines, const TextStyle& style, FormActions& host)
    : text_(text), host_(host), shown_({}, lines, style) {}

UnitRange TextSync::InBox(const EditedText::Selection& selection) const {
  const int start = shown_.ToWidget(selection.start);
  return {start, shown_.ToWidget(selection.start + selection.length) - start};
}

EditedText::Selection TextSync::InForm(const UnitRange& units) const {
  const std::size_t start = shown_.ToForm(units.start);
  return {start, shown_.ToForm(units.start + units.length) - start};
}

void TextSync::ShowText() {
  shownSinceEdit_ = true;
  shown_ = ShownText(text_.Text(), shown_.Kind(), shown_.Style());
  if (Units() != shown_.Units()) ShowUnits(shown_.Units());
  text_.Shown();
  ShowSelection();
}

void TextSync::ShowSelection() {
  const UnitRange selected = InBox(text_.Selected());
  if (Selection() != selected) Select(selected);
}

void TextSync::Edited() {
  if (host_.IsUpdating()) return;
  shownSinceEdit_ = false;
  host_.Act([this] {
    const UnitRange now = Selection();
    // The replaced text is no longer selected.
    const UnitRange before = now.length > 0 ? UnitRange{now.start, 0} : InBox(text_.Selected());
    const auto edit = FindEdit(shown_, before, Units(), now.start + now.length);
    if (edit) text_.Edit({edit->start, edit->length}, edit->typed);
  });
  // Removes from the box what the form rejected.
  if (!shownSinceEdit_) host_.Update([this] { ShowText(); });
}

void TextSync::Selected() {
  if (host_.IsUpdating() || Selection() == InBox(text_.Selected()) || IsAhead()) return;
  host_.Act([this] { text_.Select(InForm(Selection())); });
}

std::string TextSync::SelectedText() const {
  const EditedText::Selection selected = InForm(Selection());
  const std::string text = text_.Text();
  const std::size_t start = CharacterOffset(text, selected.start);
  const std::size_t end = CharacterOffset(text, selected.start + selected.length);
  return text.substr(start, end - start);
}

}  // namespace kvo
