// Compares the save engine on pages in memory with a bare search for "<object" over the same bytes,
// the lower bound, and measures how time grows with the page.
#include <cstring>
#include <stdexcept>

#include "bench/Heap.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "document/page/Page.h"
#include "fuzz/HostilePages.h"

namespace kvo::bench {
namespace {

using page::Page;

// The goals.
constexpr double kMostOfSearchSparse = 6;
constexpr double kMostOfSearchDense = 12;
constexpr double kMostDrift = 1.15;
constexpr double kMostGrowth = 2;
constexpr double kLeastShown = 1.2;  // growth below this is not listed

constexpr std::size_t kSizes[] = {1'000, 10'000, 100'000};

constexpr std::string_view kElement =
    R"(<object classid="progid:KVOPDesignObjects.DTCPrint" id="Preis"><param name="value" value="#order.total#"></object>)";

// A kilobyte of a typical shop newsletter: nested tables, inline styles, a conditional comment,
// entities and umlauts, with the control in a cell.
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

// Discards the written bytes; like a file, it keeps none of them in memory.
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

struct Kind {
  const char* name;
  std::string (*of)(std::size_t controls);
  bool savedBefore;
  double mostOfSearch;
};

constexpr Kind kKinds[] = {
    {"newsletter", Newsletter, false, kMostOfSearchSparse},
    {"newsletter, saved before", Newsletter, true, kMostOfSearchSparse},
    {"controls alone", ControlsAlone, false, kMostOfSearchDense},
    {"controls alone, saved before", ControlsAlone, true, kMostOfSearchDense},
};

void AddRows(Report& report, const Kind& kind, std::vector<std::vector<std::string>>& rows) {
  double first = 0;  // the smallest page's ratio
  for (const std::size_t controls : kSizes) {
    const Page page(kind.savedBefore ? Saved(kind.of(controls)) : kind.of(controls));
    Stopwatch stopwatch;
    stopwatch.Add("save", [&] { benchmark::DoNotOptimize(SaveIt(page)); });
    stopwatch.Add("search", [&] { benchmark::DoNotOptimize(CountObjects(page.Bytes())); });
    const Times times = stopwatch.Run();
    const double ratio = times.at("save") / times.at("search");
    if (first == 0) first = ratio;
    const HeapCount heap;
    SaveIt(page);
    rows.push_back(
        {kind.name, std::to_string(controls), Size(static_cast<double>(page.Bytes().size())),
         Duration(times.at("save")), report.AtMost(ratio, kind.mostOfSearch),
         report.AtMost(ratio / first, kMostDrift), Size(static_cast<double>(heap.PeakBytes()))});
  }
}

// Returns the time for a hostile page divided by ten times the time for a tenth of it: 1 is linear,
// 10 is quadratic.
double GrowthOf(const page::HostilePage& hostile) {
  constexpr int kParts = 2000;
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
  return times.at("whole") / times.at("tenth") / 10;
}

}  // namespace

void MeasurePages(Report& report) {
  report.Heading("Pages");
  report.Paragraph(
      "The time to save a page in memory and discard the bytes, divided by the time of a bare "
      "`memmem` search for `<object` over the same bytes. The goal is at most " +
      Figure(kMostOfSearchSparse) + " for a newsletter with one control per KB and " +
      Figure(kMostOfSearchDense) +
      " for a page of nothing but controls. The drift is this ratio over that of the smallest "
      "page, with a goal of at most " +
      Figure(kMostDrift) + ". The peak heap does not include the page itself.");
  std::vector<std::vector<std::string>> rows;
  for (const Kind& kind : kKinds) AddRows(report, kind, rows);
  report.Table({"page", "controls", "size", "save", "/ search", "drift", "peak heap"}, rows);

  rows.clear();
  for (const page::HostilePage& hostile : page::kHostilePages) {
    const double growth = GrowthOf(hostile);
    const std::string figure = report.AtMost(growth, kMostGrowth);
    if (growth > kLeastShown) rows.push_back({hostile.name, figure});
  }
  report.Paragraph(
      std::to_string(std::size(page::kHostilePages)) +
      " pages designed to be slow to read: the growth is the time for a page divided by ten times "
      "the time for a tenth of it, with a goal of at most " +
      Figure(kMostGrowth) +
      ". Linear time gives 1, quadratic time 10; caches and sorting push it above 1. These pages "
      "are above " +
      Figure(kLeastShown) + ":");
  report.Table({"page", "growth"}, rows);
}

}  // namespace kvo::bench
