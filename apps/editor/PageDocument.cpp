#include "apps/editor/PageDocument.h"

#include <QTextBlock>
#include <algorithm>

#include "apps/editor/Words.h"
#include "common/values/RuntimeError.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

// A character's format holds what it represents, so that undo, redo and moving keep it. The
// properties are texts, not byte arrays, because formats are looked up by a hash of their
// properties.
constexpr int kBytes = QTextFormat::UserProperty + 1;
constexpr int kIsControl = QTextFormat::UserProperty + 2;
// For a block: the line break before it.
constexpr int kLineBreak = QTextFormat::UserProperty + 3;

QString AsText(const QByteArray& bytes) { return QString::fromLatin1(bytes); }

QTextCharFormat FormatOf(const Embedded& part) {
  QTextCharFormat format;
  format.setObjectType(QTextFormat::UserObject);
  format.setProperty(kBytes, AsText(part.bytes));
  if (part.kind == Embedded::Kind::control) format.setProperty(kIsControl, true);
  return format;
}

QString Describe(const ControlLook& look) {
  QString captions;
  for (const Box::Label& label : look.box.labels)
    if (!label.caption.empty()) captions += ' ' + ToQt(label.caption);
  return Text(words::kControlSpoken, {ToQt(look.contract->name)}) + captions +
         (look.id.empty() ? QString() : ", " + ToQt(look.id));
}

}  // namespace

PageDocument::PageDocument(QObject* parent) : QObject(parent) {
  document_.documentLayout();  // creates a layout: without one, a document reports no changes
  connect(&document_, &QTextDocument::contentsChange, this, &PageDocument::ContentsChanged);
  connect(&document_, &QTextDocument::undoCommandAdded, this, &PageDocument::NameStep);
}

void PageDocument::Load(const PageText& text) {
  loading_ = true;
  content_ = text;
  document_.setUndoRedoEnabled(false);
  document_.clear();
  looks_.clear();
  QTextCursor cursor(&document_);
  cursor.beginEditBlock();
  cursor.insertText(text.Text(), QTextCharFormat());
  ApplyFormats(0, text);
  cursor.endEditBlock();
  document_.setUndoRedoEnabled(true);
  loading_ = false;
  steps_.clear();
  ++revision_;
  lastChange_.reset();
  document_.setModified(false);
  if (onChanged) onChanged();
}

void PageDocument::ReplaceAll(const PageText& text, const QString& step) {
  // Leaves equal characters at both ends untouched; embedded ones must have equal bytes.
  const auto same = [&](int old, int fresh) {
    if (content_.Text()[old] != text.Text()[fresh]) return false;
    const Embedded* a = content_.At(old);
    const Embedded* b = text.At(fresh);
    return (a == nullptr) == (b == nullptr) && (a == nullptr || a->bytes == b->bytes);
  };
  const int oldSize = static_cast<int>(content_.Text().size());
  const int newSize = static_cast<int>(text.Text().size());
  int begin = 0;
  while (begin < std::min(oldSize, newSize) && same(begin, begin)) ++begin;
  int tail = 0;
  while (tail < std::min(oldSize, newSize) - begin && same(oldSize - 1 - tail, newSize - 1 - tail))
    ++tail;
  if (begin == oldSize && begin == newSize) return;
  QTextCursor cursor = Range(begin, oldSize - tail);
  PageText middle = text;
  middle.Replace(newSize - tail, tail, {}, {});
  middle.Replace(0, begin, {}, {});
  Insert(cursor, middle, step);
}

void PageDocument::TakeOver(const PageText& text, const QString& step) {
  if (text.Bytes() == content_.Bytes()) return;
  if (text.Text() != content_.Text()) return ReplaceAll(text, step);
  PageText changed = text;
  std::vector<Embedded> parts;
  for (const Embedded& part : text.EmbeddedParts())
    if (const Embedded* old = content_.At(part.position); !old || old->bytes != part.bytes)
      parts.push_back(part);
  changed.Replace(0, static_cast<int>(text.Text().size()), text.Text(), std::move(parts));
  const Step named(*this, step);
  QTextCursor cursor(&document_);
  cursor.beginEditBlock();
  ApplyFormats(0, changed);
  cursor.endEditBlock();
}

bool PageDocument::IsControl(int position) const {
  const Embedded* part = content_.At(position);
  return part != nullptr && part->kind == Embedded::Kind::control;
}

ControlSource PageDocument::SourceAt(int position) const {
  if (!IsControl(position)) throw RuntimeError(ErrorNumber::invalidCall);
  return {content_.At(position)->bytes, content_.Encoding()};
}

std::shared_ptr<const ControlLook> PageDocument::LookAt(int position) const {
  return IsControl(position) ? LookOf(FormatOf(*content_.At(position))) : nullptr;
}

std::shared_ptr<const ControlLook> PageDocument::LookOf(const QTextFormat& format) const {
  if (!format.boolProperty(kIsControl)) return nullptr;
  const QString key = format.stringProperty(kBytes);
  std::shared_ptr<const ControlLook>& known = looks_[key];
  if (known != nullptr) return known;
  const ControlSource source(key.toLatin1(), content_.Encoding());
  auto look = std::make_shared<ControlLook>();
  look->contract = &source.Contract();
  look->id = source.Id();
  look->box = source.Load()->DesignTimeBox();
  look->description = Describe(*look);
  return known = std::move(look);
}

QByteArray PageDocument::BytesOf(const QTextFormat& format) {
  return format.stringProperty(kBytes).toLatin1();
}

bool PageDocument::HasId(const std::string& id) const {
  for (const Embedded& part : content_.EmbeddedParts())
    if (part.kind == Embedded::Kind::control && LookAt(part.position)->id == id) return true;
  return false;
}

std::string PageDocument::FreeId(const std::string& name) const {
  std::size_t number = 1;
  while (HasId(name + std::to_string(number))) ++number;
  return name + std::to_string(number);
}

QTextCursor PageDocument::Range(int begin, int end) {
  QTextCursor cursor(&document_);
  cursor.setPosition(begin);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  return cursor;
}

void PageDocument::Insert(QTextCursor& cursor, const PageText& fragment, const QString& step) {
  const Step named(*this, step);
  cursor.beginEditBlock();
  cursor.removeSelectedText();
  const int start = cursor.position();
  cursor.insertText(fragment.Text(), QTextCharFormat());
  const int end = cursor.position();
  ForgetLineBreaks(start, end);
  ApplyFormats(start, fragment);
  cursor.setPosition(end);
  cursor.endEditBlock();
}

void PageDocument::ReplaceControl(int position, const QByteArray& bytes, const QString& step) {
  PageText control;
  control.Replace(0, 0, QStringView(&kEmbeddedCharacter, 1), {{Embedded::Kind::control, 0, bytes}});
  QTextCursor cursor = Range(position, position + 1);
  Insert(cursor, control, step);
}

void PageDocument::ForgetLineBreaks(int begin, int end) {
  for (QTextBlock block = document_.findBlock(begin).next();
       block.isValid() && block.position() <= end; block = block.next())
    if (block.blockFormat().hasProperty(kLineBreak))
      QTextCursor(block).setBlockFormat(QTextBlockFormat());
}

void PageDocument::ApplyFormats(int start, const PageText& text) {
  for (const Embedded& part : text.EmbeddedParts()) {
    const int position = start + part.position;
    if (part.kind == Embedded::Kind::lineBreak) {
      QTextBlockFormat format;
      format.setProperty(kLineBreak, AsText(part.bytes));
      Range(position + 1, position + 1).setBlockFormat(format);
    } else {
      Range(position, position + 1).setCharFormat(FormatOf(part));
    }
  }
}

void PageDocument::ContentsChanged(int position, int removed, int added) {
  if (loading_) return;
  // The document counts a break after its last character and may report changes that include it.
  const int size = document_.characterCount() - 1;
  const int surplus = position + added - size;
  if (surplus > 0) {
    added -= surplus;
    removed -= surplus;
  }
  content_.Replace(position, removed, Range(position, position + added).selectedText(), {});
  // Joining lines may change the break before the line.
  const int begin = std::max(0, document_.findBlock(position).position() - 1);
  const int end = std::min(size, position + added + 1);
  content_.Replace(begin, end - begin, QString(content_.Text().mid(begin, end - begin)),
                   EmbeddedBetween(begin, end));
  ++revision_;
  lastChange_ = {position, removed, added};
  if (onChanged) onChanged();
}

std::vector<Embedded> PageDocument::EmbeddedBetween(int begin, int end) const {
  std::vector<Embedded> parts;
  for (QTextBlock block = document_.findBlock(begin); block.isValid() && block.position() <= end;
       block = block.next()) {
    const int before = block.position() - 1;
    if (before >= begin && before < end && block.blockFormat().hasProperty(kLineBreak))
      parts.push_back({Embedded::Kind::lineBreak, before - begin,
                       block.blockFormat().stringProperty(kLineBreak).toLatin1()});
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      const QTextFragment fragment = piece.fragment();
      const QTextCharFormat format = fragment.charFormat();
      if (!format.hasProperty(kBytes)) continue;
      // Text typed beside an embedded character may inherit its format; it is still text.
      const QString text = fragment.text();
      for (int at = 0; at < text.size(); ++at) {
        const int position = fragment.position() + at;
        if (text[at] == kEmbeddedCharacter && position >= begin && position < end)
          parts.push_back(
              {format.boolProperty(kIsControl) ? Embedded::Kind::control : Embedded::Kind::bytes,
               position - begin, BytesOf(format)});
      }
    }
  }
  return parts;
}

PageDocument::Step::Step(PageDocument& document, const QString& name)
    : document_(document), former_(std::exchange(document.step_, name)) {}

PageDocument::Step::~Step() { document_.step_ = former_; }

void PageDocument::NameStep() {
  const int end = document_.availableUndoSteps();
  std::erase_if(steps_, [end](const NamedStep& step) { return step.end >= end; });
  steps_.push_back({end, step_.value_or(Text(words::kTyping))});
}

std::vector<PageDocument::NamedStep>::const_iterator PageDocument::NextStep() const {
  const int done = document_.isUndoAvailable() ? document_.availableUndoSteps() : 0;
  return std::ranges::upper_bound(steps_, done, {}, &NamedStep::end);
}

std::vector<PageDocument::NamedStep>::const_iterator PageDocument::LastStep() const {
  const auto next = NextStep();
  return next == steps_.begin() ? steps_.end() : std::prev(next);
}

void PageDocument::Undo() {
  bool more = true;
  while (more && document_.isUndoAvailable()) {
    const auto last = LastStep();
    more = last != steps_.end() && last->name.isEmpty();
    document_.undo();
  }
}

void PageDocument::Redo() {
  bool more = true;
  while (more && document_.isRedoAvailable()) {
    document_.redo();
    const auto next = NextStep();
    more = next != steps_.end() && next->name.isEmpty();
  }
}

QString PageDocument::UndoName() const {
  if (!document_.isUndoAvailable()) return {};
  for (auto step = NextStep(); step != steps_.begin();)
    if (--step; !step->name.isEmpty()) return step->name;
  return Text(words::kTextsStep);
}

QString PageDocument::RedoName() const {
  const auto next = NextStep();
  return document_.isRedoAvailable() && next != steps_.end() ? next->name : QString();
}

}  // namespace kvo::editor
