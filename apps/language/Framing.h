// The framing of the language server protocol: each message is JSON behind a header that says how
// many bytes it has.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace kvo::language {

using Json = nlohmann::json;

// Longer messages are skipped. Holds a page of several megabytes with every character escaped.
inline constexpr std::size_t kMostContent = std::size_t{64} << 20;
// More than any client sends; what goes on longer is no header.
inline constexpr std::size_t kMostHeader = 8192;

struct Frame {
  enum class Kind {
    message,
    tooLong,    // skipped; reading goes on behind it
    noMessage,  // nothing behind it can be understood
  };
  Kind kind = Kind::message;
  std::string content;
};

// Takes a stream of bytes apart into messages.
class FrameReader {
 public:
  void Feed(std::string_view bytes);
  // Returns the next frame; nothing until its last byte is there. After Kind::noMessage it returns
  // nothing any more.
  std::optional<Frame> Next();
  // Whether the stream may end here, between two messages.
  bool IsBetweenMessages() const { return !broken_ && !inContent_ && skip_ == 0 && Rest() == 0; }

 private:
  std::size_t Rest() const { return bytes_.size() - at_; }
  // Reads a header; false when it is incomplete or broken.
  bool ReadHeader();

  std::string bytes_;
  std::size_t at_ = 0;      // how much of them is used
  std::size_t length_ = 0;  // of the content that follows
  std::size_t skip_ = 0;    // bytes of a message that is too long
  bool inContent_ = false;
  bool broken_ = false;
};

// Returns the message with its header. Replaces invalid UTF-8.
std::string Framed(const Json& message);

}  // namespace kvo::language
