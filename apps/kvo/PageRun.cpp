#include "apps/kvo/PageRun.h"

#include <chrono>
#include <filesystem>
#include <map>

#include "host/page/File.h"

namespace kvo {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kStandardStream = "-";

// Tells how far a long run is, at most once a second and not before the first second is over.
class Progress {
 public:
  explicit Progress(std::size_t total) : total_(total) {}

  void Next(const std::string& page) {
    ++current_;
    const Clock::time_point now = Clock::now();
    if (now - told_ < std::chrono::seconds(1)) return;
    told_ = now;
    Tell(Say({"kvo: {} von {}: {}", "kvo: {} of {}: {}"},
             {std::to_string(current_), std::to_string(total_), ShownName(page)}));
  }

 private:
  std::size_t total_;
  std::size_t current_ = 0;
  Clock::time_point told_ = Clock::now();
};

}  // namespace

InterruptionPause::InterruptionPause() {
  sigset_t interruptions;
  sigemptyset(&interruptions);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&interruptions, signal);
  sigprocmask(SIG_BLOCK, &interruptions, &former_);
}

InterruptionPause::~InterruptionPause() { sigprocmask(SIG_SETMASK, &former_, nullptr); }

std::string ShownName(const std::string& file) {
  return file == kStandardStream ? "<stdin>" : file;
}

ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<ExitCode(const std::string& page)>& work) {
  ExitCode code = ExitCode::good;
  Progress progress(pages.size());
  for (const std::string& file : pages) {
    progress.Next(file);
    try {
      code = Worse(code, work(file));
    } catch (const page::FileError& error) {
      Complain(error.Text(UserLanguage()));
      code = ExitCode::failure;
    }
  }
  return code;
}

std::vector<std::string> Targets(const std::vector<std::string>& pages, const std::string& output) {
  std::error_code ignored;
  const bool folder = output != kStandardStream && !output.empty() &&
                      (output.ends_with('/') || std::filesystem::is_directory(output, ignored));
  if (!output.empty() && !folder && pages.size() > 1)
    throw Failure(Say({"Mehrere Seiten passen nicht in „{}“. Hinter -o einen vorhandenen Ordner "
                       "angeben.",
                       "Several pages do not fit into \"{}\". Name an existing folder behind -o."},
                      {output}));
  std::vector<std::string> targets;
  std::map<std::string, std::string> taken;
  for (const std::string& file : pages) {
    std::string target = output.empty() ? file : output;
    if (folder) {
      if (file == kStandardStream)
        throw Failure(Say({"Die Standardeingabe hat keinen Dateinamen. Hinter -o eine Datei "
                           "angeben statt des Ordners „{}“.",
                           "Standard input has no file name. Name a file behind -o instead of the "
                           "folder \"{}\"."},
                          {output}));
      target = (std::filesystem::path(output) / std::filesystem::path(file).filename()).string();
    }
    const auto [other, isNew] = taken.emplace(target, file);
    if (!isNew)
      throw Failure(Say({"„{}“ und „{}“ würden beide nach „{}“ geschrieben. Einzeln aufrufen.",
                         "\"{}\" and \"{}\" would both be written to \"{}\". Call kvo for each."},
                        {other->second, file, target}));
    targets.push_back(target);
  }
  return targets;
}

ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write) {
  const page::Page page(page::ReadFile(file));
  const InterruptionPause pause;
  const auto output = page::OpenOutput(target);
  const page::Problems problems = write(page, *output);
  ShowProblems(Stream::error, ShownName(file), problems);
  if (page::HasErrors(problems)) {
    Complain(Say({"{} wurde nicht geschrieben; erst die genannten Fehler beheben.",
                  "{} was not written; mend the errors named above first."},
                 {target == kStandardStream ? Say({"Die Ausgabe", "The output"}) : target}));
    return ExitCode::problemsFound;
  }
  output->Commit();
  return ExitCode::good;
}

}  // namespace kvo
