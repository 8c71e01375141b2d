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

// What the platforms of all programs do alike.
class ProgramPlatform : public Platform {
 public:
  // Who makes recordsets; a program with a database layer sets it. Without: RuntimeError 429.
  std::function<ObjectRef()> recordsets;

  // The same on every machine, whatever its fonts are: boxes are stored with their size.
  int TextWidth(std::string_view text, FontWeight weight) override;
  GuidText NewGuid() override;
  // In German, in every locale: the pages that show the samples are German.
  std::string Format(const Variant& value, std::string_view pattern) override;
  ObjectRef NewRecordset() override;
};

// Dialogs are answered from what was put into the queues beforehand, and recorded. With nothing
// queued, a prompt and a colour dialog are cancelled and a modal form or property frame closes at
// once, so that no program ever hangs on a dialog that nobody sees.
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

  // What was shown, in order.
  std::vector<std::string> messages;
  std::vector<Prompt> prompts;
  std::vector<ColorNumber> colorPresets;
  std::vector<Frame> frames;

  // What is answered, first in first out; nullopt is a cancel.
  std::deque<std::optional<std::string>> promptAnswers;
  std::deque<std::optional<ColorNumber>> colorAnswers;

  // What happens while a modal form or a property frame is open; it closes on return.
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

// The width of one line of text in Tahoma 8.25 point at 96 dpi, in twips: the sum of the advance
// widths, rounded up to whole pixels. Never allocates.
int TahomaTextWidth(std::string_view text, FontWeight weight);

}  // namespace kvo
