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
std::string Folded(std::string_view number) { return Lowered(Trimmed(number)); }

constexpr const char* kNumber = "ProductNo";
constexpr const char* kDescription = "Desc1";
constexpr const char* kDescription2 = "Desc2";

Message NotChecked(const Message& reason) {
  return {"Nicht alle Produktnummern sind geprüft: " + reason.german,
          "Not all product numbers are checked: " + reason.english};
}

}  // namespace

// Numbers are written into the statement; these characters are literal in every database.
bool CanBeLookedUp(std::string_view number) {
  constexpr std::size_t kLongestNumber = 100;
  return number.size() <= kLongestNumber && std::ranges::all_of(number, [](char c) {
           return IsLetter(c) || IsDigit(c) ||
                  std::string_view("-_./+*# ").find(c) != std::string_view::npos;
         });
}

std::optional<Message> ShopProducts::LookUp(const std::vector<std::string>& numbers) {
  if (office_ == nullptr) return std::nullopt;
  std::set<std::string> wanted;
  for (const std::string& number : numbers)
    if (CanBeLookedUp(number) && !known_.contains(number)) wanted.insert(number);
  const std::vector<std::string> left(wanted.begin(), wanted.end());
  const Clock::time_point end = Clock::now() + kLongest;
  for (std::size_t at = 0; at < left.size() && readable_; at += kNumbersOfAStatement) {
    if (known_.size() >= kMostNumbers || Clock::now() > end) {
      readable_ = false;
      return Message{"Es sind zu viele.", "there are too many."};
    }
    try {
      Ask(std::span(left).subspan(at, std::min(kNumbersOfAStatement, left.size() - at)), *office_);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& failure) {
      readable_ = false;
      return FailureMessage(failure);
    }
  }
  return std::nullopt;
}

std::string ShopProducts::StatementFor(std::span<const std::string> numbers) const {
  std::string statement = std::string("SELECT ") + kNumber;
  if (read_ == Read::descriptions)
    statement += std::string(", ") + kDescription + ", " + kDescription2;
  statement += std::string(" FROM Products WHERE ") + kNumber + " IN (";
  for (const std::string& number : numbers) statement += '\'' + number + "',";
  statement.back() = ')';
  return statement;
}

void ShopProducts::Ask(std::span<const std::string> numbers, Object& office) {
  const Variant connection = office.Get("ShopDBConnection");
  if (connection.IsEmpty()) {  // the office has no shop
    readable_ = false;
    return;
  }
  const ObjectRef records = ThePlatform().NewRecordset();
  const std::array<Variant, 5> arguments = {StatementFor(numbers), connection, ado::kOpenStatic,
                                            ado::kLockReadOnly, ado::kOptionsText};
  records->Call("Open", arguments);
  std::map<std::string, ShopProduct> found;
  for (; !ToFlag(records->Get("EOF")); records->Call("MoveNext", {})) {
    ShopProduct product{ToText(FieldValue(*records, kNumber)), {}, {}};
    if (read_ == Read::descriptions) {
      product.description = ToText(FieldValue(*records, kDescription));
      product.description2 = ToText(FieldValue(*records, kDescription2));
    }
    found.emplace(Folded(product.number), std::move(product));
  }
  for (const std::string& number : numbers) {
    const auto product = found.find(Folded(number));
    known_[number] = product != found.end() ? std::optional(product->second) : std::nullopt;
  }
}

bool ShopProducts::IsUnknown(const std::string& number) const {
  const auto asked = known_.find(number);
  return asked != known_.end() && !asked->second;
}

const ShopProduct* ShopProducts::Find(const std::string& number) const {
  const auto asked = known_.find(number);
  return asked != known_.end() && asked->second ? &*asked->second : nullptr;
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

page::Problems CheckProducts(const Selections& selections, ShopProducts& products) {
  constexpr std::size_t kMostNamed = 5;
  std::vector<std::string> all;
  for (const Selection& selection : selections)
    all.insert(all.end(), selection.numbers.begin(), selection.numbers.end());
  page::Problems problems;
  if (auto failure = products.LookUp(all))
    problems.push_back(
        ProblemOf(kProductsNotChecked, selections.front().control, NotChecked(*failure)));
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
        ProblemOf(kUnknownProduct, control,
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
