// Collects problems while a page is read, and computes their places at the end in one pass.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "document/page/Encoding.h"
#include "document/page/Problem.h"

namespace kvo::page {

// Finds the line and column of ascending offsets.
class PlaceFinder {
 public:
  PlaceFinder(std::string_view page, const PageEncoding& encoding)
      : page_(page), encoding_(encoding), at_(PageEncoding::Mark(page)) {}

  // Offsets should ascend; a smaller one restarts the search.
  Place At(std::size_t offset);

 private:
  void SkipLines(std::size_t offset);

  std::string_view page_;
  const PageEncoding& encoding_;
  std::size_t at_;
  Place place_;
};

// Which control a problem is about.
struct Subject {
  std::string_view control;  // class name
  std::string_view id;
};

// The bytes of a page that a problem is about.
struct Range {
  Range(std::size_t at) : begin(at) {}  // only the place is known
  Range(std::size_t from, std::size_t to) : begin(from), end(to) {}

  std::size_t begin;
  std::size_t end = 0;
};

class ProblemList {
 public:
  void Add(Range where, std::string_view rule, Subject subject, Message message,
           Severity severity = Severity::error);

  bool HasErrors() const { return errors_ != 0; }
  std::size_t Errors() const { return errors_; }

  // Returns the problems with their places, in page order.
  Problems Take(std::string_view page, const PageEncoding& encoding);

 private:
  Problems problems_;  // without their places yet
  std::size_t errors_ = 0;
};

}  // namespace kvo::page
