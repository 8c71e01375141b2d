#include "apps/kvo/FindPages.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string_view>
#include <utility>

#include "apps/kvo/Terminal.h"
#include "document/page/Folder.h"

namespace kvo {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAnyFolders = "**";

using page::EntriesOf;
using page::IsHidden;

// "*" stands for any characters, "?" for one, which may be of several bytes.
bool Matches(std::string_view pattern, std::string_view name) {
  if (IsHidden(name) && !IsHidden(pattern)) return false;
  const auto next = [](std::string_view text, std::size_t at) {
    do ++at;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80);
    return at;
  };
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t star = std::string_view::npos;  // the last "*" passed in the pattern
  std::size_t taken = 0;                      // the end of the text that this "*" matches
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      taken = n;
    } else if (p < pattern.size() && pattern[p] == '?') {
      ++p;
      n = next(name, n);
    } else if (p < pattern.size() && pattern[p] == name[n]) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = taken = next(name, taken);
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool IsPattern(std::string_view name) { return name.find_first_of("*?") != std::string_view::npos; }

bool Exists(const fs::path& file) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(file, ignored));
}

class Search {
 public:
  explicit Search(const std::string& output) {
    std::error_code ignored;
    if (!output.empty() && output != "-") output_ = fs::canonical(output, ignored);
  }

  void Add(const std::string& argument) {
    std::error_code ignored;
    if (argument == "-") {
      found_.push_back({argument, argument, false});
    } else if (fs::is_directory(argument, ignored)) {
      if (!AnyFileIn([&] { AddFolder(argument); }))
        throw Failure(Say({"Im Ordner „{}“ ist keine Seite (*.html, *.htm). Einen anderen nennen, "
                           "oder die Dateien selbst.",
                           "There is no page (*.html, *.htm) in the folder \"{}\". Name another "
                           "one, or the files themselves."},
                          {argument}));
    } else if (IsPattern(argument) && !Exists(argument)) {
      if (!AddPattern(argument))
        throw Failure(Say({"Auf „{}“ passt keine Datei. „*“ und „?“ stehen für Zeichen eines "
                           "Namens, „**“ für Ordner.",
                           "No file matches \"{}\". \"*\" and \"?\" stand for characters of a "
                           "name, \"**\" for folders."},
                          {argument}));
    } else {
      AddFile(argument, fs::path(argument).filename(), false);
    }
  }

  NamedPages Take() { return std::move(found_); }

 private:
  // Whether `add` met a file, be it one that was named before.
  bool AnyFileIn(const std::function<void()>& add) {
    const std::size_t before = met_;
    add();
    return met_ != before;
  }

  bool IsOutput(const fs::path& folder) const {
    std::error_code ignored;
    return !output_.empty() && fs::equivalent(folder, output_, ignored);
  }

  void AddFolder(const fs::path& folder) {
    page::SearchFolder(
        folder, {[this](const fs::path& file, const fs::path& below) { AddFile(file, below); },
                 [this](const fs::path& inside) { return !IsOutput(inside); }});
  }

  bool AddPattern(const std::string& pattern) {
    fs::path folder;  // the part without a pattern
    std::vector<std::string> names;
    for (const fs::path& part : fs::path(pattern)) {
      if (names.empty() && !IsPattern(part.string()))
        folder /= part;
      else if (part.string() != kAnyFolders || names.empty() || names.back() != kAnyFolders)
        names.push_back(part.string());
    }
    return AnyFileIn([&] { AddMatches(folder, {}, names, 0); });
  }

  // Adds the files below `folder` that match the names from `next` on.
  void AddMatches(const fs::path& folder, const fs::path& below,
                  const std::vector<std::string>& names, std::size_t next) {
    const fs::path shown = folder.empty() ? "." : folder;
    std::error_code ignored;
    if (!fs::is_directory(shown, ignored)) return;
    const std::string& name = names[next];
    const bool last = next + 1 == names.size();
    const bool anyFolders = name == kAnyFolders;
    if (!IsPattern(name)) {
      if (!last) return AddMatches(folder / name, below / name, names, next + 1);
      if (fs::is_regular_file(folder / name, ignored)) AddFile(folder / name, below / name);
      return;
    }
    if (anyFolders && !last) AddMatches(folder, below, names, next + 1);
    for (const page::FolderEntry& entry : EntriesOf(shown)) {
      if (entry.isFolder) {
        if (IsOutput(folder / entry.name)) continue;
        if (anyFolders && !IsHidden(entry.name))
          AddMatches(folder / entry.name, below / entry.name, names, next);
        else if (!anyFolders && !last && Matches(name, entry.name))
          AddMatches(folder / entry.name, below / entry.name, names, next + 1);
      } else if (last && Matches(name, entry.name)) {
        AddFile(folder / entry.name, below / entry.name);
      }
    }
  }

  void AddFile(const fs::path& file, const fs::path& below, bool found = true) {
    ++met_;
    if (known_.Add(file)) found_.push_back({file.string(), below.string(), found});
  }

  fs::path output_;  // empty for none
  NamedPages found_;
  std::size_t met_ = 0;
  page::KnownFiles known_;
};

}  // namespace

NamedPages FindPages(const std::vector<std::string>& arguments, const std::string& output) {
  Search search(output);
  try {
    for (const std::string& argument : arguments) search.Add(argument);
  } catch (const page::FileError& error) {
    throw Failure(FailureText(error));
  }
  return search.Take();
}

std::vector<std::string> FilesOf(const NamedPages& pages) {
  std::vector<std::string> files;
  files.reserve(pages.size());
  for (const NamedPage& page : pages) files.push_back(page.file);
  return files;
}

std::vector<std::string> PagesIn(const std::vector<std::string>& arguments) {
  return FilesOf(FindPages(arguments));
}

}  // namespace kvo
