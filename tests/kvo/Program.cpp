#include "tests/kvo/Program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kvo::test {
namespace {

std::string ReadAll(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

void WriteAll(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  stream.close();
  if (!stream) throw std::runtime_error("cannot write " + file.string());
}

void Redirect(const std::filesystem::path& file, int flags, int descriptor) {
  const int opened = open(file.c_str(), flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
}

std::filesystem::path NewFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kvo-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
  return name;
}

}  // namespace

Program::Program() : folder_(NewFolder()) { std::filesystem::create_directory(folder_ / "work"); }

Program::~Program() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Result Program::Kvo(const std::vector<std::string>& arguments, const std::string& input,
                    const std::map<std::string, std::string>& environment) const {
  return Finish(Start(arguments, input, environment));
}

pid_t Program::Start(const std::vector<std::string>& arguments, const std::string& input,
                     const std::map<std::string, std::string>& environment) const {
  const auto in = folder_ / "in";
  const auto out = folder_ / "out";
  const auto err = folder_ / "err";
  WriteAll(in, input);
  const pid_t child = fork();
  if (child == 0) {
    Redirect(in, O_RDONLY, STDIN_FILENO);
    Redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    Redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    if (chdir((folder_ / "work").c_str()) != 0) _exit(126);
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "NO_COLOR"}) unsetenv(variable);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<std::string> words{program_};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(program_.c_str(), pointers.data());
    _exit(127);
  }
  return child;
}

Result Program::Finish(pid_t child) const {
  int status = 0;
  waitpid(child, &status, 0);
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return {code, ReadAll(folder_ / "out"), ReadAll(folder_ / "err")};
}

Result Program::KvoGerman(const std::vector<std::string>& arguments,
                          const std::string& input) const {
  return Kvo(arguments, input, {{"LC_ALL", "de_DE.UTF-8"}});
}

void Program::Write(const std::string& file, const std::string& bytes) const {
  WriteAll(folder_ / "work" / file, bytes);
}

std::string Program::Read(const std::string& file) const {
  return ReadAll(folder_ / "work" / file);
}

bool Program::Exists(const std::string& file) const {
  return std::filesystem::exists(folder_ / "work" / file);
}

std::vector<std::string> Program::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_ / "work"))
    names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

std::string PrintElement(const std::string& value, const std::string& id) {
  return "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"" +
         (id.empty() ? "" : " id=\"" + id + '"') + "><param name=\"value\" value=\"" + value +
         "\"></object>";
}

}  // namespace kvo::test
