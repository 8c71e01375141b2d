#include "tests/support/Environment.h"

#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kvo::test {
namespace {

constexpr std::array<std::string_view, 9> kKept = {"PATH",  "TMPDIR",          "GTEST_",
                                                   "ASAN_", "LSAN_",           "UBSAN_",
                                                   "KVO_",  "QT_SCALE_FACTOR", "QT_FONT_DPI"};

bool IsKept(std::string_view name) {
  for (const std::string_view each : kKept)
    if (each.ends_with('_') ? name.starts_with(each) : name == each) return true;
  return false;
}

void ForgetVariables() {
  std::vector<std::string> names;
  for (char** each = environ; *each != nullptr; ++each)
    names.emplace_back(*each, std::strcspn(*each, "="));
  for (const std::string& name : names)
    if (!IsKept(name)) unsetenv(name.c_str());
}

class HomeFolder {
 public:
  HomeFolder() : path_(std::filesystem::temp_directory_path() / "kvo-home-XXXXXX") {
    if (mkdtemp(path_.data()) != nullptr) return;
    std::perror("Cannot create the tests' home folder");
    _exit(2);
  }
  ~HomeFolder() {
    std::error_code ignored;
    if (getpid() == owner_) std::filesystem::remove_all(path_, ignored);
  }
  HomeFolder(const HomeFolder&) = delete;
  HomeFolder& operator=(const HomeFolder&) = delete;

  const char* Path() const { return path_.c_str(); }

 private:
  std::string path_;
  pid_t owner_ = getpid();  // a forked child must not delete it
};

}  // namespace

void SetEnvironment(const char* locale) {
  ForgetVariables();
  static const HomeFolder home;
  setenv("HOME", home.Path(), 1);
  setenv("XDG_RUNTIME_DIR", home.Path(), 1);
  setenv("LC_ALL", locale, 1);
  setenv("TZ", "UTC", 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
}

}  // namespace kvo::test
