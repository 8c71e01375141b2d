#include "apps/language/Protocol.h"

#include <algorithm>
#include <new>
#include <utility>

namespace kvo::language {
namespace {

constexpr std::string_view kInitialize = "initialize";
constexpr std::string_view kShutdown = "shutdown";
constexpr std::string_view kExit = "exit";
constexpr std::string_view kCancel = "$/cancelRequest";
constexpr int kLogError = 1;

bool IsId(const Json& id) { return id.is_number_integer() || id.is_string(); }

bool IsRequest(const Json& message) { return message.contains("id"); }

const Json& ParamsOf(const Json& message) {
  static const Json none = Json::object();
  const auto params = message.find("params");
  return params == message.end() || params->is_null() ? none : *params;
}

}  // namespace

void Protocol::Receive(std::string_view content) {
  Json message = Json::parse(content, nullptr, false);
  if (message.is_discarded())
    return Refuse(ErrorCode::parseError,
                  {"Die Nachricht ist kein JSON.", "The message is not JSON."});
  const bool isObject = message.is_object();
  const bool hasId = isObject && message.contains("id");
  if (isObject && !message.contains("method") && hasId &&
      (message.contains("result") || message.contains("error")))
    return;  // the answer to a question of ours
  if (!isObject || !message.contains("method") || !message["method"].is_string() ||
      (hasId && !IsId(message["id"])))
    return Refuse(ErrorCode::invalidRequest,
                  {"Die Nachricht ist weder Anfrage noch Mitteilung.",
                   "The message is neither a request nor a notification."});
  if (!hasId && message["method"] == kCancel) return Cancel(ParamsOf(message));
  waiting_.push_back(std::move(message));
}

void Protocol::Cancel(const Json& params) {
  if (!params.is_object() || !params.contains("id")) return;
  const Json& id = params["id"];
  const auto request = std::ranges::find_if(
      waiting_, [&](const Json& message) { return IsRequest(message) && message["id"] == id; });
  if (request == waiting_.end()) return;  // answered already
  waiting_.erase(request);
  AnswerError(id, ErrorCode::requestCancelled, {"Abgebrochen.", "Cancelled."});
}

void Protocol::Refuse(ErrorCode code, const Message& why) { AnswerError(nullptr, code, why); }

void Protocol::HandleNext() {
  const Json message = std::move(waiting_.front());
  waiting_.pop_front();
  if (stage_ == Stage::ended) return;
  const auto& method = message["method"].get_ref<const std::string&>();
  if (IsRequest(message))
    HandleRequest(method, message["id"], ParamsOf(message));
  else
    HandleNotification(method, ParamsOf(message));
}

void Protocol::CheckStage(const std::string& method) const {
  if (stage_ == Stage::fresh && method != kInitialize)
    throw RequestError(ErrorCode::notInitialized,
                       {"Zuerst kommt initialize.", "initialize comes first."});
  if (stage_ == Stage::running && method == kInitialize)
    throw RequestError(ErrorCode::invalidRequest,
                       {"initialize kommt nur einmal.", "initialize comes only once."});
  if (stage_ == Stage::shutDown)
    throw RequestError(ErrorCode::invalidRequest,
                       {"Nach shutdown kommt nur noch exit.", "Only exit comes after shutdown."});
}

void Protocol::HandleRequest(const std::string& method, const Json& id, const Json& params) {
  Json result;
  try {
    CheckStage(method);
    const auto request = requests_.find(method);
    if (request == requests_.end())
      throw RequestError(ErrorCode::methodNotFound, {"Unbekannt: " + method, "Unknown: " + method});
    result = request->second(params);
  } catch (const RequestError& error) {
    return AnswerError(id, error.Code(), error.What());
  } catch (const Json::exception& error) {
    return AnswerError(id, ErrorCode::invalidParams, {error.what(), error.what()});
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return AnswerError(id, ErrorCode::internalError, FailureMessage(error));
  }
  if (method == kInitialize) stage_ = Stage::running;
  if (method == kShutdown) {
    stage_ = Stage::shutDown;
    wasShutDown_ = true;
  }
  Answer(id, std::move(result));
}

void Protocol::HandleNotification(const std::string& method, const Json& params) {
  if (method == kExit) {
    stage_ = Stage::ended;
    return;
  }
  const auto notification = notifications_.find(method);
  if (stage_ != Stage::running || notification == notifications_.end()) return;
  try {
    notification->second(params);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    const Message why = FailureMessage(error);
    Log({method + ": " + why.german, method + ": " + why.english});
  }
}

void Protocol::Answer(const Json& id, Json result) {
  send_({{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}});
}

void Protocol::AnswerError(const Json& id, ErrorCode code, const Message& message) {
  send_({{"jsonrpc", "2.0"},
         {"id", id},
         {"error", {{"code", static_cast<int>(code)}, {"message", message.In(UserLanguage())}}}});
}

void Protocol::Notify(const std::string& method, Json params) {
  send_({{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}});
}

void Protocol::Ask(const std::string& method, Json params) {
  send_({{"jsonrpc", "2.0"},
         {"id", "kvo-" + std::to_string(++asked_)},
         {"method", method},
         {"params", std::move(params)}});
}

void Protocol::Log(const Message& message) {
  Notify("window/logMessage", {{"type", kLogError}, {"message", message.In(UserLanguage())}});
}

}  // namespace kvo::language
