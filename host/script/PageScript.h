// Conversations with property pages, written down line by line (the format: docs/page-scripts.md).
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

// Where a script plays.
struct ScriptStage {
  HeadlessPlatform& platform;  // installed already
  PageFactory pages;
  // Makes a control of a class, for `control` lines; nullptr when there is no such class.
  std::function<std::shared_ptr<Control>(std::string_view className)> newControl;
  // Given as `Office` to every control that holds one; may be none.
  ObjectRef office;
  // The controls that a script finds under their names; `control` lines add to them.
  std::map<std::string, std::shared_ptr<Control>, std::less<>> controls;
  // Who sits in front of a form. Not set: a HeadlessUser.
  std::function<std::unique_ptr<FormUser>(Form&)> user;
  // Further commands of the stage's own; false when it does not know the first word.
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
  std::optional<ScriptFailure> failure;  // the script ended there
  // The property frame at the end: of the last `open`. Its pages are those that were shown.
  std::optional<bool> frameOpen;
  bool canApply = false;
  std::vector<PageOutcome> pages;
};

// Performs a script. Controls of the stage keep what the script did to them.
ScriptOutcome RunPageScript(ScriptStage& stage, std::string_view script);

}  // namespace kvo
