// Measures previews: the example newsletter for many records, one after the other as `kvo preview`
// shows them, and a large page, with the publishing of the same page beside it.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "bench/Heap.h"
#include "bench/LargePage.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/preview/Records.h"
#include "document/preview/Template.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::bench {
namespace {

using preview::Record;
using preview::Template;

constexpr double kMostForRecords = 1000;  // milliseconds
constexpr double kMostForPage = 100;

const std::string kFolder = KVO_SOURCE_DIR "/examples/newsletter/";

// The heap's peak while all rows of a query are shown.
double PeakFor(const Template& shown, int rows) {
  shop::SqliteFile file;
  file.FillProducts(rows);
  file.Close();
  office::Office::Description description;
  description.shopDatabase = file.ConnectionString();
  preview::RecordsFile records;
  records.query =
      "SELECT ProductNo AS LastName, Desc1 AS FirstName, 7 AS BonusPoints FROM Products";
  ProcessHeap heap;
  preview::RecordList list(std::move(records),
                           std::make_shared<office::Office>(description, shop::NewConnection));
  for (std::int64_t at = 0;; ++at) {
    const std::optional<Record> record = list.At(at);
    if (!record) {
      if (at != rows) throw std::logic_error("a record is missing");
      return heap.PeakKilobytes();
    }
    benchmark::DoNotOptimize(shown.Render(*record).html.size());
    heap.Look();
  }
}

}  // namespace

void MeasurePreviews(Report& report) {
  report.Heading("Previews");
  report.Paragraph(
      "Processor time in milliseconds. The example newsletter for 1,000 records (goal: at most " +
      Figure(kMostForRecords) +
      "); a page of 2 MB with 2,000 controls, read and shown for one record (goal: at "
      "most " +
      Figure(kMostForPage) + "), and beside it the publishing of that page alone.");
  HeadlessPlatform platform;
  platform.recordsets = [] { return shop::NewRecordset(); };
  const PlatformScope scope(platform);
  const ObjectRef office = office::LoadOffice(kFolder + "office.json");
  const std::vector<Record> records = preview::LoadRecords(kFolder + "preview.json").records;
  const page::Page newsletter(page::ReadFile(kFolder + "newsletter.html"));
  const page::Page large(LargePage());
  const Template shown(newsletter, office);

  Stopwatch stopwatch;
  stopwatch.Add("records", [&] {
    for (std::size_t at = 0; at < 1000; ++at)
      benchmark::DoNotOptimize(shown.Render(records[at % records.size()]).html.size());
  });
  stopwatch.Add("page", [&] {
    benchmark::DoNotOptimize(Template(large, office).Render(records.front()).html.size());
  });
  stopwatch.Add("publish", [&] {
    page::StringSink sink;
    if (HasErrors(page::Publish(large, sink))) throw std::logic_error("the page has errors");
    benchmark::DoNotOptimize(sink.Text().size());
  });
  const Times times = stopwatch.Run();
  report.Table(
      {"1,000 records", "2,000 controls", "publishing them"},
      {{report.AtMost(times.at("records") * 1e3, kMostForRecords),
        report.AtMost(times.at("page") * 1e3, kMostForPage), Figure(times.at("publish") * 1e3)}});
  report.Paragraph(
      "The heap's peak while every row of a query is shown. It must not grow with the rows.");
  std::vector<std::vector<std::string>> peaks;
  for (const int rows : {1'000, 10'000, 100'000})
    peaks.push_back({std::to_string(rows), Figure(PeakFor(shown, rows))});
  report.Table({"rows", "heap, KB"}, peaks);
}

}  // namespace kvo::bench
