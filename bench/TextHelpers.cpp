// The text helpers against their literal definitions, against memcpy of the same text, and against
// the escapers of well-known libraries.
#include <cstring>
#include <random>

#include "bench/Peers.h"
#include "bench/Stopwatch.h"
#include "bench/sections.h"
#include "common/text/modGlobal.h"
#include "tests/core/Definitions.h"

namespace kvo::bench {
namespace {

// What a text is strewn with, for a helper and for the libraries that do the like.
struct Strewn {
  std::vector<std::string> pieces;
  std::vector<std::string> peerPieces;
};

// Letters of which so many of a thousand are a piece instead, one after the other.
std::string Text(std::size_t length, unsigned perThousand, const std::vector<std::string>& pieces) {
  std::mt19937 random(1);
  std::string text;
  for (std::size_t piece = 0; text.size() < length;)
    if (random() % 1000 < perThousand)
      text += pieces[piece++ % pieces.size()];
    else
      text += static_cast<char>('b' + random() % 25);
  return text;
}

struct Helper {
  const char* name;
  void (*append)(std::string& out, std::string_view text);
  std::string (*definition)(std::string text);
  std::vector<Peer> peers;
  Strewn strewn;
};

std::vector<Helper> Helpers() {
  const std::vector<std::string> markup{"<", ">", "\"", "&", "\r\n"};
  const std::vector<std::string> three{"<", ">", "\""};
  return {{"FixAmpersands",
           AppendFixAmpersands,
           FixAmpersandsByDefinition,
           Escapers(Escaped::ampersands),
           {{"&"}, {"&"}}},
          {"EncodeMarkupTokens",
           AppendEncodeMarkupTokens,
           EncodeByDefinition,
           Escapers(Escaped::everything),
           {markup, markup}},
          {"DecodeMarkupTokens",
           AppendDecodeMarkupTokens,
           DecodeByDefinition,
           Unescapers(),
           {{"kv:@lt;", "kv:@gt;", "kv:@quot;", "kv:@amp;", "kv:@br;"},
            {"&lt;", "&gt;", "&quot;", "&amp;", "&#10;"}}},
          {"EncodeHtmlEntities",
           AppendEncodeHtmlEntities,
           EntitiesByDefinition,
           Escapers(Escaped::everything),
           {three, three}}};
}

// Beyond this the repeated expression of FixAmpersands' definition takes minutes.
constexpr std::size_t kLongestForDefinition = 256;

// The goals for FixAmpersands, at 4 KB: what share of memcpy's speed is reached.
constexpr std::size_t kGoalLength = 4096;
constexpr double kLeastClean = 0.4;
constexpr double kLeastStrewn = 0.1;  // with one percent of ampersands
double MemcpyGoal(const Helper& helper, std::size_t length, unsigned perThousand) {
  if (helper.append != AppendFixAmpersands || length != kGoalLength || perThousand > 10) return 0;
  return perThousand == 0 ? kLeastClean : kLeastStrewn;
}

std::vector<std::string> Row(Report& report, const Helper& helper, std::size_t length,
                             unsigned perThousand) {
  const std::string text = Text(length, perThousand, helper.strewn.pieces);
  const std::string peerText = Text(length, perThousand, helper.strewn.peerPieces);
  Stopwatch stopwatch;
  stopwatch.Add("ours", [append = helper.append, text, out = std::string()]() mutable {
    out.clear();
    append(out, text);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  });
  stopwatch.Add("memcpy", [text, out = text]() mutable {
    std::memcpy(out.data(), text.data(), text.size());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  });
  if (length <= kLongestForDefinition)
    stopwatch.Add("definition", [definition = helper.definition, text] {
      benchmark::DoNotOptimize(definition(text).size());
    });
  for (const Peer& peer : helper.peers) stopwatch.Add(peer.name, peer.on(peerText));

  const Times times = stopwatch.Run();
  const double ours = times.at("ours");
  const double share = times.at("memcpy") / ours;
  const double goal = MemcpyGoal(helper, length, perThousand);
  std::vector<std::string> row{Size(static_cast<double>(length)), Figure(perThousand / 10.0) + " %",
                               Duration(ours),
                               goal > 0 ? report.AtLeast(share, goal) : Figure(share)};
  const auto definition = times.find("definition");
  row.push_back(definition == times.end() ? "" : Figure(definition->second / ours));
  for (const Peer& peer : helper.peers)
    row.push_back(report.AtLeast(times.at(peer.name) / ours, 1));
  return row;
}

void MeasureHelper(Report& report, const Helper& helper) {
  std::vector<std::string> header{"text", "strewn", "time", "memcpy /", "definition /"};
  for (const Peer& peer : helper.peers) header.push_back(std::string(peer.name) + " /");
  std::vector<std::vector<std::string>> rows;
  for (const std::size_t length : {16U, 256U, 4096U, 65536U, 1048576U})
    for (const unsigned perThousand : {0U, 10U, 100U, 1000U})
      rows.push_back(Row(report, helper, length, perThousand));
  report.Paragraph("`" + std::string(helper.name) + "`");
  report.Table(header, rows);
}

// The helpers whose work does not grow with a text, against the C library's formatting and reading
// of the same.
void MeasureSmallOnes(Report& report) {
  std::vector<std::vector<std::string>> rows;
  const auto measure = [&](const char* name, const char* againstName, auto ours, auto against) {
    Stopwatch stopwatch;
    stopwatch.Add("ours", ours);
    stopwatch.Add("against", against);
    const Times times = stopwatch.Run();
    rows.push_back({name, Duration(times.at("ours")), againstName,
                    report.AtLeast(times.at("against") / times.at("ours"), 1)});
  };
  const std::string padded = "  \r\n \r\nNur solange der Vorrat reicht!\r\n \r\n";
  measure(
      "`TrimCrLf`", "definition", [padded] { benchmark::DoNotOptimize(TrimCrLf(padded).size()); },
      [padded] { benchmark::DoNotOptimize(TrimByDefinition(padded).size()); });
  measure(
      "`ColorToHex`", "snprintf",
      [color = ColorNumber{0x336699}]() mutable {
        benchmark::DoNotOptimize(color);
        benchmark::DoNotOptimize(ColorToHex(color).size());
      },
      [color = 0x336699U]() mutable {
        benchmark::DoNotOptimize(color);
        char text[8];
        std::snprintf(text, sizeof text, "%02X%02X%02X", color & 255U, (color >> 8U) & 255U,
                      (color >> 16U) & 255U);
        benchmark::DoNotOptimize(std::string(text).size());
      });
  measure(
      "`HexToInt`", "strtol",
      [text = std::string("3F")]() mutable {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(HexToInt(text));
      },
      [text = std::string("3F")]() mutable {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::strtol(text.c_str(), nullptr, 16));
      });
  measure(
      "`ParseColor`", "sscanf",
      [text = std::string("#336699")]() mutable {
        std::uint8_t red = 0;
        std::uint8_t green = 0;
        std::uint8_t blue = 0;
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(ParseColor(text, red, green, blue));
      },
      [text = std::string("#336699")]() mutable {
        unsigned red = 0;
        unsigned green = 0;
        unsigned blue = 0;
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::sscanf(text.c_str(), "#%2x%2x%2x", &red, &green, &blue));
      });
  report.Paragraph("The helpers for a single value:");
  report.Table({"helper", "time", "against", "/ ours"}, rows);
}

}  // namespace

void MeasureTextHelpers(Report& report) {
  report.Heading("Text helpers");
  report.Paragraph(
      "Appending to a text that is used again, as runtime text does. `memcpy /` is the share of a "
      "bare copy's speed, wanted from `FixAmpersands` at " +
      Size(kGoalLength) + ": " + Figure(kLeastClean) + " of clean text, " + Figure(kLeastStrewn) +
      " with one percent of ampersands. The other columns say how many times as long the literal "
      "definition (up to " +
      Size(kLongestForDefinition) +
      ": a repeated expression takes minutes for more) and each library take; "
      "every library is to take longer. A library has its usual way: it may return a new text. "
      "For the decoder its text holds entities where ours holds tokens.");
  for (const Helper& helper : Helpers()) MeasureHelper(report, helper);
  MeasureSmallOnes(report);
}

}  // namespace kvo::bench
