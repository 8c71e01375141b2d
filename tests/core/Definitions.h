// Defines the text helpers as passes over the whole text and a repeated regular expression.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvo {

std::string FixAmpersandsByDefinition(std::string text);

inline std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
  return text;
}

inline std::string EncodeByDefinition(std::string text) {
  for (const auto& [from, to] :
       std::vector<std::pair<std::string, std::string>>{{"<![CDATA[", ""},
                                                        {"]]>", ""},
                                                        {"<", "kv:@lt;"},
                                                        {">", "kv:@gt;"},
                                                        {"\"", "kv:@quot;"},
                                                        {"&", "kv:@amp;"},
                                                        {"\r\n", "kv:@br;"}})
    text = ReplaceAll(text, from, to);
  return text;
}

inline std::string DecodeByDefinition(std::string text) {
  for (const auto& [from, to] :
       std::vector<std::pair<std::string, std::string>>{{"kv:@lt;", "<"},
                                                        {"kv:@gt;", ">"},
                                                        {"kv:@quot;", "\""},
                                                        {"kv:@amp;", "&"},
                                                        {"kv:@br;", "\r\n"}})
    text = ReplaceAll(text, from, to);
  return text;
}

inline std::string EntitiesByDefinition(std::string text) {
  for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
           {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}})
    text = ReplaceAll(text, from, to);
  return text;
}

inline std::string TrimByDefinition(std::string text) {
  while (text.starts_with(' ')) text.erase(0, 1);
  while (text.ends_with(' ')) text.pop_back();
  if (text.starts_with("\r\n")) text = TrimByDefinition(text.substr(2));
  if (text.ends_with("\r\n")) text = TrimByDefinition(text.substr(0, text.size() - 2));
  return text;
}

}  // namespace kvo
