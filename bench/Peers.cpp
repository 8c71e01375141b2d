#include "bench/Peers.h"

#include <apr_escape.h>
#include <benchmark/benchmark.h>
#include <ctemplate/template_emitter.h>
#include <ctemplate/template_modifiers.h>
#include <glib.h>
#include <htmlcxx/html/utils.h>
#include <libxml/entities.h>
#include <libxml/parserInternals.h>

#include <QByteArray>
#include <QString>
#include <boost/algorithm/string/replace.hpp>
#include <memory>
#include <stdexcept>

namespace kvo::bench {
namespace {

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

using Replacements = std::vector<std::pair<const char*, const char*>>;

template <class Work>
Peer Of(const char* name, Work work) {
  return {name, [work](const std::string& text) -> std::function<void()> {
            return [work, text] { work(text); };
          }};
}

void Boost(const std::string& text, const Replacements& replacements) {
  std::string out = text;
  for (const auto& [from, to] : replacements) boost::algorithm::replace_all(out, from, to);
  benchmark::DoNotOptimize(out.data());
}

void Glib(const std::string& text) {
  gchar* const out = g_markup_escape_text(text.data(), static_cast<gssize>(text.size()));
  benchmark::DoNotOptimize(out);
  g_free(out);
}

void Libxml2(const std::string& text) {
  xmlChar* const out = xmlEncodeSpecialChars(nullptr, Xml(text));
  benchmark::DoNotOptimize(out);
  xmlFree(out);
}

// Calls it twice, to measure and to write, as its callers do.
void Apr(const std::string& text) {
  apr_size_t size = 0;
  const auto length = static_cast<apr_ssize_t>(text.size());
  apr_escape_entity(nullptr, text.data(), length, 0, &size);
  std::string out(size, '\0');
  apr_escape_entity(out.data(), text.data(), length, 0, &size);
  benchmark::DoNotOptimize(out.data());
}

void AprBack(const std::string& text) {
  apr_size_t size = 0;
  const auto length = static_cast<apr_ssize_t>(text.size());
  apr_unescape_entity(nullptr, text.data(), length, &size);
  std::string out(size, '\0');
  apr_unescape_entity(out.data(), text.data(), length, &size);
  benchmark::DoNotOptimize(out.data());
}

void Libxml2Back(const std::string& text) {
  static const auto context = [] {
    std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> made(xmlNewParserCtxt(),
                                                                      xmlFreeParserCtxt);
    // Otherwise libxml2 takes many references for an attack and stops.
    xmlCtxtUseOptions(made.get(), XML_PARSE_HUGE);
    return made;
  }();
  xmlChar* const out =
      xmlStringDecodeEntities(context.get(), Xml(text), XML_SUBSTITUTE_REF, 0, 0, 0);
  benchmark::DoNotOptimize(out);
  xmlFree(out);
}

}  // namespace

std::vector<Peer> Escapers(Escaped which) {
  Replacements replacements{{"&", "&amp;"}};
  if (which == Escaped::everything)
    replacements.insert(replacements.end(), {{"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}});
  return {{"ctemplate",
           [](const std::string& text) -> std::function<void()> {
             return [text, out = std::string()]() mutable {
               static const ctemplate::HtmlEscape escape;
               out.clear();
               ctemplate::StringEmitter emitter(&out);
               escape.Modify(text.data(), text.size(), nullptr, &emitter, "");
               benchmark::DoNotOptimize(out.data());
             };
           }},
          Of("GLib", Glib),
          Of("libxml2", Libxml2),
          Of("APR", Apr),
          {"Qt",
           [](const std::string& text) -> std::function<void()> {
             // Converts beforehand, because Qt's strings are UTF-16.
             return [text16 = QString::fromStdString(text)] {
               const QString out = text16.toHtmlEscaped();
               benchmark::DoNotOptimize(out.constData());
             };
           }},
          Of("Boost", [replacements](const std::string& text) { Boost(text, replacements); })};
}

std::vector<Peer> Unescapers() {
  const Replacements replacements{
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}, {"&#10;", "\r\n"}};
  return {Of("APR", AprBack), Of("libxml2", Libxml2Back),
          Of("htmlcxx",
             [](const std::string& text) {
               const std::string out = htmlcxx::HTML::decode_entities(text);
               benchmark::DoNotOptimize(out.data());
             }),
          Of("Boost", [replacements](const std::string& text) { Boost(text, replacements); })};
}

}  // namespace kvo::bench
