#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "apps/kvo/Baseline.h"
#include "apps/kvo/CheckReport.h"
#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "document/check/Fields.h"
#include "document/check/MailRules.h"
#include "document/check/Mend.h"
#include "document/check/Products.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/page/UnifiedDiff.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

struct CheckValues {
  std::vector<std::string> pages;
  std::string office;
  std::string format;
  std::string baseline;
  std::string newBaseline;
  bool json = false;
  bool fix = false;
  bool dryRun = false;
  bool mail = false;

  std::string_view Format() const {
    if (json) return "json";
    return format.empty() ? std::string_view("text") : format;
  }
};

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

// A page after --fix, and the results of the checks that need no shop.
struct LookedAt {
  page::Page page;
  check::CheckedPage checked;
  page::Problems fixed;
  std::string diff;
};

// Checks a page, and mends it first.
LookedAt LookAt(const std::string& file, const check::KnownFields& fields,
                const CheckValues& values) {
  const auto check = [&fields](const page::Page& page) {
    return check::CheckButProducts(page, fields).problems;
  };
  LookedAt seen{page::Page(page::ReadFile(file)), {}, {}, {}};
  if (values.fix) {
    check::Mended mended = check::Mend(seen.page, check);
    if (!mended.edits.empty()) {
      if (values.dryRun)
        seen.diff = page::UnifiedDiff(ShownName(file), seen.page.Bytes(), mended.edits);
      else
        WriteAll({{file, mended.bytes, std::string(seen.page.Bytes())}});
      seen.page = page::Page(std::move(mended.bytes));
      seen.fixed = std::move(mended.fixed);
    }
  }
  const bool showsFixes = values.Format() == "sarif";
  seen.checked = check::CheckButProducts(seen.page, fields,
                                         showsFixes ? check::Fixes::add : check::Fixes::leaveOut);
  if (values.mail) {
    std::ranges::move(check::CheckMail(seen.page), std::back_inserter(seen.checked.problems));
    std::ranges::stable_sort(seen.checked.problems, {}, &page::Problem::offset);
  }
  return seen;
}

// Shows what was found, in the order of the pages.
class CheckRun {
 public:
  explicit CheckRun(const CheckValues& values)
      : values_(values),
        report_(NewCheckReport(values.Format(), values.dryRun ? Stream::error : Stream::output)) {
    if (!values.baseline.empty()) known_.emplace(values.baseline).Read();
    if (!values.newBaseline.empty()) noted_.emplace(values.newBaseline);
  }

  ExitCode Take(const std::string& file, Known& known, LookedAt seen) {
    ExitCode code = ExitCode::good;
    if (const auto complain = std::exchange(known.complaint, nullptr)) {
      complain();
      code = ExitCode::failure;
    }
    ShowFixed(file, seen.fixed);
    Print(seen.diff);
    page::Problems problems =
        check::WithProducts(std::move(seen.checked), known.products ? &*known.products : nullptr);
    if (noted_) {
      noted_->Note(file, seen.page, problems);
      return code;
    }
    if (known_) problems = known_->NewOf(file, seen.page, std::move(problems));
    report_->Add(file, seen.page, problems);
    return page::HasErrors(problems) ? Worse(code, ExitCode::problemsFound) : code;
  }

  void End() {
    if (noted_) {
      noted_->Write();
      Tell(Say({"Bekannte Probleme in {}: {}", "Known problems in {}: {}"},
               {values_.newBaseline, std::to_string(noted_->Noted())}));
      return;
    }
    report_->Finish();
    if (!known_) return;
    for (const std::string& gone : known_->Gone())
      Tell(Say({"{}: gibt es nicht mehr: {}", "{}: is there no more: {}"},
               {values_.baseline, gone}));
  }

 private:
  // On standard output only when nothing else must stand there alone.
  void ShowFixed(const std::string& file, const page::Problems& fixed) {
    for (const page::Problem& problem : fixed) {
      const std::string line =
          page::DescribeAt(ShownName(file), problem.place, Say({"behoben", "mended"}),
                           problem.control, problem.id, problem.fix->title.In(UserLanguage())) +
          " [" + std::string(problem.rule) + ']';
      if (values_.Format() == "text" && !values_.dryRun)
        Print(line + '\n');
      else
        Tell(line);
    }
  }

  const CheckValues& values_;
  std::unique_ptr<CheckReport> report_;
  std::optional<Baseline> known_;
  std::optional<Baseline> noted_;
};

// Refuses options that do not go together.
void DemandSense(const CheckValues& values) {
  if (values.json && !values.format.empty())
    throw Failure(Say({"--json und --format zugleich. Eines davon weglassen.",
                       "--json and --format at once. Leave out one of them."}));
  if (values.dryRun && !values.fix)
    throw Failure(Say({"--dry-run geht nur mit --fix.", "--dry-run needs --fix."}));
  if (values.dryRun && values.Format() != "text")
    throw Failure(
        Say({"--dry-run zeigt einen Unterschied statt eines Berichts. --format und "
             "--json weglassen.",
             "--dry-run shows a diff instead of a report. Leave out --format and "
             "--json."}));
  if (!values.baseline.empty() && !values.newBaseline.empty())
    throw Failure(Say({"--baseline und --write-baseline zugleich. Eines davon weglassen.",
                       "--baseline and --write-baseline at once. Leave out one of them."}));
  if (values.fix && !values.dryRun && std::ranges::find(values.pages, "-") != values.pages.end())
    throw Failure(
        Say({"--fix ändert Dateien; die Standardeingabe ist keine. Eine Datei nennen "
             "oder --dry-run dazusetzen.",
             "--fix changes files; standard input is none. Name a file or add "
             "--dry-run."}));
}

ExitCode Check(const CheckValues& values) {
  DemandSense(values);
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  Offices offices(values.office);
  CheckRun run(values);
  ExitCode code = ExitCode::good;
  const ExitCode ran = ForEachPage(PagesIn(values.pages), [&](const std::string& file) {
    Known& known = offices.Of(file);
    auto seen = std::make_shared<LookedAt>(LookAt(file, known.fields, values));
    return PageResult{ExitCode::good, [&, file, seen] {
                        code = Worse(code, run.Take(file, known, std::move(*seen)));
                      }};
  });
  run.End();
  return Worse(ran, code);
}

}  // namespace

void AddCheckCommand(CommandLine& line) {
  const auto values = std::make_shared<CheckValues>();
  line.Add("check",
           {"Nennt alles, was an den Seiten nicht stimmt; ändert sie nur mit --fix.",
            "Lists everything that is wrong with the pages; changes them only with --fix."},
           Both("kvo check newsletter.html\n"
                "kvo check *.html --office shop/office.json\n"
                "kvo check templates --fix --dry-run\n"
                "kvo check templates --baseline known.json --format sarif"))
      .Arguments("PAGE", values->pages, kPagesToRead, true)
      .Option(
          "--office", "FILE", values->office,
          {"die Felder und Produkte des Shops; sonst die Felder aus office.json neben der Seite, "
           "wenn es sie gibt",
           "the fields and products of the shop; else the fields of office.json beside the "
           "page, if it is there"})
      .Flag("--mail", values->mail,
            {"prüft auch, was beim Versand als Mail stört",
             "also checks what makes trouble when it is sent as mail"})
      .Flag("--fix", values->fix,
            {"behebt, was sich auf eine sichere Weise beheben lässt",
             "mends what can be mended in one sure way"})
      .Flag("--dry-run", values->dryRun,
            {"mit --fix: zeigt die Änderungen, ohne sie zu schreiben",
             "with --fix: shows the changes and writes none"})
      .Option("--format", "FORMAT", values->format,
              {"text, json, sarif, github oder junit", "text, json, sarif, github or junit"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme: --format json",
             "one JSON document for other programs: --format json"})
      .Option("--baseline", "FILE", values->baseline,
              {"schweigt von den Problemen, die darin stehen",
               "is silent about the problems that are in it"})
      .Option("--write-baseline", "FILE", values->newBaseline,
              {"schreibt alle Probleme hinein, statt sie zu nennen",
               "writes all problems into it instead of listing them"})
      .ExitCodes({{"keine Fehler, höchstens Warnungen", "no errors, warnings at most"},
                  {"Fehler gefunden, auch nach --fix", "errors found, also after --fix"},
                  {"falscher Aufruf, oder eine Datei war nicht zu lesen oder zu schreiben",
                   "wrong use, or a file could not be read or written"}})
      .Run([values] { return Check(*values); });
}

}  // namespace kvo
