#include "apps/language/Server.h"

#include <algorithm>
#include <utility>

#include "apps/language/Names.h"
#include "document/page/ProblemList.h"

namespace kvo::language {
namespace {

constexpr int kIncremental = 2;

// Returns the member at the end of a path; nothing where a part is missing.
const Json* Member(const Json& object, std::initializer_list<const char*> path) {
  const Json* at = &object;
  for (const char* name : path) {
    if (!at->is_object()) return nullptr;
    const auto member = at->find(name);
    if (member == at->end()) return nullptr;
    at = &*member;
  }
  return at;
}

bool Flag(const Json& object, std::initializer_list<const char*> path) {
  const Json* flag = Member(object, path);
  return flag != nullptr && flag->is_boolean() && flag->get<bool>();
}

bool Lists(const Json& object, std::initializer_list<const char*> path, std::string_view wanted) {
  const Json* list = Member(object, path);
  return list != nullptr && list->is_array() &&
         std::ranges::find(*list, Json(wanted)) != list->end();
}

Client ClientFrom(const Json& params) {
  Client client;
  client.snippets = Flag(
      params, {"capabilities", "textDocument", "completion", "completionItem", "snippetSupport"});
  client.markdown =
      Lists(params, {"capabilities", "textDocument", "hover", "contentFormat"}, "markdown");
  client.symbolTrees = Flag(params, {"capabilities", "textDocument", "documentSymbol",
                                     "hierarchicalDocumentSymbolSupport"});
  client.versionedEdits =
      Flag(params, {"capabilities", "workspace", "workspaceEdit", "documentChanges"});
  client.watchesFiles =
      Flag(params, {"capabilities", "workspace", "didChangeWatchedFiles", "dynamicRegistration"});
  return client;
}

}  // namespace

Server::Server(Protocol::Send send, PagesIn pagesIn, std::string version)
    : protocol_(std::move(send)), workspace_(std::move(pagesIn)), version_(std::move(version)) {
  const auto ask = [this](const char* method, auto answer) {
    protocol_.On(method, Protocol::Request(std::move(answer)));
  };
  const auto hear = [this](const char* method, auto action) {
    protocol_.On(method, Protocol::Notification(std::move(action)));
  };
  ask("initialize", [this](const Json& params) { return Initialize(params); });
  ask("shutdown", [](const Json&) { return Json(); });
  ask("textDocument/completion",
      [this](const Json& params) { return Completion(workspace_, client_, params); });
  ask("textDocument/hover",
      [this](const Json& params) { return Hover(workspace_, client_, params); });
  ask("textDocument/documentSymbol",
      [this](const Json& params) { return DocumentSymbol(workspace_, client_, params); });
  ask("textDocument/codeAction", [this](const Json& params) { return CodeActions(params); });
  ask("textDocument/definition",
      [this](const Json& params) { return Definition(workspace_, params); });
  ask("textDocument/references",
      [this](const Json& params) { return References(workspace_, params); });
  ask("textDocument/prepareRename",
      [this](const Json& params) { return PrepareRename(workspace_, params); });
  ask("textDocument/rename",
      [this](const Json& params) { return Rename(workspace_, client_, params); });
  hear("initialized", [this](const Json&) { Initialized(); });
  hear("textDocument/didOpen", [this](const Json& params) { DidOpen(params); });
  hear("textDocument/didChange", [this](const Json& params) { DidChange(params); });
  hear("textDocument/didClose", [this](const Json& params) { DidClose(params); });
  hear("textDocument/didSave", [this](const Json&) { NoteAll(); });
  hear("workspace/didChangeWatchedFiles", [this](const Json&) { NoteAll(); });
  hear("workspace/didChangeWorkspaceFolders",
       [this](const Json& params) { DidChangeFolders(params); });
}

Json Server::Initialize(const Json& params) {
  client_ = ClientFrom(params);
  const bool utf8 = Lists(params, {"capabilities", "general", "positionEncodings"}, "utf-8");
  workspace_.CountIn(utf8 ? Units::utf8 : Units::utf16);
  if (const Json* locale = Member(params, {"locale"}); locale != nullptr && locale->is_string())
    UserLanguage(locale->get<std::string>().starts_with("de") ? Language::german
                                                              : Language::english);
  if (const Json* folders = Member(params, {"workspaceFolders"});
      folders != nullptr && folders->is_array())
    for (const Json& folder : *folders) workspace_.AddFolder(folder.at("uri"));
  else if (const Json* root = Member(params, {"rootUri"}); root != nullptr && root->is_string())
    workspace_.AddFolder(*root);
  return {{"serverInfo", {{"name", "kvo"}, {"version", version_}}},
          {"capabilities",
           {{"positionEncoding", utf8 ? "utf-8" : "utf-16"},
            {"textDocumentSync", {{"openClose", true}, {"change", kIncremental}, {"save", true}}},
            {"completionProvider", {{"triggerCharacters", {"\"", "#", ".", "<"}}}},
            {"hoverProvider", true},
            {"definitionProvider", true},
            {"referencesProvider", true},
            {"renameProvider", {{"prepareProvider", true}}},
            {"documentSymbolProvider", true},
            {"codeActionProvider", {{"codeActionKinds", {"quickfix", "source.fixAll"}}}},
            {"workspace",
             {{"workspaceFolders", {{"supported", true}, {"changeNotifications", true}}}}}}}};
}

void Server::Initialized() {
  if (!client_.watchesFiles) return;
  Json watchers = Json::array({{{"globPattern", "**/office.json"}}});
  protocol_.Ask("client/registerCapability",
                {{"registrations",
                  {{{"id", "offices"},
                    {"method", "workspace/didChangeWatchedFiles"},
                    {"registerOptions", {{"watchers", std::move(watchers)}}}}}}});
}

void Server::DidOpen(const Json& params) {
  const Json& text = params.at("textDocument");
  NoteChange(workspace_.Open(text.at("uri"), text.at("version"), text.at("text")));
}

void Server::DidChange(const Json& params) {
  OpenText& text = TextOf(workspace_, params);
  for (const Json& change : params.at("contentChanges")) {
    const std::string& added = change.at("text").get_ref<const std::string&>();
    if (const auto range = change.find("range"); range != change.end())
      text.page.Replace(PositionFrom(range->at("start")), PositionFrom(range->at("end")), added);
    else
      workspace_.Open(text.uri, text.version, added);
  }
  text.version = params.at("textDocument").value("version", text.version);
  NoteChange(text);
}

void Server::DidClose(const Json& params) {
  const std::string uri = TextOf(workspace_, params).uri;
  workspace_.Close(uri);
  std::erase(unchecked_, uri);
  if (Workspace::IsOffice(uri)) return NoteAll();  // the file on disk counts again
  Publish(uri, nullptr, Json::array());
}

void Server::DidChangeFolders(const Json& params) {
  const Json& event = params.at("event");
  for (const Json& folder : event.at("removed")) workspace_.RemoveFolder(folder.at("uri"));
  for (const Json& folder : event.at("added")) workspace_.AddFolder(folder.at("uri"));
}

void Server::NoteChange(OpenText& text) {
  if (Workspace::IsOffice(text.uri)) return NoteAll();
  text.problems.reset();
  std::erase(unchecked_, text.uri);
  unchecked_.push_front(text.uri);
}

void Server::NoteAll() {
  for (OpenText* text : workspace_.OpenTexts())
    if (!Workspace::IsOffice(text->uri)) NoteChange(*text);
}

void Server::Work() {
  const std::string uri = unchecked_.front();
  unchecked_.pop_front();
  OpenText* text = workspace_.Find(uri);
  if (text == nullptr) return;
  Json diagnostics = Json::array();
  for (const page::Problem& problem : page::Told(Check(*text, check::Fixes::leaveOut)))
    diagnostics.push_back(DiagnosticJson(text->page, problem));
  Publish(uri, text->version, std::move(diagnostics));
}

page::Problems Server::Check(const OpenText& text, check::Fixes fixes) {
  const OfficeText* office = workspace_.OfficeBeside(text.uri);
  if (office != nullptr) Report(*office);
  page::Problems problems = check::CheckPage(
      text.page.Page(), office == nullptr ? nullptr : office->office, nullptr, fixes);
  const page::Problems& unwritable = text.page.Unwritable();
  problems.insert(problems.end(), unwritable.begin(), unwritable.end());
  std::ranges::stable_sort(problems, {}, &page::Problem::offset);
  return problems;
}

void Server::Report(const OfficeText& office) {
  if (office.problems.empty() && !brokenOffices_.contains(office.uri)) return;
  Json diagnostics = Json::array();
  for (const page::Problem& problem : office.problems)
    diagnostics.push_back(DiagnosticJson(office.text, problem));
  Publish(office.uri, nullptr, std::move(diagnostics));
  if (office.problems.empty())
    brokenOffices_.erase(office.uri);
  else
    brokenOffices_.insert(office.uri);
}

void Server::Publish(const std::string& uri, const Json& version, Json diagnostics) {
  Json params = {{"uri", uri}, {"diagnostics", std::move(diagnostics)}};
  if (!version.is_null()) params["version"] = version;
  protocol_.Notify("textDocument/publishDiagnostics", std::move(params));
}

Json Server::CodeActions(const Json& params) {
  OpenText& text = TextOf(workspace_, params);
  if (Workspace::IsOffice(text.uri)) return Json::array();
  if (!text.problems) text.problems = Check(text, check::Fixes::add);
  return CodeAction(workspace_, client_, params);
}

}  // namespace kvo::language
