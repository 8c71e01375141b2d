// For every class: runtime text against hand-written appends of the same bytes, load and save
// against copying the values, and the allocations that a runtime text makes beyond its target.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "bench/Paired.h"
#include "common/modGlobal.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"

namespace {

std::size_t g_allocations = 0;

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  ++g_allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using kvo::Control;
using kvo::ControlClass;
using kvo::MemoryBag;

// A control with every key filled with a text of usual length.
std::vector<MemoryBag::Entry> FilledBag(const ControlClass& contract) {
  std::vector<MemoryBag::Entry> entries;
  for (const kvo::BagKey& row : contract.bag) {
    std::string value = "Wert von " + std::string(row.key);
    if (row.key == "attributes") value = "align|center||width|100";
    if (row.key == "display-columns") value = "3";
    if (row.key == "in-cache") value = "no";
    if (row.key.starts_with("opening") || row.key.starts_with("closing")) value = "false";
    entries.emplace_back(row.key, value);
  }
  return entries;
}

std::shared_ptr<Control> Filled(const ControlClass& contract,
                                std::vector<MemoryBag::Entry> entries) {
  auto control = contract.create();
  MemoryBag bag(std::move(entries));
  control->ReadProperties(bag);
  return control;
}

// What is done again and again, and what it is measured against.
struct RuntimeText {
  explicit RuntimeText(std::shared_ptr<Control> filled) : control(std::move(filled)) {
    control->AppendRuntimeText(out);
  }
  void operator()() {
    out.clear();
    control->AppendRuntimeText(out);
    benchmark::DoNotOptimize(out.data());
  }

  std::shared_ptr<Control> control;
  std::string out;
};

// The same bytes, appended piece by piece as a programmer would: fixed parts and values in turn. A
// new identifier has to be made as well where the text holds one.
struct HandWritten {
  HandWritten(const std::string& text, bool withGuid) : pieces(1), newGuid(withGuid), out(text) {
    for (const char c : text) {
      pieces.back() += c;
      if (c == '"' || c == ':' || c == '>') pieces.emplace_back();
    }
  }
  void operator()() {
    out.clear();
    for (const std::string& piece : pieces) out.append(piece);
    if (newGuid) benchmark::DoNotOptimize(kvo::CreateGUID());
    benchmark::DoNotOptimize(out.data());
  }

  std::vector<std::string> pieces;
  bool newGuid;
  std::string out;
};

struct LoadAndSave {
  void operator()() const {
    MemoryBag in(entries);
    control->ReadProperties(in);
    MemoryBag saved;
    control->WriteProperties(saved);
    benchmark::DoNotOptimize(saved.Entries().data());
  }

  std::vector<MemoryBag::Entry> entries;
  std::shared_ptr<Control> control;
};

// The values into the control's members, and keys and values into and out of two bags.
struct CopyValues {
  void operator()() {
    const auto in = entries;
    members.resize(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) members[i] = std::string(in[i].second);
    std::vector<MemoryBag::Entry> saved;
    for (std::size_t i = 0; i < in.size(); ++i) saved.emplace_back(in[i].first, members[i]);
    benchmark::DoNotOptimize(saved.data());
  }

  std::vector<MemoryBag::Entry> entries;
  std::vector<std::string> members;
};

std::size_t AllocationsOf(RuntimeText& text) {
  const std::size_t before = g_allocations;
  text();
  return g_allocations - before;
}

void Report(const std::string& name, const std::vector<MemoryBag::Entry>& bag,
            const ControlClass& contract, bool cached = false) {
  constexpr std::size_t kRepeats = 500;
  constexpr int kRounds = 301;
  RuntimeText text(Filled(contract, bag));
  HandWritten hand(text.out, cached);
  const double textRatio = kvo::bench::Ratio(text, hand, kRepeats, kRounds);
  const double bagRatio = kvo::bench::Ratio(LoadAndSave{bag, contract.create()},
                                            CopyValues{bag, {}}, kRepeats / 10, kRounds);
  std::printf("%-26s %6.2f (at most 2) %3zu (at most 0) %6.2f (at most 2)\n", name.c_str(),
              textRatio, AllocationsOf(text), bagRatio);
}

}  // namespace

int main(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope scope(platform);
  std::printf("%-26s %18s %16s %18s\n", "", "text / appends", "allocations", "bag / copying");
  for (const kvo::RegisteredControl& control : kvo::RegisteredControls()) {
    const ControlClass& contract = control.contract();
    const std::string name(contract.name);
    auto bag = FilledBag(contract);
    Report(name, bag, contract);
    benchmark::RegisterBenchmark(
        (name + "/runtime_text").c_str(),
        [text = RuntimeText(Filled(contract, bag))](benchmark::State& state) mutable {
          for (auto _ : state) text();
        });
    benchmark::RegisterBenchmark(
        (name + "/load_and_save").c_str(),
        [work = LoadAndSave{bag, contract.create()}](benchmark::State& state) {
          for (auto _ : state) work();
        });
    const auto cached = std::ranges::find(bag, "in-cache", &MemoryBag::Entry::first);
    if (cached == bag.end()) continue;
    cached->second = "yes";
    Report(name + ", cached", bag, contract, true);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
