#include "apps/editor/PageText.h"

#include <algorithm>
#include <array>

#include "apps/editor/ControlSource.h"
#include "document/page/Page.h"
#include "document/page/Utf8.h"

namespace kvo::editor {
namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kLineSeparator = 0x2028;

// Whether a text widget drops, changes or reinterprets the character.
bool IsOdd(char16_t c) {
  if (c < 0x20) return c != '\t';
  return c == 0x7F || c == kLineSeparator || c == kLineBreakCharacter || c == kEmbeddedCharacter ||
         c == kByteOrderMark || (c >= 0xFDD0 && c <= 0xFDEF) || c >= 0xFFFE;
}

QByteArray UsualLineBreak(std::string_view page) {
  std::array<std::size_t, 3> counts{};  // CR LF, LF, CR
  for (std::size_t at = page.find_first_of("\r\n"); at != std::string_view::npos;
       at = page.find_first_of("\r\n", at + 1)) {
    const bool both = page.substr(at, 2) == "\r\n";
    ++counts[both ? 0 : page[at] == '\n' ? 1 : 2];
    if (both) ++at;
  }
  constexpr std::array<const char*, 3> kBreaks = {"\r\n", "\n", "\r"};
  const auto most = std::ranges::max_element(counts);
  return *most == 0 ? "\n" : kBreaks[static_cast<std::size_t>(most - counts.begin())];
}

// Unsupported encodings are read and written as UTF-8.
bool IsWrittenAsUtf8(const page::PageEncoding& encoding) {
  return encoding.kind() != page::PageEncoding::Kind::singleByte;
}

// Whether a control can be shown as its box.
bool CanBeLoaded(const page::FoundControl& found) {
  if (found.broken || found.contract == nullptr) return false;
  try {
    page::Load(*found.contract, found.bag);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

class PageText::Reader {
 public:
  explicit Reader(PageText& text) : text_(text) {}

  void Read(const page::Page& page) {
    const std::string_view bytes = page.Bytes();
    std::size_t at = static_cast<std::size_t>(text_.mark_.size());
    for (const page::FoundControl& found : page::Inspect(page).controls) {
      if (!CanBeLoaded(found)) continue;
      ReadText(bytes.substr(at, found.begin - at));
      Embed(Embedded::Kind::control, bytes.substr(found.begin, found.end - found.begin));
      at = found.end;
    }
    ReadText(bytes.substr(at));
  }

 private:
  void ReadText(std::string_view bytes) {
    while (!bytes.empty()) {
      utf8_.clear();
      const std::size_t bad = text_.encoding_.Decode(bytes, utf8_);
      ReadCharacters(QString::fromUtf8(utf8_.data(), static_cast<qsizetype>(utf8_.size())));
      if (bad == std::string_view::npos) return;
      std::size_t end = bad + 1;
      for (; end < bytes.size() && end - bad < kLongestRun; ++end) {
        utf8_.clear();
        if (text_.encoding_.Decode(bytes.substr(end, 1), utf8_) == std::string_view::npos ||
            IsStart(bytes.substr(end)))
          break;
      }
      Embed(Embedded::Kind::bytes, bytes.substr(bad, end - bad));
      bytes.remove_prefix(end);
    }
  }

  // Whether the bytes begin with a whole character.
  bool IsStart(std::string_view bytes) {
    const std::size_t length = text_.encoding_.CharacterLength(bytes);
    utf8_.clear();
    return text_.encoding_.Decode(bytes.substr(0, length), utf8_) == std::string_view::npos;
  }

  void ReadCharacters(QStringView characters) {
    // Here, a byte order mark at the start is a character; the conversion would drop it.
    if (utf8_.starts_with("\xEF\xBB\xBF")) Embed(Embedded::Kind::bytes, "\xEF\xBB\xBF");
    while (!characters.isEmpty()) {
      const auto odd = std::ranges::find_if(characters, [](QChar c) { return IsOdd(c.unicode()); });
      text_.text_ += characters.first(odd - characters.begin());
      characters = characters.sliced(odd - characters.begin());
      if (characters.isEmpty()) return;
      const bool crLf = characters.startsWith(u"\r\n");
      if (crLf || characters[0] == u'\n' || characters[0] == u'\r')
        Break(crLf ? "\r\n" : characters[0] == u'\n' ? "\n" : "\r");
      else
        EmbedCharacter(characters[0].unicode());
      characters = characters.sliced(crLf ? 2 : 1);
    }
  }

  void Break(const QByteArray& bytes) {
    if (bytes != text_.lineBreak_)
      text_.embedded_.push_back({Embedded::Kind::lineBreak, Position(), bytes});
    text_.text_ += kLineBreakCharacter;
  }

  void EmbedCharacter(char16_t character) {
    std::string bytes;
    if (IsWrittenAsUtf8(text_.encoding_) || !text_.encoding_.Encode(character, bytes))
      page::AppendUtf8(bytes, character);
    Embed(Embedded::Kind::bytes, bytes);
  }

  void Embed(Embedded::Kind kind, std::string_view bytes) {
    text_.embedded_.push_back({kind, Position(), ToBytes(bytes)});
    text_.text_ += kEmbeddedCharacter;
  }

  int Position() const { return static_cast<int>(text_.text_.size()); }

  static constexpr std::size_t kLongestRun = 16;
  PageText& text_;
  std::string utf8_;
};

class PageText::Writer {
 public:
  Writer(const PageText& text, std::string& bytes, std::vector<Places::Mark>* marks)
      : text_(text), bytes_(bytes), marks_(marks) {}

  void Write() {
    bytes_.append(text_.mark_.constData(), static_cast<std::size_t>(text_.mark_.size()));
    for (const Embedded& part : text_.embedded_) {
      WriteCharacters(part.position);
      MarkHere();
      bytes_.append(part.bytes.constData(), static_cast<std::size_t>(part.bytes.size()));
      ++position_;
    }
    WriteCharacters(static_cast<int>(text_.text_.size()));
    MarkHere();
  }

  // Continues from a mark, up to a position or until there are enough bytes.
  void Resume(const Places::Mark& mark) {
    position_ = mark.position;
    marks_ = nullptr;
  }
  void WriteCharacters(int end, std::size_t enough = static_cast<std::size_t>(-1)) {
    const QChar* const characters = text_.text_.constData();
    while (position_ < end && bytes_.size() < enough) {
      if (marks_ != nullptr && position_ >= nextMark_) MarkHere();
      char32_t character = characters[position_].unicode();
      ++position_;
      if (character < 0x80) {
        bytes_ += static_cast<char>(character);
        continue;
      }
      if (character == kLineBreakCharacter.unicode()) {
        bytes_.append(text_.lineBreak_.constData(),
                      static_cast<std::size_t>(text_.lineBreak_.size()));
        continue;
      }
      if (QChar::isSurrogate(character)) {
        const bool pair = QChar::isHighSurrogate(character) && position_ < text_.text_.size() &&
                          characters[position_].isLowSurrogate();
        if (pair)
          character = QChar::surrogateToUcs4(static_cast<char16_t>(character),
                                             characters[position_++].unicode());
        else
          character = page::kReplacementCharacter;
      }
      WriteCharacter(character);
    }
  }
  int Position() const { return position_; }

 private:
  void WriteCharacter(char32_t character) {
    if (IsWrittenAsUtf8(text_.encoding_))
      page::AppendUtf8(bytes_, character);
    else if (!text_.encoding_.Encode(character, bytes_))
      bytes_ += "&#" + std::to_string(static_cast<std::uint32_t>(character)) + ';';
  }
  void MarkHere() {
    if (marks_ == nullptr) return;
    marks_->push_back({position_, bytes_.size()});
    nextMark_ = position_ + kCharactersPerMark;
  }

  static constexpr int kCharactersPerMark = 4096;
  const PageText& text_;
  std::string& bytes_;
  std::vector<Places::Mark>* marks_;
  int position_ = 0;
  int nextMark_ = 0;
};

PageText::PageText(const std::string& page, const QByteArray& lineBreak) {
  const page::Page whole(page);
  encoding_ = whole.Encoding();
  mark_ = ToBytes(std::string_view(page).substr(0, page::PageEncoding::Mark(page)));
  lineBreak_ = lineBreak.isEmpty() ? UsualLineBreak(page) : lineBreak;
  Reader(*this).Read(whole);
}

PageText PageText::OfFragment(std::string_view fragment, const page::PageEncoding& encoding) {
  // Reads the fragment, which declares no encoding, as UTF-8, then converts each control to the
  // encoding of the target page.
  PageText text;
  text.lineBreak_ = UsualLineBreak(fragment);
  std::string bytes = "<meta charset=utf-8>";
  const std::size_t declaration = bytes.size();
  bytes += fragment;
  Reader(text).Read(page::Page(std::move(bytes)));
  text.Replace(0, static_cast<int>(declaration), {}, {});
  text.encoding_ = encoding;
  for (Embedded& part : text.embedded_)
    if (part.kind == Embedded::Kind::control)
      part.bytes = ControlSource(part.bytes, {}).InEncoding(encoding);
  return text;
}

const Embedded* PageText::At(int position) const {
  const auto part = std::ranges::lower_bound(embedded_, position, {}, &Embedded::position);
  return part != embedded_.end() && part->position == position ? &*part : nullptr;
}

void PageText::Replace(int position, int length, QStringView text, std::vector<Embedded> embedded) {
  text_.replace(position, length, text.data(), text.size());
  const auto begin = std::ranges::lower_bound(embedded_, position, {}, &Embedded::position);
  const auto end = std::ranges::lower_bound(embedded_, position + length, {}, &Embedded::position);
  const int moved = static_cast<int>(text.size()) - length;
  if (moved != 0)
    for (auto behind = end; behind != embedded_.end(); ++behind) behind->position += moved;
  for (Embedded& part : embedded) part.position += position;
  const auto at = embedded_.erase(begin, end);
  embedded_.insert(at, std::make_move_iterator(embedded.begin()),
                   std::make_move_iterator(embedded.end()));
}

std::string PageText::Bytes() const {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(text_.size()) + 512 * embedded_.size());
  Writer(*this, bytes, nullptr).Write();
  return bytes;
}

std::string PageText::Bytes(Places& places) const {
  std::string bytes;
  places.text_ = this;
  places.marks_.clear();
  places.lineStarts_ = {0};
  for (qsizetype at = text_.indexOf(kLineBreakCharacter); at >= 0;
       at = text_.indexOf(kLineBreakCharacter, at + 1))
    places.lineStarts_.push_back(static_cast<int>(at) + 1);
  Writer(*this, bytes, &places.marks_).Write();
  return bytes;
}

std::string PageText::Fragment() const {
  PageText copy = *this;
  copy.encoding_ = {};
  copy.mark_.clear();
  copy.lineBreak_ = "\n";
  for (Embedded& part : copy.embedded_)
    if (part.kind == Embedded::Kind::control)
      part.bytes = ControlSource(part.bytes, encoding_).InEncoding(copy.encoding_);
  return copy.Bytes();
}

PageText PageText::Part(int begin, int end) const {
  PageText part = *this;
  part.Replace(end, static_cast<int>(text_.size()) - end, {}, {});
  part.Replace(0, begin, {}, {});
  return part;
}

std::size_t PageText::Places::OffsetOf(int position) const {
  auto mark = std::ranges::upper_bound(marks_, position, {}, &Mark::position);
  if (mark != marks_.begin()) --mark;
  if (mark->position >= position) return mark->offset;
  std::string bytes;
  Writer writer(*text_, bytes, nullptr);
  writer.Resume(*mark);
  if (const Embedded* part = text_->At(mark->position)) {
    bytes.append(part->bytes.constData(), static_cast<std::size_t>(part->bytes.size()));
    writer.Resume({mark->position + 1, 0});
  }
  writer.WriteCharacters(position);
  return mark->offset + bytes.size();
}

int PageText::Places::PositionOf(std::size_t offset) const {
  auto mark = std::ranges::upper_bound(marks_, offset, {}, &Mark::offset);
  if (mark != marks_.begin()) --mark;
  if (mark->offset >= offset) return mark->position;
  std::string bytes;
  Writer writer(*text_, bytes, nullptr);
  writer.Resume(*mark);
  if (const Embedded* part = text_->At(mark->position)) {
    // Any byte of an embedded part belongs to its character.
    const auto size = static_cast<std::size_t>(part->bytes.size());
    if (offset - mark->offset < size) return mark->position;
    bytes.append(size, ' ');
    writer.Resume({mark->position + 1, 0});
  }
  const auto next = std::next(mark);
  const int end = next == marks_.end() ? static_cast<int>(text_->text_.size()) : next->position;
  writer.WriteCharacters(end, offset - mark->offset);
  return writer.Position();
}

page::Place PageText::Places::PlaceOf(int position) const {
  const auto next = std::ranges::upper_bound(lineStarts_, position);
  return {static_cast<std::size_t>(next - lineStarts_.begin()),
          static_cast<std::size_t>(position - *std::prev(next)) + 1};
}

}  // namespace kvo::editor
