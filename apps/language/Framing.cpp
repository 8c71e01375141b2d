#include "apps/language/Framing.h"

#include <algorithm>
#include <charconv>

#include "common/values/Ascii.h"

namespace kvo::language {
namespace {

constexpr std::string_view kHeaderEnd = "\r\n\r\n";
constexpr std::string_view kLineEnd = "\r\n";

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

// Returns the length that a header announces; nothing when it announces none.
std::optional<std::size_t> LengthIn(std::string_view header) {
  std::optional<std::size_t> length;
  while (!header.empty()) {
    const std::size_t end = std::min(header.find(kLineEnd), header.size());
    const std::string_view line = header.substr(0, end);
    header.remove_prefix(std::min(end + kLineEnd.size(), header.size()));
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    if (!EqualIgnoringCase(WithoutBlanks(line.substr(0, colon)), "Content-Length")) continue;
    const std::string_view value = WithoutBlanks(line.substr(colon + 1));
    std::size_t number = 0;
    const auto [rest, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || rest != value.data() + value.size() || length) return std::nullopt;
    length = number;
  }
  return length;
}

}  // namespace

void FrameReader::Feed(std::string_view bytes) {
  const std::size_t skipped = std::min(skip_, bytes.size());
  skip_ -= skipped;
  bytes.remove_prefix(skipped);
  if (broken_) return;
  if (at_ == bytes_.size()) {
    bytes_.clear();
    at_ = 0;
  } else if (at_ > bytes_.size() / 2) {
    bytes_.erase(0, at_);
    at_ = 0;
  }
  bytes_ += bytes;
}

bool FrameReader::ReadHeader() {
  const std::string_view rest = std::string_view(bytes_).substr(at_);
  const std::size_t end = rest.substr(0, kMostHeader).find(kHeaderEnd);
  if (end == std::string_view::npos) {
    broken_ = rest.size() >= kMostHeader;
    return false;
  }
  const std::optional<std::size_t> length = LengthIn(rest.substr(0, end));
  broken_ = !length;
  if (broken_) return false;
  at_ += end + kHeaderEnd.size();
  length_ = *length;
  inContent_ = true;
  return true;
}

std::optional<Frame> FrameReader::Next() {
  if (broken_) return std::nullopt;
  if (!inContent_ && !ReadHeader())
    return broken_ ? std::optional<Frame>({Frame::Kind::noMessage, {}}) : std::nullopt;
  if (length_ > kMostContent) {
    const std::size_t here = std::min(length_, Rest());
    at_ += here;
    skip_ = length_ - here;
    length_ = 0;
    inContent_ = false;
    return Frame{Frame::Kind::tooLong, {}};
  }
  if (Rest() < length_) return std::nullopt;
  Frame frame{Frame::Kind::message, bytes_.substr(at_, length_)};
  at_ += length_;
  length_ = 0;
  inContent_ = false;
  return frame;
}

std::string Framed(const Json& message) {
  const std::string content = message.dump(-1, ' ', false, Json::error_handler_t::replace);
  return "Content-Length: " + std::to_string(content.size()) + "\r\n\r\n" + content;
}

}  // namespace kvo::language
