#include <algorithm>
#include <optional>
#include <utility>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "common/values/RuntimeError.h"
#include "document/page/File.h"

namespace kvo {
namespace {

struct InspectValues {
  std::vector<std::string> pages;
  bool json = false;
};

// Why a control has no runtime text. `number` is set only when the control itself fails.
struct Fault {
  std::optional<int> number;
  std::string message;
};

// The current state of a control of the page.
struct Inspected {
  std::vector<MemoryBag::Entry> bag;  // as it would be stored; after a fault, as in the page
  std::shared_ptr<Control> control;   // nullptr when it could not be loaded
  std::string runtimeText;
  std::optional<Fault> fault;
};

// Returns the messages of the problems between this control and the next.
std::string Messages(const page::Inspection& inspection, std::size_t index) {
  const auto before = [](const page::Place& a, const page::Place& b) {
    return a.line != b.line ? a.line < b.line : a.column < b.column;
  };
  const page::Place from = inspection.controls[index].place;
  const bool last = index + 1 == inspection.controls.size();
  page::Problems own;
  // Problems are in page order.
  for (auto problem = std::ranges::lower_bound(
           inspection.problems, from, before, [](const page::Problem& each) { return each.place; });
       problem != inspection.problems.end() &&
       (last || before(problem->place, inspection.controls[index + 1].place));
       ++problem)
    if (problem->severity == page::Severity::error) own.push_back(*problem);
  std::string messages;
  for (const page::Problem& problem : page::Told(own)) {
    if (!messages.empty()) messages += ' ';
    messages += problem.message.In(UserLanguage());
  }
  return messages;
}

Inspected InspectControl(const page::Inspection& inspection, std::size_t index) {
  const page::FoundControl& found = inspection.controls[index];
  Inspected result{found.bag, nullptr, {}, {}};
  if (found.broken || found.contract == nullptr) {
    result.fault = Fault{std::nullopt, Messages(inspection, index)};
    return result;
  }
  try {
    result.control = page::Load(*found.contract, found.bag);
    result.bag = page::StoredBag(*result.control);
    result.runtimeText = result.control->GetRuntimeText();
  } catch (const RuntimeError& error) {
    result.fault = Fault{error.Number(), error.Text(UserLanguage())};
  }
  return result;
}

Json PropertiesJson(const Control& control) {
  Json properties = Json::object();
  for (const PropertyRow& row : control.Class().properties)
    properties[std::string(row.name)] = ToJson(row.get(control));
  return properties;
}

Json ControlJson(const page::FoundControl& found, const Inspected& inspected) {
  Json bag = Json::array();
  for (const auto& [key, value] : inspected.bag) bag.push_back({key, value});
  Json json{{"index", found.index},         {"id", found.id},
            {"class", found.className},     {"line", found.place.line},
            {"column", found.place.column}, {"bag", std::move(bag)}};
  json["properties"] =
      inspected.control == nullptr ? Json::object() : PropertiesJson(*inspected.control);
  if (inspected.fault) {
    json["error"] = {{"number", inspected.fault->number ? Json(*inspected.fault->number) : Json()},
                     {"message", inspected.fault->message}};
  } else {
    json["runtimeText"] = inspected.runtimeText;
  }
  json["box"] = inspected.control == nullptr ? Json() : ToJson(inspected.control->DesignTimeBox());
  return json;
}

// Returns a text on one line, with line breaks as "\r" and "\n".
std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\r') {
      line += "\\r";
    } else if (c == '\n') {
      line += "\\n";
    } else {
      line += c;
    }
  }
  return line;
}

void PrintControl(const std::string& file, const page::FoundControl& found,
                  const Inspected& inspected) {
  std::string text = file + ':' + std::to_string(found.place.line) + ':' +
                     std::to_string(found.place.column) + ": " + found.className;
  if (!found.id.empty()) text += " \"" + found.id + '"';
  text += '\n';
  for (const auto& [key, value] : inspected.bag)
    text += "    " + key + " = " + OneLine(value) + '\n';
  if (inspected.fault) {
    text += "    " + Say({"Fehler", "error"});
    if (inspected.fault->number) text += ' ' + std::to_string(*inspected.fault->number);
    text += ": " + inspected.fault->message + '\n';
  } else {
    text += "    => " + OneLine(inspected.runtimeText) + '\n';
  }
  Print(text);
}

// Prints the controls of a page, or adds them to `json`, and then prints the page's problems.
ExitCode InspectPage(const std::string& file, Json* json) {
  const page::Page page(page::ReadFile(file));
  const page::Inspection inspection = page::Inspect(page);
  ExitCode code = page::HasErrors(inspection.problems) ? ExitCode::problemsFound : ExitCode::good;
  for (const page::FoundControl& found : inspection.controls) {
    const Inspected inspected = InspectControl(inspection, found.index);
    if (inspected.fault) code = ExitCode::problemsFound;
    if (json != nullptr)
      json->push_back(ControlJson(found, inspected));
    else
      PrintControl(ShownName(file), found, inspected);
  }
  if (json == nullptr && inspection.controls.empty())
    Print(Say({"{} enthält keine Controls.\n", "{} holds no controls.\n"}, {ShownName(file)}));
  ShowProblems(Stream::error, ShownName(file), inspection.problems);
  return code;
}

// One document: the controls of the page, or of each when folders, patterns or several were named.
ExitCode Inspect(const InspectValues& values) {
  const std::vector<std::string> pages = PagesIn(values.pages);
  if (!values.json)
    return ForEachPage(
        pages, [](const std::string& file) { return PageResult{InspectPage(file, nullptr)}; });
  const bool single = pages == values.pages && pages.size() == 1;
  Json all = Json::array();
  std::optional<Json> only;
  const ExitCode code = ForEachPage(pages, [&](const std::string& file) {
    Json controls = Json::array();
    const ExitCode found = InspectPage(file, &controls);
    return PageResult{
        found, [&, file, controls = std::move(controls)]() mutable {
          if (single)
            only = std::move(controls);
          else
            all.push_back({{"file", ShownName(file)}, {"controls", std::move(controls)}});
        }};
  });
  if (only) PrintJson({{"controls", std::move(*only)}});
  if (!single) PrintJson({{"pages", std::move(all)}});
  return code;
}

}  // namespace

void AddInspectCommand(CommandLine& line) {
  const auto values = std::make_shared<InspectValues>();
  line.Add("inspect",
           {"Zeigt jedes Control einer Seite: wo es steht, was es speichert, sein "
            "Laufzeittext.",
            "Shows every control of a page: where it is, what it stores, its runtime text."},
           Both("kvo inspect newsletter.html\n"
                "kvo inspect newsletter.html --json | jq '.controls[].runtimeText'\n"
                "kvo inspect mails --json | jq '.pages[].file'"))
      .Arguments("PAGE", values->pages, kPagesToRead, true)
      .Flag("--json", values->json,
            {"ein JSON-Dokument, mit Eigenschaften und Maßen der Box (Twips)",
             "one JSON document, with the properties and the measures of the box (twips)"})
      .Run([values] { return Inspect(*values); });
}

}  // namespace kvo
