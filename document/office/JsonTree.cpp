#include "document/office/JsonTree.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "document/page/Utf8.h"

namespace kvo::office {
namespace {

using nlohmann::json;

// An office nests three deep; deeper ones only come from mistakes.
constexpr std::size_t kDeepest = 100;

// Hands out a text byte by byte and notes how many were taken, because the parser's events do not
// say where they happen.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(std::string_view text, std::size_t at, std::size_t* taken)
      : text_(text), at_(at), taken_(taken) {}
  reference operator*() const { return text_[at_]; }
  CountingIterator& operator++() {
    *taken_ = ++at_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator old = *this;
    ++*this;
    return old;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }

 private:
  std::string_view text_;
  std::size_t at_;
  std::size_t* taken_;
};

class TreeBuilder {
 public:
  TreeBuilder(std::string_view text, const std::size_t* taken) : text_(text), taken_(taken) {}

  bool null() { return Leaf({}); }
  bool boolean(bool) { return Leaf({.kind = JsonNode::Kind::flag}); }
  bool number_integer(json::number_integer_t value) {
    return Leaf({.kind = JsonNode::Kind::integer, .integer = value});
  }
  bool number_unsigned(json::number_unsigned_t value) {
    constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
    return Leaf({.kind = JsonNode::Kind::integer,
                 .integer = value > static_cast<std::uint64_t>(kLargest)
                                ? kLargest
                                : static_cast<std::int64_t>(value)});
  }
  bool number_float(json::number_float_t, const std::string&) {
    return Leaf({.kind = JsonNode::Kind::number});
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
    if (error.id == kNumberOutOfRange) {
      error_ = {TokenStart(),
                {"Diese Zahl ist zu groß. Berichtigen Sie sie.",
                 "This number is too large. Correct it."}};
    } else if (text_.find_first_not_of(" \t\r\n") == std::string_view::npos) {
      error_ = {text_.size(),
                {"Die Datei ist leer. Sie muss mindestens {} enthalten.",
                 "The file is empty. It has to hold at least {}."}};
    } else if (at >= text_.size()) {
      error_ = {text_.size(),
                {"Die Datei endet zu früh: eine Klammer oder ein Anführungszeichen fehlt.",
                 "The file ends too early: a bracket or a quotation mark is missing."}};
    } else if (text_[at] == '"' || IsWrongText(error)) {
      WrongText(at + 1 - std::min(at + 1, Length(token)));
    } else if (const std::size_t start = WordStart(at); IsRestOfText(start)) {
      WrongText(start);
    } else {
      const std::size_t end = CharacterEnd(CharacterStart(at));
      const std::string shown = '\'' + std::string(text_.substr(start, end - start)) + '\'';
      error_ = {start,
                {"Hier kann " + shown +
                     " nicht stehen. Prüfen Sie Kommas, Anführungszeichen und Klammern davor.",
                 shown + " cannot stand here. Check commas, quotation marks and brackets in front "
                         "of it."}};
    }
    return false;
  }

  std::variant<JsonNode, JsonError> Take() {
    if (error_) return *std::move(error_);
    return std::move(root_);
  }

 private:
  // Between the end of one token and the start of the next there is nothing but this.
  std::size_t TokenStart() {
    const std::size_t start = text_.find_first_not_of(" \t\r\n,:", tokenEnd_);
    tokenEnd_ = *taken_;
    return std::min(start, text_.size());
  }

  // The parser's reason ends with what it has read last, which can be anything.
  static bool IsWrongText(const json::exception& error) {
    const std::string_view reason = error.what();
    return reason.substr(0, reason.find("; last read")).find("invalid string") !=
           std::string_view::npos;
  }

  // The text itself is not shown: it may be a connection string with a password.
  void WrongText(std::size_t at) {
    error_ = {at,
              {"Dieser Text kann hier nicht stehen oder ist ungültig. Prüfen Sie Kommas und "
               "Doppelpunkte davor, sein schließendes Anführungszeichen und jedes \\ in ihm.",
               "This text cannot stand here or is not valid. Check commas and colons in front of "
               "it, its closing quotation mark and every \\ in it."}};
  }

  // Where the word or number starts that ends at `last`; a bracket, comma or colon stands alone.
  std::size_t WordStart(std::size_t last) const {
    if (last == 0 || kEnds.find(text_[last]) != std::string_view::npos) return last;
    return text_.find_last_of(kEnds, last - 1) + 1;
  }

  // Where the character, of valid UTF-8, starts that the byte `at` belongs to; and where one ends.
  std::size_t CharacterStart(std::size_t at) const {
    while (page::FirstUtf8Character(text_.substr(at)).length == 0) --at;
    return at;
  }
  std::size_t CharacterEnd(std::size_t start) const {
    return start + page::FirstUtf8Character(text_.substr(start)).length;
  }

  // Whether a word stands right behind a quotation mark: one inside of a text has closed it early.
  bool IsRestOfText(std::size_t start) const {
    return start > 0 && text_[start - 1] == '"' && kEnds.find(text_[start]) == std::string::npos;
  }

  // The length of a token in the text: the parser shows each control character as "<U+xxxx>".
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
    // A pointer into a parent's children stays valid: while it is open, its parent gets no other.
    open_.push_back(&Place({.kind = kind}));
    if (open_.size() <= kDeepest) return true;
    error_ = {open_.back()->at,
              {"Die Klammern sind zu tief geschachtelt.", "The brackets are nested too deeply."}};
    return false;
  }

  bool Close() {
    open_.pop_back();
    tokenEnd_ = *taken_;
    return true;
  }

  static constexpr std::string_view kEnds = " \t\r\n[]{},:\"";  // of words and numbers

  std::string_view text_;
  const std::size_t* taken_;
  std::size_t tokenEnd_ = 0;
  JsonNode root_;
  std::vector<JsonNode*> open_;
  std::string key_;
  std::size_t keyAt_ = 0;
  std::optional<JsonError> error_;
};

}  // namespace

std::variant<JsonNode, JsonError> ParseJson(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  const std::size_t start = text.starts_with(kMark) ? kMark.size() : 0;
  std::size_t taken = 0;
  const std::string_view body = text.substr(start);
  // In advance, because the parser counts it among the faults of the text that it is in.
  if (const std::size_t at = page::FindInvalidUtf8(body); at != std::string_view::npos)
    return JsonError{start + at,
                     {"Dieses Zeichen ist kein gültiges UTF-8. Speichern Sie die Datei als UTF-8.",
                      "This character is not valid UTF-8. Save the file as UTF-8."}};
  TreeBuilder builder(body, &taken);
  json::sax_parse(CountingIterator(body, 0, &taken), CountingIterator(body, body.size(), &taken),
                  &builder);
  auto result = builder.Take();
  if (JsonError* error = std::get_if<JsonError>(&result)) error->at += start;
  return result;
}

}  // namespace kvo::office
