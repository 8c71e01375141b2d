#include "apps/kvo/Ending.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): the POSIX part is wanted
#include <unistd.h>

#include <atomic>
#include <initializer_list>

#include "document/page/UnfinishedFile.h"

namespace kvo {
namespace {

constexpr unsigned kLongestStop = 2;  // seconds

std::atomic<bool> g_stopsLater = false;
std::atomic<int> g_stopSignal = 0;

extern "C" void CleanUp(int signal) {
  const bool asksToStop = signal == SIGINT || signal == SIGTERM || signal == SIGHUP;
  int none = 0;
  if (g_stopsLater && asksToStop && g_stopSignal.compare_exchange_strong(none, signal)) {
    alarm(kLongestStop);
    return;
  }
  EndBySignal(signal == SIGALRM && g_stopSignal != 0 ? g_stopSignal.load() : signal);
}

}  // namespace

void CleanUpWhenEnded() {
  for (const int signal : {SIGALRM, SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGXCPU}) {
    struct sigaction former;
    if (sigaction(signal, nullptr, &former) != 0 || former.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = CleanUp;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_NODEFER);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

StopLater::StopLater() { g_stopsLater = true; }
StopLater::~StopLater() { g_stopsLater = false; }

int StopSignal() { return g_stopSignal; }

void EndBySignal(int signal) {
  page::RemoveUnfinishedFiles();
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
  raise(signal);
  _exit(128 + signal);  // the signal is blocked
}

}  // namespace kvo
