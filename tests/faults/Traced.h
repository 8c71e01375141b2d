// What a program asked of the system, as strace wrote it down, and what of it oversteps the line.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace kvo::test {

// What a program may do.
struct Bounds {
  std::filesystem::path home;              // the working folder; its parent is the test's
  std::set<std::filesystem::path> reads;   // files of the test that may be read
  std::set<std::filesystem::path> writes;  // folders in which files may be made and replaced
  std::set<std::filesystem::path> starts;  // programs
};

// Each call beyond the bounds, as strace shows it; empty when there is none.
std::vector<std::string> Oversteps(const std::string& trace, const Bounds& bounds);

}  // namespace kvo::test
