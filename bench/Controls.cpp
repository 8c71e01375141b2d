// Compares each class's runtime text with hand-written appends of the same bytes, and counts its
// allocations beyond the target string.
#include <algorithm>
#include <memory>

#include "bench/Heap.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "host/registration/classes.h"

namespace kvo::bench {
namespace {

constexpr double kMostOfAppends = 2.5;  // the goal

// Returns a bag with a text of typical length for every key.
std::vector<MemoryBag::Entry> FilledBag(const ControlClass& contract) {
  std::vector<MemoryBag::Entry> entries;
  for (const PropertyRow& row : contract.bag) {
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

// The code under test: writes the runtime text to a reused string.
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

// Appends the same bytes piece by piece, as a programmer would write it: fixed parts and values in
// turn. Also makes a new identifier where the text contains one.
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
    if (newGuid) benchmark::DoNotOptimize(CreateGUID());
    benchmark::DoNotOptimize(out.data());
  }

  std::vector<std::string> pieces;
  bool newGuid;
  std::string out;
};

std::size_t AllocationsOf(RuntimeText& text) {
  const HeapCount heap;
  text();
  return heap.Allocations();
}

std::vector<std::string> Row(Report& report, const std::string& name,
                             const std::vector<MemoryBag::Entry>& bag, const ControlClass& contract,
                             bool cached) {
  RuntimeText text(Filled(contract, bag));
  Stopwatch stopwatch;
  stopwatch.Add("text", text);
  stopwatch.Add("appends", HandWritten(text.out, cached));
  const Times times = stopwatch.Run();
  return {name, Duration(times.at("text")),
          report.AtMost(times.at("text") / times.at("appends"), kMostOfAppends),
          report.AtMost(static_cast<double>(AllocationsOf(text)), 0)};
}

}  // namespace

void MeasureControls(Report& report) {
  report.Heading("Controls");
  report.Paragraph(
      "The time to write a control's runtime text with every key filled, divided by the time of "
      "hand-written appends of the same bytes. The goal is at most " +
      Figure(kMostOfAppends) +
      " and no allocation beyond the target string. A cached product list makes a new identifier "
      "each time; so do the appends that it is compared with.");
  std::vector<std::vector<std::string>> rows;
  for (const RegisteredControl& control : RegisteredControls()) {
    const ControlClass& contract = control.contract();
    const std::string name(contract.name);
    auto bag = FilledBag(contract);
    rows.push_back(Row(report, name, bag, contract, false));
    const auto cached = std::ranges::find(bag, "in-cache", &MemoryBag::Entry::first);
    if (cached == bag.end()) continue;
    cached->second = "yes";
    rows.push_back(Row(report, name + ", cached", bag, contract, true));
  }
  report.Table({"class", "runtime text", "/ appends", "allocations"}, rows);
}

}  // namespace kvo::bench
