#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "common/values/RuntimeError.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/page/Page.h"
#include "document/shop/Shop.h"
#include "host/registration/classes.h"
#include "host/script/PageScript.h"

namespace kvo {
namespace {

struct ScriptValues {
  std::string page;
  std::string script;
  std::string office;
};

Json StateJson(const ControlState& state) {
  Json json = {{"kind", state.kind}, {"name", state.name}};
  for (const auto& [name, value] : state.values)
    std::visit([&json, name = std::string(name)](const auto& held) { json[name] = held; }, value);
  if (!state.parts.empty()) {
    Json& parts = json["parts"] = Json::array();
    for (const ControlState& part : state.parts) parts.push_back(StateJson(part));
  }
  return json;
}

Json PageJson(const PageOutcome& page) {
  Json controls = Json::array();
  for (const ControlState& state : page.controls) controls.push_back(StateJson(state));
  return {{"class", page.className},
          {"caption", page.caption},
          {"filled", page.filled},
          {"changed", page.changed},
          {"controls", std::move(controls)}};
}

Json ControlJson(const std::string& name, const Control& control) {
  Json json = {{"id", name}, {"class", control.Class().name}};
  json["bag"] = Json::array();
  for (const auto& [key, value] : page::StoredBag(control)) json["bag"].push_back({key, value});
  try {
    json["runtimeText"] = control.GetRuntimeText();
  } catch (const RuntimeError& error) {
    json["error"] = {{"number", error.Number()}, {"message", error.Text(UserLanguage())}};
  }
  return json;
}

// Loads the page's controls under their ids. Does not write the page.
void AddControls(ScriptStage& stage, const std::string& file) {
  const page::Page page(page::ReadFile(file));
  const page::Inspection inspection = page::Inspect(page);
  ShowProblems(Stream::error, ShownName(file), inspection.problems);
  for (const page::FoundControl& found : inspection.controls) {
    if (found.id.empty() || found.broken || found.contract == nullptr) continue;
    stage.controls.emplace(found.id, page::Load(*found.contract, found.bag));
  }
}

ExitCode Play(const ScriptValues& values) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  ScriptStage stage{.platform = platform,
                    .pages = CreatePage,
                    .newControl = [](std::string_view className) -> std::shared_ptr<Control> {
                      const RegisteredControl* control = FindControlByName(className);
                      return control == nullptr ? nullptr : page::Load(control->contract(), {});
                    },
                    .office = nullptr,
                    .controls = {},
                    .user = {},
                    .command = {}};
  if (!values.office.empty()) stage.office = office::LoadOffice(values.office, shop::NewConnection);
  AddControls(stage, values.page);
  const ScriptOutcome outcome = RunPageScript(stage, page::ReadFile(values.script));

  Json document;
  document["failure"] = nullptr;
  if (outcome.failure)
    document["failure"] = {{"line", outcome.failure->line},
                           {"message", outcome.failure->message.In(UserLanguage())}};
  document["frame"] = nullptr;
  if (outcome.frameOpen)
    document["frame"] = {{"open", *outcome.frameOpen}, {"apply", outcome.canApply}};
  document["pages"] = Json::array();
  for (const PageOutcome& page : outcome.pages) document["pages"].push_back(PageJson(page));
  document["controls"] = Json::array();
  for (const auto& [name, control] : stage.controls)
    document["controls"].push_back(ControlJson(name, *control));
  PrintJson(document);
  return outcome.failure ? ExitCode::problemsFound : ExitCode::good;
}

}  // namespace

void AddScriptCommand(CommandLine& line) {
  const auto values = std::make_shared<ScriptValues>();
  line.Add("script",
           {"Führt ein Gespräch mit den Eigenschaftenseiten der Controls einer Seite und nennt als "
            "JSON, was dabei herauskommt. Die Seite bleibt, wie sie ist.",
            "Holds a conversation with the property pages of a page's controls and tells what "
            "comes of it as JSON. The page stays as it is."},
           {"kvo script newsletter.html gespraech.txt --office office.json",
            "kvo script newsletter.html conversation.txt --office office.json"})
      .Argument("PAGE", values->page, {"die Seite", "the page"})
      .Argument("SCRIPT", values->script,
                {"das Gespräch, Zeile für Zeile", "the conversation, line by line"})
      .Option("--office", "FILE", values->office,
              {"die Felder und Produkte des Shops, die die Seiten zeigen",
               "the fields and products of the shop that the pages show"})
      .Run([values] { return Play(*values); });
}

}  // namespace kvo
