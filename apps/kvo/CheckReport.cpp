#include "apps/kvo/CheckReport.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "apps/Version.h"
#include "apps/kvo/CommandLine.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "document/check/Check.h"
#include "document/page/ProblemList.h"
#include "document/page/Utf8.h"

namespace kvo {
namespace {

bool IsError(const page::Problem& problem) { return problem.severity == page::Severity::error; }

std::string_view LabelOf(const page::Problem& problem) {
  return IsError(problem) ? "error" : "warning";
}

// Returns valid UTF-8, as JSON and XML need it.
std::string Utf8(std::string_view text) {
  std::string valid(text);
  for (std::size_t at = page::FindInvalidUtf8(valid); at != std::string::npos;
       at = page::FindInvalidUtf8(valid))
    valid.replace(at, 1, "\xEF\xBF\xBD");
  return valid;
}

class TextReport final : public CheckReport {
 public:
  explicit TextReport(Stream stream) : stream_(stream) {}
  void Add(const std::string& file, const page::Page&, const page::Problems& problems) override {
    ShowProblems(stream_, ShownName(file), problems);
  }

 private:
  Stream stream_;
};

class JsonReport final : public CheckReport {
 public:
  void Add(const std::string& file, const page::Page&, const page::Problems& problems) override {
    for (const page::Problem& problem : page::Told(problems))
      all_.push_back(OneOf(ShownName(file), problem));
  }
  void Finish() override { PrintJson({{"problems", std::move(all_)}}); }

 private:
  static Json OneOf(const std::string& file, const page::Problem& problem) {
    Json json{{"file", file},
              {"line", problem.place.line},
              {"column", problem.place.column},
              {"severity", LabelOf(problem)},
              {"rule", problem.rule},
              {"class", problem.control},
              {"id", problem.id},
              {"message", problem.message.In(UserLanguage())}};
    if (problem.more > 0) json["more"] = problem.more;
    return json;
  }

  Json all_ = Json::array();
};

// Where an offset of a page is.
struct Spot {
  page::Place place;
  std::size_t characters = 0;  // from the beginning of the page, without a byte order mark
};

// Finds all spots of a page's problems in one pass.
class Spots {
 public:
  Spots(const page::Page& page, const page::Problems& problems) {
    std::set<std::size_t> offsets;
    for (const page::Problem& problem : problems) {
      offsets.insert(problem.offset);
      offsets.insert(EndOf(problem));
      if (!problem.fix) continue;
      for (const page::TextEdit& edit : problem.fix->edits) {
        offsets.insert(edit.begin);
        offsets.insert(edit.end);
      }
    }
    page::PlaceFinder places(page.Bytes(), page.Encoding());
    std::size_t at = page::PageEncoding::Mark(page.Bytes());
    std::size_t characters = 0;
    for (const std::size_t offset : offsets) {
      for (; at < offset; ++characters)
        at += page.Encoding().CharacterLength(page.Bytes().substr(at));
      spots_[offset] = {places.At(offset), characters};
    }
  }

  static std::size_t EndOf(const page::Problem& problem) {
    return std::max(problem.offset, problem.end);
  }
  const Spot& At(std::size_t offset) const { return spots_.at(offset); }

 private:
  std::map<std::size_t, Spot> spots_;
};

// Returns a file's name as a relative or absolute address.
std::string UriOf(const std::string& file) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string uri = file.starts_with('/') ? "file://" : "";
  for (const char c : file) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       std::string_view("/._-~").find(c) != std::string::npos;
    if (plain)
      uri += c;
    else
      uri.append({'%', kHex[byte >> 4U], kHex[byte & 0xFU]});
  }
  return uri;
}

// The exchange format of programs that check sources.
class SarifReport final : public CheckReport {
 public:
  SarifReport() {
    std::size_t index = 0;
    for (const check::Rule& rule : check::Rules()) {
      indices_[rule.id] = index++;
      const Json text = {{"text", rule.help.In(UserLanguage())}};
      const bool isError = rule.severity == page::Severity::error;
      rules_.push_back({{"id", rule.id},
                        {"shortDescription", text},
                        {"help", text},
                        {"defaultConfiguration", {{"level", isError ? "error" : "warning"}}}});
    }
  }

  void Add(const std::string& file, const page::Page& page,
           const page::Problems& problems) override {
    const Spots spots(page, problems);
    const Json artifact = {{"uri", UriOf(file == "-" ? "stdin" : file)}};
    for (const page::Problem& problem : problems)
      results_.push_back(ResultOf(artifact, page, problem, spots));
  }
  void Finish() override {
    Json driver = {{"name", "kvo"}, {"version", ProgramVersion()}, {"rules", rules_}};
    PrintJson({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
               {"version", "2.1.0"},
               {"runs", Json::array({{{"tool", {{"driver", driver}}},
                                      {"columnKind", "unicodeCodePoints"},
                                      {"results", std::move(results_)}}})}});
  }

 private:
  // The characters between two spots, and the bytes.
  static Json RegionOf(std::size_t begin, std::size_t end, const Spots& spots) {
    const Spot& from = spots.At(begin);
    const Spot& to = spots.At(end);
    return {{"startLine", from.place.line},  {"startColumn", from.place.column},
            {"endLine", to.place.line},      {"endColumn", to.place.column},
            {"charOffset", from.characters}, {"charLength", to.characters - from.characters},
            {"byteOffset", begin},           {"byteLength", end - begin}};
  }

  Json ResultOf(const Json& artifact, const page::Page& page, const page::Problem& problem,
                const Spots& spots) const {
    Json location = {{"physicalLocation",
                      {{"artifactLocation", artifact},
                       {"region", RegionOf(problem.offset, Spots::EndOf(problem), spots)}}}};
    if (!problem.control.empty())
      location["logicalLocations"] = Json::array(
          {{{"name", Utf8(problem.id.empty() ? problem.control : problem.id)},
            {"fullyQualifiedName",
             Utf8(problem.id.empty() ? problem.control : problem.control + '.' + problem.id)},
            {"kind", "object"}}});
    Json result = {{"ruleId", problem.rule}};
    if (const auto rule = indices_.find(problem.rule); rule != indices_.end())
      result["ruleIndex"] = rule->second;
    result["level"] = LabelOf(problem);
    result["message"] = {{"text", Utf8(problem.message.In(UserLanguage()))}};
    result["locations"] = Json::array({std::move(location)});
    if (problem.fix) result["fixes"] = Json::array({FixOf(artifact, page, *problem.fix, spots)});
    return result;
  }

  static Json FixOf(const Json& artifact, const page::Page& page, const page::Fix& fix,
                    const Spots& spots) {
    Json replacements = Json::array();
    for (const page::TextEdit& edit : fix.edits) {
      std::string text;
      page.Encoding().Decode(edit.bytes, text);
      const std::size_t from = spots.At(edit.begin).characters;
      const std::size_t length = spots.At(edit.end).characters - from;
      Json replacement = {{"deletedRegion", {{"charOffset", from}, {"charLength", length}}}};
      if (!text.empty()) replacement["insertedContent"] = {{"text", Utf8(text)}};
      replacements.push_back(std::move(replacement));
    }
    return {{"description", {{"text", Utf8(fix.title.In(UserLanguage()))}}},
            {"artifactChanges", Json::array({{{"artifactLocation", artifact},
                                              {"replacements", std::move(replacements)}}})}};
  }

  std::map<std::string_view, std::size_t> indices_;
  Json rules_ = Json::array();
  Json results_ = Json::array();
};

// Commands that a build server's runner reads from the output and shows beside the lines.
class GithubReport final : public CheckReport {
 public:
  void Add(const std::string& file, const page::Page& page,
           const page::Problems& problems) override {
    const page::Problems told = page::Told(problems);
    const Spots spots(page, told);
    std::string lines;
    for (const page::Problem& problem : told) {
      const page::Place end = spots.At(Spots::EndOf(problem)).place;
      lines.append("::").append(LabelOf(problem));
      lines += " file=" + Escaped(ShownName(file), true);
      lines += ",line=" + std::to_string(problem.place.line);
      lines += ",endLine=" + std::to_string(end.line);
      // Columns count within one line.
      if (end.line == problem.place.line && end.column > problem.place.column)
        lines += ",col=" + std::to_string(problem.place.column) +
                 ",endColumn=" + std::to_string(end.column);
      else
        lines += ",col=" + std::to_string(problem.place.column);
      lines += ",title=" + Escaped(problem.rule, true);
      std::string text = problem.message.In(UserLanguage());
      if (!problem.control.empty())
        text = problem.control + (problem.id.empty() ? "" : " \"" + problem.id + '"') + ": " + text;
      lines += "::" + Escaped(text, false) + '\n';
    }
    Print(lines);
  }

 private:
  static std::string Escaped(std::string_view text, bool isProperty) {
    std::string escaped;
    for (const char c : text) {
      if (c == '%')
        escaped += "%25";
      else if (c == '\r')
        escaped += "%0D";
      else if (c == '\n')
        escaped += "%0A";
      else if (c == ':' && isProperty)
        escaped += "%3A";
      else if (c == ',' && isProperty)
        escaped += "%2C";
      else
        escaped += c;
    }
    return escaped;
  }
};

// One suite for each page: an error is a failed test, a warning a passed one that says something.
class JUnitReport final : public CheckReport {
 public:
  void Add(const std::string& file, const page::Page&, const page::Problems& problems) override {
    const page::Problems told = page::Told(problems);
    const std::string name = Escaped(ShownName(file));
    std::string cases;
    std::size_t failures = 0;
    for (const page::Problem& problem : told) {
      cases += "    <testcase classname=\"" + name + "\" name=\"" + Escaped(problem.rule) + ' ' +
               std::to_string(problem.place.line) + ':' + std::to_string(problem.place.column) +
               "\">";
      const std::string text = Escaped(page::Describe(problem, ShownName(file), UserLanguage()));
      if (IsError(problem)) {
        ++failures;
        cases += "<failure type=\"" + Escaped(problem.rule) + "\" message=\"" +
                 Escaped(problem.message.In(UserLanguage())) + "\">" + text + "</failure>";
      } else {
        cases += "<system-out>" + text + "</system-out>";
      }
      cases += "</testcase>\n";
    }
    if (told.empty()) cases = "    <testcase classname=\"" + name + "\" name=\"kvo check\"/>\n";
    const std::size_t tests = std::max<std::size_t>(told.size(), 1);
    suites_ += "  <testsuite name=\"" + name + "\" tests=\"" + std::to_string(tests) +
               "\" failures=\"" + std::to_string(failures) + "\" errors=\"0\" skipped=\"0\">\n" +
               cases + "  </testsuite>\n";
    tests_ += tests;
    failures_ += failures;
  }
  void Finish() override {
    Print("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"kvo check\" tests=\"" +
          std::to_string(tests_) + "\" failures=\"" + std::to_string(failures_) + "\">\n" +
          suites_ + "</testsuites>\n");
  }

 private:
  static std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : Utf8(text)) {
      if (c == '&')
        escaped += "&amp;";
      else if (c == '<')
        escaped += "&lt;";
      else if (c == '>')
        escaped += "&gt;";
      else if (c == '"')
        escaped += "&quot;";
      else if (c == '\n' || c == '\r' || c == '\t')
        escaped += "&#" + std::to_string(static_cast<int>(c)) + ';';
      else if (static_cast<unsigned char>(c) < 0x20)
        escaped += "\xEF\xBF\xBD";  // no XML document can hold these
      else
        escaped += c;
    }
    return escaped;
  }

  std::string suites_;
  std::size_t tests_ = 0;
  std::size_t failures_ = 0;
};

constexpr std::string_view kFormats[] = {"text", "json", "sarif", "github", "junit"};

}  // namespace

std::unique_ptr<CheckReport> NewCheckReport(std::string_view format, Stream text) {
  if (format == "text") return std::make_unique<TextReport>(text);
  if (format == "json") return std::make_unique<JsonReport>();
  if (format == "sarif") return std::make_unique<SarifReport>();
  if (format == "github") return std::make_unique<GithubReport>();
  if (format == "junit") return std::make_unique<JUnitReport>();
  throw Failure(Say({"Das Format „{}“ gibt es nicht. Es gibt text, json, sarif, github und junit.",
                     "There is no format \"{}\". There are text, json, sarif, github and junit."},
                    {format}) +
                DidYouMean(format, {std::begin(kFormats), std::end(kFormats)}));
}

}  // namespace kvo
