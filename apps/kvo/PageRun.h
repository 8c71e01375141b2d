// Shared by the commands that work on page files.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/kvo/FindPages.h"
#include "apps/kvo/Terminal.h"
#include "document/page/File.h"
#include "document/page/Page.h"

namespace kvo {

// What came of one page. `show`, which may be empty, prints it and adds it to the command's whole
// result; it runs in the order of the pages and never two at once.
struct PageResult {
  ExitCode code = ExitCode::good;
  std::function<void()> show = {};
};

// Calls `work` for each page, on any core and in any order, and returns the worst outcome. `work`
// changes nothing that it shares with others; `show` may. What `work` prints appears before that of
// `show`, in the page's turn. Reports a page that cannot be read or written (page::FileError) in
// its turn and continues with the others; any other exception ends the run in the page's turn.
// Shows progress on standard error when it takes long. A signal to end begins no new page and ends
// the program after those that are being worked on; a single page it ends at once.
ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<PageResult(const std::string& page)>& work);

// Writes all files or none: see document/page/File.h.
using page::FileChange;
using page::WriteAll;

// Which pages a command may overwrite with its output.
enum class OverPage { itself, nothing };

// Returns the target of each page. `output` is "" (over the page itself), a file, "-" or a folder.
// Pages that were found in a folder keep their path below it; makes the folders for them. Throws
// Failure when two pages have the same target or a page would be lost.
std::vector<std::string> Targets(const NamedPages& pages, const std::string& output, OverPage over);

// Throws Failure when writing each page to its target would overwrite another page, or the page
// itself unless `over` allows that.
void ProtectPages(const std::vector<std::string>& pages, const std::vector<std::string>& targets,
                  OverPage over);

// Reads a page, lets `write` fill the target, and commits it only if there was no error. Shows
// problems on standard error.
using PageWriter = std::function<page::Problems(const page::Page&, page::Sink&)>;
ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write);

// Writes each page to its target, many with few flushes of the drive. Reports a target that is a
// file just written for another page (say where "A.html" also names "a.html"), and leaves it
// unchanged.
ExitCode WritePages(const NamedPages& pages, const std::vector<std::string>& targets,
                    const PageWriter& write);

// Creates the folder for pictures if it is missing. Throws Failure.
void MakeFolder(const std::string& folder);

// Returns a page's name for messages: "<stdin>" for "-".
std::string ShownName(const std::string& file);

// Returns the file of this name beside a page, if it is there; none is beside standard input.
std::optional<std::string> FileBeside(const std::string& page, std::string_view name);

// Makes a name safe for use in a file name; keeps letters beyond ASCII. Shortens a long one,
// because file systems limit names, some to 143 bytes.
std::string FileNamePart(std::string_view name);

}  // namespace kvo
