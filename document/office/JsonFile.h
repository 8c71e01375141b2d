// Shared by the readers of JSON files: they check everything, report every problem with its place,
// and read on.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "common/values/Localized.h"
#include "document/office/JsonTree.h"
#include "document/page/Problem.h"
#include "document/page/ProblemList.h"
#include "document/page/TextEdit.h"

namespace kvo::office {

// A faulty file, with all of its problems in file order. The text has one line for each problem:
// "file:line:column: error: what and what to do [rule]".
class JsonFileError : public LocalizedError {
 public:
  JsonFileError(std::string file, page::Problems problems);

  const std::string& File() const { return file_; }
  const page::Problems& Problems() const { return problems_; }

 private:
  std::string file_;
  page::Problems problems_;
};

// Returns a path such as "contactFields[2].dataType". The path of the whole file is empty.
std::string PathTo(const std::string& parent, std::string_view key);

// Puts another text in place of the key or the text that begins at `at` in the contents.
page::TextEdit EditOfText(std::string_view contents, std::size_t at, std::string_view to);

// Room for tens of thousands of fields. The tree of a larger file could exhaust memory.
inline constexpr std::size_t kLargestJsonFile = 4 << 20;

class JsonFileReader {
 public:
  JsonFileReader(std::string_view rule, page::ProblemList& problems)
      : rule_(rule), problems_(problems) {}

 protected:
  // Returns a required member of the given kind; nullptr after reporting a problem.
  const JsonNode* Required(const JsonNode& object, std::string_view key, JsonNode::Kind wanted,
                           const std::string& path);
  // Returns false after reporting a problem.
  bool Is(const JsonNode& node, JsonNode::Kind wanted, const std::string& path);
  void WrongValue(const JsonNode& node, JsonNode::Kind wanted, const Localized& found,
                  const std::string& path);
  // The same where no single kind is wanted: says what is, such as "ein Text oder null".
  void WrongValue(const JsonNode& node, const Localized& wanted, const std::string& path);
  // Reports unknown and duplicate keys.
  void CheckKeys(const JsonNode& object, std::span<const std::string_view> known,
                 const std::string& path);
  // Reports a member that its object has twice; `path` is the member's.
  void AddDuplicate(const JsonNode& member, const std::string& path);
  void Add(std::size_t at, Message message);

 private:
  void Expected(const JsonNode& node, const Localized& wanted, const Localized& found,
                const std::string& path);

  std::string_view rule_;
  page::ProblemList& problems_;
};

// Parses the contents of a file and calls read(root, problems). Throws JsonFileError when that
// reports problems or the file is not JSON.
template <class Read>
auto ReadJsonFile(std::string_view contents, const std::string& file, std::string_view rule,
                  Read read) {
  page::ProblemList problems;
  decltype(read(std::declval<const JsonNode&>(), problems)) result{};
  try {
    result = read(ParseJson(contents), problems);
  } catch (JsonError& error) {
    problems.Add(error.at, rule, {}, std::move(error.message));
  }
  if (problems.HasErrors())
    throw JsonFileError(file, problems.Take(contents, page::PageEncoding()));
  return result;
}

}  // namespace kvo::office
