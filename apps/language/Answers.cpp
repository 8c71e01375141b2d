#include "apps/language/Answers.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <utility>
#include <vector>

#include "apps/language/Protocol.h"
#include "common/values/Ascii.h"
#include "document/assist/Notes.h"
#include "document/assist/Offers.h"

namespace kvo::language {
namespace {

using assist::Offer;

// The numbers of the protocol.
constexpr int kSnippet = 2;
constexpr int kClassItem = 7;
constexpr int kPropertyItem = 10;
constexpr int kFieldItem = 5;
constexpr int kValueItem = 12;
constexpr int kObjectSymbol = 19;
constexpr int kErrorSeverity = 1;
constexpr int kWarningSeverity = 2;

constexpr std::string_view kQuickFix = "quickfix";
constexpr std::string_view kFixAll = "source.fixAll";

int ItemKindOf(Offer::Kind kind) {
  switch (kind) {
    case Offer::Kind::controlClass:
      return kClassItem;
    case Offer::Kind::field:
      return kFieldItem;
    case Offer::Kind::value:
      return kValueItem;
    case Offer::Kind::key:
    case Offer::Kind::attribute:
      return kPropertyItem;
  }
  return kValueItem;
}

// Returns a text as a snippet with the caret at an offset.
std::string SnippetOf(const std::string& text, std::size_t caret) {
  std::string snippet;
  for (std::size_t at = 0; at <= text.size(); ++at) {
    if (at == caret) snippet += "$0";
    if (at == text.size()) break;
    if (std::string_view("\\$}").find(text[at]) != std::string_view::npos) snippet += '\\';
    snippet += text[at];
  }
  return snippet;
}

// What of the offer the client compares with the text that is typed already.
std::string FilterTextOf(const Offer& offer, std::string_view typed) {
  const bool continues =
      EqualIgnoringCase(std::string_view(offer.edit.bytes).substr(0, typed.size()), typed);
  return continues ? offer.edit.bytes : offer.label;
}

std::string Order(std::size_t index) {
  std::ostringstream text;
  text << std::setw(4) << std::setfill('0') << index;
  return text.str();
}

Json ItemOf(const OpenPage& page, const Client& client, const Offer& offer, std::size_t place,
            std::size_t index) {
  const std::string_view typed =
      page.Page().Bytes().substr(offer.edit.begin, place - offer.edit.begin);
  Json item = {{"label", offer.label},
               {"kind", ItemKindOf(offer.kind)},
               {"sortText", Order(index)},
               {"filterText", page.Utf8Of(FilterTextOf(offer, typed))}};
  const Language language = UserLanguage();
  if (!offer.detail.In(language).empty()) item["detail"] = offer.detail.In(language);
  if (!offer.help.In(language).empty()) item["documentation"] = offer.help.In(language);
  Json edit = EditsJson(page, {offer.edit})[0];
  if (client.snippets && offer.caret < offer.edit.bytes.size()) {
    item["insertTextFormat"] = kSnippet;
    // The caret counts bytes of the page.
    const std::string before = page.Utf8Of(offer.edit.bytes.substr(0, offer.caret));
    edit["newText"] = SnippetOf(edit["newText"], before.size());
  }
  item["textEdit"] = std::move(edit);
  return item;
}

// Returns a fenced block of code, whatever fences are in it.
std::string Fenced(const std::string& code) {
  std::size_t longest = 2;
  std::size_t run = 0;
  for (const char c : code) {
    run = c == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  const std::string fence(longest + 1, '`');
  return fence + "html\n" + code + (code.ends_with('\n') ? "" : "\n") + fence;
}

// Shortens a text that nobody reads to its end.
std::string Beginning(const std::string& text) {
  constexpr std::size_t kMost = 2000;
  if (text.size() <= kMost) return text;
  std::size_t end = kMost;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) --end;
  return text.substr(0, end) + "\n...";
}

std::string HoverText(const assist::Note& note, bool markdown) {
  const Language language = UserLanguage();
  const std::string title(note.title.In(language));
  std::vector<std::string> parts;
  std::string head = markdown && !title.empty() ? "**" + title + "**" : title;
  if (!note.name.empty()) {
    if (!head.empty()) head += ' ';
    head += markdown ? '`' + note.name + '`' : note.name;
  }
  parts.push_back(head);
  if (!note.help.In(language).empty()) parts.push_back(note.help.In(language));
  if (!note.runtime.empty()) {
    const std::string runtime = Beginning(note.runtime);
    parts.push_back(markdown ? Fenced(runtime) : runtime);
  }
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : "\n\n") + part;
  return text;
}

bool Overlap(const page::Problem& problem, std::size_t begin, std::size_t end) {
  return problem.offset <= end && begin <= std::max(problem.offset, problem.end);
}

// Whether the client wants actions of this kind, or of a group that it belongs to.
bool Wants(const Json& params, std::string_view kind) {
  const Json context = params.value("context", Json::object());
  const auto only = context.find("only");
  if (only == context.end() || !only->is_array()) return kind == kQuickFix;
  return std::ranges::any_of(*only, [kind](const Json& wanted) {
    const std::string name = wanted.is_string() ? wanted.get<std::string>() : std::string("?");
    return kind == name || kind.starts_with(name + '.') || name.empty();
  });
}

Json Action(const OpenText& text, const Client& client, const Message& title, std::string_view kind,
            const page::TextEdits& edits) {
  WorkspaceEdit edit(client);
  edit.Add(text.uri, text.version, EditsJson(text.page, edits));
  return {{"title", title.In(UserLanguage())}, {"kind", kind}, {"edit", edit.Take()}};
}

}  // namespace

OpenText& TextOf(Workspace& workspace, const Json& params) {
  const std::string uri = params.at("textDocument").at("uri");
  OpenText* text = workspace.Find(uri);
  if (text == nullptr)
    throw RequestError(ErrorCode::invalidParams, {"Nicht geöffnet: " + uri, "Not open: " + uri});
  return *text;
}

const office::Office::Description* OfficeOf(Workspace& workspace, const OpenText& text) {
  const OfficeText* office = workspace.OfficeBeside(text.uri);
  return office == nullptr || office->office == nullptr ? nullptr : &office->office->Described();
}

Json DiagnosticJson(const OpenPage& page, const page::Problem& problem) {
  return {
      {"range", RangeJson(page, problem.offset, std::max(problem.offset, problem.end))},
      {"severity", problem.severity == page::Severity::error ? kErrorSeverity : kWarningSeverity},
      {"code", problem.rule},
      {"source", "kvo"},
      {"message", problem.message.In(UserLanguage())}};
}

Json Completion(Workspace& workspace, const Client& client, const Json& params) {
  const OpenText& text = TextOf(workspace, params);
  const std::size_t place = OffsetFrom(text.page, params.at("position"));
  Json items = Json::array();
  for (const Offer& offer : assist::OffersAt(text.page.Page(), place, OfficeOf(workspace, text)))
    items.push_back(ItemOf(text.page, client, offer, place, items.size()));
  return {{"isIncomplete", false}, {"items", std::move(items)}};
}

Json Hover(Workspace& workspace, const Client& client, const Json& params) {
  const OpenText& text = TextOf(workspace, params);
  const std::size_t place = OffsetFrom(text.page, params.at("position"));
  const auto note = assist::NoteAt(text.page.Page(), text.page.Inspection().controls, place,
                                   OfficeOf(workspace, text));
  if (!note) return nullptr;
  return {{"contents",
           {{"kind", client.markdown ? "markdown" : "plaintext"},
            {"value", HoverText(*note, client.markdown)}}},
          {"range", RangeJson(text.page, note->begin, note->end)}};
}

Json DocumentSymbol(Workspace& workspace, const Client& client, const Json& params) {
  const OpenText& text = TextOf(workspace, params);
  Json symbols = Json::array();
  for (const page::FoundControl& control : text.page.Inspection().controls) {
    const std::string title = control.contract == nullptr
                                  ? std::string()
                                  : std::string(control.contract->title.In(UserLanguage()));
    const std::string& className = control.className.empty() ? title : control.className;
    Json symbol = {{"name", control.id.empty() ? className : control.id}, {"kind", kObjectSymbol}};
    if (symbol["name"] == "") symbol["name"] = "object";
    const Json range = RangeJson(text.page, control.begin, control.end);
    if (client.symbolTrees) {
      symbol["detail"] = title.empty() ? control.className : title;
      symbol["range"] = range;
      symbol["selectionRange"] = range;
    } else {
      symbol["location"] = {{"uri", text.uri}, {"range", range}};
    }
    symbols.push_back(std::move(symbol));
  }
  return symbols;
}

Json CodeAction(Workspace& workspace, const Client& client, const Json& params) {
  const OpenText& text = TextOf(workspace, params);
  const Json& range = params.at("range");
  const std::size_t begin = OffsetFrom(text.page, range.at("start"));
  const std::size_t end = OffsetFrom(text.page, range.at("end"));
  Json actions = Json::array();
  page::TextEdits all;
  for (const page::Problem& problem : text.problems.value_or(page::Problems())) {
    if (!problem.fix) continue;
    page::Join(all, problem.fix->edits);
    if (!Wants(params, kQuickFix) || !Overlap(problem, begin, end)) continue;
    Json action = Action(text, client, problem.fix->title, kQuickFix, problem.fix->edits);
    action["diagnostics"] = Json::array({DiagnosticJson(text.page, problem)});
    action["isPreferred"] = true;
    actions.push_back(std::move(action));
  }
  if (!all.empty() && Wants(params, kFixAll))
    actions.push_back(Action(text, client, {"Alles Sichere beheben", "Fix everything that is sure"},
                             kFixAll, all));
  return actions;
}

}  // namespace kvo::language
