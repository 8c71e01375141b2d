// Measures the language server: a key typed into a large page, from the client's message to the
// problems of the page.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "apps/language/Server.h"
#include "bench/LargePage.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::bench {
namespace {

using language::Json;

constexpr double kMostForKey = 100;  // milliseconds

const std::string kUri = "file://" KVO_SOURCE_DIR "/examples/newsletter/large.html";

Json Notice(const std::string& method, const Json& params) {
  return {{"jsonrpc", "2.0"}, {"method", method}, {"params", params}};
}

}  // namespace

void MeasureLanguage(Report& report) {
  report.Heading("Language server");
  report.Paragraph(
      "Processor time in milliseconds, from a typed key to the problems of a page of 2 "
      "MB with 2,000 controls (goal: at most " +
      Figure(kMostForKey) + ").");
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  std::size_t sent = 0;
  language::Server server(
      [&sent](const Json& message) { sent += language::Framed(message).size(); },
      [](const std::string&) { return std::vector<std::string>(); }, "");
  const auto tell = [&server, &sent](const Json& message) {
    sent = 0;
    server.Messages().Receive(message.dump());
    while (server.Messages().HasWaiting()) server.Messages().HandleNext();
    while (server.HasWork()) server.Work();
  };
  Json start = Notice("initialize", {{"capabilities", Json::object()}});
  start["id"] = 1;
  tell(start);
  tell(Notice("textDocument/didOpen",
              {{"textDocument", {{"uri", kUri}, {"version", 1}, {"text", LargePage()}}}}));
  const Json text = {{"uri", kUri}, {"version", 2}};
  // In the text of a row in the middle.
  const Json place = {{"line", 1001}, {"character", 100}};
  const Json change = {{"range", {{"start", place}, {"end", place}}}, {"text", "y"}};
  const Json key = Notice("textDocument/didChange",
                          {{"textDocument", text}, {"contentChanges", Json::array({change})}});

  Stopwatch stopwatch;
  stopwatch.Add("key", [&] {
    tell(key);
    if (sent == 0) throw std::logic_error("no problems were sent");
  });
  const Times times = stopwatch.Run();
  report.Table({"key to problems"}, {{report.AtMost(times.at("key") * 1e3, kMostForKey)}});
}

}  // namespace kvo::bench
