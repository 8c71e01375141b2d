// What the commands that work on page files share.
#pragma once

#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "apps/kvo/Terminal.h"
#include "host/page/Page.h"

namespace kvo {

// Holds back Ctrl-C and a polite end of the program for the time of its life, so that a file that
// is being written is finished, or thrown away, first.
class InterruptionPause {
 public:
  InterruptionPause();
  InterruptionPause(const InterruptionPause&) = delete;
  InterruptionPause& operator=(const InterruptionPause&) = delete;
  ~InterruptionPause();

 private:
  sigset_t former_;
};

// Calls `work` for each page. A page that cannot be read or written is reported and the others go
// on; the outcome is the worst of all. Progress is shown on standard error when it takes long.
ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<ExitCode(const std::string& page)>& work);

// Where each page is written to: `output` is "" (over the page itself), a file, "-" or a folder. A
// Failure when two pages would end up in one place.
std::vector<std::string> Targets(const std::vector<std::string>& pages, const std::string& output);

// Writes one page: reads it, lets `write` fill the target, and puts it in its place only if there
// was no error. Problems go to standard error.
using PageWriter = std::function<page::Problems(const page::Page&, page::Sink&)>;
ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write);

// A page's name in messages: "-" is "<stdin>".
std::string ShownName(const std::string& file);

}  // namespace kvo
