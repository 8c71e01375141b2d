#include "apps/language/Framing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kvo::language {
namespace {

std::vector<std::string> Contents(FrameReader& reader) {
  std::vector<std::string> contents;
  while (const auto frame = reader.Next()) {
    switch (frame->kind) {
      case Frame::Kind::message:
        contents.push_back(frame->content);
        break;
      case Frame::Kind::tooLong:
        contents.emplace_back("too long");
        break;
      case Frame::Kind::noMessage:
        contents.emplace_back("no message");
        break;
    }
  }
  return contents;
}

std::vector<std::string> Read(const std::string& bytes) {
  FrameReader reader;
  reader.Feed(bytes);
  return Contents(reader);
}

using Texts = std::vector<std::string>;

TEST(Framing, WritesWhatItReads) {
  const Json message = {{"text", "Grüße\n🎉"}, {"number", 1}};
  const std::string framed = Framed(message);
  EXPECT_TRUE(framed.starts_with("Content-Length: "));
  EXPECT_EQ(Read(framed + framed), (Texts{message.dump(), message.dump()}));
  EXPECT_EQ(Framed("\xFF"), "Content-Length: 5\r\n\r\n\"\xEF\xBF\xBD\"");
}

TEST(Framing, ReadsByteByByte) {
  const std::string bytes =
      "content-type: x; charset=utf-8\r\nCONTENT-LENGTH :  4 \r\n\r\nab\r\nContent-Length: "
      "0\r\n\r\n";
  FrameReader reader;
  Texts contents;
  for (const char c : bytes) {
    reader.Feed({&c, 1});
    for (const std::string& content : Contents(reader)) contents.push_back(content);
  }
  EXPECT_EQ(contents, (Texts{"ab\r\n", ""}));
  EXPECT_TRUE(reader.IsBetweenMessages());
  reader.Feed("C");
  EXPECT_FALSE(reader.IsBetweenMessages());
}

TEST(Framing, StopsWhereNoMessageBegins) {
  for (const std::string bytes :
       {"hello\r\n\r\n", "Content-Length\r\n\r\n", "Content-Length: 1x\r\n\r\n",
        "Content-Length: -1\r\n\r\n", "Content-Length: 99999999999999999999\r\n\r\n",
        "Content-Length: 1\r\nContent-Length: 1\r\n\r\n", "\r\n\r\n", "Content-Type: x\r\n\r\n"})
    EXPECT_EQ(Read(bytes + "Content-Length: 1\r\n\r\na"), Texts{"no message"}) << bytes;
  EXPECT_EQ(Read(std::string(kMostHeader, 'x')), Texts{"no message"});
}

TEST(Framing, SkipsMessagesThatAreTooLong) {
  const std::string length = std::to_string(kMostContent + 1);
  FrameReader reader;
  reader.Feed("Content-Length: " + length + "\r\n\r\n");
  EXPECT_EQ(Contents(reader), Texts{"too long"});
  const std::string part(1 << 20, 'x');
  for (std::size_t fed = 0; fed < kMostContent; fed += part.size()) reader.Feed(part);
  EXPECT_EQ(Contents(reader), Texts());
  EXPECT_FALSE(reader.IsBetweenMessages());
  reader.Feed("xContent-Length: 1\r\n\r\na");
  EXPECT_EQ(Contents(reader), Texts{"a"});
  EXPECT_TRUE(reader.IsBetweenMessages());
}

}  // namespace
}  // namespace kvo::language
