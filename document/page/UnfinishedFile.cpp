#include "document/page/UnfinishedFile.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <ctime>
#include <mutex>

namespace kvo::page {

// Never freed, only used again, so that a signal handler can read it at any time.
struct UnfinishedEntry {
  enum class State { none, creating, created };

  std::atomic<State> state = State::none;
  std::string name;                 // changes only in State::none
  UnfinishedEntry* next = nullptr;  // of all entries
  UnfinishedEntry* nextFree = nullptr;
};

namespace {

using State = UnfinishedEntry::State;

std::atomic<UnfinishedEntry*> g_entries = nullptr;
std::atomic<bool> g_ending = false;
std::mutex g_mutex;  // guards g_free; unknown to the signal handler
UnfinishedEntry* g_free = nullptr;

UnfinishedEntry* TakeEntry() {
  const std::lock_guard lock(g_mutex);
  if (g_free != nullptr) {
    UnfinishedEntry* const entry = g_free;
    g_free = entry->nextFree;
    return entry;
  }
  auto* const entry = new UnfinishedEntry;
  entry->next = g_entries;
  g_entries = entry;
  return entry;
}

void GiveBack(UnfinishedEntry* entry) {
  const std::lock_guard lock(g_mutex);
  entry->nextFree = g_free;
  g_free = entry;
}

// Creates nothing, and changes no name, that the signal handler would miss.
void StopWhenEnding() {
  while (g_ending) pause();
}

// During its lifetime, no signal handler runs on this thread.
class NoSignals {
 public:
  NoSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &former_);
  }
  NoSignals(const NoSignals&) = delete;
  NoSignals& operator=(const NoSignals&) = delete;
  ~NoSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

 private:
  sigset_t former_;
};

}  // namespace

int UnfinishedFile::Create(const std::string& name, mode_t mode) {
  if (entry_ == nullptr) entry_ = TakeEntry();
  StopWhenEnding();
  try {
    entry_->name = name;
  } catch (...) {
    Forget();
    throw;
  }
  int descriptor = -1;
  int error = 0;
  {
    const NoSignals uninterrupted;
    entry_->state = State::creating;
    StopWhenEnding();
    descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    error = errno;
    entry_->state = descriptor < 0 ? State::none : State::created;
  }
  if (descriptor < 0) Forget();
  errno = error;
  return descriptor;
}

const char* UnfinishedFile::Name() const { return entry_->name.c_str(); }

void UnfinishedFile::Remove() {
  if (entry_ == nullptr) return;
  unlink(Name());
  Forget();
}

void UnfinishedFile::Forget() {
  entry_->state = State::none;
  GiveBack(entry_);
  entry_ = nullptr;
}

void RemoveUnfinishedFiles() noexcept {
  constexpr int kMostWaits = 1000;
  constexpr timespec kMillisecond{0, 1'000'000};
  g_ending = true;
  int waits = 0;
  for (const UnfinishedEntry* entry = g_entries; entry != nullptr; entry = entry->next) {
    while (entry->state == State::creating && waits++ < kMostWaits)
      nanosleep(&kMillisecond, nullptr);
    if (entry->state == State::created) unlink(entry->name.c_str());
  }
}

}  // namespace kvo::page
