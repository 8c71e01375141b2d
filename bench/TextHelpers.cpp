// Compares the text helpers with the escapers of well-known libraries.
#include <algorithm>
#include <random>

#include "bench/Peers.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "common/text/modGlobal.h"

namespace kvo::bench {
namespace {

// The goals: the fastest library's time divided by the helper's, at least. The goal is lower for
// texts in which everything is replaced, because nobody writes those.
constexpr double kLeast = 1;
constexpr double kLeastFull = 1 / 1.5;

constexpr std::size_t kLengths[] = {16, 256, 4096, 65536, 1048576};
constexpr unsigned kPerThousand[] = {0, 10, 100, 1000};

// Returns random letters, `perThousand` of a thousand replaced by the next of `pieces`.
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
  // What is mixed into the text, for the helper and for the libraries.
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
      "The helpers append to a reused string, as runtime text does. Each cell is the time of the "
      "fastest of several libraries divided by the helper's time, and the name of that library, by "
      "length of the text and share of it that is replaced. The goal is at least " +
      Figure(kLeast) + ", or " + Figure(kLeastFull) +
      " where everything is replaced. For the decoder, the libraries' text contains entities where "
      "ours contains tokens.");
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
