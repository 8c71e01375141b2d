#include "document/preview/Expression.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/values/Ascii.h"
#include "common/values/Floating.h"
#include "common/values/GermanFormat.h"
#include "document/page/Scanner.h"
#include "document/preview/Record.h"
#include "document/preview/Words.h"

namespace kvo::preview {
namespace {

using page::npos;
using uses::IsNameCharacter;

Outcome Known(Variant value) { return {std::move(value), std::nullopt}; }
Outcome Unknown(Message why) { return {{}, std::move(why)}; }

// --- values -----------------------------------------------------------------------------------

// A text as a number. "1134.23" has a decimal point, "1.134" groups by thousands as in German.
std::optional<double> NumberOf(const Variant& value) {
  if (const auto* integer = value.If<std::int32_t>()) return *integer;
  if (const auto* number = value.If<double>()) return *number;
  const auto* text = value.If<std::string>();
  if (text == nullptr || text->empty()) return std::nullopt;
  const std::size_t point = text->find('.');
  if (point != npos && text->find('.', point + 1) == npos && text->find(',') == npos &&
      text->size() - point - 1 != 3 && point != 0) {
    const bool isPlain = std::ranges::all_of(*text, [&](const char& c) {
      return IsDigit(c) || c == '.' || (c == '-' && &c == text->data());
    });
    if (isPlain) return ReadFloating(*text);
  }
  if (SortableDate(*text)) return std::nullopt;
  return ParseNumber(*text);
}

std::optional<bool> FlagOf(const Variant& value) {
  if (const auto* flag = value.If<bool>()) return *flag;
  if (const auto* integer = value.If<std::int32_t>();
      integer != nullptr && *integer >= -1 && *integer <= 1)
    return *integer != 0;
  if (const auto* text = value.If<std::string>()) {
    if (EqualIgnoringCase(*text, "true")) return true;
    if (EqualIgnoringCase(*text, "false")) return false;
  }
  return std::nullopt;
}

std::string TextOf(const Variant& value) {
  if (const auto* flag = value.If<bool>()) return *flag ? "true" : "false";
  return ToText(value);
}

Variant NumberValue(double number) {
  if (number == std::trunc(number) && std::abs(number) < 2e9)
    return static_cast<std::int32_t>(number);
  return number;
}

// --- words of an expression -------------------------------------------------------------------

enum class Operation {
  none,
  equal,
  notEqual,
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
  both,
  either,
  no,
  plus,
  minus,
  times,
  divided,
  rest,
  question,
  colon,
  open,
  close
};
struct Sign {
  std::string_view text;
  Operation operation;
};
// A longer one stands before those that it begins with.
constexpr Sign kSigns[] = {{"&amp;&amp;", Operation::both},
                           {"&&", Operation::both},
                           {"||", Operation::either},
                           {"===", Operation::equal},
                           {"==", Operation::equal},
                           {"!==", Operation::notEqual},
                           {"!=", Operation::notEqual},
                           {"<>", Operation::notEqual},
                           {"&lt;&gt;", Operation::notEqual},
                           {"&gt;=", Operation::greaterOrEqual},
                           {"&lt;=", Operation::lessOrEqual},
                           {">=", Operation::greaterOrEqual},
                           {"<=", Operation::lessOrEqual},
                           {"&gt;", Operation::greater},
                           {"&lt;", Operation::less},
                           {">", Operation::greater},
                           {"<", Operation::less},
                           {"=", Operation::equal},
                           {"!", Operation::no},
                           {"+", Operation::plus},
                           {"-", Operation::minus},
                           {"*", Operation::times},
                           {"/", Operation::divided},
                           {"%", Operation::rest},
                           {"?", Operation::question},
                           {":", Operation::colon},
                           {"(", Operation::open},
                           {")", Operation::close}};
constexpr Sign kWords[] = {
    {"and", Operation::both}, {"or", Operation::either}, {"not", Operation::no}};

constexpr bool IsComparison(Operation operation) {
  return operation >= Operation::equal && operation <= Operation::greaterOrEqual;
}

// --- evaluating -------------------------------------------------------------------------------

Outcome Compare(Operation operation, const Variant& left, const Variant& right) {
  int order = 0;
  const bool isEquality = operation == Operation::equal || operation == Operation::notEqual;
  const auto isText = [](const Variant& value) { return value.If<std::string>() != nullptr; };
  const auto compare = [](const auto& a, const auto& b) { return a < b ? -1 : (b < a ? 1 : 0); };
  if (left.If<bool>() != nullptr || right.If<bool>() != nullptr) {
    const auto a = FlagOf(left);
    const auto b = FlagOf(right);
    if (!a || !b || !isEquality) return Unknown(words::NotComparable(TextOf(left), TextOf(right)));
    order = compare(*a, *b);
  } else if (isText(left) && isText(right) && isEquality) {
    order = compare(TextOf(left), TextOf(right));
  } else {
    const auto a = isText(left) ? SortableDate(TextOf(left)) : std::nullopt;
    const auto b = isText(right) ? SortableDate(TextOf(right)) : std::nullopt;
    const auto x = NumberOf(left);
    const auto y = NumberOf(right);
    if (a && b)
      order = compare(*a, *b);
    else if (x && y)
      order = compare(*x, *y);
    else if (isText(left) && isText(right) && !a && !b)
      order = compare(TextOf(left), TextOf(right));
    else
      return Unknown(words::NotComparable(TextOf(left), TextOf(right)));
  }
  switch (operation) {
    case Operation::equal:
      return Known(order == 0);
    case Operation::notEqual:
      return Known(order != 0);
    case Operation::less:
      return Known(order < 0);
    case Operation::lessOrEqual:
      return Known(order <= 0);
    case Operation::greater:
      return Known(order > 0);
    default:
      return Known(order >= 0);
  }
}

Outcome Calculate(Operation operation, const Variant& left, const Variant& right) {
  const auto x = NumberOf(left);
  const auto y = NumberOf(right);
  if (!x || !y) return Unknown(words::NotANumber(TextOf(left), TextOf(right)));
  if ((operation == Operation::divided || operation == Operation::rest) && *y == 0)
    return Unknown(words::DividedByZero());
  switch (operation) {
    case Operation::plus:
      return Known(NumberValue(*x + *y));
    case Operation::minus:
      return Known(NumberValue(*x - *y));
    case Operation::times:
      return Known(NumberValue(*x * *y));
    case Operation::divided:
      return Known(NumberValue(*x / *y));
    default:
      return Known(NumberValue(std::fmod(*x, *y)));
  }
}

// One method for each rule of the grammar. After the first mistake `broken_` is set and the results
// mean nothing.
class Evaluation {
 public:
  Evaluation(std::string_view text, const LookUp& lookUp) : text_(text), lookUp_(lookUp) {}

  // Nothing when the text is no expression.
  std::optional<Outcome> Whole() {
    Outcome result = Choice();
    if (broken_ || !AtEnd()) return std::nullopt;
    return result;
  }

 private:
  static constexpr int kDeepest = 64;

  Outcome Choice() {
    if (++depth_ > kDeepest) return Break();
    Outcome result = Either();
    if (Take(Operation::question)) {
      Outcome holds = Choice();
      if (!Take(Operation::colon)) return Break();
      Outcome fails = Choice();
      if (!result.unknown) {
        const auto flag = FlagOf(result.value);
        result = !flag ? NotAFlag() : (*flag ? std::move(holds) : std::move(fails));
      }
    }
    --depth_;
    return result;
  }

  Outcome Either() {
    return Joined(Operation::either, true, [this] { return Both(); });
  }
  Outcome Both() {
    return Joined(Operation::both, false, [this] { return Not(); });
  }

  // Parts joined by an operator, of which one with the value `decides` gives the result.
  template <class Part>
  Outcome Joined(Operation joiner, bool decides, Part part) {
    Outcome result = part();
    if (broken_ || !Sees(joiner)) return result;
    std::optional<Message> unknown;
    bool decided = false;
    for (;;) {
      if (!result.unknown) {
        const auto flag = FlagOf(result.value);
        if (!flag)
          result = NotAFlag();
        else if (*flag == decides)
          decided = true;
      }
      if (result.unknown && !unknown) unknown = result.unknown;
      if (broken_ || !Take(joiner)) break;
      result = part();
    }
    if (decided) return Known(decides);
    if (unknown) return {{}, unknown};
    return Known(!decides);
  }

  Outcome Not() {
    bool negated = false;
    while (Take(Operation::no)) negated = !negated;
    Outcome result = Comparison();
    if (!negated || result.unknown) return result;
    const auto flag = FlagOf(result.value);
    return flag ? Known(!*flag) : NotAFlag();
  }

  Outcome Comparison() {
    Outcome left = Sum();
    const Operation operation = Seen();
    if (broken_ || !IsComparison(operation)) return left;
    Take(operation);
    return Combined(left, Sum(), operation, Compare);
  }

  Outcome Sum() {
    Outcome result = Product();
    while (!broken_) {
      const Operation operation = Seen();
      if (operation != Operation::plus && operation != Operation::minus) break;
      Take(operation);
      result = Combined(result, Product(), operation, Calculate);
    }
    return result;
  }

  Outcome Product() {
    Outcome result = Signed();
    while (!broken_) {
      const Operation operation = Seen();
      if (operation != Operation::times && operation != Operation::divided &&
          operation != Operation::rest)
        break;
      Take(operation);
      result = Combined(result, Signed(), operation, Calculate);
    }
    return result;
  }

  template <class Combine>
  static Outcome Combined(const Outcome& left, const Outcome& right, Operation operation,
                          Combine combine) {
    if (left.unknown) return left;
    if (right.unknown) return right;
    return combine(operation, left.value, right.value);
  }

  Outcome Signed() {
    bool negative = false;
    while (!broken_ && Take(Operation::minus)) negative = !negative;
    Outcome result = Primary();
    return negative ? Combined(Known(0), result, Operation::minus, Calculate) : result;
  }

  Outcome Primary() {
    SkipBlanks();
    const std::string_view rest = text_.substr(at_);
    if (rest.empty()) return Break();
    if (Take(Operation::open)) {
      Outcome inner = Choice();
      return Take(Operation::close) ? inner : Break();
    }
    if (const auto reference = ReferenceAt(rest)) {
      at_ += reference->length;
      return lookUp_(reference->group, reference->name);
    }
    if (rest[0] == '\'' || rest[0] == '"') {
      const std::size_t end = rest.find(rest[0], 1);
      if (end == npos) return Break();
      at_ += end + 1;
      return Filled(rest.substr(1, end - 1));
    }
    if (IsDigit(rest[0])) return Number(rest);
    for (const bool flag : {true, false}) {
      const std::string_view word = flag ? "true" : "false";
      if (!IsWord(word)) continue;
      at_ += word.size();
      return Known(flag);
    }
    return Break();
  }

  // With a decimal point or comma.
  Outcome Number(std::string_view rest) {
    std::string digits;
    std::size_t end = 0;
    const auto take = [&] {
      while (end < rest.size() && IsDigit(rest[end])) digits += rest[end++];
    };
    take();
    if (end + 1 < rest.size() && (rest[end] == '.' || rest[end] == ',') && IsDigit(rest[end + 1])) {
      digits += '.';
      ++end;
      take();
    }
    if (end < rest.size() && (IsNameCharacter(rest[end]) && rest[end] != '-')) return Break();
    at_ += end;
    return Known(NumberValue(ReadFloating(digits)));
  }

 public:
  // A text in which references stand for their values.
  Outcome Filled(std::string_view text) const {
    std::string filled;
    while (!text.empty()) {
      const std::size_t plain = std::min(text.find('#'), text.size());
      filled += text.substr(0, plain);
      text.remove_prefix(plain);
      if (text.empty()) break;
      if (const auto reference = ReferenceAt(text)) {
        Outcome value = lookUp_(reference->group, reference->name);
        if (value.unknown) return value;
        filled += TextOf(value.value);
        text.remove_prefix(reference->length);
      } else {
        filled += text[0];
        text.remove_prefix(1);
      }
    }
    return Known(std::move(filled));
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && page::IsHtmlSpace(text_[at_])) ++at_;
  }
  bool AtEnd() {
    SkipBlanks();
    return at_ == text_.size();
  }
  bool IsWord(std::string_view word) const {
    const std::string_view rest = text_.substr(at_);
    return rest.size() >= word.size() && EqualIgnoringCase(rest.substr(0, word.size()), word) &&
           (rest.size() == word.size() || !IsNameCharacter(rest[word.size()]));
  }
  const Sign* SeenSign() {
    SkipBlanks();
    for (const Sign& sign : kSigns)
      if (text_.substr(at_).starts_with(sign.text)) return &sign;
    for (const Sign& word : kWords)
      if (IsWord(word.text)) return &word;
    return nullptr;
  }
  Operation Seen() {
    const Sign* const sign = SeenSign();
    return sign == nullptr ? Operation::none : sign->operation;
  }
  bool Sees(Operation operation) { return Seen() == operation; }
  bool Take(Operation operation) {
    const Sign* const sign = SeenSign();
    if (broken_ || sign == nullptr || sign->operation != operation) return false;
    at_ += sign->text.size();
    return true;
  }

  Outcome Break() {
    broken_ = true;
    return {};
  }
  static Outcome NotAFlag() { return Unknown(words::NotAFlag()); }

  std::string_view text_;
  const LookUp& lookUp_;
  std::size_t at_ = 0;
  int depth_ = 0;
  bool broken_ = false;
};

Outcome NotUnderstood(std::string_view text) { return Unknown(words::NotUnderstood(text)); }

// Whether the text outside its references is plain words rather than a formula.
bool IsWords(std::string_view text) {
  bool words = true;
  while (!text.empty() && words) {
    if (const auto reference = ReferenceAt(text)) {
      text.remove_prefix(reference->length);
    } else {
      words = std::string_view("()*/=<>!&|?%'\"#").find(text[0]) == npos;
      text.remove_prefix(1);
    }
  }
  return words;
}

}  // namespace

bool IsComputed(std::string_view text) {
  return text.size() > 2 && text.starts_with('%') && text.ends_with('%');
}

std::string_view WithoutPercentSigns(std::string_view text) {
  if (text.starts_with('%')) text.remove_prefix(1);
  if (text.ends_with('%')) text.remove_suffix(1);
  return text;
}

Outcome Evaluate(std::string_view expression, const LookUp& lookUp) {
  const std::string_view plain = WithoutPercentSigns(expression);
  if (auto result = Evaluation(plain, lookUp).Whole()) return std::move(*result);
  return NotUnderstood(plain);
}

Outcome Test(std::string_view expression, const LookUp& lookUp) {
  Outcome result = Evaluate(expression, lookUp);
  if (result.unknown) return result;
  if (const auto flag = FlagOf(result.value)) return Known(*flag);
  return Unknown(words::NoTest(WithoutPercentSigns(expression)));
}

Outcome Print(std::string_view text, const LookUp& lookUp) {
  const std::string_view plain = WithoutPercentSigns(text);
  // A number by itself is shown as it is written.
  if (!plain.empty() && std::ranges::all_of(plain, IsDigit)) return Known(plain);
  if (auto result = Evaluation(plain, lookUp).Whole()) return std::move(*result);
  if (IsWords(plain)) return Evaluation(plain, lookUp).Filled(plain);
  return NotUnderstood(plain);
}

Outcome Fill(std::string_view text, const LookUp& lookUp) {
  if (IsComputed(text)) return Evaluate(text, lookUp);
  return Evaluation(text, lookUp).Filled(text);
}

std::optional<std::string> SortableDate(std::string_view text) {
  // Reads `count` digits and the sign behind them.
  std::size_t at = 0;
  const auto take = [&](std::size_t count, std::string& digits) {
    if (text.size() - at < count || !std::ranges::all_of(text.substr(at, count), IsDigit))
      return false;
    digits = text.substr(at, count);
    at += count;
    return true;
  };
  const auto sign = [&](char c) { return at < text.size() && text[at] == c && ++at != 0; };
  std::string year;
  std::string month;
  std::string day;
  const bool german = text.size() > 2 && text[2] == '.';
  const bool isDate =
      german ? take(2, day) && sign('.') && take(2, month) && sign('.') && take(4, year)
             : take(4, year) && sign('-') && take(2, month) && sign('-') && take(2, day);
  if (!isDate || month < "01" || month > "12" || day < "01" || day > "31") return std::nullopt;
  std::string hour = "00";
  std::string minute = "00";
  std::string second = "00";
  if (at < text.size()) {
    if (!sign(' ') && !sign('T')) return std::nullopt;
    if (!take(2, hour) || !sign(':') || !take(2, minute)) return std::nullopt;
    if (sign(':') && !take(2, second)) return std::nullopt;
    // What databases and JSON put behind the seconds: a fraction, a zone.
    if (at < text.size() && text[at] != '.' && text[at] != 'Z' && text[at] != '+')
      return std::nullopt;
  }
  return year + month + day + hour + minute + second;
}

std::string FormatValue(const Variant& value, std::string_view pattern) {
  if (pattern.empty()) return TextOf(value);
  if (pattern.find_first_of("#0") != npos) {
    if (const auto number = NumberOf(value)) return GermanFormat(*number, pattern);
    return TextOf(value);
  }
  if (const auto date = SortableDate(TextOf(value))) {
    const std::string& d = *date;
    return GermanFormat(d.substr(6, 2) + '.' + d.substr(4, 2) + '.' + d.substr(0, 4) + ' ' +
                            d.substr(8, 2) + ':' + d.substr(10, 2) + ':' + d.substr(12, 2),
                        pattern);
  }
  return GermanFormat(value, pattern);
}

}  // namespace kvo::preview
