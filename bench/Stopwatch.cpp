#include "bench/Stopwatch.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace kvo::bench {
namespace {

class Collector final : public benchmark::BenchmarkReporter {
 public:
  explicit Collector(Clock clock) : clock_(clock) {}

  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) throw std::runtime_error(run.error_message);
      if (run.run_type != Run::RT_Iteration) continue;
      const double seconds =
          clock_ == Clock::wall ? run.real_accumulated_time : run.cpu_accumulated_time;
      rounds_[run.run_name.function_name].push_back(seconds / static_cast<double>(run.iterations));
    }
  }

  Times Medians() const {
    Times times;
    for (const auto& [name, rounds] : rounds_) times[name] = Median(rounds);
    return times;
  }

 private:
  Clock clock_;
  std::map<std::string, std::vector<double>> rounds_;
};

}  // namespace

Times Stopwatch::Run() {
  Collector collector(clock_);
  benchmark::RunSpecifiedBenchmarks(&collector);
  benchmark::ClearRegisteredBenchmarks();
  return collector.Medians();
}

double Median(std::vector<double> values) {
  if (values.empty()) throw std::invalid_argument("no values for a median");
  std::ranges::sort(values);
  return values[values.size() / 2];
}

}  // namespace kvo::bench
