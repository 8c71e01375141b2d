// JSON-RPC as language servers speak it: requests, each answered exactly once, notifications, and
// the life of a server from `initialize` to `exit`.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "apps/language/Framing.h"
#include "common/values/Localized.h"

namespace kvo::language {

enum class ErrorCode {
  parseError = -32700,
  invalidRequest = -32600,
  methodNotFound = -32601,
  invalidParams = -32602,
  internalError = -32603,
  notInitialized = -32002,
  requestFailed = -32803,
  requestCancelled = -32800,
};

// Answers a request with an error.
class RequestError : public LocalizedError {
 public:
  RequestError(ErrorCode code, Message message) : LocalizedError(std::move(message)), code_(code) {}

  ErrorCode Code() const { return code_; }

 private:
  ErrorCode code_;
};

class Protocol {
 public:
  using Send = std::function<void(const Json& message)>;
  // The result of a request. By returning one value or throwing, a request has exactly one answer.
  using Request = std::function<Json(const Json& params)>;
  using Notification = std::function<void(const Json& params)>;

  explicit Protocol(Send send) : send_(std::move(send)) {}

  // `initialize` and `shutdown` are requests like any other, apart from their place in the life.
  void On(const std::string& method, Request request) { requests_[method] = std::move(request); }
  void On(const std::string& method, Notification notification) {
    notifications_[method] = std::move(notification);
  }

  // Takes one message to the others that wait. A request that is cancelled while it waits is
  // answered at once.
  void Receive(std::string_view content);
  // Answers a message that could not be received.
  void Refuse(ErrorCode code, const Message& why);
  bool HasWaiting() const { return !waiting_.empty(); }
  // Handles the first waiting message.
  void HandleNext();

  void Notify(const std::string& method, Json params);
  // Asks the client and ignores its answer.
  void Ask(const std::string& method, Json params);
  // Shows a message in the client's log.
  void Log(const Message& message);

  // Whether `exit` has come.
  bool HasEnded() const { return stage_ == Stage::ended; }
  // Whether `shutdown` came before the end.
  bool WasShutDown() const { return wasShutDown_; }

 private:
  enum class Stage { fresh, running, shutDown, ended };

  void Answer(const Json& id, Json result);
  void AnswerError(const Json& id, ErrorCode code, const Message& message);
  void HandleRequest(const std::string& method, const Json& id, const Json& params);
  void HandleNotification(const std::string& method, const Json& params);
  void Cancel(const Json& params);
  // Throws RequestError when the request does not belong into this stage.
  void CheckStage(const std::string& method) const;

  Send send_;
  std::map<std::string, Request, std::less<>> requests_;
  std::map<std::string, Notification, std::less<>> notifications_;
  std::deque<Json> waiting_;
  Stage stage_ = Stage::fresh;
  bool wasShutDown_ = false;
  int asked_ = 0;
};

}  // namespace kvo::language
