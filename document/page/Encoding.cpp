#include "document/page/Encoding.h"

#include <iconv.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <initializer_list>
#include <system_error>

#include "common/values/Ascii.h"
#include "document/page/CharacterReferences.h"
#include "document/page/Scanner.h"
#include "document/page/Utf8.h"

namespace kvo::page {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";

class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how iconv reports failure
    if (handle_ == reinterpret_cast<iconv_t>(-1))
      throw std::system_error(errno, std::generic_category(), from);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(handle_); }

  // Returns the UTF-32 character of a byte; kNone when there is none.
  char32_t CharacterOf(unsigned char byte) {
    char in = static_cast<char>(byte);
    char32_t character = SingleByteSet::kNone;
    char* from = &in;
    char* to = reinterpret_cast<char*>(&character);
    std::size_t left = 1;
    std::size_t room = sizeof character;
    const bool converted = iconv(handle_, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    return converted && room == 0 ? character : SingleByteSet::kNone;
  }

 private:
  iconv_t handle_;
};

constexpr const char* kNativeUtf32 =
    std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";

const SingleByteSet& Windows1252() {
  static const SingleByteSet set("WINDOWS-1252");
  return set;
}
const SingleByteSet& Latin1() {
  static const SingleByteSet set("ISO-8859-1");
  return set;
}
const SingleByteSet& Latin9() {
  static const SingleByteSet set("ISO-8859-15");
  return set;
}
const SingleByteSet& Ascii() {
  static const SingleByteSet set("US-ASCII");
  return set;
}

struct Served {
  const SingleByteSet& (*set)();  // nullptr: UTF-8
  std::initializer_list<std::string_view> labels;
};

// The names under which pages declare the served encodings. A `meta` that could be read as ASCII
// but names UTF-16 means UTF-8, as in browsers.
const Served kServed[] = {
    {nullptr, {"utf-8", "utf8", "unicode-1-1-utf-8", "utf-16", "utf-16le", "utf-16be"}},
    {Windows1252, {"windows-1252", "cp1252", "x-cp1252"}},
    {Latin1,
     {"iso-8859-1", "iso8859-1", "iso88591", "iso_8859-1", "iso_8859-1:1987", "iso-ir-100",
      "csisolatin1", "latin1", "l1", "cp819", "ibm819"}},
    {Latin9,
     {"iso-8859-15", "iso8859-15", "iso885915", "iso_8859-15", "csisolatin9", "l9", "latin9",
      "latin-9"}},
    {Ascii, {"us-ascii", "ascii"}},
};

std::string_view WithoutSpace(std::string_view text) {
  while (!text.empty() && IsHtmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsHtmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

// Whether the name contains characters that no encoding name has, as every template tag does.
bool IsTemplateTag(std::string_view name) {
  return !std::all_of(name.begin(), name.end(), [](char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || IsHtmlSpace(c) ||
           std::string_view("-_.:+()").find(c) != npos;
  });
}

// Finds an encoding declaration by the rules of HTML, "prescan a byte stream to determine its
// encoding".
class DeclarationFinder {
 public:
  explicit DeclarationFinder(std::string_view start) : text_(start) {}

  struct Declaration {
    std::string name;
    std::size_t offset = 0;
  };

  // Finds the first declaration that is not a template tag; its name is empty when there is none.
  Declaration Find() {
    for (;;) {
      Declaration declaration = FindNext();
      declaration.name = WithoutSpace(declaration.name);
      if (declaration.name.empty() || !IsTemplateTag(declaration.name)) return declaration;
      if (!templateTag_) templateTag_ = declaration;
    }
  }
  // The first template tag passed on the way.
  const std::optional<Declaration>& TemplateTag() const { return templateTag_; }

 private:
  Declaration FindNext() {
    for (;;) {
      at_ = text_.find('<', at_);
      if (at_ == npos) return {};
      if (StartsWith("<!--")) {
        // The dashes of "<!--" may also be those of "-->".
        const std::size_t end = text_.find("-->", at_ + 2);
        if (end == npos) return {};
        at_ = end + 3;
      } else if (StartsWith("<meta") && at_ + 5 < text_.size() &&
                 (IsHtmlSpace(text_[at_ + 5]) || text_[at_ + 5] == '/')) {
        const std::size_t offset = at_;
        at_ += 5;
        std::string name = Meta();
        if (!name.empty() && at_ < text_.size()) return {name, offset};
      } else if (IsTag()) {
        while (at_ < text_.size() && !IsHtmlSpace(text_[at_]) && text_[at_] != '>') ++at_;
        while (NextAttribute()) {
        }
        ++at_;
      } else if (StartsWith("<!") || StartsWith("</") || StartsWith("<?")) {
        at_ = text_.find('>', at_);
        if (at_ == npos) return {};
        ++at_;
      } else {
        ++at_;
      }
    }
  }

  bool StartsWith(std::string_view prefix) const {
    return EqualIgnoringCase(text_.substr(at_, prefix.size()), prefix);
  }

  bool IsTag() const {
    const std::size_t name = at_ + 1 < text_.size() && text_[at_ + 1] == '/' ? at_ + 2 : at_ + 1;
    return name < text_.size() && IsLetter(text_[name]);
  }

  std::string Meta() {
    bool isContentType = false;
    std::string fromContent;
    std::string charset;
    std::vector<std::string> seen;
    while (NextAttribute()) {
      const std::string name = Lowered(name_);
      if (std::find(seen.begin(), seen.end(), name) != seen.end()) continue;
      seen.push_back(name);
      if (name == "http-equiv") {
        isContentType = Lowered(value_) == "content-type";
      } else if (name == "content" && charset.empty()) {
        fromContent = CharsetIn(Lowered(value_));
      } else if (name == "charset") {
        charset = Lowered(value_);
      }
    }
    if (!charset.empty()) return charset;
    return isContentType ? fromContent : std::string();
  }

  // Returns NAME from "text/html; charset=NAME".
  static std::string CharsetIn(std::string_view content) {
    constexpr std::string_view kWord = "charset";
    for (std::size_t at = 0;;) {
      at = content.find(kWord, at);
      if (at == npos) return {};
      at += kWord.size();
      while (at < content.size() && IsHtmlSpace(content[at])) ++at;
      if (at >= content.size() || content[at] != '=') continue;
      ++at;
      while (at < content.size() && IsHtmlSpace(content[at])) ++at;
      if (at >= content.size()) return {};
      if (content[at] == '"' || content[at] == '\'') {
        const std::size_t end = content.find(content[at], at + 1);
        if (end == npos) return {};
        return std::string(content.substr(at + 1, end - at - 1));
      }
      const std::size_t end = content.find_first_of("; \t\n\r\f", at);
      return std::string(content.substr(at, end - at));
    }
  }

  // Reads one attribute; false at the end of the tag.
  bool NextAttribute() {
    value_ = {};
    while (at_ < text_.size() && (IsHtmlSpace(text_[at_]) || text_[at_] == '/')) ++at_;
    if (at_ >= text_.size() || text_[at_] == '>') return false;
    const std::size_t name = at_;
    const auto nameEnds = [&](char c) {
      return IsHtmlSpace(c) || c == '/' || c == '>' || (c == '=' && at_ > name);
    };
    while (at_ < text_.size() && !nameEnds(text_[at_])) ++at_;
    name_ = text_.substr(name, at_ - name);
    SkipSpace();
    if (at_ >= text_.size() || text_[at_] != '=') return true;
    ++at_;
    SkipSpace();
    if (at_ >= text_.size()) return false;
    std::size_t value = at_;
    if (const char quote = text_[at_]; quote == '"' || quote == '\'') {
      at_ = std::min(text_.find(quote, ++value), text_.size());
      if (at_ == text_.size()) return false;
      value_ = text_.substr(value, at_ - value);
      ++at_;
      return true;
    }
    while (at_ < text_.size() && !IsHtmlSpace(text_[at_]) && text_[at_] != '>') ++at_;
    value_ = text_.substr(value, at_ - value);
    return true;
  }

  void SkipSpace() {
    while (at_ < text_.size() && IsHtmlSpace(text_[at_])) ++at_;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string_view name_;  // of the attribute, as written in the page
  std::string_view value_;
  std::optional<Declaration> templateTag_;
};

}  // namespace

SingleByteSet::SingleByteSet(const char* iconvName) {
  Converter converter(kNativeUtf32, iconvName);
  for (unsigned byte = 0; byte < decode_.size(); ++byte) {
    decode_[byte] = converter.CharacterOf(static_cast<unsigned char>(byte));
    if (byte >= 0x80 && decode_[byte] != kNone)
      encode_.push_back({decode_[byte], static_cast<unsigned char>(byte)});
  }
  std::sort(encode_.begin(), encode_.end(),
            [](const Row& a, const Row& b) { return a.character < b.character; });
}

int SingleByteSet::Encode(char32_t character) const {
  if (character < 0x80) return static_cast<int>(character);
  const auto row =
      std::lower_bound(encode_.begin(), encode_.end(), character,
                       [](const Row& each, char32_t wanted) { return each.character < wanted; });
  return row != encode_.end() && row->character == character ? row->byte : -1;
}

PageEncoding PageEncoding::Of(std::string_view page) {
  if (auto declared = Declared(page)) return *std::move(declared);
  return Undeclared(FindInvalidUtf8(page) == npos);
}

PageEncoding PageEncoding::Undeclared(bool isValidUtf8) {
  PageEncoding encoding;
  if (!isValidUtf8) {
    encoding.kind_ = Kind::singleByte;
    encoding.set_ = &Windows1252();
    encoding.name_ = "windows-1252";
  }
  return encoding;
}

std::optional<PageEncoding> PageEncoding::Declared(std::string_view page) {
  PageEncoding encoding;
  encoding.declared_ = true;
  if (page.starts_with(kUtf8Mark)) return encoding;
  if (page.starts_with(kUtf16LittleMark) || page.starts_with(kUtf16BigMark)) {
    encoding.kind_ = Kind::utf16;
    encoding.name_ = page.starts_with(kUtf16LittleMark) ? "utf-16le" : "utf-16be";
    return encoding;
  }
  const std::string name = DeclarationFinder(page.substr(0, kDeclarationReach)).Find().name;
  if (name.empty()) return std::nullopt;
  const auto* served =
      std::find_if(std::begin(kServed), std::end(kServed), [&](const Served& each) {
        return std::find(each.labels.begin(), each.labels.end(), name) != each.labels.end();
      });
  if (served == std::end(kServed)) {
    encoding.kind_ = Kind::other;
    encoding.name_ = name;
  } else if (served->set != nullptr) {
    encoding.kind_ = Kind::singleByte;
    encoding.set_ = &served->set();
    encoding.name_ = name;
  }
  return encoding;
}

std::optional<PageEncoding::VoidDeclaration> PageEncoding::FindVoidDeclaration(
    std::string_view page) {
  // Scans quickly first, since most pages, large ones too, have none.
  bool mayHaveOne = false;
  for (std::size_t at = 0; !mayHaveOne; ++at) {
    at = page.find('<', at);
    if (at == npos) return std::nullopt;
    if (!IsTagAt(page, at, "<", "meta")) continue;
    DeclarationFinder near(page.substr(at, page.find('>', at) - at + 1));
    mayHaveOne = !near.Find().name.empty() || near.TemplateTag();
  }
  DeclarationFinder finder(page);
  const DeclarationFinder::Declaration found = finder.Find();
  if (finder.TemplateTag())
    return VoidDeclaration{finder.TemplateTag()->name, finder.TemplateTag()->offset, false};
  if (found.name.empty()) return std::nullopt;
  return VoidDeclaration{found.name, found.offset, true};
}

bool PageEncoding::IsReadAsWindows1252() const {
  return set_ != nullptr && (set_ == &Latin1() || set_ == &Ascii());
}

bool PageEncoding::IsInWindows1252(char32_t character) {
  return Windows1252().Encode(character) >= 0;
}

std::size_t PageEncoding::Mark(std::string_view page) {
  return page.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
}

std::size_t PageEncoding::CharacterLength(std::string_view bytes) const {
  if (!IsUtf8()) return 1;
  const std::size_t length = FirstUtf8Character(bytes).length;
  return length == 0 ? 1 : length;
}

std::size_t PageEncoding::Decode(std::string_view bytes, std::string& utf8, bool references) const {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto byte = static_cast<unsigned char>(bytes[at]);
    if (byte == '&' && references) {
      const std::size_t length = AppendCharacterReference(bytes.substr(at), utf8);
      if (length == 0) utf8 += '&';
      at += std::max<std::size_t>(length, 1);
    } else if (byte < 0x80) {
      utf8 += static_cast<char>(byte);
      ++at;
    } else if (set_ != nullptr) {
      const char32_t character = set_->Decode(byte);
      if (character == SingleByteSet::kNone) return at;
      AppendUtf8(utf8, character);
      ++at;
    } else {
      const std::size_t length = FirstUtf8Character(bytes.substr(at)).length;
      if (length == 0) return at;
      utf8 += bytes.substr(at, length);
      at += length;
    }
  }
  return npos;
}

bool PageEncoding::Encode(char32_t character, std::string& bytes) const {
  if (set_ == nullptr) {
    AppendUtf8(bytes, character);
    return true;
  }
  const int byte = set_->Encode(character);
  if (byte < 0) return false;
  bytes += static_cast<char>(byte);
  return true;
}

}  // namespace kvo::page
