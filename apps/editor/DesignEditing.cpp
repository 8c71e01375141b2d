#include "apps/editor/DesignEditing.h"

#include <QApplication>
#include <QClipboard>
#include <QScopedValueRollback>
#include <QTextDocumentFragment>
#include <algorithm>

#include "apps/editor/Words.h"
#include "common/values/RuntimeError.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

using namespace std::chrono_literals;

constexpr auto kNoteTime = 8s;
constexpr std::u16string_view kTypedSpace = u"&nbsp;";

struct FormatCommand {
  const char* name;
  const design::Format& format;
};
constexpr FormatCommand kFormats[] = {
    {"bold", design::formats::bold},
    {"italic", design::formats::italic},
    {"underline", design::formats::underline},
};

// The names of the commands' undo steps; all others are typing.
struct StepName {
  const char* command;
  const Localized& step;
};
constexpr StepName kStepNames[] = {
    {"bold", words::kBold},   {"italic", words::kItalic},   {"underline", words::kUnderline},
    {"link", words::kLink},   {"color", words::kTextColor}, {"block", words::kParagraphStyle},
    {"ul", words::kList},     {"ol", words::kList},         {"picture", words::kPicture},
    {"cut", words::kCutStep}, {"lines", words::kPasteStep},
};

}  // namespace

DesignEditing::DesignEditing(SessionUser& user, PageDocument& page, SourceEdit& source,
                             DesignView& view)
    : user_(user), page_(page), source_(source), view_(view) {
  view_.onEdited = [this](const DesignMessage& message, int begin, int end, const QString& text) {
    Edited(message, begin, end, text);
  };
  view_.onCommand = [this](const DesignMessage& message, const QString& name,
                           const QString& value) { Command(message, name, value); };
  view_.onMoved = [this](const DesignMessage& message, const design::RenderedPlace& to) {
    Moved(message, to);
  };
  view_.onSelected = [this](const DesignMessage& message) { Selected(message); };
  view_.onQuietlySelected = [this] { revealing_ = false; };
  QObject::connect(qApp, &QApplication::focusChanged, &receiver_, [this](QWidget*, QWidget* now) {
    if (now == &source_) active_ = false;
    if (now != nullptr && view_.isAncestorOf(now)) active_ = true;
  });
  view_.onAsked = [this](const DesignMessage& message) {
    if (!IsOutdated(message) && rendering_)
      view_.ShowPointer(rendering_->Find(message.from).has_value());
  };
}

void DesignEditing::PageChanged() {
  if (std::exchange(seen_, page_.Revision()) == page_.Revision() || ours_) return;
  since_ = page_.Revision();
  typedSpace_.reset();
  ForgetFormats();
  if (!WriteInView()) TreeChanged();
}

bool DesignEditing::WriteInView() {
  const auto& change = page_.LastChange();
  if (!rendering_ || !change) return false;
  const std::u16string& before = rendering_->Source();
  const QString& after = page_.Content().Text();
  design::Edit edit{static_cast<std::size_t>(change->position),
                    static_cast<std::size_t>(change->position + change->removed),
                    after.mid(change->position, change->added).toStdU16String()};
  // The same character may stand for another control.
  const auto old = std::u16string_view(before).substr(edit.begin, edit.end - edit.begin);
  constexpr char16_t kEmbedded = kEmbeddedCharacter.unicode();
  if (edit.end > before.size() || old.find(kEmbedded) != std::u16string::npos ||
      edit.text.find(kEmbedded) != std::u16string::npos)
    return false;
  std::ranges::replace(edit.text, kLineBreakCharacter.unicode(), u'\n');
  const auto write = rendering_->WriteInText(edit);
  if (write) view_.Write(write->place, QString::fromStdU16String(write->text), page_.Revision());
  return write.has_value();
}

void DesignEditing::TreeChanged() {
  rendering_.reset();
  treeChanges_.push_back(page_.Revision());
}

void DesignEditing::Analysed(const Analysis& analysis) {
  const auto later = std::ranges::upper_bound(treeChanges_, view_.WholeRevision());
  treeChanges_.erase(treeChanges_.begin(), later);
  const bool sameTree = treeChanges_.empty() || treeChanges_.front() > analysis.revision;
  view_.Show(analysis, sameTree && analysis.sameBoxes && view_.WholeRevision() >= 0);
  if (analysis.revision != page_.Revision()) return;
  if (!rendering_ && analysis.rendering) rendering_ = *analysis.rendering;
  if (!wanted_ || !rendering_) return;
  const Wanted wanted = *std::exchange(wanted_, std::nullopt);
  const auto from = rendering_->PlaceOf(static_cast<std::size_t>(wanted.begin));
  const auto to = rendering_->PlaceOf(static_cast<std::size_t>(wanted.end));
  revealing_ = from && to && wanted.quietly;
  if (from && to) view_.Select(*from, *to, wanted.quietly);
  view_.Settle(answered_);
}

bool DesignEditing::IsOutdated(const DesignMessage& message) const {
  return message.revision < since_ || !rendering_;
}

void DesignEditing::Refuse(int number) {
  user_.Note(Text(words::kOnlyInSource), kNoteTime);
  view_.Refuse(number, page_.Revision());
}

// --- inside a text ---

void DesignEditing::Edited(const DesignMessage& message, int begin, int end, const QString& text) {
  answered_ = message.number;
  ForgetFormats();
  if (IsOutdated(message)) return view_.Refuse(message.number, page_.Revision());
  const auto edit = rendering_->ReplaceText(message.from, static_cast<std::size_t>(begin),
                                            static_cast<std::size_t>(end), text.toStdU16String());
  if (!edit) return Refuse(message.number);
  {
    const QScopedValueRollback<bool> ours(ours_, true);
    const PageDocument::Step step(page_,
                                  Text(text.isEmpty() ? words::kDeleteStep : words::kTyping));
    // Without an edit block, so that the letters of a word are one step.
    page_.Range(static_cast<int>(edit->begin), static_cast<int>(edit->end))
        .insertText(QString::fromStdU16String(edit->text), QTextCharFormat());
  }
  if (!rendering_->ApplyInText(*edit)) {
    rendering_->Apply(*edit);
    treeChanges_.push_back(page_.Revision());
  }
  typedSpace_.reset();
  if (edit->text == kTypedSpace) typedSpace_ = static_cast<int>(edit->begin);
}

bool DesignEditing::PrepareInsert(const QString& step) {
  view_.Wait();
  EndTyping();
  QTextCursor cursor = source_.textCursor();
  if (!rendering_ || !cursor.hasSelection()) return false;
  const auto pointAt = [this](int position) -> std::optional<design::Point> {
    const auto place = rendering_->PlaceOf(static_cast<std::size_t>(position));
    return place ? rendering_->Find(*place) : std::nullopt;
  };
  const auto from = pointAt(cursor.selectionStart());
  const auto to = pointAt(cursor.selectionEnd());
  const auto change =
      from && to ? design::Author(*rendering_).Type({*from, *to}, {}) : std::nullopt;
  int caret = cursor.selectionEnd();
  if (change) {
    Make(*change, step);
    caret = static_cast<int>(change->begin);
  }
  source_.setTextCursor(page_.Range(caret, caret));
  return change.has_value();
}

void DesignEditing::EndTyping() {
  const auto space = std::exchange(typedSpace_, std::nullopt);
  const auto size = static_cast<int>(kTypedSpace.size());
  if (!space || source_.textCursor().hasSelection() ||
      source_.textCursor().position() != *space + size)
    return;
  const PageDocument::Step step(page_, QString());  // of the typing before
  page_.Range(*space, *space + size).insertText(" ", QTextCharFormat());
}

// --- commands ---

std::optional<design::Selection> DesignEditing::Find(const DesignMessage& message) {
  const auto from = rendering_->Find(message.from);
  const auto to = rendering_->Find(message.to);
  if (!from || !to || to->next < from->position) return std::nullopt;
  return design::Selection{*from, *to};
}

void DesignEditing::Command(const DesignMessage& message, const QString& name,
                            const QString& value) {
  answered_ = message.number;
  if (name == "undo" || name == "redo") return Step(name == "undo");
  if (IsOutdated(message)) return view_.Refuse(message.number, page_.Revision());
  const auto selection = Find(message);
  if (!selection) return Refuse(message.number);
  const int revision = page_.Revision();
  try {
    const auto change = ChangeFor(*selection, name, value);
    if (change) {
      const auto* row = std::ranges::find(kStepNames, name, &StepName::command);
      const bool deletes = name == "type" && value.isEmpty();
      const Localized& step = deletes                       ? words::kDeleteStep
                              : row == std::end(kStepNames) ? words::kTyping
                                                            : row->step;
      Make(*change, Text(step));
    }
  } catch (const std::exception& failure) {
    user_.Tell(ToQt(FailureText(failure)));
  }
  if (page_.Revision() == revision) view_.Settle(message.number);
}

std::optional<design::Change> DesignEditing::ChangeFor(const design::Selection& selection,
                                                       const QString& name, const QString& value) {
  const design::Author author(*rendering_);
  const std::u16string text = value.toStdU16String();
  for (const FormatCommand& format : kFormats) {
    if (name != format.name) continue;
    auto change = author.Toggle(selection, format.format);
    if (!change && selection.IsCaret()) TurnAround(selection, format.format);
    if (!change && !selection.IsCaret() && author.Has(selection, format.format))
      user_.Note(Text(words::kFormatOfStyle), kNoteTime);
    return change;
  }
  const auto turned = std::exchange(turned_, {});
  if (!turned.empty()) view_.Arm(false);
  if (name == "type") {
    auto change = turned.empty() ? std::nullopt : author.TypeToggled(selection, text, turned);
    if (!change) return author.Type(selection, text);
    if (text != u" " && text != u"\u00A0") LetBreak(*change);
    return change;
  }
  if (name == "enter") return author.Enter(selection);
  if (name == "break") return author.BreakLine(selection);
  if (name == "link") return author.Link(selection, text);
  if (name == "color") return author.Color(selection, text);
  if (name == "block") return author.MakeBlocks(selection, value.toStdString());
  if (name == "ul" || name == "ol") return author.ToggleList(selection, name.toStdString());
  if (name == "picture") return author.Insert(selection, text);
  if (name == "copy" || name == "cut") Copy(selection);
  if (name == "cut") return author.Type(selection, {});
  if (name == "lines") return author.TypeLines(selection, text);
  if (name == "paste" && QGuiApplication::clipboard()->mimeData() != nullptr)
    Paste(selection, *QGuiApplication::clipboard()->mimeData());
  if (name == "fragment") {
    QMimeData dropped;
    dropped.setData(kFragmentType, value.toUtf8());
    Paste(selection, dropped);
  }
  if (name == "tool" && onToolDropped) {
    Mirror(selection);
    onToolDropped(value.toInt());
  }
  return std::nullopt;
}

void DesignEditing::LetBreak(design::Change& change) const {
  if (!typedSpace_ || *typedSpace_ == 0) return;
  const auto begin = static_cast<std::size_t>(*typedSpace_);
  const std::size_t end = begin + kTypedSpace.size();
  const std::u16string_view before = std::u16string_view(rendering_->Source()).substr(0, begin);
  const bool behindWord =
      !before.ends_with(kTypedSpace) && !before.ends_with(u'>') && !QChar::isSpace(before.back());
  if (!behindWord || turnedAt_ != end || change.edits.front().begin < end) return;
  change.edits.insert(change.edits.begin(), {begin, end, u" "});
  change.begin -= kTypedSpace.size() - 1;
  change.end -= kTypedSpace.size() - 1;
}

void DesignEditing::Make(const design::Change& change, const QString& step) {
  const QScopedValueRollback<bool> ours(ours_, true);
  const PageDocument::Step named(page_, step);
  QTextCursor cursor(page_.Document());
  cursor.beginEditBlock();
  for (auto edit = change.edits.rbegin(); edit != change.edits.rend(); ++edit) {
    cursor.setPosition(static_cast<int>(edit->begin));
    cursor.setPosition(static_cast<int>(edit->end), QTextCursor::KeepAnchor);
    cursor.insertText(QString::fromStdU16String(edit->text), QTextCharFormat());
  }
  cursor.endEditBlock();
  since_ = page_.Revision();
  TreeChanged();
  wanted_ = {static_cast<int>(change.begin), static_cast<int>(change.end)};
  if (onUrgent) onUrgent();
}

void DesignEditing::Step(bool back) {
  const QString before = page_.Content().Text();
  back ? page_.Undo() : page_.Redo();
  const Splice change = Difference(before, page_.Content().Text());
  const auto at = static_cast<int>(change.at + change.added.size());
  if (page_.Content().Text() == before) return view_.Settle(answered_);
  wanted_ = {at, at};
  if (onUrgent) onUrgent();
}

void DesignEditing::FollowSource() {
  const QTextCursor cursor = source_.textCursor();
  wanted_ = {cursor.selectionStart(), cursor.selectionEnd()};
  if (onUrgent) onUrgent();
}

void DesignEditing::Reveal(int position) {
  source_.Reveal(position);
  FollowSource();
  wanted_->quietly = true;
  if (const auto box = rendering_ ? rendering_->BoxAt(static_cast<std::size_t>(position))
                                  : std::optional<std::size_t>()) {
    const design::BoxPlace& place = rendering_->Boxes()[*box];
    wanted_->begin = static_cast<int>(place.position);
    wanted_->end = static_cast<int>(place.position + place.length);
  }
}

// --- formats for typing ---

void DesignEditing::TurnAround(const design::Selection& caret, const design::Format& format) {
  turnedAt_ = caret.from.position;
  if (std::erase(turned_, &format) == 0) turned_.push_back(&format);
  view_.Arm(!turned_.empty());
  ShowState(caret);
}

void DesignEditing::ForgetFormats() {
  if (turned_.empty()) return;
  turned_.clear();
  view_.Arm(false);
}

// --- clipboard ---

PageText DesignEditing::Part(const design::Selection& selection) const {
  PageText copied = page_.Content().Part(0, 0);
  for (const design::Author::Piece& piece : design::Author(*rendering_).Copy(selection)) {
    const PageText part =
        page_.Content().Part(static_cast<int>(piece.begin), static_cast<int>(piece.end));
    const auto end = [&copied] { return static_cast<int>(copied.Text().size()); };
    copied.Replace(end(), 0, QString::fromStdU16String(piece.added), {});
    copied.Replace(end(), 0, part.Text(), part.EmbeddedParts());
  }
  return copied;
}

void DesignEditing::Copy(const design::Selection& selection) {
  const PageText copied = Part(selection);
  if (copied.Text().isEmpty()) return;
  std::unique_ptr<QMimeData> mime(SourceEdit::MimeOf(copied, QString()));
  mime->setText(QTextDocumentFragment::fromHtml(mime->html()).toPlainText());
  QGuiApplication::clipboard()->setMimeData(mime.release());
}

void DesignEditing::Paste(const design::Selection& selection, const QMimeData& mime) {
  const design::Author author(*rendering_);
  if (!mime.hasFormat(kFragmentType)) {
    if (const auto change = author.TypeLines(selection, mime.text().toStdU16String()))
      Make(*change, Text(words::kPasteStep));
    return;
  }
  const std::string fragment = mime.data(kFragmentType).toStdString();
  QTextCursor whole(page_.Document());
  whole.beginEditBlock();
  int at = static_cast<int>(selection.from.position);
  if (!selection.IsCaret()) {
    if (const auto change = author.Type(selection, {})) {
      Make(*change, Text(words::kPasteStep));
      at = static_cast<int>(change->begin);
    }
  }
  source_.setTextCursor(page_.Range(at, at));
  source_.InsertFragment(fragment, Text(words::kPasteStep));
  whole.endEditBlock();
  FollowSource();
}

void DesignEditing::Moved(const DesignMessage& message, const design::RenderedPlace& to) {
  answered_ = message.number;
  if (IsOutdated(message)) return view_.Refuse(message.number, page_.Revision());
  const auto selection = Find(message);
  const auto target = rendering_->Find(to);
  if (!selection || !target) return Refuse(message.number);
  const std::size_t at = target->position;
  const bool forward = at >= selection->End();
  const auto removal = design::Author(*rendering_).Type(*selection, {});
  if ((!forward && at > selection->Begin()) || !removal) return view_.Settle(message.number);
  const PageText moved = Part(*selection);
  const PageDocument::Step step(page_, Text(words::kMoveStep));
  QTextCursor cursor(page_.Document());
  cursor.beginEditBlock();
  const auto insert = [&] {
    cursor.setPosition(static_cast<int>(at));
    page_.Insert(cursor, moved, Text(words::kMoveStep));
  };
  // The later place first: the earlier one is then still where it was.
  if (forward) insert();
  const int before = page_.Document()->characterCount();
  Make(*removal, Text(words::kMoveStep));
  const int removed = before - page_.Document()->characterCount();
  if (!forward) insert();
  cursor.endEditBlock();
  const int end = static_cast<int>(at + static_cast<std::size_t>(moved.Text().size()));
  const int shift = forward ? removed : 0;
  wanted_ = {end - static_cast<int>(moved.Text().size()) - shift, end - shift};
}

// --- selection ---

void DesignEditing::Selected(const DesignMessage& message) {
  // What was selected before Reveal() is late.
  const bool late = revealing_ || (wanted_ && wanted_->quietly);
  if (!active_ || message.number != answered_ || IsOutdated(message) || late) return;
  const auto selection = Find(message);
  if (!selection) {
    source_.setTextCursor(page_.Range(static_cast<int>(rendering_->Near(message.from)),
                                      static_cast<int>(rendering_->Near(message.from))));
    user_.Note(Text(words::kOnlyInSource), kNoteTime);
    if (onState) onState({});
    return;
  }
  if (!selection->IsCaret() || selection->from.position != turnedAt_) ForgetFormats();
  Mirror(*selection);
  ShowState(*selection);
}

void DesignEditing::Mirror(const design::Selection& selection) {
  const bool caret = selection.IsCaret();
  source_.setTextCursor(
      page_.Range(static_cast<int>(caret ? selection.from.position : selection.Begin()),
                  static_cast<int>(caret ? selection.from.position : selection.End())));
}

void DesignEditing::ShowState(const design::Selection& selection) {
  if (!onState) return;
  const design::Author author(*rendering_);
  State state;
  const auto has = [&](const design::Format& format) {
    return author.Has(selection, format) != (std::ranges::find(turned_, &format) != turned_.end());
  };
  state.bold = has(design::formats::bold);
  state.italic = has(design::formats::italic);
  state.underline = has(design::formats::underline);
  if (const auto link = author.LinkOf(selection)) state.link = QString::fromStdU16String(*link);
  onState(state);
}

}  // namespace kvo::editor
