#include "apps/editor/WhereUsed.h"

#include <QFileInfo>
#include <QInputDialog>
#include <algorithm>
#include <set>

#include "apps/editor/UsesPanel.h"
#include "apps/editor/Words.h"
#include "document/office/OfficeFile.h"
#include "document/uses/References.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

// The uses of all that a word can mean.
std::vector<uses::Use> UsesOfWord(const std::string& word, const std::vector<uses::Use>& all) {
  const std::vector<uses::Name> meant = uses::NamesMeant(word);
  std::vector<uses::Use> same;
  std::ranges::copy_if(all, std::back_inserter(same), [&](const uses::Use& use) {
    return std::ranges::find(meant, use.name) != meant.end();
  });
  return same;
}

// Whether a place in the page's own text belongs to a reference.
bool Holds(const uses::Use& use, std::size_t offset) {
  if (use.control != uses::Use::kNoControl) return false;
  const bool isPath = use.form == uses::Form::path;
  const std::size_t before = isPath ? uses::Written(use.name).size() - use.name.text.size() + 1 : 0;
  return offset + before >= use.begin && offset <= use.end + (isPath ? 1 : 0);
}

QString Counted(std::size_t count, const Localized& one, const Localized& many) {
  return Text(count == 1 ? one : many, {QString::number(count)});
}
QString CountedPlaces(std::size_t count) {
  return Counted(count, words::kOnePlace, words::kPlaces);
}
QString CountedPages(std::size_t count) { return Counted(count, words::kOnePage, words::kPages); }

// The first few of a list, one on each line.
QString FirstOf(const QStringList& list) {
  constexpr qsizetype kMost = 5;
  return list.mid(0, kMost).join('\n') + (list.size() > kMost ? "\n…" : "");
}

}  // namespace

// What a search finds, gathered in the background.
struct WhereUsed::Uses {
  std::vector<UseRow> rows;
  std::vector<Found> found;
  std::set<QString> pages;
};

// What renaming would do.
struct WhereUsed::Renames {
  uses::Renaming renaming;
  std::vector<page::FileChange> others;  // the pages that are not open
  std::size_t places = 0;
  std::size_t pages = 0;
  QStringList kept;
  QStringList merged;  // the pages that use the new name already
};

WhereUsed::WhereUsed(Session& session, SessionUser& user, SourceEdit& source, UsesPanel& panel,
                     QWidget& window)
    : session_(session), user_(user), source_(source), panel_(panel), window_(window) {
  panel_.onShow = [this](int row, bool goes) { Show(row, goes); };
  panel_.onRename = [this] { Rename(); };
  panel_.onStop = [this] { Stop(); };
}

void WhereUsed::Start(FolderWork::Job job) {
  searching_ = true;
  panel_.Begin(Text(words::kSearchingUses, {word_}));
  job.progress = [this](int pages, int of) { panel_.ShowProgress(pages, of); };
  work_.Start(session_.File().Name(), session_.Page().Content().Bytes(), std::move(job));
}

void WhereUsed::End() {
  searching_ = false;
  panel_.End(heading_, mayRename_);
}

void WhereUsed::Stop() {
  work_.Cancel();
  End();
}

std::vector<QString> WhereUsed::WordsAtCaret() const {
  PageText::Places places;
  const page::Page page(session_.Page().Content().Bytes(places));
  const uses::PageUses all = uses::FindUses(page);
  std::vector<QString> words;
  const auto add = [&](const uses::Use& use) {
    const QString word = ToQt(uses::Written(use.name));
    if (std::ranges::find(words, word) == words.end()) words.push_back(word);
  };
  if (const auto position = source_.CurrentControl()) {
    const std::size_t begin = places.OffsetOf(*position);
    const auto isOfControl = [&](const uses::Use& use) {
      return use.control != uses::Use::kNoControl && all.controls[use.control].begin == begin;
    };
    for (const uses::Use& use : all.uses)
      if (isOfControl(use) && uses::IsField(use.name)) add(use);
    if (!words.empty()) return words;
    for (const uses::Use& use : all.uses)
      if (isOfControl(use) && use.name.kind == uses::Kind::controlId) add(use);
    return words;
  }
  const std::size_t caret = places.OffsetOf(source_.textCursor().position());
  for (const uses::Use& use : all.uses)
    if (Holds(use, caret)) add(use);
  return words;
}

std::optional<QString> WhereUsed::AskForWord(const std::vector<QString>& words, bool all) {
  QStringList choices(words.begin(), words.end());
  if (all) {
    std::set<QString> names;
    const page::Page page(session_.Page().Content().Bytes());
    for (const uses::Use& use : uses::FindUses(page).uses)
      if (uses::IsField(use.name)) names.insert(ToQt(uses::Written(use.name)));
    const office::Office::Description office = session_.Office()->Described();
    for (const auto& [fields, kind] : {std::pair(&office.contactFields, uses::Kind::contactField),
                                       std::pair(&office.orderFields, uses::Kind::orderField)})
      for (const office::Field& field : *fields)
        names.insert(ToQt(uses::Written({kind, field.sqlName})));
    choices.append(QStringList(names.begin(), names.end()));
  }
  bool chosen = false;
  const QString word = QInputDialog::getItem(&window_, Text(words::kWhereUsedTitle),
                                             Text(words::kWhichName), choices, 0, true, &chosen)
                           .trimmed();
  if (!chosen || word.isEmpty()) return std::nullopt;
  return word;
}

void WhereUsed::Ask() {
  std::vector<QString> words = WordsAtCaret();
  if (words.size() == 1) return Search(words.front());
  if (const auto word = AskForWord(words, words.empty())) Search(*word);
}

void WhereUsed::Search(const QString& word) {
  word_ = word;
  found_.clear();
  panel_.Show({});
  heading_ = Text(words::kUsesCancelled);
  mayRename_ = false;
  onShowPanel();
  const auto result = std::make_shared<Uses>();
  Start({[result, name = FromQt(word)](const FolderPage& each, const std::string& bytes) {
           const page::Page page(bytes);
           const uses::PageUses all = uses::FindUses(page);
           std::size_t number = 0;
           for (const uses::Use& use : UsesOfWord(name, all.uses)) {
             QString text = ToQt(uses::Excerpt(page, all.controls, use));
             if (use.control != uses::Use::kNoControl) {
               const page::FoundControl& control = all.controls[use.control];
               text = ToQt(control.id.empty() ? control.className : control.id) + ", " +
                      ToQt(use.property) + ": " + text;
             }
             result->rows.push_back(
                 {each.shown, QString("%1:%2").arg(use.place.line).arg(use.place.column), text});
             result->found.push_back({each.file, number++});
             result->pages.insert(each.file);
           }
         },
         {},
         [this, result](const QStringList& unread) { ShowUses(*result, unread); }});
}

void WhereUsed::ShowUses(const Uses& uses, const QStringList& unread) {
  found_ = uses.found;
  panel_.Show(uses.rows);
  heading_ = uses.rows.empty() ? Text(words::kUsedNowhere, {word_})
                               : Text(words::kUsedIn, {word_, CountedPlaces(uses.rows.size()),
                                                       CountedPages(uses.pages.size())});
  if (!unread.isEmpty()) heading_ += '\n' + FirstOf(unread);
  const bool isClass = uses::NamesMeant(FromQt(word_)).front().kind == uses::Kind::controlClass;
  mayRename_ = !uses.rows.empty() && !isClass;
  End();
}

void WhereUsed::Show(int row, bool goes) {
  if (row < 0 || static_cast<std::size_t>(row) >= found_.size()) return;
  const auto [file, number] = found_[static_cast<std::size_t>(row)];
  if (file != session_.File().Name() && !session_.Open(file)) return;
  PageText::Places places;
  const page::Page page(session_.Page().Content().Bytes(places));
  const uses::PageUses all = uses::FindUses(page);
  const std::vector<uses::Use> same = UsesOfWord(FromQt(word_), all.uses);
  if (same.empty()) return;
  const uses::Use& use = same[std::min(number, same.size() - 1)];
  const bool inControl = use.control != uses::Use::kNoControl;
  onShow(places.PositionOf(inControl ? all.controls[use.control].begin : use.begin), inControl,
         goes);
}

// --- renaming ---

void WhereUsed::Rename() {
  bool chosen = false;
  const QString word =
      QInputDialog::getText(&window_, Text(words::kRenameTitle), Text(words::kNewName, {word_}),
                            QLineEdit::Normal, word_, &chosen);
  if (!chosen || word == word_) return;
  const auto result = std::make_shared<Renames>();
  const bool meant = user_.Guarded([&] {
    result->renaming = uses::RenamingOf(FromQt(word_), FromQt(word));
    return true;
  });
  if (!meant) return;
  Start({[result](const FolderPage& each, const std::string& bytes) {
           const uses::Renamed renamed = uses::Rename(page::Page(bytes), result->renaming);
           for (const uses::KeptUse& kept : renamed.kept)
             result->kept.append(QString("%1:%2:%3: ")
                                     .arg(each.shown)
                                     .arg(kept.use.place.line)
                                     .arg(kept.use.place.column) +
                                 ToQt(kept.why.In(UserLanguage())));
           if (renamed.uses.empty()) return;
           result->places += renamed.uses.size();
           ++result->pages;
           if (!renamed.merged.empty()) result->merged.append(each.shown);
           if (!each.isOpen)
             result->others.push_back(
                 {FileName(each.file), page::Applied(bytes, renamed.edits), bytes});
         },
         {},
         [this, result](const QStringList& unread) {
           End();
           result->kept += unread;
           AskAndRename(*result);
         }});
}

void WhereUsed::AskAndRename(const Renames& renames) {
  const auto [from, to] = renames.renaming;
  const QString newWord = ToQt(uses::Written(to));
  if (!renames.kept.isEmpty()) {
    user_.Tell(Text(words::kCannotRename, {word_, FirstOf(renames.kept)}));
    return;
  }
  const auto office = OfficeChange(renames.renaming);
  QString question = Text(words::kRenameQuestion, {word_, newWord, CountedPlaces(renames.places),
                                                   CountedPages(renames.pages)});
  if (!renames.merged.isEmpty())
    question += "\n\n" + Text(words::kRenameMerges, {newWord, renames.merged.join(", ")});
  if (!renames.others.empty()) question += "\n\n" + Text(words::kRenameWrites);
  std::vector<Answer> answers = {{Answer::Kind::agrees, words::kRename}};
  if (office) {
    question +=
        "\n\n" + Text(words::kRenameInOffice, {QFileInfo(session_.OfficeFile()).fileName()});
    answers.push_back({Answer::Kind::acts, words::kRenameOfficeToo});
  }
  answers.push_back({Answer::Kind::refuses, words::kCancel});
  const std::size_t last = answers.size() - 1;
  const std::size_t answer =
      user_.Ask({question, std::move(answers), 0, !renames.merged.isEmpty()});
  if (answer == last) return;
  const bool written = user_.Guarded([&] {
    std::vector<page::FileChange> changes = renames.others;
    if (office && answer == 1) changes.push_back(*office);
    page::WriteAll(changes);
    return true;
  });
  if (!written) return;
  PageDocument& page = session_.Page();
  const std::string bytes = page.Content().Bytes();
  const page::TextEdits edits = uses::Rename(page::Page(bytes), renames.renaming).edits;
  if (!edits.empty())
    page.ReplaceAll(PageText(page::Applied(bytes, edits), page.Content().LineBreak()),
                    Text(words::kRenameStep, {word_, newWord}));
  Search(newWord);
}

std::optional<page::FileChange> WhereUsed::OfficeChange(const uses::Renaming& renaming) const {
  const QString& file = session_.OfficeFile();
  if (file.isEmpty() || !uses::IsField(renaming.from)) return std::nullopt;
  try {
    const std::string name = FileName(file);
    const std::string contents = page::ReadRegularFile(name, office::kLargestJsonFile);
    const auto edits = [&](const uses::Name& from, const uses::Name& to) {
      return office::RenameField(contents, name,
                                 from.kind == uses::Kind::contactField ? office::FieldList::contact
                                                                       : office::FieldList::order,
                                 from.text, to.text);
    };
    const page::TextEdits made = edits(renaming.from, renaming.to);
    if (made.empty() || !edits(renaming.to, renaming.from).empty()) return std::nullopt;
    return page::FileChange{name, page::Applied(contents, made), contents};
  } catch (const LocalizedError&) {
    return std::nullopt;  // a broken office, which the editor reports elsewhere
  }
}

}  // namespace kvo::editor
