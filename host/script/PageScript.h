// Scripted use of property pages, line by line (the format: docs/page-scripts.md).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/PropertyFrame.h"
#include "common/frame/Control.h"
#include "common/values/Localized.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/script/FormState.h"
#include "host/script/FormUser.h"

namespace kvo {

// The environment of a script.
struct ScriptStage {
  HeadlessPlatform& platform;  // must be installed
  PageFactory pages;
  // Creates a control of a class, for `control` lines; nullptr when there is no such class.
  std::function<std::shared_ptr<Control>(std::string_view className)> newControl;
  // Assigned to the `Office` property of every control that has one; may be null.
  ObjectRef office;
  // The controls by the names that scripts use; `control` lines add to them.
  std::map<std::string, std::shared_ptr<Control>, std::less<>> controls;
  // Creates the user of a form; if not set, a HeadlessUser.
  std::function<std::unique_ptr<FormUser>(Form&)> user;
  // Runs further commands; returns false when it does not know the first word.
  std::function<bool(std::span<const std::string> words)> command;
};

struct ScriptFailure {
  std::size_t line = 0;  // from 1
  Message message;
};

struct PageOutcome {
  std::string className;
  std::string caption;
  bool filled;
  bool changed;
  std::vector<ControlState> controls;
};

struct ScriptOutcome {
  std::optional<ScriptFailure> failure;  // ended the script
  // The property frame of the last `open`, as it is at the end, with the pages that were shown.
  std::optional<bool> frameOpen;
  bool canApply = false;
  std::vector<PageOutcome> pages;
};

// Runs a script. The stage's controls keep its changes.
ScriptOutcome RunPageScript(ScriptStage& stage, std::string_view script);

}  // namespace kvo
