#include "apps/language/Uri.h"

#include "common/values/Ascii.h"

namespace kvo::language {
namespace {

constexpr std::string_view kScheme = "file://";

int ValueOf(char digit) { return IsDigit(digit) ? digit - '0' : LowerAscii(digit) - 'a' + 10; }

}  // namespace

std::optional<std::string> PathOf(std::string_view uri) {
  if (!EqualIgnoringCase(uri.substr(0, kScheme.size()), kScheme)) return std::nullopt;
  uri.remove_prefix(kScheme.size());
  constexpr std::string_view kHere = "localhost";
  if (uri.starts_with(kHere)) uri.remove_prefix(kHere.size());
  if (!uri.starts_with('/')) return std::nullopt;
  uri = uri.substr(0, uri.find_first_of("?#"));
  std::string path;
  for (std::size_t at = 0; at < uri.size(); ++at) {
    const bool escaped =
        uri[at] == '%' && at + 2 < uri.size() && IsHexDigit(uri[at + 1]) && IsHexDigit(uri[at + 2]);
    path += escaped ? static_cast<char>(ValueOf(uri[at + 1]) * 16 + ValueOf(uri[at + 2])) : uri[at];
    if (escaped) at += 2;
  }
  if (path.find('\0') != std::string::npos) return std::nullopt;
  return path;
}

std::string UriOf(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri(kScheme);
  for (const char c : path) {
    if (IsLetter(c) || IsDigit(c) || std::string_view("/-._~").find(c) != std::string_view::npos) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri += {'%', kDigits[byte / 16], kDigits[byte % 16]};
    }
  }
  return uri;
}

}  // namespace kvo::language
