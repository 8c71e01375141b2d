// For every class: runtime text against hand-written appends of the same bytes, load and save
// against copying the values, and the allocations that a runtime text makes beyond its target.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"

namespace {

std::size_t g_allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++g_allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

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
    if (row.key == "in-cache" || row.key.starts_with("opening") || row.key.starts_with("closing"))
      value = "false";
    entries.emplace_back(row.key, value);
  }
  return entries;
}

std::shared_ptr<Control> Filled(const ControlClass& contract) {
  auto control = contract.create();
  MemoryBag bag(FilledBag(contract));
  control->ReadProperties(bag);
  return control;
}

void RuntimeText(benchmark::State& state, const ControlClass& contract) {
  const auto control = Filled(contract);
  std::string out;
  control->AppendRuntimeText(out);
  const std::size_t before = g_allocations;
  for (auto _ : state) {
    out.clear();
    control->AppendRuntimeText(out);
    benchmark::DoNotOptimize(out.data());
  }
  state.counters["allocations"] = static_cast<double>(g_allocations - before);
}

// The same bytes, appended piece by piece as a programmer would: fixed parts and values in turn.
void HandWritten(benchmark::State& state, const ControlClass& contract) {
  const std::string text = Filled(contract)->GetRuntimeText();
  std::vector<std::string> pieces(1);
  for (const char c : text) {
    pieces.back() += c;
    if (c == '"' || c == ':' || c == '>') pieces.emplace_back();
  }
  std::string out = text;
  for (auto _ : state) {
    out.clear();
    for (const std::string& piece : pieces) out.append(piece);
    benchmark::DoNotOptimize(out.data());
  }
}

void LoadAndSave(benchmark::State& state, const ControlClass& contract) {
  const auto entries = FilledBag(contract);
  const auto control = contract.create();
  for (auto _ : state) {
    MemoryBag in(entries);
    control->ReadProperties(in);
    MemoryBag out;
    control->WriteProperties(out);
    benchmark::DoNotOptimize(out.Entries().data());
  }
}

// The values into the control's members, and keys and values into and out of two bags.
void CopyValues(benchmark::State& state, const ControlClass& contract) {
  const auto entries = FilledBag(contract);
  std::vector<std::string> members(entries.size());
  for (auto _ : state) {
    const auto in = entries;
    for (std::size_t i = 0; i < in.size(); ++i) members[i] = std::string(in[i].second);
    std::vector<MemoryBag::Entry> out;
    for (std::size_t i = 0; i < in.size(); ++i) out.emplace_back(in[i].first, members[i]);
    benchmark::DoNotOptimize(out.data());
  }
}

}  // namespace

int main(int argc, char** argv) {
  kvo::HeadlessPlatform platform;
  const kvo::PlatformScope scope(platform);
  for (const kvo::RegisteredControl& control : kvo::RegisteredControls()) {
    const ControlClass& contract = control.contract();
    const std::string name(contract.name);
    const auto add = [&](const char* what, void (*run)(benchmark::State&, const ControlClass&)) {
      benchmark::RegisterBenchmark(
          (name + "/" + what).c_str(),
          [run, &contract](benchmark::State& state) { run(state, contract); });
    };
    add("runtime_text", RuntimeText);
    add("hand_written", HandWritten);
    add("load_and_save", LoadAndSave);
    add("copy_values", CopyValues);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
