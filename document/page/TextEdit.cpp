#include "document/page/TextEdit.h"

#include <algorithm>
#include <iterator>

namespace kvo::page {

bool Join(TextEdits& edits, const TextEdits& more) {
  const auto order = [](const TextEdit& a, const TextEdit& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
  };
  TextEdits all;
  std::merge(edits.begin(), edits.end(), more.begin(), more.end(), std::back_inserter(all), order);
  all.erase(std::unique(all.begin(), all.end()), all.end());
  for (std::size_t i = 1; i < all.size(); ++i) {
    const TextEdit& before = all[i - 1];
    const bool samePlace = before.begin == all[i].begin && before.end == all[i].end;
    if (all[i].begin < before.end || samePlace) return false;
  }
  edits = std::move(all);
  return true;
}

std::string Applied(std::string_view page, const TextEdits& edits) {
  std::size_t size = page.size();
  for (const TextEdit& edit : edits) size += edit.bytes.size();
  std::string text;
  text.reserve(size);
  std::size_t copied = 0;
  for (const TextEdit& edit : edits) {
    text.append(page.substr(copied, edit.begin - copied)).append(edit.bytes);
    copied = edit.end;
  }
  return text.append(page.substr(copied));
}

}  // namespace kvo::page
