// What the commands that work on page files share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "apps/kvo/Terminal.h"
#include "document/page/Page.h"

namespace kvo {

// Calls `work` for each page. A page that cannot be read or written is reported and the others go
// on; the outcome is the worst of all. Progress is shown on standard error when it takes long.
ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<ExitCode(const std::string& page)>& work);

// What a command may write over the page that it has read.
enum class OverPage { itself, nothing };

// Where each page is written to: `output` is "" (over the page itself), a file, "-" or a folder. A
// Failure when two pages would end up in one place, or when one of the pages would be lost.
std::vector<std::string> Targets(const std::vector<std::string>& pages, const std::string& output,
                                 OverPage over);

// A Failure when one of the pages would be lost by writing each to its target: under what becomes
// of another one, or, unless pages may be written over themselves, of the page itself.
void ProtectPages(const std::vector<std::string>& pages, const std::vector<std::string>& targets,
                  OverPage over);

// Writes one page: reads it, lets `write` fill the target, and puts it in its place only if there
// was no error. Problems go to standard error.
using PageWriter = std::function<page::Problems(const page::Page&, page::Sink&)>;
ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write);

// The same for each page and its target. A target that turns out to be the file just written for
// another page (where "A.html" is another name of "a.html", say) is reported and stays as it is.
ExitCode WritePages(const std::vector<std::string>& pages, const std::vector<std::string>& targets,
                    const PageWriter& write);

// Makes the folder that pictures go to, where it is missing. Throws a Failure.
void MakeFolder(const std::string& folder);

// A page's name in messages: "-" is "<stdin>".
std::string ShownName(const std::string& file);

}  // namespace kvo
