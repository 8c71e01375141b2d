// What a client has open, and the files around it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/language/OpenPage.h"
#include "document/office/Office.h"

namespace kvo::language {

// Returns the pages of a folder and of its subfolders.
using PagesIn = std::function<std::vector<std::string>(const std::string& folder)>;

// A text that the client has opened.
struct OpenText {
  std::string uri;  // as the client writes it
  std::int64_t version = 0;
  OpenPage page;
  std::optional<page::Problems> problems;  // with their fixes, once somebody asked for them
};

// An office file and its contents.
struct OfficeText {
  std::string uri;
  std::string contents;
  OpenPage text;                           // the same, with places
  std::shared_ptr<office::Office> office;  // empty when the file is broken
  page::Problems problems;                 // of the file
};

class Workspace {
 public:
  explicit Workspace(PagesIn pagesIn) : pagesIn_(std::move(pagesIn)) {}

  void CountIn(language::Units units) { units_ = units; }
  void AddFolder(const std::string& uri);
  void RemoveFolder(const std::string& uri);

  OpenText& Open(const std::string& uri, std::int64_t version, std::string utf8);
  void Close(const std::string& uri);
  // Returns an open text, however its address is written; nullptr when it is not open.
  OpenText* Find(const std::string& uri);
  // In no particular order.
  std::vector<OpenText*> OpenTexts();
  static bool IsOffice(const std::string& uri);

  // Returns the office beside a page: as the client holds it, else from its file. nullptr when
  // there is none. Notices every change. Never opens a connection.
  const OfficeText* OfficeBeside(const std::string& uri);
  // Calls `each` with all pages of the folder that the client opened, or else of the page's own:
  // as the client holds them, else from their files. Skips files that cannot be read.
  void ForEachPageAround(const std::string& uri,
                         const std::function<void(const std::string& uri, const OpenPage&)>& each);

 private:
  std::string FolderAround(const std::string& path) const;
  OfficeText ReadOfficeText(const std::string& path, std::string contents) const;

  PagesIn pagesIn_;
  Units units_ = Units::utf16;
  std::vector<std::string> folders_;
  std::map<std::string, OpenText> open_;                      // by KeyOf(uri)
  std::map<std::string, std::optional<OfficeText>> offices_;  // by path
};

}  // namespace kvo::language
