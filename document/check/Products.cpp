#include "document/check/Products.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <set>

#include "common/forms/GridRows.h"
#include "common/frame/Platform.h"
#include "common/values/Ascii.h"
#include "common/values/Recordset.h"
#include "document/page/Messages.h"

namespace kvo::check {
namespace {

using Clock = std::chrono::steady_clock;
using page::messages::Quoted;

constexpr std::size_t kNumbersOfAStatement = 100;
constexpr std::size_t kMostNumbers = 20'000;
constexpr auto kLongest = std::chrono::seconds(10);

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

// Folds numbers that a database may treat as equal: it may ignore case and pad with blanks.
std::string Folded(std::string_view number) {
  std::string folded(Trimmed(number));
  std::ranges::transform(folded, folded.begin(), LowerAscii);
  return folded;
}

// Numbers are written into the statement; these characters are literal in every database.
bool CanBeLookedUp(std::string_view number) {
  constexpr std::size_t kLongestNumber = 100;
  return number.size() <= kLongestNumber && std::ranges::all_of(number, [](char c) {
           return IsLetter(c) || IsDigit(c) ||
                  std::string_view("-_./+*# ").find(c) != std::string_view::npos;
         });
}

std::string StatementFor(std::span<const std::string> numbers) {
  std::string statement = "SELECT ProductNo FROM Products WHERE ProductNo IN (";
  for (const std::string& number : numbers) statement += '\'' + number + "',";
  statement.back() = ')';
  return statement;
}

Message NotChecked(const Message& reason) {
  return {"Nicht alle Produktnummern sind geprüft: " + reason.german,
          "Not all product numbers are checked: " + reason.english};
}

}  // namespace

std::optional<Message> ProductNumbers::LookUp(const std::vector<std::string>& numbers) {
  if (office_ == nullptr) return std::nullopt;
  std::set<std::string> wanted;
  for (const std::string& number : numbers)
    if (CanBeLookedUp(number) && !known_.contains(number)) wanted.insert(number);
  const std::vector<std::string> left(wanted.begin(), wanted.end());
  const Clock::time_point end = Clock::now() + kLongest;
  for (std::size_t at = 0; at < left.size() && readable_; at += kNumbersOfAStatement) {
    if (known_.size() >= kMostNumbers || Clock::now() > end) {
      readable_ = false;
      return NotChecked({"Es sind zu viele.", "there are too many."});
    }
    try {
      Ask(std::span(left).subspan(at, std::min(kNumbersOfAStatement, left.size() - at)), *office_);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& failure) {
      readable_ = false;
      return NotChecked(FailureMessage(failure));
    }
  }
  return std::nullopt;
}

void ProductNumbers::Ask(std::span<const std::string> numbers, Object& office) {
  const Variant connection = office.Get("ShopDBConnection");
  if (connection.IsEmpty()) {  // the office has no shop
    readable_ = false;
    return;
  }
  const ObjectRef records = ThePlatform().NewRecordset();
  const std::array<Variant, 5> arguments = {StatementFor(numbers), connection, ado::kOpenStatic,
                                            ado::kLockReadOnly, ado::kOptionsText};
  records->Call("Open", arguments);
  std::set<std::string> found;
  for (; !ToFlag(records->Get("EOF")); records->Call("MoveNext", {}))
    found.insert(Folded(ToText(FieldValue(*records, "ProductNo"))));
  for (const std::string& number : numbers) known_[number] = found.contains(Folded(number));
}

bool ProductNumbers::IsUnknown(const std::string& number) const {
  const auto asked = known_.find(number);
  return asked != known_.end() && !asked->second;
}

std::vector<std::string> NumbersIn(std::string_view selection) {
  std::vector<std::string> numbers;
  for (std::size_t at = 0; at <= selection.size();) {
    const std::size_t end = std::min(selection.find(',', at), selection.size());
    const std::string_view number = Trimmed(selection.substr(at, end - at));
    if (!number.empty()) numbers.emplace_back(number);
    at = end + 1;
  }
  return numbers;
}

page::Problems CheckProducts(const std::vector<Selection>& selections, ProductNumbers& products) {
  constexpr std::size_t kMostNamed = 5;
  std::vector<std::string> all;
  for (const Selection& selection : selections)
    all.insert(all.end(), selection.numbers.begin(), selection.numbers.end());
  page::Problems problems;
  if (auto failure = products.LookUp(all))
    problems.push_back(
        ProblemOf(kProductsNotChecked, *selections.front().control, std::move(*failure)));
  for (const auto& [control, numbers] : selections) {
    std::string named;
    std::size_t count = 0;
    for (const std::string& number : numbers) {
      if (!products.IsUnknown(number)) continue;
      if (++count <= kMostNamed) named += (named.empty() ? "" : ", ") + Quoted(number);
    }
    if (count == 0) continue;
    const std::string more = count > kMostNamed ? std::to_string(count - kMostNamed) : "";
    problems.push_back(
        ProblemOf(kUnknownProduct, *control,
                  {"Im Shop gibt es diese Produkte nicht: " + named +
                       (more.empty() ? "" : " und " + more + " weitere") +
                       ". Nehmen Sie sie aus der Auswahl oder berichtigen Sie ihre Nummern.",
                   "The shop does not have these products: " + named +
                       (more.empty() ? "" : " and " + more + " more") +
                       ". Take them out of the selection or correct their numbers."}));
  }
  return problems;
}

}  // namespace kvo::check
