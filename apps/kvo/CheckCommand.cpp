#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "host/page/File.h"

namespace kvo {
namespace {

struct Values {
  std::vector<std::string> pages;
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

ExitCode Check(const Values& values) {
  Json all = Json::array();
  const ExitCode code = ForEachPage(values.pages, [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    const page::Problems problems = page::Check(page);
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
           {"kvo check newsletter.html\nkvo check *.html --json",
            "kvo check newsletter.html\nkvo check *.html --json"})
      .Arguments("PAGE", values->pages,
                 {"die Seiten; „-“ ist die Standardeingabe", "the pages; \"-\" is standard input"},
                 true)
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Check(*values); });
}

}  // namespace kvo
