#include <filesystem>

#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "common/forms/PropertyPage.h"
#include "common/frame/Office.h"
#include "common/values/RuntimeError.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/page/Page.h"
#include "document/shop/Shop.h"
#include "host/headless/FormPicture.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"
#include "pages/frmExpressionBuilder.h"

namespace kvo {
namespace {

constexpr std::string_view kExpressionBuilder = "frmExpressionBuilder";
constexpr std::string_view kIfPage = "propIfGeneral";  // opens the expression builder

struct PagesValues {
  std::string className;
  std::string output;
  std::string office;
};

void Write(const std::string& folder, std::string_view name, Form& form) {
  const std::string file = (std::filesystem::path(folder) / (std::string(name) + ".svg")).string();
  page::WriteFile(file, FormPicture(form));
  Print(file + '\n');
}

// Draws a page as it opens on a new control of the class. When it cannot read something (a missing
// shop database), draws it in its initial state.
void DrawPage(const PagesValues& values, const ControlClass& contract, std::string_view name,
              const ObjectRef& office) {
  const auto control = page::Load(contract, {});
  GiveOffice(*control, office);
  const auto page = CreatePage(name);
  try {
    page->Select({control});
  } catch (const RuntimeError& error) {
    PrintError(
        Say({"{} bleibt leer: {}", "{} stays empty: {}"}, {name, error.Text(UserLanguage())}));
  }
  Write(values.output, name, *page);
}

void DrawExpressionBuilder(const PagesValues& values, const ObjectRef& office) {
  frmExpressionBuilder dialog;
  dialog.Office = office;
  dialog.Init();
  Write(values.output, kExpressionBuilder, dialog);
}

ExitCode Draw(const PagesValues& values) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  ObjectRef office;
  if (!values.office.empty()) office = office::LoadOffice(values.office, shop::NewConnection);
  const RegisteredControl* control = FindControlByName(values.className);
  if (control == nullptr)
    throw Failure(Say({"Die Klasse „{}“ gibt es nicht; „kvo classes“ nennt alle.",
                       "There is no class \"{}\"; \"kvo classes\" lists them all."},
                      {values.className}));
  if (values.output.empty())
    throw Failure(Say(
        {"Wohin? Mit -o ORDNER das Ziel angeben.", "Where to? Name the target with -o FOLDER."}));
  const ControlClass& contract = control->contract();
  MakeFolder(values.output);
  for (const std::string_view name : contract.pages) {
    DrawPage(values, contract, name, office);
    if (name == kIfPage) DrawExpressionBuilder(values, office);
  }
  return ExitCode::good;
}

}  // namespace

void AddPagesCommand(CommandLine& line) {
  const auto values = std::make_shared<PagesValues>();
  line.Add("pages",
           {"Zeichnet die Eigenschaftenseiten einer Klasse als SVG.",
            "Draws the property pages of a class as SVG."},
           {"kvo pages DTCContact --office office.json -o bilder",
            "kvo pages DTCContact --office office.json -o pictures"})
      .Argument("CLASS", values->className, {"eine Klasse", "a class"})
      .Option("-o,--output", "DIR", values->output,
              {"Ordner für die Bilder", "folder for the pictures"})
      .Option("--office", "FILE", values->office,
              {"die Felder und Produkte des Shops, die die Seiten zeigen",
               "the fields and products of the shop that the pages show"})
      .Run([values] { return Draw(*values); });
}

}  // namespace kvo
