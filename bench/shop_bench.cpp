// The product grid over small and large shops: time and memory of the first screen, of jumping
// about and of reading everything. Memory is what the process holds on its heap at most beyond
// what it held before, the database library's share included.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <map>
#include <memory>
#include <random>

#include "common/Form.h"
#include "common/FormGrid.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/shop/Shop.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace {

constexpr std::size_t kRowsOnScreen = 40;

class GridForm final : public kvo::Form {
 public:
  explicit GridForm(const std::string& connectionString) : Form("", {6000, 4000}) {
    for (const char* field : {"ProductNo", "Desc1", "Desc2"})
      grid.AddColumn({.caption = field, .field = field});
    grid.DatabaseName(connectionString);
    grid.RecordSource("SELECT ProductNo, Desc1, Desc2 FROM Products");
    grid.Rebind();
  }

  // What the screen shows from a row on; returns how many bytes that were.
  std::size_t Screen(std::size_t first) const {
    std::size_t bytes = 0;
    for (std::size_t row = first; row < first + kRowsOnScreen; ++row)
      for (std::size_t column = 0; column < grid.Columns().size(); ++column)
        bytes += grid.Cell(row, column).size();
    return bytes;
  }

  kvo::Grid grid{*this, "grid", {}};
};

class HeapPeak {
 public:
  HeapPeak() : before_(Held()) {}
  void Look() { peak_ = std::max(peak_, Held() - before_); }
  double Kilobytes() const { return static_cast<double>(peak_) / 1024; }

 private:
  static long Held() {
    const auto info = mallinfo2();
    return static_cast<long>(info.uordblks + info.hblkhd);
  }
  long before_;
  long peak_ = 0;
};

// Shops are made once each, by their number of products.
std::string FileShop(int products) {
  static std::map<int, std::unique_ptr<kvo::shop::SqliteFile>> files;
  auto& file = files[products];
  if (file == nullptr) {
    file = std::make_unique<kvo::shop::SqliteFile>();
    file->FillProducts(products);
    file->Close();
  }
  return file->ConnectionString();
}

std::string ServerShop(int products) {
  static std::map<int, std::unique_ptr<kvo::shop::PostgresqlServer>> servers;
  auto& server = servers[products];
  if (server == nullptr) {
    server = std::make_unique<kvo::shop::PostgresqlServer>();
    server->FillProducts(products);
    server->Run("VACUUM ANALYZE Products");
  }
  return server->Uri();
}

using Shop = std::string (*)(int products);

// From connecting to the last cell of the first screen.
void FirstScreen(benchmark::State& state, Shop shop) {
  const std::string connectionString = shop(static_cast<int>(state.range(0)));
  GridForm(connectionString).Screen(0);  // loads the driver
  HeapPeak heap;
  for (auto _ : state) {
    const GridForm form(connectionString);
    benchmark::DoNotOptimize(form.Screen(0));
    heap.Look();
  }
  state.counters["heap_KB"] = heap.Kilobytes();
}

// From the first screen to the length of the scroll bar, for which the database counts.
void ScrollBar(benchmark::State& state, Shop shop) {
  const std::string connectionString = shop(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    const GridForm form(connectionString);
    benchmark::DoNotOptimize(form.Screen(0));
    state.ResumeTiming();
    benchmark::DoNotOptimize(form.grid.RowCount());
  }
}

// Anywhere in the table, as with the scroll bar.
void Jump(benchmark::State& state, Shop shop) {
  const std::string connectionString = shop(static_cast<int>(state.range(0)));
  GridForm(connectionString).Screen(0);
  HeapPeak heap;
  const GridForm form(connectionString);
  std::mt19937 random(1);
  std::uniform_int_distribution<std::size_t> row(0, form.grid.RowCount() - kRowsOnScreen);
  for (auto _ : state) {
    benchmark::DoNotOptimize(form.Screen(row(random)));
    heap.Look();
  }
  state.counters["heap_KB"] = heap.Kilobytes();
}

// Every row once, from the first to the last. Each page costs the way to its start.
void ReadThrough(benchmark::State& state, Shop shop) {
  const std::string connectionString = shop(static_cast<int>(state.range(0)));
  HeapPeak heap;
  for (auto _ : state) {
    const GridForm form(connectionString);
    for (std::size_t row = 0; row + kRowsOnScreen <= form.grid.RowCount(); row += kRowsOnScreen)
      benchmark::DoNotOptimize(form.Screen(row));
    heap.Look();
  }
  state.counters["heap_KB"] = heap.Kilobytes();
}

constexpr int kSmall = 1'000;
constexpr int kLarge = 1'000'000;

BENCHMARK_CAPTURE(FirstScreen, sqlite, FileShop)
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FirstScreen, postgresql, ServerShop)
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ScrollBar, sqlite, FileShop)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ScrollBar, postgresql, ServerShop)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Jump, sqlite, FileShop)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Jump, postgresql, ServerShop)
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200);
BENCHMARK_CAPTURE(ReadThrough, sqlite, FileShop)
    ->Arg(kSmall)
    ->Arg(kLarge / 10)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  platform.recordsets = [] { return kvo::shop::NewRecordset(); };
  const kvo::PlatformScope scope(platform);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
