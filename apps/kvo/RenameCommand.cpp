#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"
#include "apps/kvo/RenamedFiles.h"
#include "apps/kvo/UsedNames.h"
#include "document/office/OfficeFile.h"
#include "document/page/Messages.h"
#include "document/page/UnifiedDiff.h"
#include "document/preview/Records.h"
#include "document/uses/Rename.h"

namespace kvo {
namespace {

using page::messages::Quoted;

struct RenameValues {
  std::string from;
  std::string to;
  std::vector<std::string> pages;
  std::string office;
  bool dryRun = false;
  bool partly = false;
};

// A number of things, in the user's language.
std::string Counted(std::size_t count, Localized one, Localized many) {
  return std::to_string(count) + ' ' + Say(count == 1 ? one : many);
}

std::string CountedPlaces(std::size_t count) {
  return Counted(count, {"Stelle", "place"}, {"Stellen", "places"});
}

class RenameRun {
 public:
  explicit RenameRun(const RenameValues& values)
      : values_(values), renaming_(uses::RenamingOf(values.from, values.to)) {}

  ExitCode Run() {
    if (!values_.office.empty()) office_ = RenamedOffice(values_.office, renaming_);
    const std::vector<std::string> pages = PagesIn(values_.pages);
    if (!values_.dryRun && std::ranges::find(pages, "-") != pages.end())
      throw Failure(
          Say({"Die Standardeingabe lässt sich nicht umbenennen. Eine Datei angeben, "
               "oder --dry-run.",
               "Nothing can be renamed in standard input. Name a file, or add "
               "--dry-run."}));
    ExitCode code = ForEachPage(pages, [this](const std::string& file) {
      page::Page page(page::ReadFile(file));
      const uses::PageUses found = uses::FindUses(page);
      uses::Renamed renamed = uses::Rename(page, found, renaming_);
      UsedNames names;
      names.Add(found.uses);
      return PageResult{renamed.kept.empty() ? ExitCode::good : ExitCode::problemsFound,
                        [this, file, names, page = std::move(page), renamed = std::move(renamed)] {
                          Note(file, page, renamed);
                          used_.Add(names);
                        }};
    });
    if (!values_.office.empty()) code = Worse(code, RenameInRecords(pages));
    if (places_ == 0 && code == ExitCode::good && !office_ && records_.empty()) {
      used_.TellUsedNowhere(values_.from);
      return ExitCode::problemsFound;
    }
    used_.TellOtherCases(values_.from);
    if (office_) files_.push_back(std::move(*office_));
    files_.insert(files_.end(), records_.begin(), records_.end());
    if (code != ExitCode::good && !values_.partly)
      TellNothing();
    else if (values_.dryRun)
      ShowChanges();
    else
      Write();
    TellBeside();
    return code;
  }

 private:
  // Finds the edits of the records beside the pages and the office.
  ExitCode RenameInRecords(const std::vector<std::string>& pages) {
    ExitCode code = ExitCode::good;
    std::set<std::filesystem::path> known;
    const auto rename = [&](const std::string& beside) {
      const auto file = FileBeside(beside, preview::kRecordsFile);
      if (!file || !known.insert(std::filesystem::weakly_canonical(*file)).second) return;
      try {
        if (auto renamed = RenamedRecords(*file, renaming_))
          records_.push_back(std::move(*renamed));
        if (QueryMayHave(*file, renaming_.from)) queries_.push_back(*file);
      } catch (const office::JsonFileError& error) {
        for (const page::Problem& problem : error.Problems())
          Show(*file, page::Severity::error, problem.place, problem.message);
        code = Worse(code, ExitCode::problemsFound);
      } catch (const page::FileError& error) {
        PrintError(error.Text(UserLanguage()));
        code = Worse(code, ExitCode::failure);
      }
    };
    rename(values_.office);
    std::ranges::for_each(pages, rename);
    return code;
  }

  static void Show(const std::string& name, page::Severity severity, page::Place place,
                   const Message& message) {
    constexpr Localized kError{"Fehler", "error"};
    constexpr Localized kWarning{"Warnung", "warning"};
    const Localized& label = severity == page::Severity::error ? kError : kWarning;
    ShowLine(Stream::error, name, severity,
             page::DescribeAt(name, place, label.In(UserLanguage()), {}, {},
                              message.In(UserLanguage())));
  }

  void Note(const std::string& file, const page::Page& page, const uses::Renamed& renamed) {
    const std::string name = ShownName(file);
    const auto show = [&](page::Severity severity, const uses::Use& use, const Message& message) {
      Show(name, severity, use.place, message);
    };
    for (const uses::KeptUse& kept : renamed.kept) show(page::Severity::error, kept.use, kept.why);
    kept_ += renamed.kept.size();
    if (!renamed.uses.empty() && !renamed.merged.empty()) {
      constexpr page::messages::Quoting kMerged = {
          "{} kommt hier schon vor; danach lassen sich die beiden nicht mehr unterscheiden.",
          "{} is used here already; nobody can tell the two apart afterwards."};
      show(page::Severity::warning, renamed.merged.front(), kMerged(values_.to));
    }
    if (renamed.uses.empty()) return;
    ++pages_;
    places_ += renamed.uses.size();
    files_.push_back({file, std::string(page.Bytes()), renamed.edits});
  }

  void TellNothing() const {
    PrintError(values_.dryRun
                   ? Say({"Nichts würde umbenannt; erst die genannten Fehler beheben, oder mit "
                          "--partly alles Übrige umbenennen.",
                          "Nothing would be renamed; mend the errors named above first, or rename "
                          "the rest with --partly."})
                   : Say({"Nichts wurde umbenannt; erst die genannten Fehler beheben, oder mit "
                          "--partly alles Übrige umbenennen.",
                          "Nothing was renamed; mend the errors named above first, or rename the "
                          "rest with --partly."}));
  }

  void ShowChanges() const {
    for (const EditedFile& each : files_)
      Print(page::UnifiedDiff(std::filesystem::path(each.file).lexically_normal().string(),
                              each.bytes, each.edits));
    TellKept();
  }

  void TellKept() const {
    if (kept_ == 0) return;
    PrintError(Say({"Den alten Namen behalten: {}. Die Fehler darüber nennen die Gründe.",
                    "Still with the old name: {}. The errors above say why."},
                   {CountedPlaces(kept_)}));
  }

  void Write() const {
    std::vector<FileChange> changes;
    for (const auto& [file, bytes, edits] : files_)
      changes.push_back({file, page::Applied(bytes, edits), bytes});
    WriteAll(changes);
    Print(Say({"Umbenannt: {} in {}.\n", "Renamed {} in {}.\n"},
              {CountedPlaces(places_), Counted(pages_, {"Seite", "page"}, {"Seiten", "pages"})}));
    constexpr Localized kRecords{"Auch die Werte in {} heißen jetzt {}.\n",
                                 "The values in {} are called {} now, too.\n"};
    for (const EditedFile& each : records_) Print(Say(kRecords, {each.file, Quoted(values_.to)}));
    TellKept();
  }

  // Tells of files beside the renamed pages that still have the old name.
  void TellBeside() const {
    if (!uses::IsField(renaming_.from)) return;
    std::set<std::string> told;
    std::error_code ignored;
    const auto tell = [&](const std::string& file, Localized message) {
      if (told.insert(file).second) Tell("kvo: " + Say(message, {file, Quoted(values_.from)}));
    };
    for (const std::string& file : queries_)
      tell(file, {"Die query in {} nennt vielleicht {}. Ändern Sie sie von Hand.",
                  "The query in {} may name {}. Change it by hand."});
    for (const EditedFile& each : files_) {
      const auto office = FileBeside(each.file, office::kOfficeFile);
      if (office && !std::filesystem::equivalent(*office, values_.office, ignored) &&
          OfficeLists(*office, renaming_))
        tell(*office, {"{} hat noch das Feld {}. Mit --office wird es dort mit umbenannt.",
                       "{} still lists the field {}. With --office, it is renamed there, too."});
      const auto records = FileBeside(each.file, preview::kRecordsFile);
      if (records && values_.office.empty() && RecordsHave(*records, renaming_.from))
        tell(*records, {"{} hat noch Werte für {}. Mit --office werden sie dort mit umbenannt.",
                        "{} still has values for {}. With --office, they are renamed there, too."});
    }
  }

  const RenameValues& values_;
  uses::Renaming renaming_;
  std::optional<EditedFile> office_;
  std::vector<EditedFile> records_;
  std::vector<std::string> queries_;  // files whose query may name the field
  std::vector<EditedFile> files_;
  UsedNames used_;
  std::size_t pages_ = 0;
  std::size_t places_ = 0;
  std::size_t kept_ = 0;
};

}  // namespace

void AddRenameCommand(CommandLine& line) {
  const auto values = std::make_shared<RenameValues>();
  line.Add(
          "rename",
          {"Benennt ein Feld oder eine id in den Seiten um. Kann eine Stelle den neuen Namen nicht "
           "bekommen, bleibt alles, wie es ist; --partly benennt dann alles Übrige um.",
           "Renames a field or an id in the pages. Changes nothing where one place cannot get the "
           "new name; with --partly, renames the rest then."},
          Both("kvo rename customer.City customer.Town mails --dry-run\n"
               "kvo rename customer.City customer.Town mails --office mails/office.json\n"
               "kvo rename Preis Gesamtpreis newsletter.html"))
      .Argument("OLD", values->from,
                {"„customer.“ oder „order.“ und der Name eines Feldes, oder die id eines Controls",
                 "\"customer.\" or \"order.\" and the name of a field, or the id of a control"})
      .Argument("NEW", values->to, {"der neue Name, ebenso", "the new name, likewise"})
      .Arguments("PAGE", values->pages,
                 {"die Seiten oder ihre Ordner", "the pages or their folders"}, true)
      .Option(
          "--office", "FILE", values->office,
          {"benennt das Feld auch in diesem Office um, und in preview.json daneben und neben den "
           "Seiten",
           "renames the field in this office, too, and in the preview.json beside it and the "
           "pages"})
      .Flag("--dry-run", values->dryRun,
            {"zeigt nur, was sich ändern würde: ein Unified Diff für git apply",
             "only shows what would change: a unified diff for git apply"})
      .Flag("--partly", values->partly,
            {"benennt auch dann um, wenn manche Stellen den alten Namen behalten müssen",
             "renames the rest where some places have to keep the old name"})
      .Run([values] { return RenameRun(*values).Run(); });
}

}  // namespace kvo
