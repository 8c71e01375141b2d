// Receives a written page, piece by piece.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace kvo::page {

class Sink {
 public:
  virtual ~Sink() = default;
  // May throw; the failure reaches the caller of the writing function.
  virtual void append(std::string_view bytes) = 0;
};

class StringSink final : public Sink {
 public:
  void append(std::string_view bytes) override { text_ += bytes; }
  const std::string& Text() const { return text_; }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

// For checks that need only the problems.
class NullSink final : public Sink {
 public:
  void append(std::string_view) override {}
};

}  // namespace kvo::page
