#include "document/office/JsonFile.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "document/page/Messages.h"

namespace kvo::office {
namespace {

using Kind = JsonNode::Kind;

// In the order of the kinds.
struct KindRow {
  Localized name;
  Localized wanted;  // the text after "expected", for kinds that can be expected
};
constexpr KindRow kKinds[] = {
    {{"null", "null"}, {}},
    {{"ein Wahrheitswert", "a flag"}, {}},
    {{"eine Zahl", "a number"}, {"eine ganze Zahl von 32 Bit", "a whole number of 32 bits"}},
    {{"eine Zahl", "a number"}, {}},
    {{"ein Text", "a text"}, {"ein Text in Anführungszeichen", "a text in quotation marks"}},
    {{"eine Liste", "a list"}, {"eine Liste [ ... ]", "a list [ ... ]"}},
    {{"ein Objekt", "an object"}, {"ein Objekt { ... }", "an object { ... }"}},
};
const KindRow& RowOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// Returns a key for messages. Hides anything that is not a name: it may be a misplaced value, such
// as a connection string with a password.
std::string Shown(const std::string& key) {
  const bool isName = std::ranges::all_of(key, [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
  });
  return isName ? key : "\"...\"";
}

Message UnknownKey(std::string_view key, const std::string& where,
                   std::span<const std::string_view> known) {
  Message message = {where + ": Diesen Schlüssel gibt es nicht.",
                     where + ": there is no such key."};
  if (const auto meant = Suggest(key, known); !meant.empty())
    return page::messages::WithSuggestion(std::move(message), meant);
  std::string names;
  for (const std::string_view name : known) names += (names.empty() ? "" : ", ") + Quoted(name);
  message.german += " Hier gelten: " + names + '.';
  message.english += " What counts here: " + names + '.';
  return message;
}

std::string Lines(const std::string& file, const page::Problems& problems, Language language) {
  std::string text;
  for (const page::Problem& problem : problems) {
    if (!text.empty()) text += '\n';
    text += page::Describe(problem, file, language);
  }
  return text;
}

}  // namespace

JsonFileError::JsonFileError(std::string file, page::Problems problems)
    : LocalizedError(
          {Lines(file, problems, Language::german), Lines(file, problems, Language::english)}),
      file_(std::move(file)),
      problems_(std::move(problems)) {}

std::string PathTo(const std::string& parent, std::string_view key) {
  return parent.empty() ? std::string(key) : parent + '.' + std::string(key);
}

page::TextEdit EditOfText(std::string_view contents, std::size_t at, std::string_view to) {
  std::size_t end = at + 1;
  for (; contents[end] != '"'; ++end)
    if (contents[end] == '\\') ++end;
  return {at, end + 1, nlohmann::json(to).dump()};
}

const JsonNode* JsonFileReader::Required(const JsonNode& object, std::string_view key, Kind wanted,
                                         const std::string& path) {
  if (const JsonNode* member = object.Find(key))
    return Is(*member, wanted, PathTo(path, key)) ? member : nullptr;
  const Localized& expected = RowOf(wanted).wanted;
  Add(object.at,
      {path + ": Der Schlüssel " + Quoted(key) + " fehlt. Ergänzen Sie ihn; erwartet wird " +
           std::string(expected.german) + '.',
       path + ": the key " + Quoted(key) + " is missing. Add it; expected is " +
           std::string(expected.english) + '.'});
  return nullptr;
}

bool JsonFileReader::Is(const JsonNode& node, Kind wanted, const std::string& path) {
  if (node.kind == wanted) return true;
  WrongValue(node, wanted, RowOf(node.kind).name, path);
  return false;
}

void JsonFileReader::WrongValue(const JsonNode& node, Kind wanted, const Localized& found,
                                const std::string& path) {
  Expected(node, RowOf(wanted).wanted, found, path);
}

void JsonFileReader::WrongValue(const JsonNode& node, const Localized& wanted,
                                const std::string& path) {
  Expected(node, wanted, RowOf(node.kind).name, path);
}

void JsonFileReader::Expected(const JsonNode& node, const Localized& wanted, const Localized& found,
                              const std::string& path) {
  const bool whole = path.empty();
  Add(node.at, {(whole ? "Die Datei" : path) + ": Erwartet wird " + std::string(wanted.german) +
                    ", hier steht " + std::string(found.german) + '.',
                (whole ? "The file" : path) + ": expected is " + std::string(wanted.english) +
                    ", here stands " + std::string(found.english) + '.'});
}

void JsonFileReader::CheckKeys(const JsonNode& object, std::span<const std::string_view> known,
                               const std::string& path) {
  std::set<std::string_view> keys;
  for (const JsonNode& member : object.children) {
    const std::string where = PathTo(path, Shown(member.key));
    if (!keys.insert(member.key).second)
      AddDuplicate(member, where);
    else if (std::ranges::find(known, member.key) == known.end())
      Add(member.keyAt, UnknownKey(member.key, where, known));
  }
}

void JsonFileReader::AddDuplicate(const JsonNode& member, const std::string& path) {
  Add(member.keyAt, {path + " steht zweimal. Löschen Sie einen der beiden Einträge.",
                     path + " stands twice. Delete one of the two entries."});
}

void JsonFileReader::Add(std::size_t at, Message message) {
  problems_.Add(at, rule_, {}, std::move(message));
}

}  // namespace kvo::office
