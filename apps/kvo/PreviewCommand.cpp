#include <charconv>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Coverage.h"
#include "apps/kvo/FramedPage.h"
#include "apps/kvo/PageRun.h"
#include "apps/kvo/PreviewFindings.h"
#include "apps/kvo/Progress.h"
#include "common/values/Ascii.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/preview/OfficeShop.h"
#include "document/preview/Records.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

struct PreviewValues {
  std::vector<std::string> pages;
  std::string record;
  std::string office;
  std::string records;
  std::string width;
  std::string output;
  bool allBranches = false;
  bool json = false;
  bool strict = false;
};

// Prints one JSON document as its parts become known, so that it is never whole in memory; or adds
// them to a document that others share.
class PreviewJson {
 public:
  explicit PreviewJson(Json* shared) : shared_(shared) {
    if (shared_ != nullptr) (*shared_)["previews"] = Json::array();
  }

  void Add(const Json& preview) {
    if (shared_ != nullptr) return (*shared_)["previews"].push_back(preview);
    Print(begun_ ? ",\n" : "{\n  \"previews\": [\n");
    begun_ = true;
    Print(Indented(preview, "    "));
  }
  void End(const Json& coverage) {
    if (shared_ != nullptr) {
      (*shared_)["coverage"] = coverage;
      return;
    }
    Print(begun_ ? "\n  ]" : "{\n  \"previews\": []");
    Print(",\n  \"coverage\": " + Indented(coverage, "  ").substr(2) + "\n}\n");
  }

 private:
  static std::string Indented(const Json& json, std::string_view indentation) {
    std::string text(indentation);
    for (const char c : json.dump(2, ' ', false, Json::error_handler_t::replace)) {
      text += c;
      if (c == '\n') text += indentation;
    }
    return text;
  }

  Json* shared_;
  bool begun_ = false;
};

// Names files in a folder after a page and its records: PAGE.NAME.html.
class PreviewNames {
 public:
  PreviewNames(const std::string& page, std::string folder)
      : folder_(std::move(folder)),
        stem_(page == "-" ? "stdin" : std::filesystem::path(page).stem().string()) {}

  std::string Numbered(std::size_t number) const { return At(std::to_string(number)); }

  // Also tells names apart that differ in case only. Remembers them by their hashes: two names with
  // the same one merely get a number.
  std::string Named(const std::string& name, std::int64_t number) {
    std::string part = FileNamePart(name);
    if (part.empty()) part = std::to_string(number);
    std::string unique = part;
    for (std::int64_t next = number; !used_.insert(Hash(unique)).second; ++next)
      unique = part + '-' + std::to_string(next);
    return At(unique);
  }

 private:
  static std::size_t Hash(const std::string& name) {
    return std::hash<std::string>()(Lowered(name));
  }
  std::string At(const std::string& part) const {
    return (std::filesystem::path(folder_) / (stem_ + '.' + part + ".html")).string();
  }

  std::string folder_;
  std::string stem_;
  std::set<std::size_t> used_;
};

// Answers for the shop of an office that the user did not name.
class UnnamedShop final : public preview::Shop {
 public:
  std::vector<std::optional<preview::Product>> Find(const std::vector<std::string>& numbers,
                                                    std::optional<Message>& failure) override {
    if (!numbers.empty())
      failure = Message{"Produkte werden nur nachgeschlagen, wenn --office den Shop nennt.",
                        "Products are looked up only in a shop that --office names."};
    return std::vector<std::optional<preview::Product>>(numbers.size());
  }
};

int WidthOf(const std::string& text) {
  constexpr int kMost = 10'000;
  int width = 0;
  const char* end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, width);
  if (error != std::errc() || parsed != end || width < 1 || width > kMost)
    throw Failure(Say({"„{}“ ist keine Breite. Hinter --width eine Zahl von 1 bis {} angeben.",
                       "\"{}\" is no width. Give a number from 1 to {} behind --width."},
                      {text, std::to_string(kMost)}));
  return width;
}

bool IsFolder(const std::string& target) {
  std::error_code ignored;
  return target != "-" && (target.ends_with('/') || std::filesystem::is_directory(target, ignored));
}

// The previews of one page.
class PreviewRun {
 public:
  // With `shared`, the JSON document is one of many and not printed.
  PreviewRun(const PreviewValues& values, const std::string& file, const std::string& output,
             Json* shared)
      : values_(values),
        file_(file),
        output_(output),
        folder_(values.allBranches || IsFolder(output)),
        office_(LoadOffice()),
        page_(page::ReadFile(file)),
        template_(page_, office_),
        names_(file, output),
        json_(shared) {
    if (!values_.width.empty()) width_ = WidthOf(values_.width);
    if (values_.office.empty())
      shop_ = std::make_unique<UnnamedShop>();
    else
      shop_ = std::make_unique<preview::OfficeShop>(office_);
    options_.shop = shop_.get();
    options_.language = UserLanguage();
    options_.banner = true;
    LoadRecords();
  }

  ExitCode Run() {
    if (folder_) MakeFolder(output_);
    Coverage coverage(template_.Switches());
    if (values_.allBranches)
      WriteBranches(coverage);
    else if (!values_.record.empty() || !folder_)
      WriteOne();
    else
      WriteAll();
    ShowProblems(Stream::error, ShownName(file_), template_.Problems());
    if (values_.json) {
      json_.End(values_.allBranches ? coverage.List() : Json::array());
    } else {
      findings_.Show(ShownName(file_));
      if (values_.allBranches) Print('\n' + coverage.Table());
    }
    if (page::HasErrors(template_.Problems()) || (values_.strict && findings_.AnyMissing()))
      code_ = Worse(code_, ExitCode::problemsFound);
    return code_;
  }

 private:
  // An office that came with the page must not choose what this machine connects to.
  ObjectRef LoadOffice() {
    if (!values_.office.empty()) return office::LoadOffice(values_.office, shop::NewConnection);
    const auto beside = FileBeside(file_, office::kOfficeFile);
    return beside ? office::LoadOffice(*beside) : nullptr;
  }

  void LoadRecords() {
    preview::RecordsFile file;
    const auto beside = FileBeside(file_, preview::kRecordsFile);
    if (!values_.records.empty())
      file = preview::LoadRecords(values_.records);
    else if (beside)
      file = preview::LoadRecords(*beside);
    if (!file.query.empty() && values_.office.empty()) {
      file.query.clear();
      queryLeftOut_ = true;
      if (file.records.empty()) throw Failure(QueryLeftOut());
    }
    for (const preview::Record& record : file.records) recordNames_.push_back(record.name);
    records_.emplace(std::move(file), office_);
  }

  static std::string QueryLeftOut() {
    return Say({"Die Abfrage der Datensätze wird nur ausgeführt, wenn --office den Shop nennt.",
                "The query for records is run only in a shop that --office names."});
  }

  // The record that the user chose, else the first one.
  std::int64_t Chosen() {
    if (values_.record.empty()) return 0;
    if (const auto index = records_->Find(values_.record)) return *index;
    const std::vector<std::string_view> names(recordNames_.begin(), recordNames_.end());
    std::string message =
        Say({"Es gibt keinen Datensatz „{}“.", "There is no record \"{}\"."}, {values_.record});
    message += DidYouMean(values_.record, names);
    throw Failure(queryLeftOut_ ? message + ' ' + QueryLeftOut() : message);
  }

  void WriteOne() {
    const std::int64_t index = Chosen();
    const preview::Record record = records_->At(index).value();
    Write(record, index, folder_ ? names_.Named(record.name, index + 1) : output_);
  }

  void WriteAll() {
    Progress progress([this] { return records_->Count(); });
    for (std::int64_t index = 0; const auto record = records_->At(index); ++index) {
      progress.Next(NameOf(*record, index));
      Write(*record, index, names_.Named(record->name, index + 1));
    }
    if (!queryLeftOut_) return;
    PrintError(QueryLeftOut());
    code_ = ExitCode::failure;
  }

  void WriteBranches(Coverage& coverage) {
    const std::int64_t index = Chosen();
    const preview::Record record = records_->At(index).value();
    const auto variants = preview::AllBranches(template_.Switches());
    Progress progress([&] { return static_cast<std::int64_t>(variants.size()); });
    for (std::size_t variant = 1; variant <= variants.size(); ++variant) {
      const std::string number = std::to_string(variant);
      progress.Next(number);
      options_.choices = variants[variant - 1];
      coverage.Add(Write(record, index, names_.Numbered(variant),
                         Say({"Variante {}", "variant {}"}, {number})));
    }
  }

  static std::string NameOf(const preview::Record& record, std::int64_t index) {
    return record.name.empty() ? std::to_string(index + 1) : record.name;
  }

  // `variant` names the preview in messages, in place of the record.
  preview::Preview Write(const preview::Record& record, std::int64_t index,
                         const std::string& target, const std::string& variant = {}) {
    const std::string name = NameOf(record, index);
    if (record.madeUp && !toldMadeUp_)
      Tell(Say({"kvo: Es gibt keine Datensätze ({}); alle Werte sind ausgedacht.",
                "kvo: There are no records ({}); all values are made up."},
               {preview::kRecordsFile}));
    toldMadeUp_ = toldMadeUp_ || record.madeUp;
    preview::Preview made = template_.Render(record, options_);
    ProtectPages(Sources(), {target}, OverPage::nothing);
    page::WriteFile(target,
                    width_ == 0 ? made.html
                                : FramedPage(made.html, page_.Encoding(), width_,
                                             ShownName(file_) + ": " + name),
                    page::Durable::no);
    findings_.Add(made, record.name, variant.empty() ? name : variant);
    if (values_.json)
      AddJson(record, target, made);
    else if (folder_)
      Print(target + '\n');
    return made;
  }

  void AddJson(const preview::Record& record, const std::string& target,
               const preview::Preview& made) {
    Json findings = Json::array();
    for (const preview::Finding& finding : made.findings) findings.push_back(ToJson(finding));
    json_.Add({{"file", target},
               {"record", record.name},
               {"madeUp", record.madeUp},
               {"findings", std::move(findings)}});
  }

  // What a preview must not overwrite.
  std::vector<std::string> Sources() const {
    std::vector<std::string> sources = {file_};
    for (const std::string& file : {values_.office, values_.records})
      if (!file.empty()) sources.push_back(file);
    return sources;
  }

  const PreviewValues& values_;
  const std::string& file_;
  const std::string& output_;
  bool folder_;
  ObjectRef office_;
  page::Page page_;
  preview::Template template_;
  PreviewNames names_;
  PreviewJson json_;
  int width_ = 0;  // 0 for no frame
  std::unique_ptr<preview::Shop> shop_;
  preview::RenderOptions options_;
  std::optional<preview::RecordList> records_;
  std::vector<std::string> recordNames_;
  bool queryLeftOut_ = false;
  bool toldMadeUp_ = false;
  PreviewFindings findings_;
  ExitCode code_ = ExitCode::good;
};

// Returns the folder of each page's previews, which keeps the page's path below the folder that the
// user named. Throws Failure where two pages would give their previews the same names.
std::map<std::string, std::string> PreviewFolders(const NamedPages& pages,
                                                  const std::string& output) {
  std::map<std::string, std::string> folders;
  std::map<std::filesystem::path, std::string> taken;
  for (const auto& [file, below, found] : pages) {
    const std::filesystem::path folder = (std::filesystem::path(output) / below).parent_path() / "";
    const auto [other, isNew] = taken.emplace(folder / std::filesystem::path(below).stem(), file);
    if (!isNew)
      throw Failure(Say({"Die Vorschauen von „{}“ und „{}“ hießen gleich. Einzeln aufrufen.",
                         "The previews of \"{}\" and \"{}\" would have the same names. Call kvo "
                         "for each."},
                        {other->second, file}));
    folders[file] = folder.string();
  }
  return folders;
}

ExitCode PreviewPages(const PreviewValues& values, const NamedPages& pages) {
  if (values.output == "-")
    throw Failure(
        Say({"Vorschauen mehrerer Seiten passen nicht auf die Standardausgabe. Hinter -o "
             "einen Ordner angeben.",
             "Previews of several pages do not fit on standard output. Name a folder "
             "behind -o."}));
  if (!values.width.empty()) WidthOf(values.width);
  const std::map<std::string, std::string> folders = PreviewFolders(pages, values.output);
  Json all = Json::array();
  std::set<std::string> told;
  // What keeps several pages from a preview is told once.
  const auto without = [&told](const std::string& file, const std::string& cause,
                               std::function<void()> tell) {
    return PageResult{ExitCode::failure, [&told, file, cause, tell = std::move(tell)] {
                        if (told.insert(cause).second) tell();
                        PrintError(Say({"Von {} gibt es keine Vorschau; der genannte Fehler "
                                        "verhindert sie.",
                                        "There is no preview of {}; the error named above "
                                        "prevents it."},
                                       {file}));
                      }};
  };
  const ExitCode code = ForEachPage(FilesOf(pages), [&](const std::string& file) {
    try {
      Json json{{"file", ShownName(file)}};
      const ExitCode made =
          PreviewRun(values, file, folders.at(file), values.json ? &json : nullptr).Run();
      return PageResult{
          made, [&all, json = std::move(json)]() mutable { all.push_back(std::move(json)); }};
    } catch (const office::JsonFileError& error) {
      if (error.File() == values.office || error.File() == values.records) throw;
      return without(ShownName(file), error.Text(Language::english),
                     [error] { ShowProblems(Stream::error, error.File(), error.Problems()); });
    } catch (const Failure& error) {
      const std::string message = error.what();
      return without(ShownName(file), message, [message] { PrintError(message); });
    }
  });
  if (values.json) PrintJson({{"pages", std::move(all)}});
  return code;
}

ExitCode ShowPreview(const PreviewValues& values) {
  if (values.output.empty())
    throw Failure(
        Say({"Wohin? Mit -o eine Datei oder einen Ordner angeben, mit „-o -“ die "
             "Standardausgabe.",
             "Where to? Name a file or a folder with -o, or \"-o -\" for standard "
             "output."}));
  if (values.output == "-" && (values.json || values.allBranches))
    throw Failure(Say({"Mit {} hinter -o eine Datei oder einen Ordner angeben; auf der "
                       "Standardausgabe steht schon anderes.",
                       "With {}, name a file or a folder behind -o; standard output holds "
                       "something else."},
                      {values.json ? "--json" : "--all-branches"}));
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  platform.recordsets = shop::NewRecordset;
  const NamedPages pages = FindPages(values.pages, values.output);
  if (pages.size() > 1 || pages.front().found) return PreviewPages(values, pages);
  return PreviewRun(values, pages.front().file, values.output, nullptr).Run();
}

}  // namespace

void AddPreviewCommand(CommandLine& line) {
  const auto values = std::make_shared<PreviewValues>();
  line.Add("preview",
           {"Zeigt eine Seite mit den Werten von Datensätzen, so wie ein Empfänger sie sähe.",
            "Shows a page with the values of records, as a recipient would see it."},
           {"kvo preview newsletter.html -o vorschau.html\n"
            "kvo preview newsletter.html -o vorschau/                 alle Datensätze\n"
            "kvo preview newsletter.html --record Anna --width 360 -o schmal.html\n"
            "kvo preview newsletter.html --all-branches -o vorschau   jeder Zweig einmal",
            "kvo preview newsletter.html -o preview.html\n"
            "kvo preview newsletter.html -o previews/                 every record\n"
            "kvo preview newsletter.html --record Anna --width 360 -o narrow.html\n"
            "kvo preview newsletter.html --all-branches -o previews   each branch once"})
      .Arguments("PAGE", values->pages, kPagesToRead, true)
      .Option("--record", "NAME|N", values->record,
              {"nur der Datensatz dieses Namens, oder mit dieser Nummer ab 1",
               "only the record of this name, or with this number from 1"})
      .Flag("--all-branches", values->allBranches,
            {"so wenige Varianten, wie jede Form jeder Bedingung und Liste braucht, mit einer "
             "Tabelle dazu",
             "as few variants as it takes to show each form of every condition and list, with a "
             "table of them"})
      .Option("--width", "N", values->width,
              {"die Seite in einem Rahmen von N Pixeln", "the page in a frame of N pixels"})
      .Option("--office", "FILE", values->office,
              {"die Felder, die Produkte und die Datenbank des Shops; sonst die Felder aus "
               "office.json neben der Seite, wenn es sie gibt",
               "the fields, the products and the database of the shop; else the fields of "
               "office.json beside the page, if it is there"})
      .Option("--records", "FILE", values->records,
              {"die Datensätze; sonst preview.json neben der Seite, sonst ausgedachte Werte",
               "the records; else preview.json beside the page, else made-up values"})
      .Option("-o,--output", "OUT|DIR", values->output,
              {"die Datei, oder ein Ordner für alle Datensätze; „-“ ist die Standardausgabe",
               "the file, or a folder for every record; \"-\" is standard output"})
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Flag("--strict", values->strict,
            {"endet mit 1, wenn etwas fehlt", "ends with 1 when something is missing"})
      .Run([values] { return ShowPreview(*values); });
}

}  // namespace kvo
