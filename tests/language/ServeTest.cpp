// The program over real streams.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apps/language/Framing.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using language::FrameReader;
using language::Json;

class ServeTest : public Program {
 protected:
  static std::string Request(int id, const std::string& method,
                             const Json& params = Json::object()) {
    return language::Framed(
        {{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}});
  }
  static std::string Notice(const std::string& method, const Json& params = Json::object()) {
    return language::Framed({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
  }
  Result Serve(const std::string& input) const { return Kvo({"lsp"}, input); }
  static std::vector<Json> Messages(const std::string& output) {
    FrameReader reader;
    reader.Feed(output);
    std::vector<Json> messages;
    while (const auto frame = reader.Next()) messages.push_back(Json::parse(frame->content));
    EXPECT_TRUE(reader.IsBetweenMessages());
    return messages;
  }

  const std::string start_ = Request(1, "initialize", {{"capabilities", Json::object()}});
};

TEST_F(ServeTest, AnswersAndEndsWell) {
  const Result result =
      Serve(start_ + Notice("initialized") + Request(2, "shutdown") + Notice("exit"));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  const std::vector<Json> messages = Messages(result.out);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0]["result"]["serverInfo"]["name"], "kvo");
  EXPECT_EQ(messages[1], Json({{"jsonrpc", "2.0"}, {"id", 2}, {"result", nullptr}}));
}

TEST_F(ServeTest, TellsHowItEnded) {
  EXPECT_EQ(Serve(start_ + Request(2, "shutdown")).code, 0);
  EXPECT_EQ(Serve(start_ + Notice("exit")).code, 1);
  EXPECT_EQ(Serve(start_).code, 1);
  EXPECT_EQ(Serve("").code, 1);
}

TEST_F(ServeTest, SaysWhoItIsFor) {
  const Result result = Serve(start_ + "hello\r\n\r\n");
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("docs/editors.md"), std::string::npos);
  const std::vector<Json> messages = Messages(result.out);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0]["error"]["code"], -32700);
  EXPECT_EQ(messages[1]["id"], 1) << "what came before is answered";
}

TEST_F(ServeTest, CancelsWhatWaits) {
  const std::vector<Json> messages =
      Messages(Serve(start_ + Request(2, "textDocument/hover") +
                     Notice("$/cancelRequest", {{"id", 2}}) + Request(3, "shutdown"))
                   .out);
  ASSERT_EQ(messages.size(), 3U);
  EXPECT_EQ(messages[0]["error"]["code"], -32800);
  EXPECT_EQ(messages[0]["id"], 2);
  EXPECT_EQ(messages[1]["id"], 1);
  EXPECT_EQ(messages[2]["id"], 3);
}

}  // namespace
}  // namespace kvo::test
