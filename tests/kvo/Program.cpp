#include "tests/kvo/Program.h"

#include <fcntl.h>
#include <spawn.h>
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

// Returns pointers to the texts, as the system expects a list of them.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::filesystem::path NewFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kvo-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot create the test's folder");
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
  std::map<std::string, std::string> variables;
  for (char** each = environ; *each != nullptr; ++each) {
    const std::string variable = *each;
    const std::size_t equals = variable.find('=');
    variables[variable.substr(0, equals)] = variable.substr(equals + 1);
  }
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG", "NO_COLOR"}) variables.erase(name);
  for (const auto& [name, value] : environment) variables[name] = value;
  std::vector<std::string> settings;
  for (const auto& [name, value] : variables) settings.push_back(name + '=' + value);
  std::vector<std::string> words{program_};
  words.insert(words.end(), arguments.begin(), arguments.end());

  // fork() would copy this program, which under the sanitizers takes longer than all of kvo's work.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const int toFile = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), toFile, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), toFile, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, (folder_ / "work").c_str());
  pid_t child = 0;
  const int error = posix_spawn(&child, program_.c_str(), &actions, nullptr, Pointers(words).data(),
                                Pointers(settings).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(program_ + " did not start");
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

std::string ControlElement(const std::string& className,
                           const std::vector<std::pair<std::string, std::string>>& params,
                           const std::string& id) {
  std::string element = "<object classid=\"progid:KVOPDesignObjects." + className + '"';
  if (!id.empty()) element += " id=\"" + id + '"';
  element += '>';
  for (const auto& [name, value] : params)
    element += "<param name=\"" + name + "\" value=\"" + value + "\">";
  return element + "</object>";
}

std::string PrintElement(const std::string& value, const std::string& id) {
  return ControlElement("DTCPrint", {{"value", value}}, id);
}

}  // namespace kvo::test
