#include <map>
#include <set>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "common/values/Ascii.h"
#include "document/adopt/Adopt.h"
#include "document/office/OfficeFile.h"
#include "document/page/UnifiedDiff.h"

namespace kvo {
namespace {

struct AdoptValues {
  std::vector<std::string> pages;
  std::string mapping;
  std::string office;
  std::string output;
  bool dryRun = false;
  bool json = false;
};

// The fields of the office that the user names, or of the one beside each page. Loads all before
// the pages, which then only read.
class Fields {
 public:
  Fields(const std::string& named, const std::vector<std::string>& pages) : named_(named) {
    for (const std::string& page : pages)
      if (const std::string file = FileFor(page); !file.empty() && !offices_.contains(file))
        Load(file);
  }

  ObjectRef Of(const std::string& page) const {
    const std::string file = FileFor(page);
    return file.empty() ? nullptr : offices_.at(file);
  }
  // ExitCode::failure when an office was broken.
  ExitCode Code() const { return code_; }

 private:
  std::string FileFor(const std::string& page) const {
    return named_.empty() ? FileBeside(page, office::kOfficeFile).value_or(std::string()) : named_;
  }
  void Load(const std::string& file) {
    ObjectRef& office = offices_[file];
    try {
      office = office::LoadOffice(file);
    } catch (const office::JsonFileError& error) {
      ShowProblems(Stream::error, error.File(), error.Problems());
      code_ = ExitCode::failure;
    } catch (const page::FileError& error) {
      PrintError(error.Text(UserLanguage()));
      code_ = ExitCode::failure;
    }
  }

  std::string named_;
  std::map<std::string, ObjectRef> offices_;
  ExitCode code_ = ExitCode::good;
};

adopt::Mapping MappingOf(const std::string& file) {
  try {
    return file.empty() ? adopt::Mapping() : adopt::LoadMapping(file);
  } catch (const office::JsonFileError& error) {
    ShowProblems(Stream::error, error.File(), error.Problems());
    throw Failure(Say({"Die Zuordnung „{}“ ist fehlerhaft; es wurde nichts übernommen.",
                       "The mapping \"{}\" is faulty; nothing was taken over."},
                      {file}));
  } catch (const page::FileError& error) {
    throw Failure(error.Text(UserLanguage()));
  }
}

bool Stays(const adopt::Find& find) { return find.edits.empty(); }

Json FindJson(const adopt::Find& find) {
  constexpr std::string_view kKinds[] = {"tag", "placeholder", "statement"};
  constexpr std::string_view kResults[] = {"kept", "control", "element", "tag"};
  Json json{{"line", find.place.line},
            {"column", find.place.column},
            {"kind", kKinds[static_cast<std::size_t>(find.kind)]},
            {"text", find.text},
            {"result", kResults[static_cast<std::size_t>(find.result)]}};
  if (Stays(find)) {
    json["reason"] = find.reason.In(UserLanguage());
    if (!find.suggestion.empty()) json["suggestion"] = find.suggestion;
    return json;
  }
  json["class"] = find.contract->name;
  json["properties"] = Json::object();
  for (const auto& [name, value] : find.properties) json["properties"][name] = value;
  return json;
}

// What was found in all pages, shown page by page.
class Report {
 public:
  Report(bool json, Stream stream) : json_(json), stream_(stream) {}

  void Add(const std::string& file, const std::vector<adopt::Find>& finds,
           const std::string& diff) {
    std::size_t kept = 0;
    for (const adopt::Find& find : finds) {
      if (Stays(find)) ++kept;
      if (!find.suggestion.empty()) suggestions_.emplace(find.name, find.suggestion);
    }
    const std::size_t taken = finds.size() - kept;
    ++pages_;
    taken_ += taken;
    kept_ += kept;
    if (json_) return AddJson(file, finds, taken, kept);
    if (!diff.empty()) Print(diff);
    Line(file + ": " + Counts(taken, kept));
    for (const adopt::Find& find : finds)
      if (Stays(find))
        Line(page::DescribeAt(file, find.place, Say({"bleibt", "kept"}), {}, {},
                              find.text + ": " + find.reason.In(UserLanguage())));
  }

  void Finish() const {
    if (json_) {
      Json suggestions = Json::object();
      for (const auto& [name, field] : suggestions_) suggestions[name] = field;
      return PrintJson({{"pages", pagesJson_}, {"suggestions", std::move(suggestions)}});
    }
    if (pages_ > 1)
      Line(Say({"{} Seiten: {}", "{} pages: {}"}, {std::to_string(pages_), Counts(taken_, kept_)}));
    if (suggestions_.empty()) return;
    Line(Say({"Vorschläge für „fields“ in der Zuordnung:",
              "Suggestions for \"fields\" in the mapping:"}));
    for (const auto& [name, field] : suggestions_)
      Line("  " + Json(name).dump() + ": " + Json(field).dump() + ',');
  }

 private:
  static std::string Counts(std::size_t taken, std::size_t kept) {
    return Say({"übernommen: {}, geblieben: {}", "taken over: {}, kept: {}"},
               {std::to_string(taken), std::to_string(kept)});
  }

  void Line(const std::string& line) const {
    if (stream_ == Stream::output)
      Print(line + '\n');
    else
      Tell(line);
  }

  void AddJson(const std::string& file, const std::vector<adopt::Find>& finds, std::size_t taken,
               std::size_t kept) {
    Json list = Json::array();
    for (const adopt::Find& find : finds) list.push_back(FindJson(find));
    pagesJson_.push_back(
        {{"file", file}, {"taken", taken}, {"kept", kept}, {"finds", std::move(list)}});
  }

  struct IgnoringCase {
    bool operator()(const std::string& a, const std::string& b) const {
      return std::ranges::lexicographical_compare(a, b, {}, LowerAscii, LowerAscii);
    }
  };

  bool json_;
  Stream stream_;
  std::size_t pages_ = 0;
  std::size_t taken_ = 0;
  std::size_t kept_ = 0;
  std::map<std::string, std::string, IgnoringCase> suggestions_;
  Json pagesJson_ = Json::array();
};

ExitCode Adopt(const AdoptValues& values) {
  const adopt::Mapping mapping = MappingOf(values.mapping);
  const NamedPages pages = FindPages(values.pages, values.output);
  const std::vector<std::string> files = FilesOf(pages);
  // A page from standard input goes to standard output.
  const bool toOutput =
      !values.dryRun && (values.output == "-" || (values.output.empty() && files.front() == "-"));
  if (toOutput && values.json)
    throw Failure(
        Say({"--json und die Seite passen nicht beide auf die Standardausgabe. Mit -o "
             "eine Datei angeben.",
             "--json and the page do not both fit on standard output. Name a file with "
             "-o."}));
  std::map<std::string, std::string> targets;
  if (!values.dryRun) {
    if (values.output.ends_with('/')) MakeFolder(values.output);
    const std::vector<std::string> all = Targets(pages, values.output, OverPage::itself);
    for (std::size_t i = 0; i < all.size(); ++i) targets[files[i]] = all[i];
  }
  const Fields fields(values.office, files);
  Report report(values.json, toOutput ? Stream::error : Stream::output);

  const ExitCode code = ForEachPage(files, [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    adopt::Finds all = adopt::FindAll(page, mapping, fields.Of(file));
    const std::string name = ShownName(file);
    if (page::HasErrors(all.problems))
      return PageResult{ExitCode::problemsFound, [name, problems = std::move(all.problems)] {
                          ShowProblems(Stream::error, name, problems);
                          PrintError(Say({"{} wurde nicht übernommen; erst die genannten Fehler "
                                          "beheben.",
                                          "{} was not taken over; mend the errors named above "
                                          "first."},
                                         {name}));
                        }};
    adopt::Adopted adopted = adopt::Adopt(page, std::move(all.finds));
    std::string diff;
    if (values.dryRun) {
      if (!values.json) diff = page::UnifiedDiff(name, page.Bytes(), adopted.edits);
    } else if (const std::string& target = targets.at(file);
               target != file || file == "-" || !adopted.edits.empty()) {
      page::WriteFile(target, adopted.bytes);
    }
    // Tags keep working, but placeholders would reach the recipients.
    const bool leftOver = std::ranges::any_of(adopted.finds, [](const adopt::Find& find) {
      return Stays(find) && find.kind != adopt::Find::Kind::tag;
    });
    return PageResult{leftOver ? ExitCode::problemsFound : ExitCode::good,
                      [&report, name, finds = std::move(adopted.finds), diff = std::move(diff)] {
                        report.Add(name, finds, diff);
                      }};
  });
  report.Finish();
  return Worse(code, fields.Code());
}

}  // namespace

void AddAdoptCommand(CommandLine& line) {
  const auto values = std::make_shared<AdoptValues>();
  line.Add("adopt",
           {"Macht aus Tags und Platzhaltern alter Vorlagen Controls und beweist, dass die Seiten "
            "veröffentlicht dasselbe ergeben. Was bleibt, wird mit Grund genannt.",
            "Turns tags and placeholders of old templates into controls, and proves that the pages "
            "give the same when published. Lists what stays, with the reason."},
           {"kvo adopt alt.html --dry-run\n"
            "kvo adopt alt/ --map uebernahme.json -o neu/\n"
            "kvo adopt newsletter.html --map uebernahme.json --office shop/office.json",
            "kvo adopt old.html --dry-run\n"
            "kvo adopt old/ --map takeover.json -o new/\n"
            "kvo adopt newsletter.html --map takeover.json --office shop/office.json"})
      .Arguments("PAGE", values->pages,
                 {"Seiten, Ordner und Muster; „-“ ist die Standardeingabe",
                  "pages, folders and patterns; \"-\" is standard input"},
                 true)
      .Option("--map", "FILE", values->mapping,
              {"was aus Platzhaltern anderer Systeme wird",
               "what placeholders of other systems become"})
      .Option("--office", "FILE", values->office,
              {"die Felder, die vorgeschlagen werden und Beschriftungen geben; sonst aus "
               "office.json neben der Seite, wenn es sie gibt",
               "the fields that are suggested and give captions; else of office.json beside the "
               "page, if it is there"})
      .Option("-o,--output", "OUT", values->output,
              {"Datei oder Ordner statt der Seite selbst; „-“ ist die Standardausgabe",
               "file or folder instead of the page itself; \"-\" is standard output"})
      .Flag("--dry-run", values->dryRun,
            {"nur zeigen, was sich ändern würde", "only show what would change"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Adopt(*values); });
}

}  // namespace kvo
