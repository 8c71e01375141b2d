// The language server: keeps what the client has open, reports problems and answers questions.
#pragma once

#include <deque>
#include <set>
#include <string>
#include <string_view>

#include "apps/language/Answers.h"
#include "apps/language/Protocol.h"
#include "apps/language/Workspace.h"
#include "document/check/Check.h"

namespace kvo::language {

class Server {
 public:
  // `version` is that of the program. A platform must be installed.
  Server(Protocol::Send send, PagesIn pagesIn, std::string version);

  Protocol& Messages() { return protocol_; }

  // Whether a text is yet to be checked. To be done while no message waits, so that only the latest
  // version of a text is.
  bool HasWork() const { return !unchecked_.empty(); }
  // Checks one text.
  void Work();

 private:
  Json Initialize(const Json& params);
  void Initialized();
  void DidOpen(const Json& params);
  void DidChange(const Json& params);
  void DidClose(const Json& params);
  void DidChangeFolders(const Json& params);

  // Notes that a text, or after a change of an office every text, is to be checked.
  void NoteChange(OpenText& text);
  void NoteAll();
  page::Problems Check(const OpenText& text, check::Fixes fixes);
  void Report(const OfficeText& office);
  void Publish(const std::string& uri, const Json& version, Json diagnostics);
  Json CodeActions(const Json& params);

  Protocol protocol_;
  Workspace workspace_;
  std::string version_;
  Client client_;
  std::deque<std::string> unchecked_;    // addresses, the latest change first
  std::set<std::string> brokenOffices_;  // those with problems that the client shows
};

}  // namespace kvo::language
