// The save engine on pages in memory, from 1 to 100,000 controls: against a bare search for
// "<object" over the same bytes, which is the limit, and against tokenizers that merely read the
// page; how time grows, and what it needs beside the page.
#include <cmath>
#include <cstring>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "bench/Heap.h"
#include "bench/Peers.h"
#include "bench/Stopwatch.h"
#include "bench/sections.h"
#include "document/page/Page.h"
#include "fuzz/hostile_pages.h"

namespace kvo::bench {
namespace {

using page::Page;

constexpr std::string_view kElement =
    R"(<object classid="progid:KVOPDesignObjects.DTCPrint" id="Preis"><param name="value" value="#order.total#"></object>)";

// A kilobyte of a newsletter as shops send it: nested tables, inline styles, a conditional comment,
// entities, umlauts; the control stands in a cell.
constexpr std::string_view kNewsletter[] = {
    R"(<tr>
  <td align="left" valign="top" bgcolor="#ffffff" style="padding:12px 20px 12px 20px;border-bottom:1px solid #dddddd;font-family:Tahoma,Arial,sans-serif;font-size:13px;line-height:18px;color:#333333;">
    <!--[if mso]><table width="560" cellpadding="0" cellspacing="0" border="0"><tr><td><![endif]-->
    <a href="https://shop.example/angebot?nr=4711&amp;quelle=newsletter" title="Zum Angebot"><img src="https://shop.example/bilder/4711.jpg" width="120" height="90" alt="Gartenstuhl &quot;Lausitz&quot;" border="0" style="display:block"></a>
    <h3 style="margin:0 0 6px 0;font-size:15px;color:#003366">Gartenst)"
    "\xC3\xBC"
    R"(hle f)"
    "\xC3\xBC"
    R"(r den Sommer</h3>
    <p>Wetterfest, stapelbar und in drei Farben lieferbar. Nur solange der Vorrat reicht!</p>
    <b>Ihr Preis: )",
    R"(</b>&nbsp;<font size="1" color="#777777">inkl. MwSt., zzgl. <a href="https://shop.example/versand">Versand</a></font>
    <!--[if mso]></td></tr></table><![endif]-->
  </td>
</tr>
)"};

std::string Newsletter(std::size_t controls) {
  std::string page = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body><table>\r\n";
  for (std::size_t i = 0; i < controls; ++i) {
    page += kNewsletter[0];
    page += kElement;
    page += kNewsletter[1];
  }
  return page + "</table></body></html>\r\n";
}

std::string ControlsAlone(std::size_t controls) {
  std::string page;
  for (std::size_t i = 0; i < controls; ++i) page += kElement;
  return page;
}

// Takes the written bytes and throws them away, as a file does as far as memory is concerned.
class CountingSink final : public page::Sink {
 public:
  void append(std::string_view bytes) override { size_ += bytes.size(); }
  std::size_t Size() const { return size_; }

 private:
  std::size_t size_ = 0;
};

std::size_t SaveIt(const Page& page) {
  CountingSink sink;
  if (HasErrors(Save(page, sink))) throw std::logic_error("the page has errors");
  return sink.Size();
}

std::string Saved(const std::string& bytes) {
  page::StringSink sink;
  if (HasErrors(Save(Page(bytes), sink))) throw std::logic_error("the page has errors");
  return sink.Text();
}

std::size_t CountObjects(std::string_view bytes) {
  constexpr std::string_view kWanted = "<object";
  std::size_t count = 0;
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  while (const void* found =
             memmem(at, static_cast<std::size_t>(end - at), kWanted.data(), kWanted.size())) {
    ++count;
    at = static_cast<const char*>(found) + kWanted.size();
  }
  return count;
}

// Above this a tree builder would need gigabytes.
constexpr std::size_t kLargestForTrees = 20'000'000;

struct Measured {
  std::size_t bytes = 0;
  double save = 0;  // seconds, as the others
  double search = 0;
  std::optional<double> reading;  // the fastest tokenizer
  std::string fastest;
  std::vector<std::optional<double>> tokenizers;
  std::size_t peak = 0;  // bytes beside the page
  std::size_t allocations = 0;

  double Ratio() const { return save / search; }
  std::string Speed(double seconds) const {
    return Figure(static_cast<double>(bytes) / seconds / 1e6);
  }
};

Measured Measure(const std::string& bytes, bool withTokenizers) {
  const Page page(bytes);
  Stopwatch stopwatch;
  stopwatch.Add("save", [&] { benchmark::DoNotOptimize(SaveIt(page)); });
  stopwatch.Add("search", [&] { benchmark::DoNotOptimize(CountObjects(page.Bytes())); });
  const auto tokenizers = withTokenizers ? Tokenizers() : std::vector<Tokenizer>{};
  for (const Tokenizer& tokenizer : tokenizers)
    if (!tokenizer.buildsTree || bytes.size() <= kLargestForTrees)
      stopwatch.Add(tokenizer.name,
                    [&, tokenizer] { benchmark::DoNotOptimize(tokenizer.read(page.Bytes())); });
  const Times times = stopwatch.Run();

  Measured measured;
  measured.bytes = bytes.size();
  measured.save = times.at("save");
  measured.search = times.at("search");
  for (const Tokenizer& tokenizer : tokenizers) {
    const auto found = times.find(tokenizer.name);
    measured.tokenizers.push_back(found == times.end() ? std::nullopt
                                                       : std::optional(found->second));
    if (found == times.end() || found->second > measured.reading.value_or(found->second)) continue;
    measured.reading = found->second;
    measured.fastest = tokenizer.name;
  }
  const HeapCount heap;
  SaveIt(page);
  measured.peak = heap.PeakBytes();
  measured.allocations = heap.Allocations();
  return measured;
}

struct Kind {
  const char* name;
  std::string (*of)(std::size_t controls);
  bool savedBefore;
  double mostOfSearch;  // goal
  bool withTokenizers;
};

constexpr Kind kKinds[] = {
    {"A newsletter, one control per KB", Newsletter, false, 4, true},
    {"The same, saved before", Newsletter, true, 4, false},
    {"Controls and nothing else", ControlsAlone, false, 10, false},
    {"The same, saved before", ControlsAlone, true, 10, false},
};

constexpr std::size_t kSizes[] = {1, 10, 100, 1000, 10000, 100000};
constexpr double kMostDrift = 1.15;
// What is allowed beside the page.
constexpr double kMostOfPage = 1.5;
constexpr double kMostForControl = 300;  // bytes

// The slope of the line through the points in a doubly logarithmic plot: 1 is linear.
double GrowthExponent(const std::vector<Measured>& all) {
  double sumX = 0;
  double sumY = 0;
  double sumXX = 0;
  double sumXY = 0;
  for (const Measured& one : all) {
    const double x = std::log(static_cast<double>(one.bytes));
    const double y = std::log(one.save);
    sumX += x;
    sumY += y;
    sumXX += x * x;
    sumXY += x * y;
  }
  const auto count = static_cast<double>(all.size());
  return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

void WritePlotData(const std::string& file, const std::vector<Measured>& all) {
  std::ofstream out(file);
  for (const Measured& one : all)
    out << one.bytes << ' ' << one.Speed(one.save) << ' ' << one.Speed(one.search) << ' '
        << (one.reading ? one.Speed(*one.reading) : "nan") << '\n';
  if (!out.flush()) throw std::runtime_error(file + " cannot be written");
}

void MeasureKind(Report& report, const Kind& kind, const std::string& plotData) {
  std::vector<std::string> header{"controls",      "page",          "save, MB/s",
                                  "search, MB/s",  "save / search", "bytes beside page",
                                  "for a control", "of allowed",    "allocations for a tag"};
  if (kind.withTokenizers)
    for (const Tokenizer& tokenizer : Tokenizers())
      header.push_back(std::string(tokenizer.name) + ", MB/s");
  std::vector<std::vector<std::string>> rows;
  std::vector<Measured> all;
  for (const std::size_t controls : kSizes) {
    const std::string bytes = kind.savedBefore ? Saved(kind.of(controls)) : kind.of(controls);
    const Measured& one = all.emplace_back(Measure(bytes, kind.withTokenizers));
    const auto each = static_cast<double>(controls);
    const auto tags = static_cast<double>(std::ranges::count(bytes, '<'));
    const double allowed = kMostOfPage * static_cast<double>(bytes.size()) + kMostForControl * each;
    const auto peak = static_cast<double>(one.peak);
    std::vector<std::string> row{std::to_string(controls),
                                 Size(static_cast<double>(bytes.size())),
                                 one.Speed(one.save),
                                 one.Speed(one.search),
                                 report.AtMost(one.Ratio(), kind.mostOfSearch),
                                 std::to_string(one.peak),
                                 Figure(peak / each),
                                 report.AtMost(peak / allowed, 1),
                                 Figure(static_cast<double>(one.allocations) / tags)};
    for (const auto& seconds : one.tokenizers) row.push_back(seconds ? one.Speed(*seconds) : "");
    rows.push_back(row);
  }
  report.Paragraph("**" + std::string(kind.name) + ".** Save over search: at most " +
                   Figure(kind.mostOfSearch) + ".");
  report.Table(header, rows);
  const Measured& few = all[all.size() - 3];
  const Measured& many = all.back();
  report.Paragraph("From a thousand to 100,000 controls the ratio drifts by " +
                   report.AtMost(many.Ratio() / few.Ratio(), kMostDrift) + " (at most " +
                   Figure(kMostDrift) + "). Time grows with the page's size to the power of " +
                   Figure(GrowthExponent(all)) + " over all sizes.");
  if (!kind.withTokenizers) return;
  report.Paragraph("At " + Size(static_cast<double>(many.bytes)) + " the fastest tokenizer, " +
                   many.fastest + ", takes " + report.AtLeast(*many.reading / many.save, 1) +
                   " times as long to read the page as it takes to save it (at least 1).");
  WritePlotData(plotData, all);
}

// How much longer ten times a hostile page takes, over ten: 1 is linear, 10 is square.
void MeasureHostilePages(Report& report) {
  constexpr int kParts = 2000;
  constexpr double kMostGrowth = 1.5;
  std::vector<std::vector<std::string>> rows;
  for (const page::HostilePage& hostile : page::kHostilePages) {
    const Page tenth(hostile.of(kParts));
    const Page whole(hostile.of(10 * kParts));
    const auto save = [](const Page& page) {
      return [&page] {
        CountingSink sink;
        benchmark::DoNotOptimize(Save(page, sink).size());
      };
    };
    Stopwatch stopwatch;
    stopwatch.Add("tenth", save(tenth));
    stopwatch.Add("whole", save(whole));
    const Times times = stopwatch.Run();
    rows.push_back({hostile.name, Size(static_cast<double>(whole.Bytes().size())),
                    Duration(times.at("whole")),
                    report.AtMost(times.at("whole") / times.at("tenth") / 10, kMostGrowth)});
  }
  report.Paragraph(
      "**Hostile pages.** Time over ten times the time of a tenth of the page: at most " +
      Figure(kMostGrowth) + ", where square time would be 10.");
  report.Table({"page", "size", "time", "growth"}, rows);
}

}  // namespace

void MeasurePages(Report& report, const std::string& plotData) {
  report.Heading("Pages");
  report.Paragraph(
      "Saving a page in memory, the written bytes thrown away, against a bare `memmem` for "
      "`<object` over the same bytes. Beside the page: what the heap holds at most while saving; "
      "at most " +
      Figure(kMostOfPage) + " times the page and " + Figure(kMostForControl) +
      " bytes a control are allowed. Tags are all, not the controls' alone.");
  report.Paragraph("![Speed by size of page](performance.svg)");
  for (const Kind& kind : kKinds) MeasureKind(report, kind, plotData);
  MeasureHostilePages(report);
}

}  // namespace kvo::bench
