#include "document/page/Folder.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/page/Utf8.h"

namespace kvo::page {
namespace {

namespace fs = std::filesystem;

void SearchBelow(const fs::path& folder, const fs::path& below, const FolderSearch& search) {
  std::vector<FolderEntry> entries;
  try {
    entries = EntriesOf(folder);
  } catch (const FileError& error) {
    if (!search.unread) throw;
    search.unread(error);
  }
  for (const FolderEntry& entry : entries) {
    if (IsHidden(entry.name)) continue;
    if (entry.isFolder) {
      if (search.enters(folder / entry.name))
        SearchBelow(folder / entry.name, below / entry.name, search);
    } else if (IsPageName(entry.name)) {
      search.found(folder / entry.name, below / entry.name);
    }
  }
}

}  // namespace

bool IsHidden(std::string_view name) { return name.starts_with('.'); }

bool IsPageName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot != std::string_view::npos && (EqualIgnoringCase(name.substr(dot), ".html") ||
                                           EqualIgnoringCase(name.substr(dot), ".htm"));
}

std::vector<FolderEntry> EntriesOf(const fs::path& folder) {
  const auto error = [&folder](const Localized& text, const std::vector<std::string>& values) {
    return FileError(folder.string(), Filled(text, values));
  };
  std::vector<FolderEntry> entries;
  try {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      std::error_code ignored;  // of what was removed in the meantime
      std::string name = entry.path().filename().string();
      const bool isFolder = entry.is_directory(ignored) && !entry.is_symlink(ignored);
      if (!isFolder && !entry.is_regular_file(ignored)) continue;
      if (FindInvalidUtf8(name) != std::string_view::npos)
        throw error({"Im Ordner „{}“ ist der Name einer Datei kein gültiges UTF-8. Die Datei "
                     "umbenennen.",
                     "In the folder \"{}\", the name of a file is not valid UTF-8. Rename the "
                     "file."},
                    {folder.string()});
      entries.push_back({std::move(name), isFolder});
    }
  } catch (const fs::filesystem_error& failed) {
    throw error({"Der Ordner „{}“ lässt sich nicht durchsuchen: {}. Die Rechte prüfen.",
                 "The folder \"{}\" can't be searched: {}. Check its permissions."},
                {folder.string(), failed.code().message()});
  }
  std::ranges::sort(entries, {}, &FolderEntry::name);
  return entries;
}

void SearchFolder(const fs::path& folder, const FolderSearch& search) {
  SearchBelow(folder, {}, search);
}

bool KnownFiles::Add(const fs::path& file) { return files_.insert(Identity(file)).second; }

std::string KnownFiles::Identity(const fs::path& file) {
  std::error_code failed;
  const fs::path folder = file.parent_path();
  const auto [known, isNew] = folders_.try_emplace(folder.string());
  if (isNew) known->second = fs::weakly_canonical(folder.empty() ? "." : folder, failed);
  if (fs::is_symlink(file, failed)) {
    const fs::path leadsTo = fs::canonical(file, failed);
    if (!failed) return leadsTo.string();
  }
  return (known->second / file.filename()).string();
}

}  // namespace kvo::page
