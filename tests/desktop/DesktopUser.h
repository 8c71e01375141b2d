// A user in front of a desktop's widgets: what the tests that every desktop passes do and see. Each
// desktop's tests say who it is.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/ShownText.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/script/FormUser.h"

namespace kvo {

class DesktopUser : public FormUser {
 public:
  // --- keys that scripts do not press, at the focused control ---
  virtual void Copy() = 0;
  virtual void Cut() = 0;
  virtual void Paste() = 0;
  virtual void Undo() = 0;

  virtual void PutOnClipboard(std::string_view text) = 0;
  virtual std::string OnClipboard() = 0;

  // --- the desktop ---
  // Brings the window to the front, and the keyboard to where it was.
  virtual void Activate() = 0;
  // Another window has the keyboard for a while.
  virtual void LookElsewhere() = 0;
  // Lets what waits happen.
  virtual void Settle() = 0;
  // Until something is so; false when it takes too long.
  virtual bool WaitUntil(const std::function<bool()>& so, int milliseconds = 5000) = 0;
  // Has a data grid painted from some row on.
  virtual void Paint(const Grid& grid, std::size_t row) = 0;

  // A page's event is on the stack.
  virtual bool IsBusy() = 0;
  // What a page throws goes there and not out of the actions.
  virtual void OnFailure(std::function<void(const std::exception&)> report) = 0;

  // --- what the widgets show ---
  // A text as a caption or a row shows it.
  virtual std::u16string AsShown(std::string_view text) = 0;
  virtual const TextStyle& Style() = 0;

  virtual bool ShowsEnabled(const FormControl& control) = 0;
  virtual bool ShowsVisible(const FormControl& control) = 0;
  virtual bool ShowsMark(const FormControl& control) = 0;
  virtual bool ShowsRunning(const Timer& timer) = 0;
  // Of a label, a text box or a list.
  virtual std::u16string ShownTextOf(const FormControl& control) = 0;
  virtual UnitRange ShownSelection(const EditBox& box) = 0;
  virtual std::vector<std::u16string> ShownRows(const ComboBox& box) = 0;
  virtual int ShownChoice(const ComboBox& box) = 0;
  virtual std::size_t ShownTab(const TabControl& tabs) = 0;
  // Nothing where rows are painted and not told of.
  struct CaptionAndValue {
    std::u16string caption;
    std::u16string value;
  };
  virtual std::optional<std::vector<CaptionAndValue>> ShownItems(const PropertyGrid& grid) = 0;
  virtual std::optional<int> ShownItem(const PropertyGrid& grid) = 0;
  // What stands in the box of the selected row; nothing when no box is open.
  virtual std::optional<std::u16string> ShownValue(const PropertyGrid& grid) = 0;
  virtual std::size_t ShownColumns(const Grid& grid) = 0;
  virtual std::size_t ShownRecords(const Grid& grid) = 0;
  virtual std::u16string ShownCell(const Grid& grid, std::size_t row, std::size_t column) = 0;
  virtual std::vector<std::size_t> ShownSelection(const Grid& grid) = 0;
};

// Shows the form and puts a user in front of it, who tells the platform of the mouse button.
std::unique_ptr<DesktopUser> SitDown(HeadlessPlatform& platform, Form& form);

// Line by line, in what the widgets of a form differ from the form; nothing when in nothing.
std::string Misshown(DesktopUser& user, const Form& form);

}  // namespace kvo
