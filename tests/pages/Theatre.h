// The stage for the scripts of tests/pages/scripts, for any kind of user.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/registration/classes.h"
#include "host/script/PageScript.h"
#include "tests/pages/Furnishing.h"

namespace kvo {

// A stage with an office and a shop that scripts can set up.
class Theatre {
 public:
  Theatre() {
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(furnishing_.table); };
    stage.newControl = [](std::string_view name) -> std::shared_ptr<Control> {
      const RegisteredControl* registered = FindControlByName(name);
      return registered == nullptr ? nullptr : registered->contract().create();
    };
    stage.office = furnishing_.office;
    stage.command = [this](std::span<const std::string> words) {
      return furnishing_.Command(words);
    };
  }

  ScriptOutcome Run(std::string_view script) { return RunPageScript(stage, script); }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  ScriptStage stage{.platform = platform,
                    .pages = CreatePage,
                    .newControl = {},
                    .office = {},
                    .controls = {},
                    .user = {},
                    .command = {}};

 private:
  Furnishing furnishing_;
};

inline std::filesystem::path ScriptFolder() {
  return std::filesystem::path(KVO_SOURCE_DIR) / "tests/pages/scripts";
}

// Returns them in alphabetical order.
inline std::vector<std::string> ScriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(ScriptFolder()))
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string ReadScript(const std::string& name) {
  std::ifstream file(ScriptFolder() / (name + ".txt"));
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace kvo
