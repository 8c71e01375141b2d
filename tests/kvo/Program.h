// Runs the real program in a temporary folder, as a shell would.
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
  int code = -1;  // the exit code; 128 + the signal that killed it
  std::string out;
  std::string err;
};

// A test with a folder of its own, where the program runs and which file names are relative to.
class Program : public ::testing::Test {
 protected:
  Program();
  ~Program() override;

  // Runs in English unless `environment` sets another language; `input` is standard input.
  Result Kvo(const std::vector<std::string>& arguments, const std::string& input = "",
             const std::map<std::string, std::string>& environment = {}) const;
  // Runs the same in German.
  Result KvoGerman(const std::vector<std::string>& arguments, const std::string& input = "") const;

  // Starts the program without waiting for it.
  pid_t Start(const std::vector<std::string>& arguments, const std::string& input = "",
              const std::map<std::string, std::string>& environment = {}) const;
  // Replaces the program to run from now on.
  void UseProgram(const std::filesystem::path& program) { program_ = program.string(); }
  // Waits for the program and collects its output.
  Result Finish(pid_t child) const;

  void Write(const std::string& file, const std::string& bytes) const;
  std::string Read(const std::string& file) const;
  bool Exists(const std::string& file) const;
  std::vector<std::string> Files() const;  // the folder's file names, sorted
  const std::filesystem::path& Folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  std::string program_ = KVO_PROGRAM;
};

// Returns a control's element, with its values exactly as given.
std::string ControlElement(const std::string& className,
                           const std::vector<std::pair<std::string, std::string>>& params,
                           const std::string& id = "");
// Returns a print control's element.
std::string PrintElement(const std::string& value, const std::string& id = "");

}  // namespace kvo::test
