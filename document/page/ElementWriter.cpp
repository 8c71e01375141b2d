#include "document/page/ElementWriter.h"

#include <array>
#include <charconv>
#include <vector>

#include "document/page/Scanner.h"
#include "document/page/Utf8.h"
#include "host/registration/classes.h"

namespace kvo::page {
namespace {

// Bytes that are written into a value unchanged, whatever their neighbours are.
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 0; byte < 0x80; ++byte) plain[byte] = true;
  for (const char c : {'&', '<', '>', '"', '-', '\r', '\n', '\t'})
    plain[static_cast<unsigned char>(c)] = false;
  return plain;
}();

constexpr std::string_view kParamEnd = "\">";
constexpr std::string_view kElementEnd = "</object>";

std::string Hexadecimal(unsigned number, std::size_t digits) {
  std::string text(8, '0');
  for (std::size_t at = text.size(); at-- > 0; number >>= 4U)
    text[at] = "0123456789ABCDEF"[number & 0xFU];
  const std::size_t first = text.find_first_not_of('0');
  return text.substr(std::min(first, text.size() - digits));
}

Unwritable InvalidByte(char byte) {
  return {"0x" + Hexadecimal(static_cast<unsigned char>(byte), 2), 0};
}
void AppendNumber(std::string& text, std::size_t number) {
  std::array<char, 20> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

// Appends a numeric reference. Fails for 0x80 to 0x9F, which HTML reads as other characters.
bool AppendReference(char32_t character, std::string& page) {
  if (character >= 0x80 && character <= 0x9F) return false;
  page += "&#";
  AppendNumber(page, character);
  page += ';';
  return true;
}

void AppendMarkup(char c, bool besideDash, std::string& page) {
  switch (c) {
    case '&':
      page += "&amp;";
      break;
    case '<':
      page += "&lt;";
      break;
    case '>':
      page += "&gt;";
      break;
    case '"':
      page += "&quot;";
      break;
    case '-':
      page += besideDash ? "&#45;" : "-";
      break;
    default:
      AppendReference(static_cast<unsigned char>(c), page);
  }
}

// Returns how many leading bytes of the value can be written unchanged.
std::size_t PlainPrefix(std::string_view value) {
  std::size_t at = 0;
  while (at < value.size() && kPlain[static_cast<unsigned char>(value[at])]) ++at;
  return at;
}

}  // namespace

Unwritable NotHeld(char32_t character) {
  std::string text = "U+" + Hexadecimal(static_cast<unsigned>(character), 4);
  if (character >= 0xA0) {
    text += " \"";
    AppendUtf8(text, character);
    text += '"';
  }
  return {text, character};
}

std::optional<Unwritable> AppendAttributeValue(std::string_view value, const PageEncoding& encoding,
                                               std::string& page) {
  std::size_t copied = 0;
  for (std::size_t at = 0;;) {
    at += PlainPrefix(value.substr(at));
    page.append(value.data() + copied, at - copied);
    if (at == value.size()) return std::nullopt;
    if (static_cast<unsigned char>(value[at]) < 0x80) {
      const bool besideDash =
          (at > 0 && value[at - 1] == '-') || (at + 1 < value.size() && value[at + 1] == '-');
      AppendMarkup(value[at], besideDash, page);
      ++at;
    } else {
      const auto [character, length] = FirstUtf8Character(value.substr(at));
      if (length == 0) return InvalidByte(value[at]);
      if (!encoding.Encode(character, page) && !AppendReference(character, page))
        return NotHeld(character);
      at += length;
    }
    copied = at;
  }
}

std::optional<Unwritable> AppendText(std::string_view text, const PageEncoding& encoding,
                                     std::string& page) {
  for (std::size_t at = 0;;) {
    const std::size_t ascii = AsciiPrefix(text.substr(at));
    page += text.substr(at, ascii);
    at += ascii;
    if (at == text.size()) return std::nullopt;
    const auto [character, length] = FirstUtf8Character(text.substr(at));
    if (length == 0) return InvalidByte(text[at]);
    if (!encoding.Encode(character, page)) return NotHeld(character);
    at += length;
  }
}

void ElementWriter::Begin(const ControlClass& contract, std::optional<std::string_view> id) {
  text_.clear();
  failure_.reset();
  if (contract_ != &contract) {
    contract_ = &contract;
    classBegin_ = "<object classid=\"progid:";
    classBegin_ += kLibraryName;
    classBegin_ += '.';
    classBegin_ += contract.name;
    classBegin_ += '"';
    paramBegins_.clear();
    for (const PropertyRow& row : contract.bag) {
      BeginParam(row.key);
      paramBegins_.push_back(text_);
      text_.clear();
    }
  }
  text_ = classBegin_;
  startTagOpen_ = true;
  if (id) Attribute("id", id);
}

void ElementWriter::Attribute(std::string_view name, std::optional<std::string_view> value) {
  text_ += ' ';
  text_ += name;
  // Keeps a name that ends in dashes from meeting the ">" of its tag.
  if (!value && name.find("--") == npos) return;
  text_ += "=\"";
  Value(value.value_or(std::string_view()));
  text_ += '"';
}

void ElementWriter::Param(std::string_view key, std::string_view value) {
  CloseStartTag();
  BeginParam(key);
  Value(value);
  text_ += kParamEnd;
}

void ElementWriter::Param(std::size_t row, std::string_view value) {
  CloseStartTag();
  text_ += paramBegins_[row];
  Value(value);
  text_ += kParamEnd;
}

void ElementWriter::End() {
  CloseStartTag();
  text_ += kElementEnd;
}

void ElementWriter::BeginParam(std::string_view key) {
  text_ += "<param name=\"";
  Value(key);
  text_ += "\" value=\"";
}

void ElementWriter::Value(std::string_view value) {
  if (PlainPrefix(value) == value.size()) {
    text_ += value;
    return;
  }
  if (auto failure = AppendAttributeValue(value, encoding_, text_); failure && !failure_)
    failure_ = std::move(failure);
}

void ElementWriter::CloseStartTag() {
  if (startTagOpen_) text_ += '>';
  startTagOpen_ = false;
}

std::size_t SpanNumber(std::string_view text) {
  std::size_t at = text.find(kSpanEnd);
  if (at == npos) return 1;
  // At most as many numbers are taken as there are end comments; greater ones do not matter.
  std::vector<bool> taken(text.size() / kSpanEnd.size() + 2);
  for (; at != npos; at = text.find(kSpanEnd, at + 1)) {
    std::string_view rest = text.substr(at + kSpanEnd.size());
    if (!rest.starts_with(' ')) continue;
    rest.remove_prefix(1);
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error != std::errc() || rest.starts_with('0')) continue;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (rest.starts_with(kCommentEnd) && number < taken.size()) taken[number] = true;
  }
  std::size_t number = 1;
  while (number < taken.size() && taken[number]) ++number;
  return number;
}

std::string SpanBegin(std::size_t number) {
  std::string comment(kSpanStart);
  comment += ' ';
  AppendNumber(comment, number);
  comment += ' ';
  return comment;
}

std::string EndComment(std::size_t number) {
  std::string comment(kSpanEnd);
  comment += ' ';
  AppendNumber(comment, number);
  comment += kCommentEnd;
  return comment;
}

}  // namespace kvo::page
