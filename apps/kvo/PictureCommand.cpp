#include <filesystem>

#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "common/values/RuntimeError.h"
#include "document/page/File.h"
#include "host/headless/BoxPicture.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

struct PictureValues {
  std::string subject;
  std::string output;
};

struct Picture {
  std::string name;  // of the file, without extension
  Box box;
};

std::vector<Picture> PagePictures(const std::string& file, ExitCode& code) {
  const page::Page page(page::ReadFile(file));
  const page::Inspection inspection = page::Inspect(page);
  if (page::HasErrors(inspection.problems)) code = ExitCode::problemsFound;
  ShowProblems(Stream::error, ShownName(file), inspection.problems);
  std::vector<Picture> pictures;
  for (const page::FoundControl& found : inspection.controls) {
    if (found.broken || found.contract == nullptr) continue;
    std::string name = std::to_string(found.index + 1) + '-' +
                       FileNamePart(found.id.empty() ? found.className : found.id);
    try {
      pictures.push_back(
          {std::move(name), page::Load(*found.contract, found.bag)->DesignTimeBox()});
    } catch (const RuntimeError& error) {
      PrintError(Say({"{}:{}: {}", "{}:{}: {}"}, {ShownName(file), std::to_string(found.place.line),
                                                  error.Text(UserLanguage())}));
      code = ExitCode::problemsFound;
    }
  }
  return pictures;
}

ExitCode Draw(const PictureValues& values) {
  ExitCode code = ExitCode::good;
  std::vector<Picture> pictures;
  if (const RegisteredControl* control = FindControlByName(values.subject)) {
    const ControlClass& contract = control->contract();
    pictures.push_back({std::string(contract.name), contract.create()->DesignTimeBox()});
  } else {
    pictures = PagePictures(values.subject, code);
  }
  if (values.output == "-") {
    std::vector<Box> boxes;
    boxes.reserve(pictures.size());
    for (const Picture& picture : pictures) boxes.push_back(picture.box);
    Print(BoxPicture(boxes));
    return code;
  }
  if (values.output.empty())
    throw Failure(Say({"Wohin? Mit -o ORDNER das Ziel angeben, mit „-o -“ die Standardausgabe.",
                       "Where to? Name the target with -o FOLDER, or \"-o -\" for standard "
                       "output."}));
  MakeFolder(values.output);
  for (const Picture& picture : pictures) {
    const std::string file =
        (std::filesystem::path(values.output) / (picture.name + ".svg")).string();
    try {
      page::WriteFile(file, BoxPicture({picture.box}));
      Print(file + '\n');
    } catch (const page::FileError& error) {
      PrintError(error.Text(UserLanguage()));
      code = ExitCode::failure;
    }
  }
  return code;
}

}  // namespace

void AddPictureCommand(CommandLine& line) {
  const auto values = std::make_shared<PictureValues>();
  line.Add("picture",
           {"Zeichnet die Boxen der Entwurfsansicht als SVG.",
            "Draws the boxes of the design view as SVG."},
           {"kvo picture newsletter.html -o bilder\nkvo picture DTCPrint -o -",
            "kvo picture newsletter.html -o pictures\nkvo picture DTCPrint -o -"})
      .Argument("PAGE|CLASS", values->subject,
                {"eine Seite oder eine Klasse (eine Datei, die wie eine Klasse heißt: ./NAME)",
                 "a page or a class (a file named like a class: ./NAME)"})
      .Option("-o,--output", "DIR", values->output,
              {"Ordner für die Bilder; „-“ schreibt ein einziges auf die Standardausgabe",
               "folder for the pictures; \"-\" writes a single one to standard output"})
      .Run([values] { return Draw(*values); });
}

}  // namespace kvo
