// Measures everything in one run and writes the report.
//   kvo_bench KVO EMPTY DOCUMENT [--benchmark_...]
// KVO and EMPTY are the programs whose start-up is measured; DOCUMENT is the Markdown file to
// write. Options of Google Benchmark follow them.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include "bench/Report.h"
#include "bench/Sections.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::bench {
namespace {

constexpr int kArguments = 4;

// Returns the text after the separator in the first line that begins with `key`.
std::string ValueOf(const char* file, std::string_view key, char separator) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with(key)) continue;
    std::string value = line.substr(line.find(separator) + 1);
    std::erase(value, '"');
    return value.substr(std::min(value.find_first_not_of(" \t"), value.size()));
  }
  return "?";
}

std::string Machine() {
  return ValueOf("/proc/cpuinfo", "model name", ':') + ", " +
         std::to_string(std::thread::hardware_concurrency()) + " cores; " +
         ValueOf("/etc/os-release", "PRETTY_NAME", '=') + "; GCC " + __VERSION__;
}

void Write(const char* file, const Report& report) {
  std::ofstream out(file);
  out << "# Performance\n\n`./run bench` writes this file in one run of one process. Every "
         "time is the median of several rounds, in which the compared programs take turns. Quote "
         "the ratios, because the times depend on this machine: "
      << Machine() << ".\n\n"
      << report.Goals() - report.Missed() << " of " << report.Goals()
      << " goals are met; figures that miss their goal are **bold**. A figure close to its limit "
         "may be on either side of it from run to run.\n"
      << report.Text();
  if (!out.flush()) throw std::runtime_error(std::string(file) + " cannot be written");
}

int Run(char** argv) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  Report report;
  const auto section = [](const char* name) {
    std::printf("Measuring %s ...\n", name);
    std::fflush(stdout);
  };
  section("the text helpers");
  MeasureTextHelpers(report);
  section("the controls");
  MeasureControls(report);
  section("pages");
  MeasurePages(report);
  section("previews");
  MeasurePreviews(report);
  section("the language server");
  MeasureLanguage(report);
  section("the picker");
  MeasurePicker(report);
  section("folders");
  MeasureFolders(report, argv[1]);
  section("start-up");
  MeasureStart(report, argv[1], argv[2]);
  Write(argv[3], report);
  std::printf("%d of %d goals met.\n", report.Goals() - report.Missed(), report.Goals());
  return 0;
}

}  // namespace
}  // namespace kvo::bench

int main(int argc, char** argv) {
  if (argc < kvo::bench::kArguments) {
    std::fprintf(stderr, "usage: kvo_bench KVO EMPTY DOCUMENT [OPTIONS]\n");
    return 2;
  }
  // Our options come first, so that the user's override them.
  std::vector<char*> options{argv[0]};
  std::string ours[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=7",
                        "--benchmark_min_time=0.02"};
  for (std::string& option : ours) options.push_back(option.data());
  options.insert(options.end(), argv + kvo::bench::kArguments, argv + argc);
  int count = static_cast<int>(options.size());
  benchmark::Initialize(&count, options.data());
  try {
    return kvo::bench::Run(argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
