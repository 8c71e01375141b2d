#!/usr/bin/env bash
# How long kvo takes to start, against an empty C++ program: the ratio of the medians of RUNS
# starts each, taken in turns. Usage: bench/startup.sh [KVO [RUNS]]
set -euo pipefail
cd "$(dirname "$0")/.."
kvo=${1:-build/bin/kvo}
runs=${2:-500}
[ -x "$kvo" ] || { echo "$kvo is not there; ./run builds it." >&2; exit 2; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf 'int main() {}\n' >"$folder/empty.cpp"
g++ -O2 -o "$folder/empty" "$folder/empty.cpp"
cat >"$folder/starts.cpp" <<'END'
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <fcntl.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

static double Start(const char* program, const char* argument) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  char* arguments[] = {const_cast<char*>(program), const_cast<char*>(argument), nullptr};
  const auto before = std::chrono::steady_clock::now();
  pid_t child;
  int status = 1;
  if (posix_spawn(&child, program, &actions, nullptr, arguments, environ) != 0) std::exit(2);
  waitpid(child, &status, 0);
  const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - before;
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) std::exit(2);
  return took.count();
}

int main(int, char** argv) {
  const int runs = std::atoi(argv[3]);
  std::vector<double> kvo, empty;
  for (int i = 0; i < runs; ++i) {
    empty.push_back(Start(argv[1], nullptr));
    kvo.push_back(Start(argv[2], "--version"));
  }
  const auto median = [](std::vector<double>& times) {
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
  };
  const double e = median(empty), k = median(kvo);
  std::printf("empty program %.0f us, kvo --version %.0f us, ratio %.2f\n", e, k, k / e);
}
END
g++ -O2 -o "$folder/starts" "$folder/starts.cpp"
"$folder/starts" "$folder/empty" "$kvo" "$runs"
