// Runs the commands of the documents and follows their links.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

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
                   const std::function<void(const fs::path&, const std::smatch&)>& check) {
  const std::regex pattern(expression);
  std::size_t count = 0;
  for (const fs::path& document : Documents()) {
    const std::string text = TextOf(document);
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end;
         ++match) {
      SCOPED_TRACE(document.filename().string() + ": " + match->str());
      check(document, *match);
      ++count;
    }
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
  ForEveryMatch("\n```[a-z]*\n(\\$ [^`]*\n)```\n", [&](const fs::path&, const std::smatch& block) {
    std::istringstream lines(block[1].str());
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
  ForEveryMatch(
      "`(?:build/[a-z/]+/)?kvo ([a-z]+)([^`]*)`", [&](const fs::path&, const std::smatch& span) {
        const std::string command = span[1];
        if (help[command].empty()) {
          const Result result = Kvo({command, "--help"});
          EXPECT_EQ(result.code, 0);
          help[command] = result.out;
        }
        const std::string rest = span[2];
        const std::regex option("--?[a-z]+");
        for (std::sregex_iterator each(rest.begin(), rest.end(), option), end; each != end; ++each)
          EXPECT_NE(help[command].find(each->str()), std::string::npos) << each->str();
      });
}

TEST_F(DocumentsTest, NamedPartsOfRunAndTestExist) {
  ForEveryMatch("\\./(run|test) ([a-z0-9]+)", [](const fs::path&, const std::smatch& named) {
    const std::regex label("\n +([a-z0-9]+ \\| )*" + named[2].str() + "( \\| [a-z0-9]+)*\\)");
    EXPECT_TRUE(std::regex_search(TextOf(kSource / named[1].str()), label));
  });
}

TEST_F(DocumentsTest, LinksLeadToFiles) {
  ForEveryMatch("\\]\\(([^)#:]+)(#[^)]*)?\\)",
                [](const fs::path& document, const std::smatch& link) {
                  EXPECT_TRUE(fs::exists(document.parent_path() / link[1].str()));
                });
}

}  // namespace
}  // namespace kvo::test
