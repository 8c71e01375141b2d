#include "host/script/ScriptWords.h"

#include <algorithm>

namespace kvo {

std::vector<std::string> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < line.size();) {
    if (line[at] == ' ' || line[at] == '\t' || line[at] == '\r') {
      ++at;
    } else if (line[at] == '#' && (at + 1 == line.size() || line[at + 1] == ' ')) {
      break;  // a comment; "#1" and "#FF0000" are words
    } else if (line[at] == '"') {
      std::string word;
      for (++at; at < line.size() && line[at] != '"'; ++at) {
        if (line[at] != '\\') {
          word += line[at];
          continue;
        }
        constexpr std::string_view kNames = "nrt0\"\\";
        constexpr std::string_view kCharacters("\n\r\t\0\"\\", 6);
        const std::size_t which =
            ++at < line.size() ? kNames.find(line[at]) : std::string_view::npos;
        if (which == std::string_view::npos)
          throw ScriptTrouble({"Hinter „\\“ steht in einem Text n, r, t, 0, \" oder \\.",
                               "In a text, \"\\\" must be followed by n, r, t, 0, \" or \\."});
        word += kCharacters[which];
      }
      if (at == line.size())
        throw ScriptTrouble(
            {"Das Anführungszeichen wird nicht geschlossen.", "The quote is not closed."});
      ++at;
      words.push_back(std::move(word));
    } else {
      const std::size_t end = std::min(line.find_first_of(" \t\r", at), line.size());
      words.emplace_back(line.substr(at, end - at));
      at = end;
    }
  }
  return words;
}

}  // namespace kvo
