#include "apps/language/Serve.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "apps/language/Framing.h"
#include "apps/language/Server.h"

namespace kvo::language {
namespace {

[[noreturn]] void Fail() { throw std::system_error(errno, std::generic_category()); }

void WriteAll(int output, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(output, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) Fail();
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Whether reading returns at once.
bool IsReadable(int input) {
  pollfd waiting{input, POLLIN, 0};
  return poll(&waiting, 1, 0) > 0;
}

// A client's messages.
class Inbox {
 public:
  Inbox(int input, Protocol& protocol) : input_(input), protocol_(protocol) {}

  // Takes all messages that have come. Waits for the first byte if `waits`.
  void Take(bool waits) {
    while (!IsClosed() && (waits || IsReadable(input_))) {
      waits = false;
      ReadSome();
      while (const auto frame = frames_.Next()) Take(*frame);
    }
  }
  bool IsClosed() const { return ended_ || broken_; }
  bool IsBroken() const { return broken_; }

 private:
  void ReadSome() {
    const ssize_t size = read(input_, buffer_.data(), buffer_.size());
    if (size < 0 && errno == EINTR) return;
    if (size < 0) Fail();
    ended_ = size == 0;
    frames_.Feed({buffer_.data(), static_cast<std::size_t>(size)});
  }

  void Take(const Frame& frame) {
    switch (frame.kind) {
      case Frame::Kind::message:
        return protocol_.Receive(frame.content);
      case Frame::Kind::tooLong:
        return protocol_.Refuse(ErrorCode::invalidRequest, {"Die Nachricht ist länger als 64 MB.",
                                                            "The message is longer than 64 MB."});
      case Frame::Kind::noMessage:
        broken_ = true;
        return protocol_.Refuse(ErrorCode::parseError,
                                {"Hier beginnt keine Nachricht: Content-Length fehlt.",
                                 "No message begins here: Content-Length is missing."});
    }
  }

  int input_;
  Protocol& protocol_;
  FrameReader frames_;
  std::array<char, 1 << 16> buffer_;
  bool ended_ = false;
  bool broken_ = false;
};

}  // namespace

Ending Serve(int input, int output, PagesIn pagesIn, const std::string& version) {
  Server server([output](const Json& message) { WriteAll(output, Framed(message)); },
                std::move(pagesIn), version);
  Protocol& protocol = server.Messages();
  Inbox inbox(input, protocol);
  while (!protocol.HasEnded()) {
    inbox.Take(!protocol.HasWaiting() && !server.HasWork());
    if (protocol.HasWaiting())
      protocol.HandleNext();
    else if (inbox.IsBroken())
      return Ending::noMessages;
    else if (inbox.IsClosed())
      break;
    else if (server.HasWork())
      server.Work();
  }
  return protocol.WasShutDown() ? Ending::shutDown : Ending::notShutDown;
}

}  // namespace kvo::language
