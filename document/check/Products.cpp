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

// Databases may compare without regard to case, and fill up with blanks. What they take for the
// same number is the same.
std::string Folded(std::string_view number) {
  std::string folded(Trimmed(number));
  std::ranges::transform(folded, folded.begin(), LowerAscii);
  return folded;
}

// Numbers are written into the statement; these characters mean themselves to every database.
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

void ProductNumbers::LookUp(const std::vector<std::string>& numbers) {
  if (office_ == nullptr) return;
  std::set<std::string> wanted;
  for (const std::string& number : numbers)
    if (CanBeLookedUp(number) && !known_.contains(number)) wanted.insert(number);
  const std::vector<std::string> left(wanted.begin(), wanted.end());
  const Clock::time_point end = Clock::now() + kLongest;
  for (std::size_t at = 0; at < left.size() && readable_; at += kNumbersOfAStatement) {
    if (known_.size() >= kMostNumbers || Clock::now() > end) {
      readable_ = false;
      failure_ = NotChecked({"Es sind zu viele.", "there are too many."});
      return;
    }
    try {
      Ask(std::span(left).subspan(at, std::min(kNumbersOfAStatement, left.size() - at)), *office_);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& failure) {
      readable_ = false;
      failure_ = NotChecked(FailureMessage(failure));
    }
  }
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

void ProductCheck::Note(const page::FoundControl& control, std::string_view selectedProducts) {
  Noted noted{&control, {}};
  for (std::size_t at = 0; at <= selectedProducts.size();) {
    const std::size_t end = std::min(selectedProducts.find(',', at), selectedProducts.size());
    const std::string_view number = Trimmed(selectedProducts.substr(at, end - at));
    if (!number.empty()) noted.numbers.emplace_back(number);
    at = end + 1;
  }
  if (!noted.numbers.empty()) noted_.push_back(std::move(noted));
}

page::Problems ProductCheck::Take() {
  constexpr std::size_t kMostNamed = 5;
  if (noted_.empty()) return {};
  std::vector<std::string> numbers;
  for (const Noted& noted : noted_)
    numbers.insert(numbers.end(), noted.numbers.begin(), noted.numbers.end());
  products_.LookUp(numbers);
  page::Problems problems;
  const auto report = [&](const Noted& noted, const Rule& rule, Message message) {
    const page::FoundControl& control = *noted.control;
    problems.push_back({rule.severity, rule.id, control.place, control.className, control.id,
                        std::move(message), control.begin});
  };
  if (auto failure = products_.TakeFailure())
    report(noted_.front(), kProductsNotChecked, std::move(*failure));
  for (const Noted& noted : noted_) {
    std::string named;
    std::size_t count = 0;
    for (const std::string& number : noted.numbers) {
      if (!products_.IsUnknown(number)) continue;
      if (++count <= kMostNamed) named += (named.empty() ? "" : ", ") + Quoted(number);
    }
    if (count == 0) continue;
    const std::string more = count > kMostNamed ? std::to_string(count - kMostNamed) : "";
    report(noted, kUnknownProduct,
           {"Im Shop gibt es diese Produkte nicht: " + named +
                (more.empty() ? "" : " und " + more + " weitere") +
                ". Nehmen Sie sie aus der Auswahl oder berichtigen Sie ihre Nummern.",
            "The shop does not have these products: " + named +
                (more.empty() ? "" : " and " + more + " more") +
                ". Take them out of the selection or correct their numbers."});
  }
  noted_.clear();
  return problems;
}

}  // namespace kvo::check
