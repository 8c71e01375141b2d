// The pages of a folder and its subfolders.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/File.h"

namespace kvo::page {

// A file, a link to one, or a folder. Links to folders do not count.
struct FolderEntry {
  std::string name;
  bool isFolder = false;
};

// Returns what a folder holds, sorted by name, hidden entries included. Throws FileError for a
// folder that cannot be searched, and for one with a name that is not valid UTF-8.
std::vector<FolderEntry> EntriesOf(const std::filesystem::path& folder);

bool IsHidden(std::string_view name);
// *.html and *.htm in any case.
bool IsPageName(std::string_view name);

struct FolderSearch {
  // `below` is the file's path below the folder where the search began.
  std::function<void(const std::filesystem::path& file, const std::filesystem::path& below)> found;
  // Whether to search a subfolder.
  std::function<bool(const std::filesystem::path& folder)> enters;
  // Gets the error of a folder that cannot be searched; without it, the error ends the search.
  std::function<void(const FileError& error)> unread = {};
};
// Finds the pages of a folder and its subfolders, sorted by path. Skips what is hidden.
void SearchFolder(const std::filesystem::path& folder, const FolderSearch& search);

// Recognises a file that has two names: through links, "." and "..", but not through hard links,
// which are files of their own as soon as one is written.
class KnownFiles {
 public:
  // Returns whether the file is new.
  bool Add(const std::filesystem::path& file);

 private:
  std::string Identity(const std::filesystem::path& file);

  std::set<std::string> files_;
  std::map<std::string, std::filesystem::path> folders_;
};

}  // namespace kvo::page
