// The text helpers against the escapers of well-known libraries.
#include <algorithm>
#include <random>

#include "bench/Peers.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "common/text/modGlobal.h"

namespace kvo::bench {
namespace {

// The goals: how many times as long as the helper the fastest library takes at least. A text of
// nothing but what is replaced is one that nobody writes.
constexpr double kLeast = 1;
constexpr double kLeastFull = 1 / 1.5;

constexpr std::size_t kLengths[] = {16, 256, 4096, 65536, 1048576};
constexpr unsigned kPerThousand[] = {0, 10, 100, 1000};

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
  std::vector<Peer> peers;
  // What the text is strewn with, ours and that of the libraries.
  std::vector<std::string> pieces;
  std::vector<std::string> peerPieces;
};

std::vector<Helper> Helpers() {
  const std::vector<std::string> markup{"<", ">", "\"", "&", "\r\n"};
  const std::vector<std::string> three{"<", ">", "\""};
  return {{"FixAmpersands", AppendFixAmpersands, Escapers(Escaped::ampersands), {"&"}, {"&"}},
          {"EncodeMarkupTokens", AppendEncodeMarkupTokens, Escapers(Escaped::everything), markup,
           markup},
          {"DecodeMarkupTokens",
           AppendDecodeMarkupTokens,
           Unescapers(),
           {"kv:@lt;", "kv:@gt;", "kv:@quot;", "kv:@amp;", "kv:@br;"},
           {"&lt;", "&gt;", "&quot;", "&amp;", "&#10;"}},
          {"EncodeHtmlEntities", AppendEncodeHtmlEntities, Escapers(Escaped::everything), three,
           three}};
}

std::string Cell(Report& report, const Helper& helper, std::size_t length, unsigned perThousand) {
  const std::string text = Text(length, perThousand, helper.pieces);
  const std::string peerText = Text(length, perThousand, helper.peerPieces);
  Stopwatch stopwatch;
  stopwatch.Add("ours", [append = helper.append, text, out = std::string()]() mutable {
    out.clear();
    append(out, text);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  });
  for (const Peer& peer : helper.peers) stopwatch.Add(peer.name, peer.on(peerText));
  Times times = stopwatch.Run();
  const double ours = times.extract("ours").mapped();
  const auto fastest = std::ranges::min_element(times, {}, &Times::value_type::second);
  return report.AtLeast(fastest->second / ours, perThousand == 1000 ? kLeastFull : kLeast) + ' ' +
         fastest->first;
}

}  // namespace

void MeasureTextHelpers(Report& report) {
  report.Heading("Text helpers");
  report.Paragraph(
      "Appending to a text that is used again, as runtime text does. How many times as long the "
      "fastest of several libraries takes, and which that is, by the length of the text and the "
      "share of it that is replaced: more than " +
      Figure(kLeast) + " is wanted, and " + Figure(kLeastFull) +
      " of texts of nothing else. For the decoder the libraries' text holds entities where ours "
      "holds tokens.");
  std::vector<std::string> header{"helper", "text"};
  for (const unsigned perThousand : kPerThousand)
    header.push_back(std::to_string(perThousand / 10) + " %");
  std::vector<std::vector<std::string>> rows;
  for (const Helper& helper : Helpers())
    for (const std::size_t length : kLengths) {
      auto& row = rows.emplace_back(std::vector<std::string>{'`' + std::string(helper.name) + '`',
                                                             Size(static_cast<double>(length))});
      for (const unsigned perThousand : kPerThousand)
        row.push_back(Cell(report, helper, length, perThousand));
    }
  report.Table(header, rows);
}

}  // namespace kvo::bench
