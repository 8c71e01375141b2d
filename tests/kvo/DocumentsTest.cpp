// Runs the commands of the documents and follows their links.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "tests/kvo/Matches.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;
using Match = std::vector<std::string>;

const fs::path kSource = KVO_SOURCE_DIR;

std::string TextOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return (std::ostringstream() << in.rdbuf()).str();
}

std::vector<fs::path> Documents() {
  std::vector<fs::path> documents;
  for (const fs::path& folder : {kSource, kSource / "docs"})
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path().extension() == ".md") documents.push_back(entry.path());
  return documents;
}

// Calls `check` with each match of the expression in any document.
void ForEveryMatch(const std::string& expression,
                   const std::function<void(const fs::path&, const Match&)>& check) {
  std::size_t count = 0;
  for (const fs::path& document : Documents())
    for (const Match& match : Matches(TextOf(document), expression)) {
      SCOPED_TRACE(document.filename().string() + ": " + match[0]);
      check(document, match);
      ++count;
    }
  EXPECT_GT(count, 0U);
}

class DocumentsTest : public Program {
 protected:
  fs::path Work() const { return Folder() / "work"; }
  // The output of a shell command in the folder of the test.
  std::string Shell(const std::string& command) const {
    const std::string line = "cd '" + Work().string() +
                             "' && PATH=" + fs::path(KVO_PROGRAM).parent_path().string() +
                             ":$PATH && { " + command + "; } 2>&1";
    FILE* const pipe = popen(line.c_str(), "r");
    std::string shown;
    std::array<char, 4096> part;
    while (const std::size_t size = fread(part.data(), 1, part.size(), pipe))
      shown.append(part.data(), size);
    pclose(pipe);
    return shown;
  }
};

// In a block of code, "$ " begins a command; its output follows.
TEST_F(DocumentsTest, CommandsPrintWhatTheDocumentsShow) {
  fs::create_directories(Work() / "build/bin");
  fs::create_symlink(KVO_PROGRAM, Work() / "build/bin/kvo");
  fs::create_directories(Work() / "examples");
  fs::copy(kSource / "examples/takeover", Work() / "examples/takeover");
  ForEveryMatch("\n```[a-z]*\n(\\$ [^`]*\n)```\n", [&](const fs::path&, const Match& block) {
    std::istringstream lines(block[1]);
    std::string command;
    std::string expected;
    const auto run = [&] {
      if (!command.empty()) {
        EXPECT_EQ(Shell(command), expected) << command;
      }
      expected.clear();
    };
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("$ ")) {
        expected += line + '\n';
        continue;
      }
      run();
      command = line.substr(2);
    }
    run();
  });
}

TEST_F(DocumentsTest, NamedCommandsAndOptionsExist) {
  std::map<std::string, std::string> help;
  ForEveryMatch("`(build/[a-z/]+/)?kvo ([a-z]+)([^`]*)`", [&](const fs::path&, const Match& span) {
    const std::string command = span[2];
    if (help[command].empty()) {
      const Result result = Kvo({command, "--help"});
      EXPECT_EQ(result.code, 0);
      help[command] = result.out;
    }
    for (const Match& option : Matches(span[3], "--?[a-z]+"))
      EXPECT_NE(help[command].find(option[0]), std::string::npos) << option[0];
  });
}

TEST_F(DocumentsTest, NamedPartsOfRunAndTestExist) {
  ForEveryMatch("\\./(run|test) ([a-z0-9]+)", [](const fs::path&, const Match& named) {
    const std::string label = "\n +([a-z0-9]+ \\| )*" + named[2] + "( \\| [a-z0-9]+)*\\)";
    EXPECT_FALSE(Matches(TextOf(kSource / named[1]), label).empty());
  });
}

TEST_F(DocumentsTest, LinksLeadToFiles) {
  ForEveryMatch("\\]\\(([^)#:]+)(#[^)]*)?\\)", [](const fs::path& document, const Match& link) {
    EXPECT_TRUE(fs::exists(document.parent_path() / link[1]));
  });
}

}  // namespace
}  // namespace kvo::test
