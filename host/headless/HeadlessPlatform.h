// The platform of programs without a desktop: the command line tool, the build server, the tests.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Platform.h"

namespace kvo {

// Base of the programs' platforms.
class ProgramPlatform : public Platform {
 public:
  // Creates recordsets; set by programs with a database layer. Without it, NewRecordset throws
  // RuntimeError 429.
  std::function<ObjectRef()> recordsets;

  // Equal on every machine, independent of its fonts, because boxes are stored with their size.
  int TextWidth(std::string_view text, FontWeight weight) override;
  GuidText NewGuid() override;
  // Formats in German in every locale, because the pages that show the samples are German.
  std::string Format(const Variant& value, std::string_view pattern) override;
  ObjectRef NewRecordset() override;
};

// Answers dialogs from queues filled beforehand, and records them. By default, cancels a prompt or
// colour dialog and closes a modal form or property frame at once, so that a program never hangs on
// an invisible dialog.
class HeadlessPlatform : public ProgramPlatform {
 public:
  struct Prompt {
    std::string prompt;
    std::string title;
    bool operator==(const Prompt&) const = default;
  };
  struct Frame {
    WindowHandle owner;
    std::string caption;
    ObjectRef object;
    std::vector<std::string> pages;
  };

  // Everything that was shown, in order.
  std::vector<std::string> messages;
  std::vector<Prompt> prompts;
  std::vector<ColorNumber> colorPresets;
  std::vector<Frame> frames;

  // The queued answers, first in, first out; nullopt cancels.
  std::deque<std::optional<std::string>> promptAnswers;
  std::deque<std::optional<ColorNumber>> colorAnswers;

  // Called while a modal form or property frame is open; it closes on return.
  std::function<void(Form&)> whileModal;
  std::function<void(const Frame&)> whileFrame;

  KeyStates keys{};

  void ShowMessage(WindowHandle owner, std::string_view text) override;
  std::optional<std::string> InputPrompt(std::string_view prompt, std::string_view title) override;
  void ShowModal(Form& form) override;
  ColorNumber ChooseColor(ColorNumber preset) override;
  KeyStates KeyboardState() override { return keys; }
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override;
};

// Returns the width of one line of text in Tahoma 8.25 point at 96 dpi, in twips: the sum of the
// advance widths, rounded up to whole pixels. Never allocates.
int TahomaTextWidth(std::string_view text, FontWeight weight);

}  // namespace kvo
