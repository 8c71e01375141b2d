// Keeps a toolkit's box in step with a text of the form.
#pragma once

#include <string>
#include <string_view>

#include "common/forms/FormActions.h"
#include "common/forms/ShownText.h"

namespace kvo {

// A text of the form that is edited. Positions and lengths count characters.
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
  // The text shows now; what is selected of it may have to follow.
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
  // Goes on to the value of another row; nullptr: of none.
  void Of(PropertyGridItem* item);
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

  // From the form to the box; within FormActions::Update.
  void ShowText();
  void ShowSelection();

  // From the box to the form: its text, or its selection, may be another one.
  void Edited();
  void Selected();

 protected:
  // The style outlives it.
  TextSync(EditedText& text, Lines lines, const TextStyle& style, FormActions& host);
  Lines Kind() const { return shown_.Kind(); }
  // What of the form's text is selected in the box.
  std::string SelectedText() const;

 private:
  // --- the toolkit's part ---
  virtual std::u16string Units() const = 0;
  virtual void ShowUnits(const std::u16string& units) = 0;
  virtual UnitRange Selection() const = 0;
  virtual void Select(const UnitRange& selection) = 0;
  // Whether the box's text is ahead of the form's: it is being edited, and its caret comes with it.
  virtual bool IsAhead() const { return Units() != shown_.Units(); }

  UnitRange InBox(const EditedText::Selection& selection) const;
  EditedText::Selection InForm(const UnitRange& units) const;

  EditedText& text_;
  FormActions& host_;
  ShownText shown_;
  bool told_ = false;  // what is being edited has come back from the form
};

}  // namespace kvo
