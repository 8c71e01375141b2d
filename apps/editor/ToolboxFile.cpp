#include "apps/editor/ToolboxFile.h"

#include <array>
#include <filesystem>

#include "common/text/Suggest.h"
#include "common/values/RuntimeError.h"
#include "controls/DTCContact.h"
#include "controls/DTCOrder.h"
#include "document/page/Messages.h"
#include "document/page/Page.h"
#include "host/registration/classes.h"

namespace kvo::editor {
namespace {

using office::JsonNode;
using office::PathTo;
using Kind = JsonNode::Kind;

constexpr std::string_view kTools = "tools";
constexpr std::string_view kClass = "class";
constexpr std::string_view kCaption = "caption";
constexpr std::string_view kDescription = "description";
constexpr std::string_view kIcon = "icon";
constexpr std::string_view kBag = "bag";
constexpr std::string_view kGerman = "de";
constexpr std::string_view kEnglish = "en";

constexpr std::array kFileKeys = {kTools};
constexpr std::array kToolKeys = {kClass, kCaption, kDescription, kIcon, kBag};
constexpr std::array kLanguages = {kGerman, kEnglish};

class Reader : private office::JsonFileReader {
 public:
  Reader(const std::filesystem::path& folder, page::ProblemList& problems)
      : JsonFileReader(kToolboxFileRule, problems), folder_(folder) {}

  std::vector<Tool> Read(const JsonNode& root) {
    std::vector<Tool> tools;
    if (!Is(root, Kind::object, "")) return tools;
    CheckKeys(root, kFileKeys, "");
    const JsonNode* list = Required(root, kTools, Kind::list, "");
    if (list == nullptr) return tools;
    for (const JsonNode& item : list->children)
      tools.push_back(
          ReadTool(item, PathTo("", kTools) + '[' + std::to_string(tools.size()) + ']'));
    return tools;
  }

 private:
  Tool ReadTool(const JsonNode& object, const std::string& path) {
    Tool tool;
    if (!Is(object, Kind::object, path)) return tool;
    CheckKeys(object, kToolKeys, path);
    if (const JsonNode* name = Required(object, kClass, Kind::text, path))
      tool.contract = ClassNamed(*name, PathTo(path, kClass));
    if (const JsonNode* caption = object.Find(kCaption))
      tool.caption = ReadText(*caption, PathTo(path, kCaption));
    else
      Required(object, kCaption, Kind::text, path);
    if (const JsonNode* description = object.Find(kDescription))
      tool.description = ReadText(*description, PathTo(path, kDescription));
    else if (tool.contract != nullptr)
      tool.description = tool.contract->description.In(UserLanguage());
    if (const JsonNode* icon = object.Find(kIcon))
      if (Is(*icon, Kind::text, PathTo(path, kIcon)))
        tool.icon = (folder_ / icon->text).lexically_normal().string();
    if (const JsonNode* bag = object.Find(kBag)) ReadBag(*bag, PathTo(path, kBag), tool);
    return tool;
  }

  // A text, or one for each language.
  std::string ReadText(const JsonNode& node, const std::string& path) {
    if (node.kind != Kind::object) {
      Is(node, Kind::text, path);
      return node.text;
    }
    CheckKeys(node, kLanguages, path);
    const JsonNode* german = Required(node, kGerman, Kind::text, path);
    const JsonNode* english = Required(node, kEnglish, Kind::text, path);
    const JsonNode* mine = UserLanguage() == Language::german ? german : english;
    return mine == nullptr ? std::string() : mine->text;
  }

  const ControlClass* ClassNamed(const JsonNode& name, const std::string& path) {
    if (const RegisteredControl* control = FindControlByName(name.text))
      return &control->contract();
    std::vector<std::string_view> names;
    for (const RegisteredControl& control : RegisteredControls())
      names.push_back(control.contract().name);
    Add(name.at,
        page::messages::WithSuggestion({path + ": Die Klasse \"" + name.text + "\" gibt es nicht.",
                                        path + ": There is no class \"" + name.text + "\"."},
                                       Suggest(name.text, names)));
    return nullptr;
  }

  void ReadBag(const JsonNode& bag, const std::string& path, Tool& tool) {
    if (!Is(bag, Kind::object, path) || tool.contract == nullptr) return;
    std::vector<std::string_view> keys;
    for (const PropertyRow& row : tool.contract->bag) keys.push_back(row.key);
    CheckKeys(bag, keys, path);
    for (const JsonNode& entry : bag.children)
      if (Is(entry, Kind::text, PathTo(path, entry.key)))
        tool.bag.emplace_back(entry.key, entry.text);
    try {
      page::Load(*tool.contract, tool.bag);
    } catch (const RuntimeError& error) {
      Add(bag.at,
          {path + ": Das Control lässt sich damit nicht laden: " + error.Text(Language::german),
           path + ": the control cannot be loaded from it: " + error.Text(Language::english)});
    }
  }

  const std::filesystem::path& folder_;
};

Tool BuiltIn(const ControlClass& contract) {
  Tool tool;
  tool.contract = &contract;
  tool.caption = contract.title.In(UserLanguage());
  tool.description = contract.description.In(UserLanguage());
  tool.group = contract.group.In(UserLanguage());
  if (!contract.tagName.empty())
    tool.bag.emplace_back(contract.FindProperty("basename")->key, contract.tagName);
  return tool;
}

void AddFields(const ControlClass& contract, const office::Office::Description& office,
               std::vector<Tool>& tools) {
  for (const office::Field& field : FieldsOf(contract, office)) {
    Tool& tool = tools.emplace_back(BuiltIn(contract));
    tool.description = tool.caption + ' ' + field.sqlName;
    tool.caption = NameOf(field);
    tool.field = field.sqlName;
    tool.bag.emplace_back(contract.FindProperty("Field")->key, field.sqlName);
    tool.bag.emplace_back(contract.FindProperty("DisplayValue")->key, field.displayName);
  }
}

}  // namespace

std::vector<Tool> BuiltInTools(const office::Office::Description& office) {
  std::vector<Tool> tools;
  for (const RegisteredControl& registered : RegisteredControls())
    tools.push_back(BuiltIn(registered.contract()));
  std::ranges::move(FieldTools(office), std::back_inserter(tools));
  return tools;
}

std::vector<Tool> FieldTools(const office::Office::Description& office) {
  std::vector<Tool> tools;
  for (const ControlClass* contract : {&DTCContact::Contract(), &DTCOrder::Contract()})
    AddFields(*contract, office, tools);
  return tools;
}

std::span<const office::Field> FieldsOf(const ControlClass& contract,
                                        const office::Office::Description& office) {
  if (&contract == &DTCContact::Contract()) return office.contactFields;
  if (&contract == &DTCOrder::Contract()) return office.orderFields;
  return {};
}

const std::string& NameOf(const office::Field& field) {
  return field.displayName.empty() ? field.sqlName : field.displayName;
}

std::vector<Tool> ReadToolbox(std::string_view contents, const std::string& file) {
  const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
  return office::ReadJsonFile(contents, file, kToolboxFileRule,
                              [&](const JsonNode& root, page::ProblemList& problems) {
                                return Reader(folder, problems).Read(root);
                              });
}

}  // namespace kvo::editor
