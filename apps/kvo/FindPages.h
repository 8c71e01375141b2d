// The pages that the arguments of a command name.
#pragma once

#include <string>
#include <vector>

#include "common/values/Localized.h"

namespace kvo {

// What the help of commands says of their arguments.
inline constexpr Localized kPagesToRead{
    "die Seiten, Ordner mit Seiten oder Muster wie 'mails/**/*.html';\n"
    "„-“ ist die Standardeingabe",
    "the pages, folders of pages, or patterns such as 'mails/**/*.html';\n"
    "\"-\" is standard input"};

struct NamedPage {
  std::string file;    // as messages name it; "-" is standard input
  std::string below;   // its path below the folder that the user named, else the file's name
  bool found = false;  // in a folder or by a pattern; not named itself
};
using NamedPages = std::vector<NamedPage>;

// Returns the pages that the arguments name, in this order, each file once:
// - A folder names its pages (*.html, *.htm in any case), those of its subfolders too, sorted by
//   path. Skips what is hidden, and follows no links to folders.
// - A pattern that the shell left alone names the files that match: "*" and "?" within one name,
//   "**" through any number of folders. A file of just that name comes first.
// - Everything else is a file's name as it stands, whether the file exists or not; so is "-".
// Searches no folder that is `output`: what an earlier run wrote there is no page. Throws Failure
// when a folder holds no page, when nothing matches a pattern, and for what cannot be searched.
NamedPages FindPages(const std::vector<std::string>& arguments, const std::string& output = {});

// The same, the files alone.
std::vector<std::string> PagesIn(const std::vector<std::string>& arguments);

std::vector<std::string> FilesOf(const NamedPages& pages);

}  // namespace kvo
