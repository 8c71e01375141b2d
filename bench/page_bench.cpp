// The save engine on a page in memory against a bare search for "<object" over the same bytes: how
// many times as long it takes, how that ratio drifts from few controls to many, and how much memory
// it needs above the page itself. All figures are ratios within one run, medians of many rounds in
// which both sides take turns.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "bench/Paired.h"
#include "fuzz/hostile_pages.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/page/Page.h"

namespace {

bool g_counting = false;  // not while something is timed
std::size_t g_inUse = 0;
std::size_t g_peak = 0;

}  // namespace

// What the program allocates is counted, in the bytes that the heap really hands out.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  if (g_counting) g_peak = std::max(g_peak, g_inUse += malloc_usable_size(memory));
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  if (g_counting && memory != nullptr) g_inUse -= malloc_usable_size(memory);
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace kvo::page {
namespace {

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

std::string Saved(const std::string& page) {
  StringSink sink;
  if (HasErrors(Save(Page(page), sink))) throw std::logic_error("the page has errors");
  return sink.Text();
}

// Takes the written bytes and throws them away, as a file does as far as memory is concerned.
class CountingSink final : public Sink {
 public:
  void append(std::string_view bytes) override { size_ += bytes.size(); }
  std::size_t Size() const { return size_; }

 private:
  std::size_t size_ = 0;
};

std::size_t CountObjects(std::string_view page) {
  constexpr std::string_view kWanted = "<object";
  std::size_t count = 0;
  const char* at = page.data();
  const char* const end = at + page.size();
  while (const void* found =
             memmem(at, static_cast<std::size_t>(end - at), kWanted.data(), kWanted.size())) {
    ++count;
    at = static_cast<const char*>(found) + kWanted.size();
  }
  return count;
}

std::size_t SaveIt(const Page& page) {
  CountingSink sink;
  if (HasErrors(Save(page, sink))) throw std::logic_error("the page has errors");
  return sink.Size();
}

struct Measured {
  double ratio;
  double bytesAbovePage;
};

Measured Measure(const std::string& bytes) {
  const Page page(bytes);
  // Small pages are done several times, so that each side of a round takes about a millisecond.
  const std::size_t repeats = 1 + (std::size_t{1} << 20U) / (bytes.size() + 1);
  const int rounds = bytes.size() > (std::size_t{4} << 20U) ? 21 : 101;
  SaveIt(page);
  const double ratio =
      bench::Ratio([&] { benchmark::DoNotOptimize(SaveIt(page)); },
                   [&] { benchmark::DoNotOptimize(CountObjects(page.Bytes())); }, repeats, rounds);
  g_counting = true;
  const std::size_t before = g_inUse;
  g_peak = before;
  SaveIt(page);
  g_counting = false;
  return {ratio, static_cast<double>(g_peak - before)};
}

void Report(const char* name, const std::string& few, const std::string& many, std::size_t controls,
            double most) {
  const Measured small = Measure(few);
  const Measured large = Measure(many);
  const double allowed =
      1.5 * static_cast<double>(many.size()) + 300 * static_cast<double>(controls);
  std::printf(
      "%-34s %8.2f %8.2f (at most %2.0f) %6.2f (at most 1.15) %9.0f (%.4f of what is allowed)\n",
      name, small.ratio, large.ratio, most, large.ratio / small.ratio, large.bytesAbovePage,
      large.bytesAbovePage / allowed);
}

// How much longer ten times a hostile page takes, over ten.
void ReportGrowth() {
  constexpr int kParts = 2000;
  constexpr int kRounds = 3;
  std::printf("\n%-42s %s\n", "ten times a hostile page", "time / 10 times the time");
  for (const HostilePage& hostile : kHostilePages) {
    const Page tenth(hostile.of(kParts));
    const Page whole(hostile.of(10 * kParts));
    const auto work = [](const Page& page) {
      CountingSink sink;
      benchmark::DoNotOptimize(Save(page, sink).size());
    };
    const double growth = bench::Ratio([&] { work(whole); },
                                       [&] {
                                         for (int i = 0; i < 10; ++i) work(tenth);
                                       },
                                       1, kRounds);
    std::printf("%-42s %6.2f\n", hostile.name, growth);
  }
}

void SavePage(benchmark::State& state, const std::string& bytes) {
  const Page page(bytes);
  for (auto _ : state) benchmark::DoNotOptimize(SaveIt(page));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
void SearchPage(benchmark::State& state, const std::string& bytes) {
  for (auto _ : state) benchmark::DoNotOptimize(CountObjects(bytes));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

}  // namespace
}  // namespace kvo::page

int main(int argc, char** argv) {
  using namespace kvo::page;
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope scope(platform);

  constexpr std::size_t kFew = 1000;
  constexpr std::size_t kMany = 100000;
  std::printf("%-34s %8s %8s %14s %21s %9s\n", "save / memmem of \"<object\"", "1000", "100000", "",
              "drift", "bytes above the page");
  Report("a newsletter, one control per KB", Newsletter(kFew), Newsletter(kMany), kMany, 4);
  Report("the same, saved before", Saved(Newsletter(kFew)), Saved(Newsletter(kMany)), kMany, 4);
  Report("controls and nothing else", ControlsAlone(kFew), ControlsAlone(kMany), kMany, 10);
  Report("the same, saved before", Saved(ControlsAlone(kFew)), Saved(ControlsAlone(kMany)), kMany,
         10);
  ReportGrowth();

  const std::string newsletter = Newsletter(kFew);
  const std::string controls = ControlsAlone(kFew);
  benchmark::RegisterBenchmark("search/newsletter", SearchPage, newsletter);
  benchmark::RegisterBenchmark("save/newsletter", SavePage, newsletter);
  benchmark::RegisterBenchmark("search/controls", SearchPage, controls);
  benchmark::RegisterBenchmark("save/controls", SavePage, controls);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
