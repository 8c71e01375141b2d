// The first character of a conversation is a number, whose bits say what the client can do. Each
// line is a message, by its first character:
//
//   o 0 TEXT     opens a text: 0 and 1 are pages, 2 is the office beside them
//   e 0 TEXT     gives it another text
//   i 0 1234 T   puts T in place of the range from line 1, character 2 to line 3, character 4
//   l 0          closes it
//   c h d r p a s 0 12   asks for completion, hover, definition, references, prepareRename, actions
//                or symbols at line 1, character 2
//   n 0 12 NAME  renames what is there
//   x 0          cancels the latest request, 1 the one before
//   k            checks a text
//   j JSON       any message
//   f BYTES      bytes for the reader of frames
//
// (without the blanks). "+" in front of a message holds it and those before it back: the server
// gets them together with the next one that has none.
#include "fuzz/LanguageRules.h"

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "apps/language/Server.h"
#include "fuzz/Bytes.h"
#include "fuzz/Demand.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::language {
namespace {

// These files do not exist, so only open texts count.
const std::array<std::string, 3> kUris = {"file:///kvo-no-such-folder/a.html",
                                          "file:///kvo-no-such-folder/b.html",
                                          "file:///kvo-no-such-folder/office.json"};

std::string Written(const Json& message) {
  return message.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Frames are the same however their bytes arrive.
std::vector<std::string> FramesOf(std::string_view bytes, std::size_t step) {
  std::vector<std::string> frames;
  FrameReader reader;
  for (std::size_t at = 0; at < bytes.size(); at += step) {
    reader.Feed(bytes.substr(at, step));
    while (const auto frame = reader.Next())
      frames.push_back(std::to_string(static_cast<int>(frame->kind)) + frame->content);
  }
  return frames;
}

// A text as the client counts it.
class Mirror {
 public:
  Mirror() = default;
  Mirror(std::string text, bool utf8) : text_(std::move(text)), utf8_(utf8) {}

  bool Has(const Json& position) const {
    const auto [begin, end] = Line(position.at("line"));
    return begin != std::string::npos &&
           position.at("character").get<std::size_t>() <= Units(begin, end);
  }
  void Replace(const Json& range, const std::string& text) {
    const std::size_t begin = Offset(range.at("start"));
    const std::size_t end = std::max(begin, Offset(range.at("end")));
    text_ = text_.substr(0, begin) + text + text_.substr(end);
  }

 private:
  // Where a line begins, and where it ends before its line break; npos when there is none.
  std::pair<std::size_t, std::size_t> Line(std::size_t number) const {
    std::size_t begin = 0;
    for (;; --number) {
      const std::size_t end = std::min(text_.find_first_of("\r\n", begin), text_.size());
      if (number == 0) return {begin, end};
      if (end == text_.size()) return {std::string::npos, std::string::npos};
      begin = text_.compare(end, 2, "\r\n") == 0 ? end + 2 : end + 1;
    }
  }
  std::size_t Length(std::size_t at) const {
    std::size_t length = 1;
    while (at + length < text_.size() && (text_[at + length] & 0xC0) == 0x80) ++length;
    return length;
  }
  std::size_t Units(std::size_t begin, std::size_t end) const {
    if (utf8_) return end - begin;
    std::size_t units = 0;
    for (std::size_t at = begin; at < end; at += Length(at)) units += Length(at) == 4 ? 2 : 1;
    return units;
  }
  std::size_t Offset(const Json& position) const {
    const auto [begin, end] = Line(position.at("line"));
    if (begin == std::string::npos) return text_.size();
    std::size_t at = begin;
    while (at < end && Units(begin, at + Length(at)) <= position.at("character").get<std::size_t>())
      at += Length(at);
    return at;
  }

  std::string text_;
  bool utf8_ = false;
};

bool IsPosition(const Json& json) {
  return json.is_object() && json.size() == 2 && json.contains("line") &&
         json.contains("character");
}

class Conversation {
 public:
  explicit Conversation(std::string_view input) : rest_(input) {}

  void Hold() {
    Begin(rest_.Below(32));
    while (!rest_.AtEnd() && !server_.Messages().HasEnded()) {
      const bool held = rest_.Skip('+');
      SayNext();
      if (!held) HandleAll();
    }
    HandleAll();
    while (!server_.Messages().HasEnded() && server_.HasWork()) server_.Work();
    if (!server_.Messages().HasEnded()) Demand(requests_.empty(), "a request has no answer");
    Demand(refusals_ == 0, "a message is not refused");
  }

 private:
  void Begin(std::size_t can) {
    const auto flag = [can](std::size_t bit) { return ((can >> bit) & 1) != 0; };
    utf8_ = flag(4);
    Json encodings = Json::array({"utf-16"});
    if (utf8_) encodings.push_back("utf-8");
    const Json completion = {{"completionItem", {{"snippetSupport", flag(0)}}}};
    const Json hover = {{"contentFormat", {flag(1) ? "markdown" : "plaintext"}}};
    const Json symbols = {{"hierarchicalDocumentSymbolSupport", flag(2)}};
    Ask("initialize",
        {{"capabilities",
          {{"general", {{"positionEncodings", encodings}}},
           {"textDocument",
            {{"completion", completion}, {"hover", hover}, {"documentSymbol", symbols}}},
           {"workspace", {{"workspaceEdit", {{"documentChanges", flag(3)}}}}}}}});
    HandleAll();
  }

  void SayNext() {
    const char kind = rest_.OneOf("oeilchdrpasnxkjf");
    if (kind == 'j') return Say(rest_.Text());
    if (kind == 'f') return CheckFrames(rest_.Text());
    if (kind == 'k') {
      rest_.Text();
      if (server_.HasWork()) server_.Work();
      return;
    }
    if (kind == 'x') {
      const int id = lastId_ - static_cast<int>(rest_.Below(10));
      rest_.Text();
      return Tell("$/cancelRequest", {{"id", id}});
    }
    const std::string& uri = kUris[rest_.Below(kUris.size())];
    const Json text = {{"uri", uri}};
    switch (kind) {
      case 'o':
        return Tell("textDocument/didOpen",
                    {{"textDocument", {{"uri", uri}, {"version", 1}, {"text", rest_.Text()}}}});
      case 'e':
        return Tell(
            "textDocument/didChange",
            {{"textDocument", text}, {"contentChanges", Json::array({{{"text", rest_.Text()}}})}});
      case 'i': {
        Json range = NextRange();
        return Tell("textDocument/didChange",
                    {{"textDocument", text},
                     {"contentChanges",
                      Json::array({{{"range", std::move(range)}, {"text", rest_.Text()}}})}});
      }
      case 'l':
        rest_.Text();
        return Tell("textDocument/didClose", {{"textDocument", text}});
      case 'a': {
        Json range = NextRange();
        const std::string only = rest_.Text();
        Json context = {{"diagnostics", Json::array()}};
        if (!only.empty()) context["only"] = Json::array({only});
        return Ask("textDocument/codeAction",
                   {{"textDocument", text}, {"range", range}, {"context", context}});
      }
      default:
        break;
    }
    Json params = {{"textDocument", text}, {"position", NextPosition()}};
    const std::string word = rest_.Text();
    if (kind == 'r') params["context"] = {{"includeDeclaration", true}};
    if (kind == 'n') params["newName"] = word;
    static const std::map<char, const char*> methods = {
        {'c', "completion"},    {'h', "hover"},  {'d', "definition"},    {'r', "references"},
        {'p', "prepareRename"}, {'n', "rename"}, {'s', "documentSymbol"}};
    Ask(std::string("textDocument/") + methods.at(kind), std::move(params));
  }

  Json NextPosition() {
    const std::size_t line = rest_.Below(64);
    return {{"line", line}, {"character", rest_.Below(256)}};
  }
  Json NextRange() {
    Json start = NextPosition();
    return {{"start", std::move(start)}, {"end", NextPosition()}};
  }

  void Ask(const std::string& method, Json params) {
    Say(Written({{"jsonrpc", "2.0"},
                 {"id", ++lastId_},
                 {"method", method},
                 {"params", std::move(params)}}));
  }
  void Tell(const std::string& method, Json params) {
    ours_ = true;
    Say(Written({{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}}));
    ours_ = false;
  }

  void Say(const std::string& content) {
    const Json message = Json::parse(content, nullptr, false);
    const bool isObject = !message.is_discarded() && message.is_object();
    const bool hasId = isObject && message.contains("id");
    const bool hasMethod = isObject && message.contains("method");
    const bool isAnswer =
        hasId && !hasMethod && (message.contains("result") || message.contains("error"));
    const bool isSound = hasMethod && message["method"].is_string() &&
                         (!hasId || message["id"].is_string() || message["id"].is_number_integer());
    if (isSound && hasId) requests_.push_back(message);
    if (isSound && (hasId || message["method"] != "$/cancelRequest"))
      waiting_.push_back({message, ours_});
    if (!isSound && !isAnswer) ++refusals_;
    server_.Messages().Receive(content);
  }

  void HandleAll() {
    while (server_.Messages().HasWaiting() && !server_.Messages().HasEnded()) {
      Demand(!waiting_.empty(), "a message waits that nobody sent");
      const auto [message, ours] = std::move(waiting_.front());
      waiting_.pop_front();
      if (!message.contains("id")) Follow(message, ours);
      server_.Messages().HandleNext();
    }
  }

  // Keeps the texts as the client has them.
  void Follow(const Json& message, bool ours) {
    const std::string method = message["method"];
    if (!method.starts_with("textDocument/did")) return;
    if (!ours) isBlind_ = true;  // the server may have taken a part of it
    if (isBlind_) return texts_.clear();
    const Json& params = message["params"];
    const std::string uri = params["textDocument"]["uri"];
    if (method.ends_with("Open")) texts_[uri] = Mirror(params["textDocument"]["text"], utf8_);
    if (method.ends_with("Close")) texts_.erase(uri);
    if (!method.ends_with("Change") || !texts_.contains(uri)) return;
    const Json& change = params["contentChanges"][0];
    if (change.contains("range"))
      texts_[uri].Replace(change["range"], change["text"]);
    else
      texts_[uri] = Mirror(change["text"], utf8_);
  }

  void Hear(const Json& message) {
    const std::string framed = Framed(message);
    const std::vector<std::string> frames = FramesOf(framed, framed.size() / 3);
    Demand(frames.size() == 1 && frames.front().substr(1) == Written(message),
           "a message cannot be read back");
    if (message.contains("method"))
      return CheckRanges(message.at("params"), message["params"].value("uri", ""));
    Demand(message.contains("result") != message.contains("error"),
           "an answer is not either a result or an error");
    if (message.at("id").is_null()) {
      Demand(refusals_-- > 0, "a sound message is refused");
      return;
    }
    const auto request = std::ranges::find_if(
        requests_, [&](const Json& each) { return each["id"] == message["id"]; });
    Demand(request != requests_.end(), "an answer has no request, or is the second one");
    const Json asked = std::move(*request);
    requests_.erase(request);
    if (message.contains("error")) {
      const auto cancelled = std::ranges::find(
          waiting_, asked, [](const Waiting& each) -> const Json& { return each.message; });
      if (message["error"]["code"] == static_cast<int>(ErrorCode::requestCancelled))
        waiting_.erase(cancelled);
      return;
    }
    std::string uri;
    if (asked.contains("params") && asked["params"].is_object() &&
        asked["params"].contains("textDocument"))
      uri = asked["params"]["textDocument"].value("uri", "");
    CheckRanges(message["result"], uri);
  }

  // Every range is in its text, as far as that is known.
  void CheckRanges(const Json& json, std::string uri) {
    if (!json.is_structured()) return;
    if (json.is_object()) {
      if (json.contains("uri")) uri = json["uri"];
      if (json.contains("textDocument")) uri = json["textDocument"].value("uri", "");
      if (json.contains("start") && json.contains("end") && IsPosition(json["start"]) &&
          IsPosition(json["end"]) && texts_.contains(uri)) {
        Demand(texts_[uri].Has(json["start"]) && texts_[uri].Has(json["end"]),
               "a range is not in its text");
        const auto order = [](const Json& at) {
          return std::pair(at["line"].get<std::size_t>(), at["character"].get<std::size_t>());
        };
        Demand(order(json["start"]) <= order(json["end"]), "a range ends before it begins");
      }
    }
    for (const auto& [key, value] : json.items())
      CheckRanges(value, key.starts_with("file:") ? key : uri);
  }

  static void CheckFrames(const std::string& bytes) {
    const auto all = FramesOf(bytes, std::max<std::size_t>(bytes.size(), 1));
    Demand(FramesOf(bytes, 1) == all && FramesOf(bytes, 5) == all,
           "frames depend on how their bytes arrive");
  }

  struct Waiting {
    Json message;
    bool ours;
  };

  Bytes rest_;
  Server server_{
      [this](const Json& message) { Hear(message); },
      [](const std::string&) {
        return std::vector<std::string>{"/kvo-no-such-folder/a.html", "/kvo-no-such-folder/b.html"};
      },
      "1"};
  bool utf8_ = false;
  int lastId_ = 0;
  bool ours_ = false;
  std::vector<Json> requests_;  // without their answers
  std::deque<Waiting> waiting_;
  int refusals_ = 0;  // still to come
  bool isBlind_ = false;
  std::map<std::string, Mirror> texts_;
};

}  // namespace

void CheckLanguage(std::string_view input) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  Conversation(input).Hold();
}

}  // namespace kvo::language
