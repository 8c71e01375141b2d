#include "document/office/JsonFile.h"

#include <algorithm>
#include <set>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "document/page/Messages.h"

namespace kvo::office {
namespace {

using Kind = JsonNode::Kind;

Localized NameOf(Kind kind) {
  switch (kind) {
    case Kind::null:
      return {"null", "null"};
    case Kind::flag:
      return {"ein Wahrheitswert", "a flag"};
    case Kind::integer:
    case Kind::number:
      return {"eine Zahl", "a number"};
    case Kind::text:
      return {"ein Text", "a text"};
    case Kind::list:
      return {"eine Liste", "a list"};
    case Kind::object:
      break;
  }
  return {"ein Objekt", "an object"};
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// A key as messages show it. What is no name may be a value in the wrong place, and that a
// connection string with its password.
std::string Shown(const std::string& key) {
  const bool isName = std::ranges::all_of(key, [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
  });
  return isName ? key : "\"...\"";
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

const JsonNode* JsonFileReader::Required(const JsonNode& object, std::string_view key, Kind kind,
                                         const Localized& wanted, const std::string& path) {
  for (const JsonNode& member : object.children)
    if (member.key == key) return Is(member, kind, wanted, PathTo(path, key)) ? &member : nullptr;
  Add(object.at, {path + ": Der Schlüssel " + Quoted(key) +
                      " fehlt. Ergänzen Sie ihn; erwartet wird " + std::string(wanted.german) + '.',
                  path + ": the key " + Quoted(key) + " is missing. Add it; expected is " +
                      std::string(wanted.english) + '.'});
  return nullptr;
}

bool JsonFileReader::Is(const JsonNode& node, Kind kind, const Localized& wanted,
                        const std::string& path) {
  if (node.kind == kind) return true;
  WrongValue(node.at, path, wanted, NameOf(node.kind));
  return false;
}

void JsonFileReader::WrongValue(std::size_t at, const std::string& path, const Localized& wanted,
                                const Localized& found) {
  const bool whole = path.empty();
  Add(at, {(whole ? "Die Datei" : path) + ": Erwartet wird " + std::string(wanted.german) +
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
      Add(member.keyAt, {where + " steht zweimal. Löschen Sie einen der beiden Einträge.",
                         where + " stands twice. Delete one of the two entries."});
    else if (std::find(known.begin(), known.end(), member.key) == known.end())
      AddUnknown(member, where, known);
  }
}

void JsonFileReader::AddUnknown(const JsonNode& member, const std::string& where,
                                std::span<const std::string_view> known) {
  Message message = {where + ": Diesen Schlüssel gibt es nicht.",
                     where + ": there is no such key."};
  if (const auto meant = Suggest(member.key, known); !meant.empty()) {
    message = page::messages::WithSuggestion(std::move(message), meant);
  } else {
    std::string names;
    for (const std::string_view name : known) names += (names.empty() ? "" : ", ") + Quoted(name);
    message.german += " Hier gelten: " + names + '.';
    message.english += " What counts here: " + names + '.';
  }
  Add(member.keyAt, std::move(message));
}

void JsonFileReader::Add(std::size_t at, Message message) {
  problems_.Add(at, rule_, {}, std::move(message));
}

}  // namespace kvo::office
