// Which variant of a page shows which form of its switches.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/kvo/Json.h"
#include "document/preview/Template.h"

namespace kvo {

class Coverage {
 public:
  explicit Coverage(const std::vector<preview::Switch>& switches)
      : switches_(switches), rows_(switches.size()) {}

  // Takes the variants in order.
  void Add(const preview::Preview& variant);

  // A table for people, with a sentence about what no variant shows.
  std::string Table() const;
  // [{"line", "column", "class", "id", "kind", "name", "holds": [variants], "fails": [variants]}]
  Json List() const;

 private:
  struct Row {
    std::vector<std::size_t> holds;  // the numbers of the variants that show this form, from 1
    std::vector<std::size_t> fails;
  };

  const std::vector<preview::Switch>& switches_;
  std::vector<Row> rows_;
  std::size_t variants_ = 0;
};

}  // namespace kvo
