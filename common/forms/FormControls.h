// The simple controls of a form. Each is declared with its `Design`: what is fixed about it, its
// initial content, and who listens to its events.
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
    bool wraps = false;  // over as many lines as fit into its height
  };
  Label(Container& parent, std::string_view name, const Design& design);

  using FormControl::Caption;
  bool Wraps() const { return wraps_; }

  ControlKind Kind() override { return this; }

 private:
  bool wraps_;
};

// What can be typed into. Positions and lengths count characters (code points; CR LF are two).
class EditBox : public FormControl {
 public:
  const std::string& Text() const { return text_; }
  // Puts the caret in front of the text.
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

  // Without an event; the caret goes in front of the text.
  void HoldText(std::string text);

 private:
  friend class FormRenderer;
  // Whether the user may edit the text.
  virtual bool IsEditable() const = 0;
  virtual bool HoldsLineBreaks() const = 0;
  // Text that code assigns raises the box's event only if it is new. What the user types always
  // does, as in a real edit box: "0" typed over a selected "0" is a change, too.
  virtual void TextAssigned(std::string text) = 0;
  virtual void TextTyped() = 0;

  // Replaces a part of the text and puts the caret behind it. In place, and counted from the caret,
  // so that a key at the end of a long text costs no more than in a short one.
  void Replace(std::size_t start, std::size_t length, std::string_view typed);
  // The byte at which a character of the text begins, as CharacterOffset has it.
  std::size_t OffsetOf(std::size_t character) const;

  std::string text_;
  std::size_t length_ = 0;  // of the text, in characters
  std::size_t selStart_ = 0;
  std::size_t caretByte_ = 0;  // where the character selStart_ begins
  std::size_t selLength_ = 0;
};

// Holds any text as it is. A widget that cannot show a text exactly (line breaks in a single line,
// a NUL) still leaves what the user did not edit as it was.
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

// A list that drops down: with `editable` any text can be typed, without only rows can be chosen.
// Rows may have keys, which differ from each other (compared exactly).
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
    Handler<ComboBox> onChange{};  // the text or the choice
    Handler<ComboBox> onClick{};   // the user chose a row, maybe the one that was chosen
  };
  ComboBox(Container& parent, std::string_view name, Design design);

  bool Editable() const { return editable_; }

  const std::vector<Row>& Rows() const { return rows_; }
  void AddItem(std::string text);
  // RuntimeError 457 when the key is taken.
  void AddItem(std::string key, std::string text);
  // No rows, no choice, no text.
  void Clear();

  // The chosen row, from 0; kNoRow when none is, as with a typed text - even if that equals a row.
  int ListIndex() const { return listIndex_; }
  // RuntimeError 5 when there is no such row. The text becomes the row's; kNoRow empties it.
  void ListIndex(int lNewListIndex);

  // The chosen row; nullptr when none is.
  const Row* SelectedItem() const;
  // The row with a key; kNoRow when there is none.
  int RowOf(std::string_view key) const;

  ControlKind Kind() override { return this; }

 private:
  friend class FormRenderer;
  bool IsEditable() const override { return editable_; }
  bool HoldsLineBreaks() const override { return false; }
  void TextAssigned(std::string text) override;
  void TextTyped() override;
  // By code; nothing happens if it is not new.
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

// One of a group: of all option buttons of its container, at most one is chosen.
class OptionButton : public FormControl {
 public:
  struct Design {
    std::string_view caption{};
    Rect at{};
    Font font{};
    Handler<OptionButton> onClick{};  // it became the chosen one, or the user clicked it
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
  // What the Enter and the Escape key do in a dialog.
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

// Tabs over each other; its panels are declared into it and shown one at a time, the first one at
// first.
class TabControl final : public FormControl, public Container {
 public:
  struct Design {
    Rect at{};
    Font font{};
  };
  TabControl(Container& parent, std::string_view name, const Design& design)
      : FormControl(parent, name, design.at, design.font) {}

  std::size_t SelectedTab() const { return selectedTab_; }
  // RuntimeError 5 when there is no such tab.
  void SelectedTab(std::size_t lNewSelectedTab);

  Form& OwnerForm() override { return Parent().OwnerForm(); }
  FormControl* AsControl() override { return this; }
  bool TakesFocus() const override { return true; }
  ControlKind Kind() override { return this; }

 private:
  bool Shows(const FormControl& child) const override;

  std::size_t selectedTab_ = 0;
};

// How high the row of tabs is; the panels lie below it.
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

// Ticks while it is enabled, every `Interval` milliseconds.
class Timer final : public FormControl {
 public:
  struct Design {
    int interval = 0;
    Handler<Timer> onTick{};
  };
  Timer(Container& parent, std::string_view name, Design design);

  int Interval() const { return interval_; }
  // Counts from zero again from now on.
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

// Whether a byte of UTF-8 is the first of a character.
constexpr bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }
// Characters of a text, as SelStart and SelLength count them.
std::size_t CharacterCount(std::string_view text);
// The byte at which the character number `character` begins; the text's size beyond its end.
std::size_t CharacterOffset(std::string_view text, std::size_t character);

// Selects the whole text of a box that was entered by keyboard: only when the left mouse button is
// up and nothing is selected yet.
void SelectAllText(TextBox& box);

}  // namespace kvo
