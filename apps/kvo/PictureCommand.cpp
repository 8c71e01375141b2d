#include <filesystem>
#include <map>

#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "common/values/RuntimeError.h"
#include "document/page/File.h"
#include "host/headless/BoxPicture.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

struct PictureValues {
  std::vector<std::string> subjects;
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

void ExpectTarget(const PictureValues& values) {
  if (values.output.empty())
    throw Failure(Say({"Wohin? Mit -o ORDNER das Ziel angeben, mit „-o -“ die Standardausgabe.",
                       "Where to? Name the target with -o FOLDER, or \"-o -\" for standard "
                       "output."}));
}

Picture ClassPicture(const ControlClass& contract) {
  return {std::string(contract.name), contract.create()->DesignTimeBox()};
}

// Writes the pictures into a folder and prints their names.
ExitCode WritePictures(const std::vector<Picture>& pictures, const std::string& folder) {
  ExitCode code = ExitCode::good;
  MakeFolder(folder);
  for (const Picture& picture : pictures) {
    const std::string file = (std::filesystem::path(folder) / (picture.name + ".svg")).string();
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

ExitCode DrawOne(const PictureValues& values) {
  const std::string& subject = values.subjects.front();
  ExitCode code = ExitCode::good;
  const RegisteredControl* control = FindControlByName(subject);
  const std::vector<Picture> pictures = control != nullptr
                                            ? std::vector{ClassPicture(control->contract())}
                                            : PagePictures(subject, code);
  if (values.output == "-") {
    std::vector<Box> boxes;
    boxes.reserve(pictures.size());
    for (const Picture& picture : pictures) boxes.push_back(picture.box);
    Print(BoxPicture(boxes));
    return code;
  }
  ExpectTarget(values);
  return Worse(code, WritePictures(pictures, values.output));
}

// The pictures of several pages go into a folder for each, which has the page's name.
ExitCode DrawPages(const PictureValues& values, const NamedPages& pages) {
  ExpectTarget(values);
  if (values.output == "-")
    throw Failure(
        Say({"Bilder von mehreren Seiten passen nicht auf die Standardausgabe. Hinter -o "
             "einen Ordner angeben.",
             "Pictures of several pages do not fit on standard output. Name a folder "
             "behind -o."}));
  std::map<std::string, std::string> folders;  // by page
  std::map<std::string, std::string> taken;
  for (const auto& [file, below, found] : pages) {
    const std::string folder =
        (std::filesystem::path(values.output) / std::filesystem::path(below).replace_extension())
            .string();
    const auto [other, isNew] = taken.emplace(folder, file);
    if (!isNew)
      throw Failure(Say({"Die Bilder von „{}“ und „{}“ kämen beide nach „{}“. Einzeln aufrufen.",
                         "The pictures of \"{}\" and \"{}\" would both go to \"{}\". Call kvo for "
                         "each."},
                        {other->second, file, folder}));
    folders[file] = folder;
  }
  return ForEachPage(FilesOf(pages), [&](const std::string& file) {
    if (const RegisteredControl* control = FindControlByName(file))
      return PageResult{WritePictures({ClassPicture(control->contract())}, values.output)};
    ExitCode code = ExitCode::good;
    const std::vector<Picture> pictures = PagePictures(file, code);
    return PageResult{pictures.empty() ? code
                                       : Worse(code, WritePictures(pictures, folders.at(file)))};
  });
}

ExitCode Draw(const PictureValues& values) {
  if (values.subjects.size() == 1 && FindControlByName(values.subjects.front()) != nullptr)
    return DrawOne(values);
  const NamedPages pages = FindPages(values.subjects, values.output);
  if (pages.size() == 1 && !pages.front().found) return DrawOne(values);
  return DrawPages(values, pages);
}

}  // namespace

void AddPictureCommand(CommandLine& line) {
  const auto values = std::make_shared<PictureValues>();
  line.Add("picture",
           {"Zeichnet die Boxen der Entwurfsansicht als SVG.",
            "Draws the boxes of the design view as SVG."},
           {"kvo picture newsletter.html -o bilder\nkvo picture DTCPrint -o -\n"
            "kvo picture mails -o bilder        in einem Ordner für jede Seite",
            "kvo picture newsletter.html -o pictures\nkvo picture DTCPrint -o -\n"
            "kvo picture mails -o pictures      in a folder for each page"})
      .Arguments("PAGE|CLASS", values->subjects,
                 {"eine Seite oder eine Klasse (eine Datei, die wie eine Klasse heißt: ./NAME);\n"
                  "mehrere Seiten, auch Ordner und Muster, mit einem Ordner für jede",
                  "a page or a class (a file named like a class: ./NAME); several pages,\n"
                  "folders and patterns too, with a folder for each"},
                 true)
      .Option("-o,--output", "DIR", values->output,
              {"Ordner für die Bilder; „-“ schreibt ein einziges auf die Standardausgabe",
               "folder for the pictures; \"-\" writes a single one to standard output"})
      .Run([values] { return Draw(*values); });
}

}  // namespace kvo
