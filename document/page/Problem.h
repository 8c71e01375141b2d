// What is wrong with a page, and where.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Localized.h"
#include "document/page/TextEdit.h"

namespace kvo::page {

// A place in a page. Both count from 1; the column counts characters of the page's encoding (code
// points in UTF-8). A line ends with CR LF, LF or CR.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
  bool operator==(const Place&) const = default;
};

enum class Severity { error, warning };

// The one sure way to mend a problem. Making the edits removes it and adds none, but may bring to
// light what a broken control hid.
struct Fix {
  Message title;  // what the edits do, as a command: "Write ..."
  TextEdits edits;
};

// One finding. The message says what is wrong and what to do; it names neither file nor place.
struct Problem {
  Severity severity = Severity::error;
  std::string_view rule;  // a name from namespace `rule`
  Place place;
  std::string control;  // the class name in the page; may be empty
  std::string id;       // the control's id, shortened when long; may be empty
  Message message;
  std::size_t offset = 0;  // of the place, in bytes of the page
  std::size_t more = 0;    // not 0: represents this many of its rule, see Told
  std::size_t end = 0;     // of the bytes that it is about; 0: only the place is known
  std::optional<Fix> fix{};
};

// In page order.
using Problems = std::vector<Problem>;

inline bool HasErrors(const Problems& problems) {
  for (const Problem& problem : problems)
    if (problem.severity == Severity::error) return true;
  return false;
}

// Returns the problems to show: the first few of each rule. Replaces the others by one, at the
// place of the first of them, that says how many there are.
Problems Told(const Problems& problems);

// Returns "file:line:column: label: message", with the control's name before the message.
std::string DescribeAt(std::string_view file, const Place& place, std::string_view label,
                       std::string_view control, std::string_view id, std::string_view message);
// The same with "error" or "warning", and the rule in brackets behind the message.
std::string Describe(const Problem& problem, std::string_view file, Language language);

// The names of the rules, shown in messages. They never change.
namespace rule {
inline constexpr std::string_view encoding = "encoding";  // the page's encoding is not supported
inline constexpr std::string_view unknownClass = "unknown-class";
inline constexpr std::string_view unknownKey = "unknown-key";
inline constexpr std::string_view duplicateParam = "duplicate-param";
inline constexpr std::string_view malformedParam = "malformed-param";
inline constexpr std::string_view attribute = "attribute";  // an attribute that cannot be kept
inline constexpr std::string_view unexpectedContent = "unexpected-content";
inline constexpr std::string_view unclosedControl = "unclosed-control";
inline constexpr std::string_view malformedSpan = "malformed-span";
inline constexpr std::string_view missingEnd = "missing-end";
inline constexpr std::string_view nestedControl = "nested-control";
inline constexpr std::string_view strayEnd = "stray-end";
inline constexpr std::string_view misplacedControl = "misplaced-control";
inline constexpr std::string_view invalidBytes = "invalid-bytes";
inline constexpr std::string_view notInEncoding = "not-in-encoding";  // runtime text
inline constexpr std::string_view encodingChanges = "encoding-changes";
inline constexpr std::string_view undeclaredEncoding = "undeclared-encoding";  // warning
inline constexpr std::string_view controlFails = "control-fails";
inline constexpr std::string_view editedByHand = "edited-by-hand";
inline constexpr std::string_view unstableBag = "unstable-bag";  // warning
inline constexpr std::string_view duplicateId = "duplicate-id";  // warning
}  // namespace rule

}  // namespace kvo::page
