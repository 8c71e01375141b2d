// FixAmpersands against a bare memcpy of the same text, and against the escapers of well-known
// libraries where they are installed. Quote ratios of medians from one run.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <string>

#include "common/modGlobal.h"

#ifdef KVO_BENCH_BOOST
#include <boost/algorithm/string/replace.hpp>
#endif
#ifdef KVO_BENCH_glib_2_0
#include <glib.h>
#endif
#ifdef KVO_BENCH_libctemplate
#include <ctemplate/template_emitter.h>
#include <ctemplate/template_modifiers.h>
#endif
#ifdef KVO_BENCH_Qt6Core
#include <QString>
#endif

namespace {

// 4 KB of text in which `perThousand` of a thousand characters are bare ampersands.
std::string Text(int perThousand) {
  std::mt19937 random(1);
  std::string text(4096, ' ');
  for (char& c : text)
    c = static_cast<int>(random() % 1000) < perThousand ? '&'
                                                        : static_cast<char>('b' + random() % 25);
  text.back() = 'z';
  return text;
}

void Memcpy(benchmark::State& state) {
  const std::string text = Text(static_cast<int>(state.range(0)));
  std::string out(text.size(), ' ');
  for (auto _ : state) {
    std::memcpy(out.data(), text.data(), text.size());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void FixAmpersands(benchmark::State& state) {
  const std::string text = Text(static_cast<int>(state.range(0)));
  std::string out;
  for (auto _ : state) {
    out.clear();
    kvo::AppendFixAmpersands(out, text);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

BENCHMARK(Memcpy)->Arg(0)->Arg(10)->Arg(100);
BENCHMARK(FixAmpersands)->Arg(0)->Arg(10)->Arg(100);

#ifdef KVO_BENCH_BOOST
void BoostReplaceAll(benchmark::State& state) {
  const std::string text = Text(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::string out = text;
    boost::algorithm::replace_all(out, "&", "&amp;");
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BoostReplaceAll)->Arg(0)->Arg(10)->Arg(100);
#endif

#ifdef KVO_BENCH_glib_2_0
void GlibMarkupEscape(benchmark::State& state) {
  const std::string text = Text(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    gchar* out = g_markup_escape_text(text.data(), static_cast<gssize>(text.size()));
    benchmark::DoNotOptimize(out);
    g_free(out);
  }
}
BENCHMARK(GlibMarkupEscape)->Arg(0)->Arg(10)->Arg(100);
#endif

#ifdef KVO_BENCH_libctemplate
void CtemplateHtmlEscape(benchmark::State& state) {
  const std::string text = Text(static_cast<int>(state.range(0)));
  const ctemplate::HtmlEscape escape;
  std::string out;
  ctemplate::StringEmitter emitter(&out);
  for (auto _ : state) {
    out.clear();
    escape.Modify(text.data(), text.size(), nullptr, &emitter, "");
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(CtemplateHtmlEscape)->Arg(0)->Arg(10)->Arg(100);
#endif

#ifdef KVO_BENCH_Qt6Core
void QtToHtmlEscaped(benchmark::State& state) {
  const QString text = QString::fromStdString(Text(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    const QString out = text.toHtmlEscaped();
    benchmark::DoNotOptimize(out.constData());
  }
}
BENCHMARK(QtToHtmlEscaped)->Arg(0)->Arg(10)->Arg(100);
#endif

}  // namespace

BENCHMARK_MAIN();
