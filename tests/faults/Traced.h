// Reads system calls from strace's output and finds those that violate a program's bounds.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace kvo::test {

// What a program is allowed to do.
struct Bounds {
  std::filesystem::path home;              // the working folder; its parent is the test's
  std::set<std::filesystem::path> reads;   // files of the test that may be read
  std::set<std::filesystem::path> writes;  // folders in which files may be made and replaced
  std::set<std::filesystem::path> starts;  // programs that may be started
};

// Returns each call that violates the bounds, as strace shows it; empty if none does.
std::vector<std::string> Oversteps(const std::string& trace, const Bounds& bounds);

}  // namespace kvo::test
