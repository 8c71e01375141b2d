#include <filesystem>
#include <map>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "host/check/Check.h"
#include "host/office/OfficeFile.h"
#include "host/page/File.h"

namespace kvo {
namespace {

struct Values {
  std::vector<std::string> pages;
  std::string office;
  bool json = false;
};

// The offices of the pages, each file read once: the one that was named, else office.json beside
// the page, else none.
class Offices {
 public:
  explicit Offices(std::string named) : named_(std::move(named)) {}

  ObjectRef For(const std::string& page) {
    std::string file = named_;
    if (file.empty()) {
      if (page == "-") return nullptr;
      const auto beside = std::filesystem::path(page).parent_path() / "office.json";
      std::error_code ignored;
      if (!std::filesystem::exists(beside, ignored)) return nullptr;
      file = beside.string();
    }
    if (const auto known = loaded_.find(file); known != loaded_.end()) return known->second;
    return loaded_[file] = office::LoadOffice(file);
  }

 private:
  std::string named_;
  std::map<std::string, ObjectRef> loaded_;
};

Json ProblemJson(const std::string& file, const page::Problem& problem) {
  return {{"file", file},
          {"line", problem.place.line},
          {"column", problem.place.column},
          {"severity", problem.severity == page::Severity::error ? "error" : "warning"},
          {"rule", problem.rule},
          {"class", problem.control},
          {"id", problem.id},
          {"message", problem.message.In(UserLanguage())}};
}

ExitCode Check(const Values& values) {
  Json all = Json::array();
  Offices offices(values.office);
  const ExitCode code = ForEachPage(values.pages, [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    ObjectRef office;
    try {
      office = offices.For(file);
    } catch (const office::OfficeFileError& error) {
      throw Failure(error.Text(UserLanguage()));
    }
    const page::Problems problems = check::CheckPage(page, office);
    if (values.json) {
      for (const page::Problem& problem : problems)
        all.push_back(ProblemJson(ShownName(file), problem));
    } else {
      ShowProblems(Stream::output, ShownName(file), problems);
    }
    return page::HasErrors(problems) ? ExitCode::problemsFound : ExitCode::good;
  });
  if (values.json) PrintJson({{"problems", std::move(all)}});
  return code;
}

}  // namespace

void AddCheckCommand(CommandLine& line) {
  const auto values = std::make_shared<Values>();
  line.Add("check",
           {"Nennt alles, was an den Seiten nicht stimmt, ohne sie zu ändern.",
            "Names everything that is wrong with the pages, and changes nothing."},
           {"kvo check newsletter.html\nkvo check *.html --office shop/office.json --json",
            "kvo check newsletter.html\nkvo check *.html --office shop/office.json --json"})
      .Arguments("PAGE", values->pages,
                 {"die Seiten; „-“ ist die Standardeingabe", "the pages; \"-\" is standard input"},
                 true)
      .Option("--office", "FILE", values->office,
              {"die Felder des Shops; sonst office.json neben der Seite, wenn es sie gibt",
               "the shop's fields; otherwise office.json beside the page, if there is one"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Check(*values); });
}

}  // namespace kvo
