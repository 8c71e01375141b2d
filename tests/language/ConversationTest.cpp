// Holds the conversations of conversations/*.test with a server and compares what it says.
//
// A conversation is a text in parts, with a line of dashes between them. The first part says what
// it shows. Each other part begins with a line of its own:
//
//   file NAME      a file in the folder of the conversation. «1» marks a place, and is no text.
//   client         a message to the server. Messages in a row arrive together.
//   server         exactly what the server says next
//   server with    at least that: its objects may have more members
//
// In messages, @1 is the position of a place, @1-2 the range between two, @NAME the address of a
// file, @=NAME its text and @folder the address of the folder. At the end the server must have said
// nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "apps/language/Server.h"
#include "apps/language/Uri.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::language {
namespace {

namespace fs = std::filesystem;

const fs::path kConversations = KVO_SOURCE_DIR "/tests/language/conversations";

std::string TextOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return (std::ostringstream() << in.rdbuf()).str();
}

std::vector<fs::path> Conversations() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(kConversations)) files.push_back(entry.path());
  std::ranges::sort(files);
  return files;
}

// Counts positions as the protocol says, by another way than the server: in UTF-16.
Json PositionAt(std::string_view text, std::size_t offset) {
  std::size_t line = 0;
  std::size_t character = 0;
  for (std::size_t at = 0; at < offset; ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '\n' || (byte == '\r' && text.substr(at + 1, 1) != "\n")) {
      ++line;
      character = 0;
    } else if (byte < 0x80 || byte >= 0xC0) {
      character += byte >= 0xF0 ? 2 : 1;
    }
  }
  return {{"line", line}, {"character", character}};
}

class Conversation : public testing::TestWithParam<fs::path> {
 protected:
  Conversation() {
    std::string name = (fs::temp_directory_path() / "kvo-talk-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
    folder_ = name;
  }
  ~Conversation() override {
    UserLanguage(Language::english);
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  void Play(const std::string& head, const std::string& body) {
    if (head.starts_with("file ")) {
      AddFile(head.substr(5), body);
    } else if (head == "client") {
      server_.Messages().Receive(Filled(body));
    } else if (head == "server" || head == "server with") {
      Run();
      ASSERT_FALSE(said_.empty()) << "the server said nothing, instead of " << body;
      const Json actual = Json::parse(said_.front());
      said_.pop_front();
      Json expected = Json::parse(Filled(body));
      if (head == "server") expected["jsonrpc"] = "2.0";
      Compare(expected, actual, head == "server", "");
      if (HasFailure()) FAIL() << "The server said:\n" << actual.dump(2);
    } else {
      FAIL() << "unknown part: " << head;
    }
  }

  void ExpectSilence() {
    Run();
    for (const std::string& message : said_) ADD_FAILURE() << "it also said " << message;
  }

 private:
  void Run() {
    while (server_.Messages().HasWaiting() || server_.HasWork())
      if (server_.Messages().HasWaiting())
        server_.Messages().HandleNext();
      else
        server_.Work();
  }

  void AddFile(const std::string& name, const std::string& marked) {
    std::string& text = files_[name];
    text.clear();
    for (std::size_t at = 0;;) {
      const std::size_t mark = marked.find("«", at);
      text += marked.substr(at, mark - at);
      if (mark == std::string::npos) break;
      const std::size_t end = marked.find("»", mark);
      const std::size_t number = mark + std::string("«").size();
      places_[marked.substr(number, end - number)] = PositionAt(text, text.size());
      at = end + std::string("»").size();
    }
    fs::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  std::string UriOfFile(const std::string& name) const { return UriOf((folder_ / name).string()); }

  // Replaces what begins with "@".
  std::string Filled(const std::string& message) const {
    std::string filled;
    for (std::size_t at = 0; at < message.size();) {
      if (message[at] != '@' ||
          (at > 0 && std::isalnum(static_cast<unsigned char>(message[at - 1])) != 0)) {
        filled += message[at++];
        continue;
      }
      const std::size_t end = std::min(message.find_first_of(" ,:}]\n\"", at), message.size());
      filled += ValueOf(message.substr(at + 1, end - at - 1));
      at = end;
    }
    return filled;
  }
  std::string ValueOf(const std::string& word) const {
    if (word == "folder") return Json(UriOf(folder_.string())).dump();
    if (word.starts_with('=')) return Json(files_.at(word.substr(1))).dump();
    if (const auto place = places_.find(word); place != places_.end()) return place->second.dump();
    if (const std::size_t dash = word.find('-');
        dash != std::string::npos && places_.contains(word.substr(0, dash)))
      return Json({{"start", places_.at(word.substr(0, dash))},
                   {"end", places_.at(word.substr(dash + 1))}})
          .dump();
    return Json(UriOfFile(word)).dump();
  }

  void Compare(const Json& expected, const Json& actual, bool exact, const std::string& path) {
    if (expected.is_object() && actual.is_object()) {
      for (const auto& [key, value] : expected.items()) {
        if (!actual.contains(key))
          ADD_FAILURE() << path << '/' << key << " is missing";
        else
          Compare(value, actual[key], exact, path + '/' + key);
      }
      for (const auto& [key, value] : actual.items())
        if (exact && !expected.contains(key)) ADD_FAILURE() << path << '/' << key << " is too much";
    } else if (expected.is_array() && actual.is_array() && expected.size() == actual.size()) {
      for (std::size_t i = 0; i < expected.size(); ++i)
        Compare(expected[i], actual[i], exact, path + '/' + std::to_string(i));
    } else {
      EXPECT_EQ(expected, actual) << path;
    }
  }

  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
  fs::path folder_;
  std::map<std::string, std::string> files_;
  std::map<std::string, Json> places_;
  std::deque<std::string> said_;
  Server server_{[this](const Json& message) { said_.push_back(message.dump()); },
                 [](const std::string& folder) {
                   std::vector<std::string> pages;
                   for (const auto& entry : fs::recursive_directory_iterator(folder))
                     if (entry.path().extension() == ".html")
                       pages.push_back(entry.path().string());
                   std::ranges::sort(pages);
                   return pages;
                 },
                 "1.2.3"};
};

TEST_P(Conversation, GoesAsWritten) {
  std::istringstream lines(TextOf(GetParam()));
  std::string head;
  std::string body;
  bool isFirst = true;
  const auto play = [&] {
    if (!isFirst) Play(head, body);
    isFirst = false;
    head.clear();
    body.clear();
  };
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line != "-----") {
      if (head.empty())
        head = line;
      else
        body += line + '\n';
      continue;
    }
    SCOPED_TRACE("the part before line " + std::to_string(number));
    play();
    if (HasFatalFailure()) return;
  }
  play();
  if (!HasFatalFailure()) ExpectSilence();
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) {
  std::string name = info.param.stem().string();
  std::ranges::replace(name, '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Language, Conversation, testing::ValuesIn(Conversations()), NameOf);

}  // namespace
}  // namespace kvo::language
