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

constexpr std::string_view kOfficeFile = "office.json";

struct Values {
  std::vector<std::string> pages;
  std::string office;
  bool json = false;
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

// The context objects of the pages, each file read once: the one that the user names, else the one
// beside the page, if there is one.
class Offices {
 public:
  explicit Offices(const std::string& named) : named_(named) {}

  ObjectRef Of(const std::string& page) {
    if (!named_.empty()) return Load(named_);
    if (page == "-") return nullptr;
    const std::filesystem::path beside = std::filesystem::path(page).replace_filename(kOfficeFile);
    std::error_code ignored;
    return std::filesystem::exists(beside, ignored) ? Load(beside.string()) : nullptr;
  }

 private:
  ObjectRef Load(const std::string& file) {
    const auto known = loaded_.find(file);
    if (known != loaded_.end()) return known->second;
    return loaded_[file] = office::LoadOffice(file);
  }

  std::string named_;
  std::map<std::string, ObjectRef> loaded_;
};

ExitCode Check(const Values& values) {
  Json all = Json::array();
  Offices offices(values.office);
  const ExitCode code = ForEachPage(values.pages, [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    const page::Problems problems = check::CheckPage(page, offices.Of(file));
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
           {"kvo check newsletter.html\n"
            "kvo check *.html --office shop/office.json\n"
            "kvo check *.html --json",
            "kvo check newsletter.html\n"
            "kvo check *.html --office shop/office.json\n"
            "kvo check *.html --json"})
      .Arguments("PAGE", values->pages,
                 {"die Seiten; „-“ ist die Standardeingabe", "the pages; \"-\" is standard input"},
                 true)
      .Option("--office", "FILE", values->office,
              {"die Felder des Shops; sonst office.json neben der Seite, wenn es sie gibt",
               "the fields of the shop; else office.json beside the page, if it is there"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Check(*values); });
}

}  // namespace kvo
