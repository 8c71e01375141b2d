#include "apps/kvo/PageRun.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "apps/kvo/Ending.h"
#include "apps/kvo/InTurns.h"
#include "apps/kvo/Progress.h"

#include "document/page/File.h"

namespace kvo {
namespace {

constexpr std::string_view kStandardStream = "-";

// Identifies a file, whatever its name.
using FileIdentity = std::pair<dev_t, ino_t>;

// Returns a file's identity; nothing if it does not exist or is not a regular file. "-" is the
// given stream.
std::optional<FileIdentity> IdentityOf(const std::string& file, int stream) {
  struct stat status;
  const bool found =
      file == kStandardStream ? fstat(stream, &status) == 0 : stat(file.c_str(), &status) == 0;
  if (!found || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity(status.st_dev, status.st_ino);
}

// How many pages the work may be ahead of what was shown.
constexpr std::size_t kWindow = 256;

// What is known of a page that was worked on.
struct Outcome {
  PageResult result;
  HeldOutput::Pieces printed;
  std::exception_ptr failure;
};

// Shows an outcome in its turn.
ExitCode Show(Outcome outcome) {
  try {
    Print(outcome.printed);
    if (outcome.failure) std::rethrow_exception(outcome.failure);
    if (outcome.result.show) outcome.result.show();
    return outcome.result.code;
  } catch (const page::FileError& error) {
    PrintError(error.Text(UserLanguage()));
    return ExitCode::failure;
  }
}

// Says how far an interrupted run came, and ends the program.
void EndIfStopped(std::size_t done, std::size_t total) {
  if (StopSignal() == 0) return;
  FlushOutput();
  Tell(Say({"kvo: Abgebrochen nach {} von {} Seiten.", "kvo: Interrupted after {} of {} pages."},
           {std::to_string(done), std::to_string(total)}));
  EndBySignal(StopSignal());
}

struct Steps {
  std::function<PageResult(std::size_t)> work;
  // Called for pages [begin, end) before they are shown.
  std::function<void(std::size_t begin, std::size_t end)> settle = [](auto, auto) {};
  // Called at the end, after an interruption as well.
  std::function<void()> finish = [] {};
  std::size_t window = kWindow;
};

// Runs pages by their numbers, as ForEachPage says.
ExitCode RunPages(std::size_t count, const Steps& steps) {
  std::vector<Outcome> outcomes(count);
  ExitCode code = ExitCode::good;
  Progress progress([&] { return static_cast<std::int64_t>(count); });
  Turns turns;
  turns.window = steps.window;
  turns.work = [&](std::size_t index) {
    std::optional<HeldOutput> held;
    if (count > 1) held.emplace();
    try {
      outcomes[index].result = steps.work(index);
    } catch (...) {
      outcomes[index].failure = std::current_exception();
    }
    if (held) outcomes[index].printed = held->Take();
  };
  turns.take = [&](std::size_t begin, std::size_t end) {
    steps.settle(begin, end);
    for (std::size_t index = begin; index < end; ++index)
      code = Worse(code, Show(std::exchange(outcomes[index], {})));
  };
  turns.tick = [&](std::size_t finished) { progress.Finished(finished); };
  const std::size_t done = RunInTurns(count, turns);
  steps.finish();
  EndIfStopped(done, count);
  return code;
}

// Returns a target's name for messages.
std::string ShownTarget(const std::string& target) {
  return target == kStandardStream ? "<stdout>" : target;
}

}  // namespace

std::string ShownName(const std::string& file) {
  return file == kStandardStream ? "<stdin>" : file;
}

std::optional<std::string> FileBeside(const std::string& page, std::string_view name) {
  if (page == kStandardStream) return std::nullopt;
  const std::filesystem::path beside = std::filesystem::path(page).replace_filename(name);
  std::error_code ignored;
  if (!std::filesystem::exists(beside, ignored)) return std::nullopt;
  return beside.string();
}

std::string FileNamePart(std::string_view name) {
  constexpr std::size_t kMost = 100;
  const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; };
  if (name.size() > kMost) {
    std::size_t end = kMost;  // do not cut a character in half
    while (end > 0 && isInside(name[end])) --end;
    name = name.substr(0, end);
  }
  std::string safe;
  for (const char c : name) {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' ||
                       static_cast<unsigned char>(c) >= 0x80;
    safe += plain ? c : '_';
  }
  return safe;
}

ExitCode ForEachPage(const std::vector<std::string>& pages,
                     const std::function<PageResult(const std::string& page)>& work) {
  return RunPages(pages.size(), {.work = [&](std::size_t index) { return work(pages[index]); }});
}

std::vector<std::string> Targets(const NamedPages& pages, const std::string& output,
                                 OverPage over) {
  std::error_code ignored;
  const bool searched = std::ranges::any_of(pages, &NamedPage::found);
  const bool folder = output != kStandardStream && !output.empty() &&
                      (output.ends_with('/') || std::filesystem::is_directory(output, ignored) ||
                       (searched && !std::filesystem::exists(output, ignored)));
  if (!output.empty() && !folder && pages.size() > 1)
    throw Failure(Say({"Mehrere Seiten passen nicht in „{}“. Hinter -o einen vorhandenen Ordner "
                       "angeben.",
                       "Several pages do not fit into \"{}\". Name an existing folder behind -o."},
                      {output}));
  std::vector<std::string> targets;
  std::map<std::string, std::string> taken;
  for (const auto& [file, below, found] : pages) {
    std::string target = output.empty() ? file : output;
    if (folder) {
      if (file == kStandardStream)
        throw Failure(Say({"Die Standardeingabe hat keinen Dateinamen. Hinter -o eine Datei "
                           "angeben statt des Ordners „{}“.",
                           "Standard input has no file name. Name a file behind -o instead of the "
                           "folder \"{}\"."},
                          {output}));
      target = (std::filesystem::path(output) / below).string();
    }
    const auto [other, isNew] = taken.emplace(target, file);
    if (!isNew)
      throw Failure(Say({"„{}“ und „{}“ würden beide nach „{}“ geschrieben. Einzeln aufrufen.",
                         "\"{}\" and \"{}\" would both be written to \"{}\". Call kvo for each."},
                        {other->second, file, target}));
    targets.push_back(target);
  }
  ProtectPages(FilesOf(pages), targets, over);
  std::set<std::string> folders;
  for (std::size_t i = 0; folder && i < pages.size(); ++i)
    if (pages[i].found) folders.insert(std::filesystem::path(targets[i]).parent_path().string());
  std::ranges::for_each(folders, MakeFolder);
  return targets;
}

void ProtectPages(const std::vector<std::string>& pages, const std::vector<std::string>& targets,
                  OverPage over) {
  // A page cannot be replaced on standard output, which is not written in place.
  const auto inPlace = [over](const std::string& page, const std::string& target) {
    return over == OverPage::itself && target == page && target != kStandardStream;
  };
  if (std::ranges::equal(pages, targets, inPlace)) return;
  std::map<FileIdentity, std::string> sources;
  for (const std::string& file : pages)
    if (const auto identity = IdentityOf(file, STDIN_FILENO)) sources.emplace(*identity, file);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const std::string& target = targets[i];
    const auto identity = IdentityOf(target, STDOUT_FILENO);
    if (!identity || !sources.contains(*identity)) continue;
    const bool own = over == OverPage::itself && target != kStandardStream &&
                     identity == IdentityOf(pages[i], STDIN_FILENO);
    if (own) continue;
    throw Failure(Say({"„{}“ ist die Seite „{}“ selbst, und die ginge verloren. Hinter -o ein "
                       "anderes Ziel angeben.",
                       "\"{}\" is the page \"{}\" itself, which would be lost. Name another target "
                       "behind -o."},
                      {ShownTarget(target), ShownName(sources.at(*identity))}));
  }
}

namespace {

// A page written, but not yet in its place.
struct Written {
  page::Problems problems;
  std::unique_ptr<page::Output> output;  // nullptr when there were errors
};

Written WriteAside(const std::string& file, const std::string& target, const PageWriter& write) {
  const page::Page page(page::ReadFile(file));
  auto output = page::OpenOutput(target);
  page::Problems problems = write(page, *output);
  if (page::HasErrors(problems)) output = nullptr;
  return {std::move(problems), std::move(output)};
}

// Puts the page in its place and shows its problems.
ExitCode Put(const std::string& file, const std::string& target, const Written& written) {
  ShowProblems(Stream::error, ShownName(file), written.problems);
  if (written.output == nullptr) {
    PrintError(Say({"{} wurde nicht geschrieben; erst die genannten Fehler beheben.",
                    "{} was not written; mend the errors named above first."},
                   {target == kStandardStream ? Say({"Die Ausgabe", "The output"}) : target}));
    return ExitCode::problemsFound;
  }
  written.output->Commit();
  return ExitCode::good;
}

// The files written for other pages.
class Taken {
 public:
  void Expect(const std::string& target) const {
    const auto taken = files_.find(IdentityOf(target, STDOUT_FILENO).value_or(FileIdentity()));
    if (taken == files_.end()) return;
    const std::array<std::string_view, 2> names = {target, taken->second};
    throw page::FileError(
        target,
        {Filled("„{}“ wurde nicht geschrieben: dort steht schon, was aus „{}“ wurde. Einzeln "
                "aufrufen.",
                names),
         Filled("\"{}\" was not written: what \"{}\" became is there already. Call kvo for each.",
                names)});
  }
  // Allocates: call it before the page is in place, because nothing may fail after that.
  std::function<void()> Adding(const std::string& target, const std::string& file) {
    auto entry =
        std::make_shared<Files::node_type>(Files{{FileIdentity(), file}}.extract(FileIdentity()));
    return [this, &target, entry] {
      const auto identity = IdentityOf(target, STDOUT_FILENO);
      if (!identity) return;
      entry->key() = *identity;
      files_.insert(std::move(*entry));
    };
  }

 private:
  using Files = std::map<FileIdentity, std::string>;
  Files files_;
};

// Every page waiting for its flush keeps a file open.
std::size_t WriteWindow() {
  constexpr rlim_t kReserve = 64;
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur < 2 * kReserve) return 1;
  return std::min<std::size_t>(kWindow, limit.rlim_cur - kReserve);
}

}  // namespace

ExitCode WritePage(const std::string& file, const std::string& target, const PageWriter& write) {
  return Put(file, target, WriteAside(file, target, write));
}

ExitCode WritePages(const NamedPages& pages, const std::vector<std::string>& targets,
                    const PageWriter& write) {
  if (pages.size() == 1)
    return ForEachPage({pages[0].file}, [&](const std::string& file) {
      return PageResult{WritePage(file, targets[0], write)};
    });
  std::vector<Written> written(pages.size());
  Taken taken;
  page::FileGroup group;
  const auto put = [&](std::size_t index) {
    const std::string& target = targets[index];
    const std::string& file = pages[index].file;
    const Written page = std::move(written[index]);
    if (target == file) return Put(file, target, page);
    taken.Expect(target);
    const auto add = taken.Adding(target, file);
    const ExitCode code = Put(file, target, page);
    if (code == ExitCode::good) add();
    return code;
  };
  ExitCode code = ExitCode::good;
  Steps steps;
  steps.work = [&](std::size_t index) {
    written[index] = WriteAside(pages[index].file, targets[index], write);
    return PageResult{ExitCode::good, [&, index] { code = Worse(code, put(index)); }};
  };
  steps.settle = [&](std::size_t begin, std::size_t end) {
    std::vector<page::Output*> outputs;
    for (; begin < end; ++begin)
      if (written[begin].output != nullptr) outputs.push_back(written[begin].output.get());
    group.Flush(outputs);
  };
  steps.finish = [&] { group.Finish(); };
  steps.window = WriteWindow();
  const ExitCode ran = RunPages(pages.size(), steps);
  return Worse(ran, code);
}

void MakeFolder(const std::string& folder) {
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  if (failed)
    throw Failure(Say({"Der Ordner „{}“ lässt sich nicht anlegen: {}. Einen anderen hinter -o "
                       "angeben.",
                       "The folder \"{}\" can't be made: {}. Name another one behind -o."},
                      {folder, failed.message()}));
}

}  // namespace kvo
