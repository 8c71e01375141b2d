#include <algorithm>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Names.h"
#include "apps/kvo/PageRun.h"
#include "document/page/File.h"

namespace kvo {
namespace {

constexpr Localized kAssignments{"Eigenschaften nach ihrem Namen, zum Beispiel Value=x",
                                 "properties by name, such as Value=x"};

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

// The one control with this id; a Failure when there is none or more than one.
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
    // A wrong assignment is told as such, before it could look like a fault of the page.
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
