// A platform for tests of the core, with fixed text widths and numbered GUIDs. Records every call.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "common/frame/Platform.h"

namespace kvo {

class TestPlatform : public Platform {
 public:
  std::map<std::string, int, std::less<>> widths;  // by text; the default is 100 per byte
  std::vector<std::string> log;
  int measured = 0;

  void ShowMessage(WindowHandle owner, std::string_view text) override {
    log.push_back("message " + std::to_string(owner) + " " + std::string(text));
  }
  std::optional<std::string> InputPrompt(std::string_view, std::string_view) override {
    return std::nullopt;
  }
  void ShowModal(Form&) override {}
  ColorNumber ChooseColor(ColorNumber preset) override { return preset; }
  KeyStates KeyboardState() override { return {}; }
  int TextWidth(std::string_view text, FontWeight) override {
    ++measured;
    const auto found = widths.find(text);
    return found != widths.end() ? found->second : 100 * static_cast<int>(text.size());
  }
  GuidText NewGuid() override {
    char text[39];
    std::snprintf(text, sizeof text, "{00000000-0000-4000-8000-%012d}", ++guids_);
    GuidText guid;
    std::copy_n(text, guid.characters.size(), guid.characters.begin());
    return guid;
  }
  std::string Format(const Variant&, std::string_view) override { return {}; }
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override {
    shown = std::move(object);
    std::string entry = "frame " + std::to_string(owner) + " " + std::string(caption);
    for (const std::string& page : pages) entry += " " + page;
    log.push_back(entry);
  }

  ObjectRef NewRecordset() override { return nullptr; }

  ObjectRef shown;

 private:
  int guids_ = 0;
};

}  // namespace kvo
