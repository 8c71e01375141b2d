// The stage on which the scripts of tests/pages/scripts play, whoever acts on it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/headless/PageScript.h"
#include "host/registration/classes.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {

// A stage with an office and a shop that scripts furnish by commands of their own:
//   contact-field SQLNAME "Name" TYPE     order-field SQLNAME "Name" TYPE
//   product NUMBER "Name" "Description"   connection open|closed|broken
class Theatre {
 public:
  Theatre() {
    office_->connection = connection_;
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table_); };
    stage.newControl = [](std::string_view name) -> std::shared_ptr<Control> {
      const RegisteredControl* registered = FindControlByName(name);
      return registered == nullptr ? nullptr : registered->contract().create();
    };
    stage.office = office_;
    stage.command = [this](std::span<const std::string> words) { return Command(words); };
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
  bool Command(std::span<const std::string> words) {
    if (words[0] == "contact-field" && words.size() == 4) {
      office_->contactFields.push_back({words[1], words[2], std::stoi(words[3])});
    } else if (words[0] == "order-field" && words.size() == 4) {
      office_->orderFields.push_back({words[1], words[2], std::stoi(words[3])});
    } else if (words[0] == "product" && words.size() == 4) {
      table_.rows.push_back({{"ProductNo", words[1]}, {"Desc1", words[2]}, {"Desc2", words[3]}});
    } else if (words[0] == "connection" && words.size() == 2) {
      connection_->state = words[1] == "closed" ? 0 : 1;
      table_.gone = words[1] == "broken";
    } else {
      return false;
    }
    return true;
  }

  FakeTable table_;
  std::shared_ptr<FakeConnection> connection_ = std::make_shared<FakeConnection>();
  std::shared_ptr<FakeOffice> office_ = std::make_shared<FakeOffice>();
};

inline std::filesystem::path ScriptFolder() {
  return std::filesystem::path(KVO_SOURCE_DIR) / "tests/pages/scripts";
}

// In alphabetical order.
inline std::vector<std::string> ScriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(ScriptFolder()))
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  std::ranges::sort(names);
  return names;
}

inline std::string ReadScript(const std::string& name) {
  std::ifstream file(ScriptFolder() / (name + ".txt"));
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace kvo
