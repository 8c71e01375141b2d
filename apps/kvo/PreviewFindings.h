// What previews could not show, for the user: once for each place and reason, however many records.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "apps/kvo/Json.h"
#include "document/preview/Template.h"

namespace kvo {

// {"kind", "line", "column", "class", "id", "message"}
Json ToJson(const preview::Finding& finding);

// Memory does not grow with the number of records: beyond a hundred, findings are only counted.
class PreviewFindings {
 public:
  // Messages name the preview as `shownAs`.
  void Add(const preview::Preview& preview, const std::string& record, const std::string& shownAs);

  bool AnyMissing() const { return anyMissing_; }
  // Prints lines "file:line:column: missing: message" on standard error, in page order.
  void Show(std::string_view file) const;

 private:
  using Key =
      std::tuple<std::size_t, preview::Finding::Kind, std::string>;  // offset, kind, message
  struct Seen {
    preview::Finding finding;
    std::string record;  // the first one
    std::size_t more = 0;
  };

  std::map<Key, Seen> seen_;
  std::size_t previews_ = 0;
  std::size_t others_ = 0;
  bool anyMissing_ = false;
};

}  // namespace kvo
