// The simple controls of a form. Each is declared with a `Design`: its fixed properties, its
// initial content and its event listeners.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/FormControl.h"

namespace kvo {

class Label final : public FormControl {
 public:
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
    bool wraps = false;  // into as many lines as its height allows
  };
  Label(Container& parent, std::string_view name, const Design& design);

  using FormControl::Caption;
  bool Wraps() const { return wraps_; }

  ControlKind Kind() override { return this; }

 private:
  bool wraps_;
};

// A control with editable text. Positions and lengths count characters: code points, so that CR LF
// are two.
class EditBox : public FormControl {
 public:
  const std::string& Text() const { return text_; }
  // Moves the caret to the start of the text.
  void Text(std::string sNewText);

  // In characters.
  std::size_t TextLength() const { return length_; }
  std::size_t SelStart() const { return selStart_; }
  std::size_t SelLength() const { return selLength_; }
  // Clamped to the text.
  void SelStart(std::size_t lNewSelStart);
  void SelLength(std::size_t lNewSelLength);

  bool TakesFocus() const override { return true; }

 protected:
  EditBox(Container& parent, std::string_view name, const Rect& at, const Font& font,
          std::string_view text);

  // Sets the text without an event and moves the caret to its start.
  void HoldText(std::string text);

 private:
  friend class FormRenderer;
  // Whether the user may edit the text.
  virtual bool IsEditable() const = 0;
  virtual bool HoldsLineBreaks() const = 0;
  // Assigned text raises the change event only if it differs. Typed text always does, as in a
  // native edit box: typing "0" over a selected "0" is a change.
  virtual void TextAssigned(std::string text) = 0;
  virtual void TextTyped() = 0;

  // Replaces a part of the text and moves the caret behind it. Works in place and counts from the
  // caret, so that a keystroke at the end of a long text stays cheap.
  void Replace(std::size_t start, std::size_t length, std::string_view typed);
  // The offset of a character in text_, like CharacterOffset.
  std::size_t OffsetOf(std::size_t character) const;

  std::string text_;
  std::size_t length_ = 0;  // of text_, in characters
  std::size_t selStart_ = 0;
  std::size_t caretByte_ = 0;  // the offset of character selStart_
  std::size_t selLength_ = 0;
};

// Holds any text unchanged. Where a widget cannot show a text exactly (line breaks in a single
// line, a NUL), the part that the user did not edit still stays as it was.
class TextBox : public EditBox {
 public:
  struct Design {
    Rect at{};
    Font font{};
    std::string_view text{};
    bool multiLine = false;
    Handler<TextBox> onChange{};
    Handler<TextBox> onGotFocus{};
  };
  TextBox(Container& parent, std::string_view name, Design design);

  bool MultiLine() const { return multiLine_; }
  SystemColor BackColor() const { return backColor_; }
  void BackColor(SystemColor newBackColor);

  ControlKind Kind() override { return this; }

 private:
  bool IsEditable() const override { return true; }
  bool HoldsLineBreaks() const override { return multiLine_; }
  void TextAssigned(std::string text) override;
  void TextTyped() override;
  void RaiseGotFocus() override;

  bool multiLine_;
  SystemColor backColor_ = SystemColor::windowBackground;
  Handler<TextBox> onChange_;
  Handler<TextBox> onGotFocus_;
};

inline constexpr int kNoRow = -1;

// A drop-down list. With `editable`, the user can type any text, otherwise only choose a row. Rows
// may have keys, which are unique and compared exactly.
class ComboBox : public EditBox {
 public:
  struct Row {
    std::optional<std::string> key;
    std::string text;
  };
  struct Design {
    Rect at{};
    Font font{};
    bool editable = false;
    std::string_view text{};
    Handler<ComboBox> onChange{};  // the text or the chosen row changed
    Handler<ComboBox> onClick{};   // the user chose a row, possibly the same one again
  };
  ComboBox(Container& parent, std::string_view name, Design design);

  bool Editable() const { return editable_; }

  const std::vector<Row>& Rows() const { return rows_; }
  void AddItem(std::string text);
  // Throws RuntimeError 457 when the key is taken.
  void AddItem(std::string key, std::string text);
  // Removes the rows, the choice and the text.
  void Clear();

  // The index of the chosen row; kNoRow when none is, even if a typed text equals a row's.
  int ListIndex() const { return listIndex_; }
  // Chooses a row and takes its text; kNoRow clears the text. Throws RuntimeError 5 when there is
  // no such row.
  void ListIndex(int lNewListIndex);

  // The chosen row; nullptr when none is.
  const Row* SelectedItem() const;
  // Finds a row by its key; kNoRow when there is none.
  int RowOf(std::string_view key) const;

  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;
  bool IsEditable() const override { return editable_; }
  bool HoldsLineBreaks() const override { return false; }
  void TextAssigned(std::string text) override;
  void TextTyped() override;
  // Sets the row and the text from code. Does nothing if both are the same.
  void Hold(int row, std::string text);

  bool editable_;
  std::vector<Row> rows_;
  int listIndex_ = kNoRow;
  Handler<ComboBox> onChange_;
  Handler<ComboBox> onClick_;
};

class CheckBox : public FormControl {
 public:
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
    Handler<CheckBox> onClick{};
  };
  CheckBox(Container& parent, std::string_view name, Design design);

  bool Value() const { return value_; }
  void Value(bool bNewValue);

  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  bool value_ = false;
  Handler<CheckBox> onClick_;
};

// An option button. At most one in a container is chosen.
class OptionButton : public FormControl {
 public:
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
    Handler<OptionButton> onClick{};  // it was chosen, or the user clicked it
  };
  OptionButton(Container& parent, std::string_view name, Design design);

  bool Value() const { return value_; }
  void Value(bool bNewValue);

  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;
  bool value_ = false;
  Handler<OptionButton> onClick_;
};

class CommandButton final : public FormControl {
 public:
  // The key that presses the button in a dialog: Enter or Escape.
  enum class Role { plain, acceptsDialog, cancelsDialog };
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
    Role role = Role::plain;
    Handler<CommandButton> onClick{};
  };
  CommandButton(Container& parent, std::string_view name, Design design);

  Role DialogRole() const { return role_; }

  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;
  Role role_;
  Handler<CommandButton> onClick_;
};

// An etched line or box, with or without a caption.
class Frame final : public FormControl {
 public:
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
  };
  Frame(Container& parent, std::string_view name, const Design& design)
      : FormControl(parent, name, design.at, design.font, design.caption) {}

  ControlKind Kind() override { return this; }
};

enum class Picture { information };

class PictureBox final : public FormControl {
 public:
  struct Design {
    Picture picture{};
    Rect at{};
  };
  PictureBox(Container& parent, std::string_view name, const Design& design)
      : FormControl(parent, name, design.at, {}), picture_(design.picture) {}

  Picture Shown() const { return picture_; }
  ControlKind Kind() override { return this; }

 private:
  Picture picture_;
};

// Shows one of its panels at a time, initially the first. The panels are declared in it.
class TabControl final : public FormControl, public Container {
 public:
  struct Design {
    Rect at{};
    Font font{};
  };
  TabControl(Container& parent, std::string_view name, const Design& design)
      : FormControl(parent, name, design.at, design.font) {}

  std::size_t SelectedTab() const { return selectedTab_; }
  // Throws RuntimeError 5 when there is no such tab.
  void SelectedTab(std::size_t lNewSelectedTab);

  Form& OwnerForm() override { return Parent().OwnerForm(); }
  FormControl* AsControl() override { return this; }
  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  bool Shows(const FormControl& child) const override;

  std::size_t selectedTab_ = 0;
};

// The height of the row of tabs, above the panels.
inline constexpr int kTabRowHeight = 360;

// The panel of one tab. It fills the tab control below the tabs.
class TabPanel final : public FormControl, public Container {
 public:
  struct Design {
    std::string_view caption{};  // of the tab
  };
  TabPanel(TabControl& tabs, std::string_view name, const Design& design);

  Form& OwnerForm() override { return Parent().OwnerForm(); }
  FormControl* AsControl() override { return this; }
  ControlKind Kind() override { return this; }
};

// Ticks every `Interval` milliseconds while it runs.
class Timer final : public FormControl {
 public:
  struct Design {
    int interval = 0;
    Handler<Timer> onTick{};
  };
  Timer(Container& parent, std::string_view name, Design design);

  int Interval() const { return interval_; }
  // Starts or restarts it.
  void Start(int milliseconds);
  void Stop();
  bool IsRunning() const { return running_; }

  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;
  int interval_;
  bool running_ = false;
  Handler<Timer> onTick_;
};

// Whether a UTF-8 byte begins a character.
constexpr bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }
// The number of characters, as SelStart and SelLength count them.
std::size_t CharacterCount(std::string_view text);
// The offset of the character at index `character`; the text's size when it is past the end.
std::size_t CharacterOffset(std::string_view text, std::size_t character);

// Selects the whole text of a box that the user entered by keyboard, that is, when the left mouse
// button is up and nothing is selected.
void SelectAllText(TextBox& box);

}  // namespace kvo
