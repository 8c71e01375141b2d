#include <map>
#include <optional>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "document/check/Products.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

struct CheckValues {
  std::vector<std::string> pages;
  std::string office;
  bool json = false;
};

Json ProblemJson(const std::string& file, const page::Problem& problem) {
  Json json{{"file", file},
            {"line", problem.place.line},
            {"column", problem.place.column},
            {"severity", problem.severity == page::Severity::error ? "error" : "warning"},
            {"rule", problem.rule},
            {"class", problem.control},
            {"id", problem.id},
            {"message", problem.message.In(UserLanguage())}};
  if (problem.more > 0) json["more"] = problem.more;
  return json;
}

// An office, and the products of its shop.
struct Known {
  ObjectRef office;
  std::optional<check::ShopProducts> products;
};

// Loads the offices of the pages, each file once: the one that the user names, else the one beside
// the page, if any. Reports a broken office and checks its pages without it. Looks up products only
// for an office that the user names: one that came with a page must not choose what this machine
// connects to.
class Offices {
 public:
  explicit Offices(const std::string& named) : named_(named) {}

  Known& Of(const std::string& page) {
    if (!named_.empty()) return Load(named_);
    const auto beside = FileBeside(page, office::kOfficeFile);
    return beside ? Load(*beside) : none_;
  }
  // ExitCode::failure when an office was broken.
  ExitCode Code() const { return code_; }

 private:
  Known& Load(const std::string& file) {
    const auto [entry, isNew] = loaded_.try_emplace(file);
    Known& known = entry->second;
    if (!isNew) return known;
    try {
      known.office = office::LoadOffice(
          file, named_.empty() ? office::ConnectionFactory() : shop::NewConnection);
      if (!named_.empty()) known.products.emplace(known.office);
    } catch (const office::JsonFileError& error) {
      ShowProblems(Stream::error, error.File(), error.Problems());
      code_ = ExitCode::failure;
    } catch (const page::FileError& error) {
      PrintError(error.Text(UserLanguage()));
      code_ = ExitCode::failure;
    }
    return known;
  }

  std::string named_;
  std::map<std::string, Known> loaded_;
  Known none_;
  ExitCode code_ = ExitCode::good;
};

ExitCode Check(const CheckValues& values) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  Offices offices(values.office);
  Json all = Json::array();
  const auto show = [&](const std::string& file, const page::Problems& problems) {
    if (!values.json) return ShowProblems(Stream::output, ShownName(file), problems);
    for (const page::Problem& problem : page::Told(problems))
      all.push_back(ProblemJson(ShownName(file), problem));
  };
  const ExitCode code = ForEachPage(PagesIn(values.pages), [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    Known& known = offices.Of(file);
    page::Problems problems =
        check::CheckPage(page, known.office, known.products ? &*known.products : nullptr);
    const bool failed = page::HasErrors(problems);
    return PageResult{failed ? ExitCode::problemsFound : ExitCode::good,
                      [&show, file, problems = std::move(problems)] { show(file, problems); }};
  });
  if (values.json) PrintJson({{"problems", std::move(all)}});
  return Worse(code, offices.Code());
}

}  // namespace

void AddCheckCommand(CommandLine& line) {
  const auto values = std::make_shared<CheckValues>();
  line.Add("check",
           {"Nennt alles, was an den Seiten nicht stimmt, ohne sie zu ändern.",
            "Lists everything that is wrong with the pages, and changes nothing."},
           Both("kvo check newsletter.html\n"
                "kvo check *.html --office shop/office.json\n"
                "kvo check *.html --json"))
      .Arguments("PAGE", values->pages,
                 {"die Seiten; „-“ ist die Standardeingabe", "the pages; \"-\" is standard input"},
                 true)
      .Option(
          "--office", "FILE", values->office,
          {"die Felder und Produkte des Shops; sonst die Felder aus office.json neben der Seite, "
           "wenn es sie gibt",
           "the fields and products of the shop; else the fields of office.json beside the "
           "page, if it is there"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Check(*values); });
}

}  // namespace kvo
