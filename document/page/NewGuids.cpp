#include "document/page/NewGuids.h"

#include <cstddef>

#include "common/values/Ascii.h"

namespace kvo::page {
namespace {

constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

bool BeginsWithGuid(std::string_view text) {
  if (text.size() < kShape.size()) return false;
  for (std::size_t at = 0; at < kShape.size(); ++at)
    if (kShape[at] == 'x' ? !IsHexDigit(text[at]) : text[at] != kShape[at]) return false;
  return true;
}

}  // namespace

bool EqualButForNewGuids(std::string_view old, std::string_view text, std::string_view again) {
  if (old.size() != text.size() || again.size() != text.size()) return false;
  for (std::size_t at = 0; at < text.size();) {
    if (BeginsWithGuid(text.substr(at)) && BeginsWithGuid(again.substr(at)) &&
        text.substr(at, kShape.size()) != again.substr(at, kShape.size())) {
      if (!BeginsWithGuid(old.substr(at))) return false;
      at += kShape.size();
      continue;
    }
    if (old[at] != text[at]) return false;
    ++at;
  }
  return true;
}

}  // namespace kvo::page
