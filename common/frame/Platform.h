// The platform seam: what the machine and its desktop do for the controls and pages.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/text/modGlobal.h"
#include "common/values/Variant.h"

namespace kvo {

class Form;

// A window of the host, opaque here: 0 is none.
using WindowHandle = std::intptr_t;

// A globally unique identifier in registry form, upper case, braces included:
// "{00000000-0000-0000-0000-000000000000}".
struct GuidText {
  std::array<char, 38> characters;
  operator std::string_view() const { return {characters.data(), characters.size()}; }
};

enum class FontWeight { normal, bold };

class Platform {
 public:
  virtual ~Platform() = default;

  // A message box with an OK button and the component's own title.
  virtual void ShowMessage(WindowHandle owner, std::string_view text) = 0;

  // A modal prompt for one line of text; nothing when the user cancels.
  virtual std::optional<std::string> InputPrompt(std::string_view prompt,
                                                 std::string_view title) = 0;

  // Shows a form as a modal dialog and returns when it is closed.
  virtual void ShowModal(Form& form) = 0;

  // The colour dialog, opened on `preset`. Returns the preset when the user cancels.
  virtual ColorNumber ChooseColor(ColorNumber preset) = 0;

  // The state of the 256 virtual keys: bit 0x80 of [key] is set while the key is down. Key 1 is
  // the left mouse button.
  using KeyStates = std::array<std::uint8_t, 256>;
  virtual KeyStates KeyboardState() = 0;

  // The width of one line of text in Tahoma 8.25 point, in twips.
  virtual int TextWidth(std::string_view text, FontWeight weight) = 0;

  // A new globally unique identifier.
  virtual GuidText NewGuid() = 0;

  // A number or a date (as a Variant: a number, or a text that reads as a date and time) in the
  // user's locale, by a format pattern such as "#,##0.00" or "dd. mmmm yyyy".
  virtual std::string Format(const Variant& value, std::string_view pattern) = 0;

  // The modal property frame over one object and its pages, at 0, 0 of the owner window.
  virtual void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                                 const std::vector<std::string>& pages) = 0;

  // A recordset of the machine's database layer, not yet opened. Its members, late bound, are those
  // named in common/values/Recordset.h. RuntimeError 429 when the machine has no such layer.
  virtual ObjectRef NewRecordset() = 0;
};

// The platform of the running program, which installs one before it touches a control. Throws
// std::logic_error without one.
Platform& ThePlatform();

// Installs a platform during its lifetime, then restores the former one.
class PlatformScope {
 public:
  explicit PlatformScope(Platform& platform);
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;
  ~PlatformScope();

 private:
  Platform* former_;
};

// A new identifier from the system's generator: "{" 8-4-4-4-12 upper-case digits "}".
GuidText CreateGUID();

// Shows the property frame over the object, with the pages that it names, or that the object names
// which it wraps as its member `Object`. RuntimeError 13 when neither names any, or without an
// object.
void ShowPropertyPages(ObjectRef object, std::string_view caption, WindowHandle owner);

}  // namespace kvo
