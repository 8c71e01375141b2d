// A user of a desktop's widgets: the actions and views for the tests that every desktop must pass.
// Each desktop's tests implement it.
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
  // --- keys at the focused control that scripts do not press ---
  virtual void Copy() = 0;
  virtual void Cut() = 0;
  virtual void Paste() = 0;
  virtual void Undo() = 0;

  virtual void PutOnClipboard(std::string_view text) = 0;
  virtual std::string OnClipboard() = 0;

  // --- the desktop ---
  // Brings the window to the front and restores its focus.
  virtual void Activate() = 0;
  // Gives another window the focus for a while.
  virtual void LookElsewhere() = 0;
  // Processes pending events.
  virtual void Settle() = 0;
  // Waits until `so` returns true; returns false on a timeout.
  virtual bool WaitUntil(const std::function<bool()>& so, int milliseconds = 5000) = 0;
  // Paints a data grid from the given row on.
  virtual void Paint(const Grid& grid, std::size_t row) = 0;

  // Whether a page's event is running.
  virtual bool IsBusy() = 0;
  // Sends a page's exceptions to `report` instead of throwing them from the actions.
  virtual void OnFailure(std::function<void(const std::exception&)> report) = 0;

  // --- what the widgets show ---
  // Returns a text as a caption or a row shows it.
  virtual std::u16string AsShown(std::string_view text) = 0;
  virtual const TextStyle& Style() = 0;

  virtual bool ShowsEnabled(const FormControl& control) = 0;
  virtual bool ShowsVisible(const FormControl& control) = 0;
  virtual bool ShowsMark(const FormControl& control) = 0;
  virtual bool ShowsRunning(const Timer& timer) = 0;
  // For a label, a text box or a list.
  virtual std::u16string ShownTextOf(const FormControl& control) = 0;
  virtual UnitRange ShownSelection(const EditBox& box) = 0;
  virtual std::vector<std::u16string> ShownRows(const ComboBox& box) = 0;
  virtual int ShownChoice(const ComboBox& box) = 0;
  virtual std::size_t ShownTab(const TabControl& tabs) = 0;
  // Empty where the desktop paints rows without exposing their texts.
  struct CaptionAndValue {
    std::u16string caption;
    std::u16string value;
  };
  virtual std::optional<std::vector<CaptionAndValue>> ShownItems(const PropertyGrid& grid) = 0;
  virtual std::optional<int> ShownItem(const PropertyGrid& grid) = 0;
  // Returns the text in the selected row's box; nothing when no box is open.
  virtual std::optional<std::u16string> ShownValue(const PropertyGrid& grid) = 0;
  virtual std::size_t ShownColumns(const Grid& grid) = 0;
  virtual std::size_t ShownRecords(const Grid& grid) = 0;
  virtual std::u16string ShownCell(const Grid& grid, std::size_t row, std::size_t column) = 0;
  virtual std::vector<std::size_t> ShownSelection(const Grid& grid) = 0;
};

// Shows the form to a user, who reports the mouse button to the platform.
std::unique_ptr<DesktopUser> SitDown(HeadlessPlatform& platform, Form& form);

// Lists the differences between a form and its widgets, one per line; empty if they agree.
std::string Misshown(DesktopUser& user, const Form& form);

}  // namespace kvo
