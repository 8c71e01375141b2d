#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "document/check/Fields.h"
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

// What is known of an office: the fields, and the products of its shop.
struct Known {
  check::KnownFields fields;
  std::optional<check::ShopProducts> products;  // only for use in the order of the pages
  std::function<void()> complaint;              // reports a broken office
};

// Loads the offices of the pages, each file once: the one that the user names, else the one beside
// the page, if any. Checks pages without an office that is broken. Looks up products only for an
// office that the user names: one that came with a page must not choose what this machine connects
// to. May be used by several threads.
class Offices {
 public:
  explicit Offices(const std::string& named) : named_(named) {}

  Known& Of(const std::string& page) {
    const auto beside = named_.empty() ? FileBeside(page, office::kOfficeFile) : named_;
    if (!beside) return none_;
    const std::lock_guard lock(mutex_);
    const auto [entry, isNew] = loaded_.try_emplace(*beside);
    if (isNew) Load(*beside, entry->second);
    return entry->second;
  }

 private:
  void Load(const std::string& file, Known& known) {
    try {
      const ObjectRef office = office::LoadOffice(
          file, named_.empty() ? office::ConnectionFactory() : shop::NewConnection);
      known.fields = check::FieldsOf(office);
      if (!named_.empty()) known.products.emplace(office);
    } catch (const office::JsonFileError& error) {
      known.complaint = [error] { ShowProblems(Stream::error, error.File(), error.Problems()); };
    } catch (const page::FileError& error) {
      known.complaint = [error] { PrintError(error.Text(UserLanguage())); };
    }
  }

  std::string named_;
  std::mutex mutex_;
  std::map<std::string, Known> loaded_;
  Known none_;
};

// Shows the problems of pages in their order.
class CheckRun {
 public:
  explicit CheckRun(bool json) : json_(json) {}

  ExitCode Take(const std::string& file, Known& known, check::CheckedPage checked) {
    ExitCode code = ExitCode::good;
    if (const auto complain = std::exchange(known.complaint, nullptr)) {
      complain();
      code = ExitCode::failure;
    }
    const page::Problems problems =
        check::WithProducts(std::move(checked), known.products ? &*known.products : nullptr);
    if (!json_) {
      ShowProblems(Stream::output, ShownName(file), problems);
    } else {
      for (const page::Problem& problem : page::Told(problems))
        all_.push_back(ProblemJson(ShownName(file), problem));
    }
    return page::HasErrors(problems) ? Worse(code, ExitCode::problemsFound) : code;
  }
  void End() {
    if (json_) PrintJson({{"problems", std::move(all_)}});
  }

 private:
  bool json_;
  Json all_ = Json::array();
};

ExitCode Check(const CheckValues& values) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  Offices offices(values.office);
  CheckRun run(values.json);
  ExitCode code = ExitCode::good;
  const ExitCode ran = ForEachPage(PagesIn(values.pages), [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    Known& known = offices.Of(file);
    return PageResult{ExitCode::good, [&, file,
                                       checked = check::CheckButProducts(
                                           page, known.fields, check::Fixes::leaveOut)]() mutable {
                        code = Worse(code, run.Take(file, known, std::move(checked)));
                      }};
  });
  run.End();
  return Worse(ran, code);
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
