#include "apps/kvo/GitMergeFile.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "apps/kvo/Terminal.h"

namespace kvo {
namespace {

// Fails with the reason that the system gave.
[[noreturn]] void FailToRun(int error) {
  if (error == ENOENT)
    throw Failure(
        Say({"„git“ wurde nicht gefunden; kvo merge braucht es für den Text der Seiten. "
             "git installieren.",
             "\"git\" was not found; kvo merge needs it for the text of pages. Install "
             "git."}));
  throw Failure(Say({"„git merge-file“ ließ sich nicht starten: {}.",
                     "\"git merge-file\" could not be started: {}."},
                    {std::strerror(error)}));
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {
    if (number < 0) FailToRun(errno);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int Number() const { return number_; }
  void Close() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

 private:
  int number_;
};

// A text that another program can read as a file.
class TextInMemory {
 public:
  explicit TextInMemory(std::string_view text) : file_(memfd_create("kvo-merge", 0)) {
    while (!text.empty()) {
      const ssize_t size = write(file_.Number(), text.data(), text.size());
      if (size < 0 && errno != EINTR) FailToRun(errno);
      if (size > 0) text.remove_prefix(static_cast<std::size_t>(size));
    }
  }
  std::string Name() const { return "/dev/fd/" + std::to_string(file_.Number()); }

 private:
  Descriptor file_;
};

struct Finished {
  int status = 0;
  std::string output;
};

// Runs a program with its standard output in a pipe.
Finished RunProgram(std::vector<std::string> words) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) FailToRun(errno);
  const Descriptor from(ends[0]);
  Descriptor to(ends[1]);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to.Number(), STDOUT_FILENO);
  pid_t child = 0;
  const int error =
      posix_spawnp(&child, pointers.front(), &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) FailToRun(error);
  to.Close();
  Finished run;
  std::array<char, 1U << 16U> part;
  for (;;) {
    const ssize_t size = read(from.Number(), part.data(), part.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) break;
    run.output.append(part.data(), static_cast<std::size_t>(size));
  }
  while (waitpid(child, &run.status, 0) < 0 && errno == EINTR) {
  }
  return run;
}

// Like git, which looks at this many bytes.
bool IsBinary(std::string_view text) {
  constexpr std::size_t kReach = 8000;
  return text.substr(0, kReach).find('\0') != std::string_view::npos;
}

}  // namespace

compare::TextMerge GitMergeFile(VersionNames names) {
  return [names = std::move(names)](std::string_view base, std::string_view ours,
                                    std::string_view theirs,
                                    std::size_t markerSize) -> std::optional<compare::MergedText> {
    if (IsBinary(base) || IsBinary(ours) || IsBinary(theirs)) return std::nullopt;
    const TextInMemory baseFile(base);
    const TextInMemory oursFile(ours);
    const TextInMemory theirsFile(theirs);
    const Finished run =
        RunProgram({"git", "merge-file", "-p", "--marker-size=" + std::to_string(markerSize), "-L",
                    names.ours, "-L", names.base, "-L", names.theirs, oursFile.Name(),
                    baseFile.Name(), theirsFile.Name()});
    // The exit code is the number of conflicts, at most 127.
    constexpr int kMostConflicts = 127;
    if (!WIFEXITED(run.status) || WEXITSTATUS(run.status) > kMostConflicts)
      throw Failure(
          Say({"„git merge-file“ ist gescheitert; was es meldet, steht darüber. Nichts "
               "wurde geschrieben.",
               "\"git merge-file\" failed; see its message above. Nothing was written."}));
    return compare::MergedText{run.output, WEXITSTATUS(run.status) != 0};
  };
}

}  // namespace kvo
