// Synchronises a toolkit's box with a text of the form.
#pragma once

#include <string>
#include <string_view>

#include "common/forms/FormActions.h"
#include "common/forms/ShownText.h"

namespace kvo {

// A text of the form that the user can edit. Positions and lengths count characters.
class EditedText {
 public:
  EditedText() = default;
  EditedText(const EditedText&) = delete;
  EditedText& operator=(const EditedText&) = delete;
  virtual ~EditedText() = default;

  struct Selection {
    std::size_t start = 0;
    std::size_t length = 0;
  };

  virtual std::string Text() const = 0;
  virtual Selection Selected() const = 0;
  virtual void Select(const Selection& selection) = 0;
  virtual void Edit(const Selection& replaced, std::string_view typed) = 0;
  // The text is shown now; the selection may have to be adjusted.
  virtual void Shown() {}
};

// The text of an edit box.
class BoxText final : public EditedText {
 public:
  explicit BoxText(EditBox& box) : box_(box) {}
  std::string Text() const override { return box_.Text(); }
  Selection Selected() const override { return {box_.SelStart(), box_.SelLength()}; }
  void Select(const Selection& selection) override;
  void Edit(const Selection& replaced, std::string_view typed) override;

 private:
  EditBox& box_;
};

// The value of a property grid's row.
class ValueText final : public EditedText {
 public:
  explicit ValueText(PropertyGridItem* item = nullptr) : item_(item) {}
  // Switches to the value of another row; nullptr for none.
  void SetItem(PropertyGridItem* item);
  std::string Text() const override;
  Selection Selected() const override { return selection_; }
  void Select(const Selection& selection) override { selection_ = selection; }
  void Edit(const Selection& replaced, std::string_view typed) override;
  void Shown() override;

 private:
  PropertyGridItem* item_;
  Selection selection_;
};

class TextSync {
 public:
  TextSync(const TextSync&) = delete;
  TextSync& operator=(const TextSync&) = delete;

  virtual ~TextSync() = default;

  // Update the box from the form; call within FormActions::Update.
  void ShowText();
  void ShowSelection();

  // Update the form after the text or the selection of the box may have changed.
  void Edited();
  void Selected();

 protected:
  // `style` must outlive it.
  TextSync(EditedText& text, Lines lines, const TextStyle& style, FormActions& host);
  Lines Kind() const { return shown_.Kind(); }
  // The part of the form's text that is selected in the box.
  std::string SelectedText() const;

 private:
  // --- the toolkit's part ---
  virtual std::u16string Units() const = 0;
  virtual void ShowUnits(const std::u16string& units) = 0;
  virtual UnitRange Selection() const = 0;
  virtual void Select(const UnitRange& selection) = 0;
  // Whether the box's text is ahead of the form's because it is being edited. Its caret is reported
  // with the edit then.
  virtual bool IsAhead() const { return Units() != shown_.Units(); }

  UnitRange InBox(const EditedText::Selection& selection) const;
  EditedText::Selection InForm(const UnitRange& units) const;

  EditedText& text_;
  FormActions& host_;
  ShownText shown_;
  bool shownSinceEdit_ = false;  // the form has updated the box since the edit began
};

}  // namespace kvo
