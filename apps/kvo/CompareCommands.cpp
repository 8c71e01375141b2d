#include <charconv>

#include "apps/kvo/Commands.h"
#include "apps/kvo/GitMergeFile.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "document/compare/Compare.h"
#include "document/page/File.h"

namespace kvo {
namespace {

struct DiffValues {
  std::vector<std::string> pages;
  std::string textconv;
  bool json = false;
};

Json PlaceJson(const std::optional<page::Place>& place) {
  if (!place) return nullptr;
  return {{"line", place->line}, {"column", place->column}};
}

Json LinesJson(const compare::Lines& lines) {
  return {{"first", lines.first}, {"count", lines.count}};
}

Json DifferenceJson(const compare::Difference& difference) {
  Json json{{"kind", compare::KindName(difference.kind)}};
  if (difference.kind == compare::Difference::Kind::text) {
    json["oldLines"] = LinesJson(difference.oldLines);
    json["newLines"] = LinesJson(difference.newLines);
    return json;
  }
  json["id"] = difference.id;
  json["class"] = difference.className;
  json["old"] = PlaceJson(difference.oldPlace);
  json["new"] = PlaceJson(difference.newPlace);
  if (difference.kind != compare::Difference::Kind::changed) return json;
  const auto value = [](const std::optional<std::string>& text) {
    return text ? Json(*text) : Json();
  };
  Json properties = Json::array();
  for (const compare::PropertyChange& change : difference.properties)
    properties.push_back({{"name", change.name.english},
                          {"old", value(change.before)},
                          {"new", value(change.after)}});
  json["properties"] = std::move(properties);
  return json;
}

ExitCode Diff(const DiffValues& values) {
  if (!values.textconv.empty()) {
    if (!values.pages.empty() || values.json)
      throw Failure(
          Say({"Neben --textconv SEITE steht nichts anderes.", "--textconv PAGE stands alone."}));
    Print(compare::Readable(compare::Version(page::ReadFile(values.textconv))));
    return ExitCode::good;
  }
  if (values.pages.size() != 2)
    throw Failure(Say({"Zwei Seiten angeben: erst die alte, dann die neue.",
                       "Name two pages: first the old one, then the new one."}));
  const compare::Version before(page::ReadFile(values.pages[0]));
  const compare::Version after(page::ReadFile(values.pages[1]));
  for (const auto& [version, file] :
       {std::pair(&before, &values.pages[0]), {&after, &values.pages[1]}})
    if (version->IsBroken())
      Tell(Say({"{}: Was sich nicht als Control lesen lässt, wird als Text verglichen; „kvo check“ "
                "sagt, was daran fehlt.",
                "{}: what cannot be read as a control is compared as text; \"kvo check\" says what "
                "is wrong with it."},
               {ShownName(*file)}));
  const std::vector<compare::Difference> differences = compare::Compare(before, after);
  Json all = Json::array();
  for (const compare::Difference& difference : differences) {
    if (values.json) {
      all.push_back(DifferenceJson(difference));
      continue;
    }
    for (const Message& line : compare::Describe(difference)) Print(line.In(UserLanguage()) + '\n');
  }
  if (values.json) PrintJson({{"differences", std::move(all)}});
  return differences.empty() ? ExitCode::good : ExitCode::problemsFound;
}

struct MergeValues {
  std::string base;
  std::string ours;
  std::string theirs;
  std::string output;
  std::string markerSize;
  std::string path;
  VersionNames names;
};

std::size_t MarkerSize(const std::string& typed) {
  constexpr std::size_t kUsual = 7;
  constexpr std::size_t kMost = 1000;
  if (typed.empty()) return kUsual;
  std::size_t size = 0;
  const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), size);
  if (error != std::errc() || end != typed.data() + typed.size() || size == 0 || size > kMost)
    throw Failure(Say({"--marker-size braucht eine Zahl von 1 bis {}, nicht „{}“.",
                       "--marker-size needs a number from 1 to {}, not \"{}\"."},
                      {std::to_string(kMost), typed}));
  return size;
}

// Returns a version's name for conflict markers. Older versions of git pass on placeholders that
// they do not know.
std::string NameOr(const std::string& given, const std::string& usual) {
  return given.empty() || given.starts_with('%') ? usual : given;
}

ExitCode Merge(const MergeValues& values) {
  const std::size_t markerSize = MarkerSize(values.markerSize);
  const std::string base = page::ReadFile(values.base);
  const std::string ours = page::ReadFile(values.ours);
  const std::string theirs = page::ReadFile(values.theirs);
  const compare::Merged merged = compare::Merge(
      base, ours, theirs,
      GitMergeFile({NameOr(values.names.base, "base"), NameOr(values.names.ours, "ours"),
                    NameOr(values.names.theirs, "theirs")}),
      markerSize);
  const std::string& target = values.output.empty() ? values.ours : values.output;
  if (target != values.ours || merged.bytes != ours) page::WriteFile(target, merged.bytes);

  const std::string& name = values.path.empty() ? values.ours : values.path;
  if (merged.asText)
    Tell(Say({"{}: als Text zusammengeführt, denn {}", "{}: merged as text, because {}"},
             {name, merged.asText->In(UserLanguage())}));
  for (const Message& conflict : merged.conflicts)
    Tell(Say({"{}: Konflikt: {}", "{}: conflict: {}"}, {name, conflict.In(UserLanguage())}));
  if (merged.textConflicts && merged.conflicts.empty())
    Tell(Say({"{}: Konflikt im Text", "{}: conflict in the text"}, {name}));
  return merged.IsClean() ? ExitCode::good : ExitCode::problemsFound;
}

}  // namespace

void AddCompareCommands(CommandLine& line) {
  const auto diff = std::make_shared<DiffValues>();
  line.Add("diff",
           {"Zeigt, was sich von einer Seite zur anderen geändert hat: Eigenschaften der Controls, "
            "neue, gelöschte und verschobene, Text.",
            "Shows what changed from one page to another: properties of controls, new, removed "
            "and moved ones, text."},
           {"kvo diff alt.html neu.html\n"
            "kvo diff alt.html neu.html --json\n"
            "git show HEAD:newsletter.html | kvo diff - newsletter.html\n"
            "git config diff.kvo.textconv 'kvo diff --textconv'",
            "kvo diff old.html new.html\n"
            "kvo diff old.html new.html --json\n"
            "git show HEAD:newsletter.html | kvo diff - newsletter.html\n"
            "git config diff.kvo.textconv 'kvo diff --textconv'"})
      .Arguments("PAGE", diff->pages,
                 {"die alte und die neue Seite; „-“ ist die Standardeingabe",
                  "the old and the new page; \"-\" is standard input"},
                 false)
      .Option("--textconv", "PAGE", diff->textconv,
              {"eine Seite so ausgeben, dass „git diff“ Eigenschaften zeilenweise vergleicht",
               "print one page so that \"git diff\" compares properties line by line"})
      .Flag("--json", diff->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([diff] { return Diff(*diff); });

  const auto merge = std::make_shared<MergeValues>();
  line.Add("merge",
           {"Führt zusammen, was zwei Seiten aus einer gemeinsamen gemacht haben, nach "
            "Eigenschaften der Controls. Für git: 0 ohne, 1 mit Konflikten, sonst gescheitert.",
            "Merges what two pages made of a common one, by properties of the controls. For git: "
            "0 without, 1 with conflicts, else it failed."},
           {"kvo merge basis.html meine.html deine.html -o beide.html\n"
            "git config merge.kvo.driver 'kvo merge %O %A %B --marker-size %L --path %P'",
            "kvo merge base.html mine.html yours.html -o both.html\n"
            "git config merge.kvo.driver 'kvo merge %O %A %B --marker-size %L --path %P'"})
      .Argument("BASE", merge->base, {"die gemeinsame Fassung", "the common version"})
      .Argument("OURS", merge->ours,
                {"die eigene Fassung; das Ergebnis kommt in diese Datei",
                 "your version; the result goes into this file"})
      .Argument("THEIRS", merge->theirs, {"die andere Fassung", "the other version"})
      .Option("-o,--output", "OUT", merge->output,
              {"eine andere Datei für das Ergebnis; „-“ ist die Standardausgabe",
               "another file for the result; \"-\" is standard output"})
      .Option("--marker-size", "N", merge->markerSize,
              {"Länge der Konfliktmarken, sonst 7", "length of conflict markers, else 7"})
      .Option("--path", "NAME", merge->path,
              {"Name der Seite für Meldungen", "the page's name for messages"})
      .Option("--base-name", "NAME", merge->names.base,
              {"Name der gemeinsamen Fassung für Konfliktmarken",
               "the common version's name for conflict markers"})
      .Option("--ours-name", "NAME", merge->names.ours,
              {"der der eigenen Fassung", "that of your version"})
      .Option("--theirs-name", "NAME", merge->names.theirs,
              {"der der anderen Fassung", "that of the other version"})
      .FailsWith(ExitCode::driverFailed)
      .Run([merge] { return Merge(*merge); });
}

}  // namespace kvo
