#include "document/uses/MappedText.h"

#include <algorithm>

#include "common/text/modGlobal.h"
#include "document/page/CharacterReferences.h"
#include "document/page/Scanner.h"
#include "document/page/Utf8.h"

namespace kvo::uses {
namespace {

using page::npos;

constexpr std::string_view kTokenMark = "kv:@";
constexpr std::size_t kLongestToken = std::string_view("kv:@quot;").size();

}  // namespace

MappedText::MappedText(std::string_view value, std::size_t at, const page::PageEncoding& encoding)
    : at_(at) {
  const bool isPlain =
      value.find('&') == npos && (encoding.IsUtf8() || page::AsciiPrefix(value) == value.size());
  if (isPlain) {
    text_ = value;
    return;
  }
  for (std::size_t next = 0; next < value.size();) {
    const std::string_view rest = value.substr(next);
    std::size_t length = rest[0] == '&' ? page::AppendCharacterReference(rest, text_) : 0;
    if (length == 0) {
      length = encoding.CharacterLength(rest);
      if (encoding.Decode(rest.substr(0, length), text_) != npos) text_ += rest.substr(0, length);
    }
    places_.resize(text_.size(), at + next);
    next += length;
  }
  places_.push_back(at + value.size());
}

template <class Next>
void MappedText::Replace(std::string_view mark, Next next) {
  if (text_.find(mark) == npos) return;
  std::string text;
  std::vector<std::size_t> places;
  const auto keep = [&](std::size_t from, std::size_t to) {
    text.append(text_, from, to - from);
    for (; from < to; ++from) places.push_back(PlaceOf(from));
  };
  std::size_t copied = 0;
  for (std::size_t at = text_.find(mark); at != npos; at = text_.find(mark, at)) {
    std::string replacement;
    const std::size_t length = next(std::string_view(text_).substr(at), replacement);
    if (length == 0) {
      ++at;
      continue;
    }
    keep(copied, at);
    text += replacement;
    places.resize(text.size(), PlaceOf(at));
    copied = at += length;
  }
  keep(copied, text_.size());
  places.push_back(PlaceOf(text_.size()));
  text_ = std::move(text);
  places_ = std::move(places);
}

void MappedText::DecodeTokens() {
  Replace(kTokenMark, [](std::string_view rest, std::string& replacement) -> std::size_t {
    const std::size_t end = rest.substr(0, kLongestToken).find(';');
    if (end == npos) return 0;
    const std::string_view token = rest.substr(0, end + 1);
    replacement = DecodeMarkupTokens(token);
    return replacement == token ? 0 : token.size();
  });
}

void MappedText::RemoveCData() {
  for (const std::string_view marker : {page::kCDataStart, std::string_view("]]>")})
    Replace(marker, [marker](std::string_view, std::string&) { return marker.size(); });
}

}  // namespace kvo::uses
