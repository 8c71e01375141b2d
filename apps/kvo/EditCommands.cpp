#include <algorithm>

#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/page/File.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

constexpr Localized kAssignments{"Eigenschaften nach ihrem Namen, zum Beispiel Value=x",
                                 "properties by name, such as Value=x"};

// Finds a class by name, ignoring case. Throws Failure, with a suggestion, when there is none.
const ControlClass& ClassNamed(std::string_view name) {
  std::vector<std::string_view> names;
  for (const RegisteredControl& control : RegisteredControls()) {
    const ControlClass& contract = control.contract();
    if (EqualIgnoringCase(contract.name, name)) return contract;
    names.push_back(contract.name);
  }
  throw Failure(Say({"Es gibt keine Klasse „{}“.", "There is no class \"{}\"."}, {name}) +
                DidYouMean(name, names) +
                Say({" „kvo classes“ zählt alle auf.", " \"kvo classes\" lists them all."}));
}

// "NAME=VALUE" as typed by the user.
struct Assignment {
  std::string name;
  std::string value;
};

// Splits at the first "="; throws Failure without one.
std::vector<Assignment> ParseAssignments(const std::vector<std::string>& words) {
  std::vector<Assignment> assignments;
  for (const std::string& word : words) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0)
      throw Failure(Say({"„{}“ ist keine Zuweisung; erwartet wird NAME=WERT, zum Beispiel Value=x.",
                         "\"{}\" is no assignment; NAME=VALUE is expected, such as Value=x."},
                        {word}));
    assignments.push_back({word.substr(0, equals), word.substr(equals + 1)});
  }
  return assignments;
}

constexpr Localized TypeWords(PropertyType type) {
  switch (type) {
    case PropertyType::flag:
      return {"true oder false", "true or false"};
    case PropertyType::integer:
      return {"eine ganze Zahl", "a whole number"};
    default:
      return {"einen Text", "a text"};
  }
}

// Sets properties by name, in the given order. Throws Failure for an unknown property, with a
// suggestion, and for a refused value, with the reason.
void Assign(Control& control, const std::vector<Assignment>& assignments) {
  const ControlClass& contract = control.Class();
  for (const auto& [name, value] : assignments) {
    const PropertyRow* row = contract.FindProperty(name);
    if (row == nullptr) {
      std::vector<std::string_view> names;
      for (const PropertyRow& known : contract.properties)
        if (known.type != PropertyType::object) names.push_back(known.name);
      throw Failure(Say({"{} hat keine Eigenschaft „{}“.", "{} has no property \"{}\"."},
                        {contract.name, name}) +
                    DidYouMean(name, names) +
                    Say({" „kvo classes“ zählt alle auf.", " \"kvo classes\" lists them all."}));
    }
    if (row->type == PropertyType::object)
      throw Failure(Say({"{}.{} ist ein Objekt des Editors und lässt sich hier nicht setzen.",
                         "{}.{} is an object of the editor and can't be set here."},
                        {contract.name, row->name}));
    try {
      control.Let(name, Variant(value));
    } catch (const RuntimeError& error) {
      throw Failure(Say({"{}.{} nimmt „{}“ nicht an ({}); erwartet wird {}.",
                         "{}.{} refuses \"{}\" ({}); it takes {}."},
                        {contract.name, row->name, value, error.Text(UserLanguage()),
                         TypeWords(row->type).In(UserLanguage())}));
    }
  }
}

struct NewValues {
  std::string className;
  std::vector<std::string> assignments;
  std::string id;
};

ExitCode New(const NewValues& values) {
  const ControlClass& contract = ClassNamed(values.className);
  const auto control = page::Load(contract, {});
  Assign(*control, ParseAssignments(values.assignments));
  const auto id = values.id.empty() ? std::nullopt : std::optional<std::string_view>(values.id);
  Print(page::ElementText(contract, id, page::StoredBag(*control)) + '\n');
  return ExitCode::good;
}

struct SetValues {
  std::string page;
  std::string id;
  std::vector<std::string> assignments;
  std::string output;
  bool force = false;
};

// Returns the control with this id; throws Failure when there is none or more than one.
const page::FoundControl& ControlWithId(const page::Inspection& inspection, const std::string& file,
                                        const std::string& id) {
  std::vector<std::string_view> ids;
  const page::FoundControl* found = nullptr;
  for (const page::FoundControl& control : inspection.controls) {
    if (!control.id.empty()) ids.push_back(control.id);
    if (control.id != id) continue;
    if (found != nullptr)
      throw Failure(
          Say({"{}:{}: die id „{}“ trägt schon das Control in Zeile {}. Erst eine "
               "der beiden ändern.",
               "{}:{}: the id \"{}\" is that of the control in line {} already. Change "
               "one of the two first."},
              {file, std::to_string(control.place.line), id, std::to_string(found->place.line)}));
    found = &control;
  }
  if (found != nullptr) return *found;
  throw Failure(
      Say({"{} hat kein Control mit der id „{}“.", "{} has no control with the id \"{}\"."},
          {file, id}) +
      DidYouMean(id, ids) +
      Say({" „kvo inspect {}“ zeigt alle.", " \"kvo inspect {}\" shows them all."}, {file}));
}

ExitCode Set(const SetValues& values) {
  const auto assignments = ParseAssignments(values.assignments);
  const std::string target = values.output.empty() ? values.page : values.output;
  ProtectPages({values.page}, {target}, OverPage::itself);
  return WritePage(values.page, target, [&](const page::Page& page, page::Sink& sink) {
    const page::Inspection inspection = page::Inspect(page);
    const page::FoundControl& found = ControlWithId(inspection, ShownName(values.page), values.id);
    const page::Edit edit{found.index, [&](Control& control) { Assign(control, assignments); }};
    // Reports a wrong assignment first, so that it does not look like a fault of the page.
    if (!found.broken && found.contract != nullptr)
      edit.change(*page::Load(*found.contract, found.bag));
    return page::Save(page, sink, {.force = values.force, .edit = &edit});
  });
}

}  // namespace

void AddEditCommands(CommandLine& line) {
  const auto create = std::make_shared<NewValues>();
  line.Add("new",
           {"Gibt ein neues Control als HTML-Element aus.",
            "Prints a new control as an HTML element."},
           {"kvo new DTCPrint Value='#order.total#' Format='#,##0.00'\n"
            "kvo new DTCPrint Value=x --id Preis | kvo publish -",
            "kvo new DTCPrint Value='#order.total#' Format='#,##0.00'\n"
            "kvo new DTCPrint Value=x --id Price | kvo publish -"})
      .Argument(
          "CLASS", create->className,
          {"die Klasse; „kvo classes“ zählt alle auf", "the class; \"kvo classes\" lists them all"})
      .Arguments("NAME=VALUE", create->assignments, kAssignments, false)
      .Option("--id", "ID", create->id, {"id des Elements", "id of the element"})
      .Run([create] { return New(*create); });

  const auto set = std::make_shared<SetValues>();
  line.Add("set",
           {"Setzt Eigenschaften eines Controls und speichert die Seite.",
            "Sets properties of one control and saves the page."},
           {"kvo set newsletter.html Preis Format='#,##0.00'\n"
            "kvo set newsletter.html Preis Value='#order.total#' -o neu.html",
            "kvo set newsletter.html Price Format='#,##0.00'\n"
            "kvo set newsletter.html Price Value='#order.total#' -o new.html"})
      .Argument("PAGE", set->page,
                {"die Seite; „-“ ist die Standardeingabe", "the page; \"-\" is standard input"})
      .Argument("ID", set->id, {"id des Controls", "id of the control"})
      .Arguments("NAME=VALUE", set->assignments, kAssignments, true)
      .Option("-o,--output", "OUT", set->output,
              {"Datei statt der Seite selbst; „-“ ist die Standardausgabe",
               "file instead of the page itself; \"-\" is standard output"})
      .Flag("--force", set->force,
            {"auch überschreiben, was von Hand am Laufzeittext geändert wurde",
             "overwrite runtime text even where it was edited by hand"})
      .Run([set] { return Set(*set); });
}

}  // namespace kvo
