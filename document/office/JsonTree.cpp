#include "document/office/JsonTree.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "document/page/Utf8.h"

namespace kvo::office {
namespace {

using nlohmann::json;

// Our files nest five levels at most; deeper nesting is a mistake.
constexpr std::size_t kDeepest = 100;

class TreeBuilder {
 public:
  // The parser's events carry no position; it is derived from how much of `in` was read.
  TreeBuilder(std::string_view text, std::istream& in) : text_(text), in_(*in.rdbuf()) {}

  bool null() { return Leaf({}); }
  bool boolean(bool value) { return Leaf({.kind = JsonNode::Kind::flag, .flag = value}); }
  bool number_integer(json::number_integer_t value) {
    return Leaf(
        {.kind = JsonNode::Kind::integer, .integer = value, .number = static_cast<double>(value)});
  }
  bool number_unsigned(json::number_unsigned_t value) {
    constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
    return Leaf({.kind = JsonNode::Kind::integer,
                 .integer = value > static_cast<std::uint64_t>(kLargest)
                                ? kLargest
                                : static_cast<std::int64_t>(value),
                 .number = static_cast<double>(value)});
  }
  bool number_float(json::number_float_t value, const std::string&) {
    return Leaf({.kind = JsonNode::Kind::number, .number = value});
  }
  bool string(std::string& value) {
    return Leaf({.kind = JsonNode::Kind::text, .text = std::move(value)});
  }
  bool binary(json::binary_t&) { return false; }  // not in JSON text
  bool start_object(std::size_t) { return Open(JsonNode::Kind::object); }
  bool start_array(std::size_t) { return Open(JsonNode::Kind::list); }
  bool end_object() { return Close(); }
  bool end_array() { return Close(); }
  bool key(std::string& name) {
    key_ = std::move(name);
    keyAt_ = TokenStart();
    return true;
  }

  bool parse_error(std::size_t position, const std::string& token, const json::exception& error) {
    const std::size_t at = std::min(position > 0 ? position - 1 : 0, text_.size());
    constexpr int kNumberOutOfRange = 406;
    if (error.id == kNumberOutOfRange)
      throw JsonError{TokenStart(),
                      {"Diese Zahl ist zu groß. Berichtigen Sie sie.",
                       "This number is too large. Correct it."}};
    if (text_.find_first_not_of(" \t\r\n") == std::string_view::npos)
      throw JsonError{text_.size(),
                      {"Die Datei ist leer. Sie muss mindestens {} enthalten.",
                       "The file is empty. It has to hold at least {}."}};
    if (at >= text_.size())
      throw JsonError{text_.size(),
                      {"Die Datei endet zu früh: eine Klammer oder ein Anführungszeichen fehlt.",
                       "The file ends too early: a bracket or a quotation mark is missing."}};
    if (text_[at] == '"' || IsWrongText(error))
      ThrowWrongText(at + 1 - std::min(at + 1, Length(token)));
    const std::size_t start = WordStart(at);
    if (IsRestOfText(start)) ThrowWrongText(start);
    const std::size_t end = CharacterEnd(CharacterStart(at));
    const std::string shown = '\'' + std::string(text_.substr(start, end - start)) + '\'';
    throw JsonError{start,
                    {"Hier kann " + shown +
                         " nicht stehen. Prüfen Sie Kommas, Anführungszeichen und Klammern davor.",
                     shown + " cannot stand here. Check commas, quotation marks and brackets in "
                             "front of it."}};
  }

  JsonNode Take() { return std::move(root_); }

 private:
  // Only these characters separate two tokens.
  std::size_t TokenStart() {
    const std::size_t start = text_.find_first_not_of(" \t\r\n,:", tokenEnd_);
    tokenEnd_ = Taken();
    return std::min(start, text_.size());
  }
  std::size_t Taken() {
    return static_cast<std::size_t>(in_.pubseekoff(0, std::ios::cur, std::ios::in));
  }

  // Looks only at the reason's beginning: it ends with the text read last, which can be anything.
  static bool IsWrongText(const json::exception& error) {
    const std::string_view reason = error.what();
    return reason.substr(0, reason.find("; last read")).find("invalid string") !=
           std::string_view::npos;
  }

  // Does not show the text: it may be a connection string with a password.
  [[noreturn]] static void ThrowWrongText(std::size_t at) {
    throw JsonError{
        at,
        {"Dieser Text kann hier nicht stehen oder ist ungültig. Prüfen Sie Kommas und Doppelpunkte "
         "davor, sein schließendes Anführungszeichen und jedes \\ in ihm.",
         "This text cannot stand here or is not valid. Check commas and colons in front of it, its "
         "closing quotation mark and every \\ in it."}};
  }

  // Returns the start of the word or number that ends at `last`; brackets, commas and colons are
  // tokens of their own.
  std::size_t WordStart(std::size_t last) const {
    if (last == 0 || kEnds.find(text_[last]) != std::string_view::npos) return last;
    return text_.find_last_of(kEnds, last - 1) + 1;
  }

  // Return the start of the UTF-8 character around byte `at`, and the end of one. The text is
  // valid.
  std::size_t CharacterStart(std::size_t at) const {
    while (page::FirstUtf8Character(text_.substr(at)).length == 0) --at;
    return at;
  }
  std::size_t CharacterEnd(std::size_t start) const {
    return start + page::FirstUtf8Character(text_.substr(start)).length;
  }

  // Whether a word directly follows a quotation mark: a quotation mark inside a text has closed it
  // early.
  bool IsRestOfText(std::size_t start) const {
    return start > 0 && text_[start - 1] == '"' && kEnds.find(text_[start]) == std::string::npos;
  }

  // Returns a token's length in the text; the parser shows each control character as "<U+xxxx>".
  static std::size_t Length(std::string_view token) {
    constexpr std::string_view kControl = "<U+";
    constexpr std::size_t kShownAs = 8;
    std::size_t length = token.size();
    for (auto at = token.find(kControl); at != std::string_view::npos;
         at = token.find(kControl, at + kShownAs))
      length -= kShownAs - 1;
    return length;
  }

  JsonNode& Place(JsonNode node) {
    node.at = TokenStart();
    if (open_.empty()) {
      root_ = std::move(node);
      return root_;
    }
    node.key = std::move(key_);
    node.keyAt = keyAt_;
    key_.clear();
    return open_.back()->children.emplace_back(std::move(node));
  }

  bool Leaf(JsonNode node) {
    Place(std::move(node));
    return true;
  }

  bool Open(JsonNode::Kind kind) {
    // Pointers into a parent's children stay valid: an open child gets no further siblings.
    open_.push_back(&Place({.kind = kind}));
    if (open_.size() <= kDeepest) return true;
    throw JsonError{
        open_.back()->at,
        {"Die Klammern sind zu tief geschachtelt.", "The brackets are nested too deeply."}};
  }

  bool Close() {
    open_.pop_back();
    tokenEnd_ = Taken();
    return true;
  }

  static constexpr std::string_view kEnds = " \t\r\n[]{},:\"";  // end words and numbers

  std::string_view text_;
  std::streambuf& in_;
  std::size_t tokenEnd_ = 0;
  JsonNode root_;
  std::vector<JsonNode*> open_;
  std::string key_;
  std::size_t keyAt_ = 0;
};

void Shift(JsonNode& node, std::size_t by) {
  node.at += by;
  node.keyAt += by;
  for (JsonNode& child : node.children) Shift(child, by);
}

}  // namespace

JsonNode ParseJson(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  const std::size_t start = text.starts_with(kMark) ? kMark.size() : 0;
  const std::string_view body = text.substr(start);
  // Checked first, because the parser reports it as a fault of the surrounding text.
  if (const std::size_t at = page::FindInvalidUtf8(body); at != std::string_view::npos)
    throw JsonError{start + at,
                    {"Dieses Zeichen ist kein gültiges UTF-8. Speichern Sie die Datei als UTF-8.",
                     "This character is not valid UTF-8. Save the file as UTF-8."}};
  std::istringstream in{std::string(body)};
  TreeBuilder builder(body, in);
  try {
    json::sax_parse(in, &builder);
  } catch (JsonError& error) {
    error.at += start;
    throw;
  }
  JsonNode root = builder.Take();
  Shift(root, start);
  return root;
}

}  // namespace kvo::office
