// What the readers of JSON files share: they check all that they read, name every problem with its
// place, and read on.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "common/values/Localized.h"
#include "document/office/JsonTree.h"
#include "document/page/Problem.h"
#include "document/page/ProblemList.h"

namespace kvo::office {

// A file that is not what it should be. Holds everything that is wrong with it, in the order of the
// file.
// Its text has a line for each problem: "file:line:column: error: what and what to do [rule]".
class JsonFileError : public LocalizedError {
 public:
  JsonFileError(std::string file, page::Problems problems);

  const std::string& File() const { return file_; }
  const page::Problems& Problems() const { return problems_; }

 private:
  std::string file_;
  page::Problems problems_;
};

// "contactFields[2].dataType"; the file as a whole has no path.
std::string PathTo(const std::string& parent, std::string_view key);

// What a value is expected to be, as it stands behind "expected".
inline constexpr Localized kObjectWanted = {"ein Objekt { ... }", "an object { ... }"};
inline constexpr Localized kListWanted = {"eine Liste [ ... ]", "a list [ ... ]"};
inline constexpr Localized kTextWanted = {"ein Text in Anführungszeichen",
                                          "a text in quotation marks"};
inline constexpr Localized kIntegerWanted = {"eine ganze Zahl von 32 Bit",
                                             "a whole number of 32 bits"};

class JsonFileReader {
 public:
  JsonFileReader(std::string_view rule, page::ProblemList& problems)
      : rule_(rule), problems_(problems) {}

 protected:
  // A member that has to be there, of the given kind; nullptr after a problem.
  const JsonNode* Required(const JsonNode& object, std::string_view key, JsonNode::Kind kind,
                           const Localized& wanted, const std::string& path);
  // False after a problem.
  bool Is(const JsonNode& node, JsonNode::Kind kind, const Localized& wanted,
          const std::string& path);
  void WrongValue(std::size_t at, const std::string& path, const Localized& wanted,
                  const Localized& found);
  // No key is unknown, and none stands twice.
  void CheckKeys(const JsonNode& object, std::span<const std::string_view> known,
                 const std::string& path);
  void AddUnknown(const JsonNode& member, const std::string& where,
                  std::span<const std::string_view> known);
  void Add(std::size_t at, Message message);

 private:
  std::string_view rule_;
  page::ProblemList& problems_;
};

// Reads the contents of a file: read(root, problems). Throws JsonFileError when that finds
// problems, or when the file is no JSON.
template <class Read>
auto ReadJsonFile(std::string_view contents, const std::string& file, std::string_view rule,
                  Read read) {
  page::ProblemList problems;
  decltype(read(std::declval<const JsonNode&>(), problems)) result{};
  auto parsed = ParseJson(contents);
  if (auto* error = std::get_if<JsonError>(&parsed))
    problems.Add(error->at, rule, {}, std::move(error->message));
  else
    result = read(std::get<JsonNode>(parsed), problems);
  if (problems.HasErrors())
    throw JsonFileError(file, problems.Take(contents, page::PageEncoding()));
  return result;
}

}  // namespace kvo::office
