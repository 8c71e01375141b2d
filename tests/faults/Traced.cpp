#include "tests/faults/Traced.h"

#include <algorithm>
#include <sstream>

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

// A line of the trace: the process number, then NAME(ARGUMENTS) = RESULT.
struct Call {
  std::string name;
  std::string arguments;
  std::vector<std::string> texts;  // the arguments in quotation marks
};

Call Parse(std::string line) {
  line.erase(0, line.find_first_not_of("0123456789 "));
  Call call;
  const std::size_t open = line.find('(');
  call.name = line.substr(0, open);
  call.arguments = open == std::string::npos ? "" : line.substr(open);
  for (std::size_t at = call.arguments.find('"'); at != std::string::npos;) {
    std::size_t end = at + 1;
    while (end < call.arguments.size() && call.arguments[end] != '"')
      end += call.arguments[end] == '\\' ? 2 : 1;
    call.texts.push_back(call.arguments.substr(at + 1, end - at - 1));
    at = end < call.arguments.size() ? call.arguments.find('"', end + 1) : std::string::npos;
  }
  return call;
}

bool Contains(const fs::path& folder, const fs::path& file) {
  return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first ==
         folder.end();
}

class Judge {
 public:
  explicit Judge(const Bounds& bounds) : bounds_(bounds) {}

  bool IsAllowed(const Call& call) const {
    static const std::set<std::string> looking = {
        "access",     "faccessat", "faccessat2", "stat",     "lstat",
        "newfstatat", "statx",     "statfs",     "readlink", "readlinkat",
        "getxattr",   "getcwd",    "exit_group", "exit",     "+++"};
    static const std::set<std::string> changing = {"rename",   "renameat", "renameat2", "unlink",
                                                   "unlinkat", "mkdir",    "mkdirat",   "rmdir"};
    if (looking.contains(call.name) || call.name.starts_with("+++")) return true;
    if (changing.contains(call.name))
      return std::ranges::all_of(call.texts, [this](const auto& text) { return MayWrite(text); });
    if (call.texts.empty()) return false;
    if (call.name == "execve") return bounds_.starts.contains(PathOf(call.texts[0]));
    if (call.name == "open" || call.name == "openat") {
      const bool writes = call.arguments.find("O_WRONLY") != std::string::npos ||
                          call.arguments.find("O_RDWR") != std::string::npos ||
                          call.arguments.find("O_CREAT") != std::string::npos ||
                          call.arguments.find("O_TRUNC") != std::string::npos;
      return writes ? MayWrite(call.texts[0]) : MayRead(call.texts[0]);
    }
    return false;  // a socket, another process, a link, changed permissions, ...
  }

 private:
  fs::path PathOf(const std::string& text) const {
    const fs::path path = (bounds_.home / text).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
  }
  bool MayWrite(const std::string& text) const {
    const fs::path path = PathOf(text);
    return std::ranges::any_of(bounds_.writes,
                               [&](const fs::path& folder) { return Contains(folder, path); });
  }
  bool MayRead(const std::string& text) const {
    const fs::path path = PathOf(text);
    if (bounds_.reads.contains(path) || bounds_.writes.contains(path)) return true;
    if (bounds_.starts.contains(path)) return true;
    // The program's libraries, and system information that they read.
    static const std::vector<fs::path> system = {"/lib",  "/lib64", "/usr/lib", "/usr/share/locale",
                                                 "/proc", "/sys",   "/dev/null"};
    static const std::set<fs::path> known = {"/etc/ld.so.cache", "/etc/ld.so.preload",
                                             "/etc/localtime", "/usr/share/zoneinfo"};
    return known.contains(path) || std::ranges::any_of(system, [&](const fs::path& folder) {
             return Contains(folder, path);
           });
  }

  const Bounds& bounds_;
};

}  // namespace

std::vector<std::string> Oversteps(const std::string& trace, const Bounds& bounds) {
  const Judge judge(bounds);
  std::vector<std::string> oversteps;
  std::istringstream lines(trace);
  for (std::string line; std::getline(lines, line);)
    if (!judge.IsAllowed(Parse(line))) oversteps.push_back(line);
  return oversteps;
}

}  // namespace kvo::test
