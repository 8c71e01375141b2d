// Runs the real program, as a shell would, in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kvo::test {

struct Result {
  int code = -1;  // the exit code; 128 + the signal after a death
  std::string out;
  std::string err;
};

// A test with an empty folder, in which the program runs and to which file names are relative.
class Program : public ::testing::Test {
 protected:
  Program();
  ~Program() override;

  // Runs in English unless `environment` says otherwise; `input` is standard input.
  Result Kvo(const std::vector<std::string>& arguments, const std::string& input = "",
             const std::map<std::string, std::string>& environment = {}) const;
  // The same in German.
  Result KvoGerman(const std::vector<std::string>& arguments, const std::string& input = "") const;

  // Starts the program and does not wait for it.
  pid_t Start(const std::vector<std::string>& arguments, const std::string& input = "",
              const std::map<std::string, std::string>& environment = {}) const;
  // What is run from now on, instead of the program that was built.
  void UseProgram(const std::filesystem::path& program) { program_ = program.string(); }
  // Waits for it and collects what it said.
  Result Finish(pid_t child) const;

  void Write(const std::string& file, const std::string& bytes) const;
  std::string Read(const std::string& file) const;
  bool Exists(const std::string& file) const;
  std::vector<std::string> Files() const;  // names in the folder, sorted
  const std::filesystem::path& Folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  std::string program_ = KVO_PROGRAM;
};

// A control as an element, with its values as they stand in the page.
std::string ControlElement(const std::string& className,
                           const std::vector<std::pair<std::string, std::string>>& params,
                           const std::string& id = "");
// A print control.
std::string PrintElement(const std::string& value, const std::string& id = "");

}  // namespace kvo::test
