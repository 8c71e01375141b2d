// The problems that a shop knows of and does not want to hear of again: a file that `kvo check`
// writes and reads.
#pragma once

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "document/page/Page.h"

namespace kvo {

// A problem is known by its page, its rule, the id of its control and the text it is about, not by
// its line. Several that are alike are counted.
class Baseline {
 public:
  // `file` is where it is read or written; pages are named from its folder.
  explicit Baseline(std::string file);

  // Reads the file. Throws Failure, or page::FileError.
  void Read();
  // Returns the problems that are not known.
  page::Problems NewOf(const std::string& page, const page::Page& contents,
                       page::Problems problems);
  // Returns what was known of the pages asked for but is there no more, as lines for the user.
  std::vector<std::string> Gone() const;

  void Note(const std::string& page, const page::Page& contents, const page::Problems& problems);
  std::size_t Noted() const { return noted_; }
  // Writes what was noted. Throws page::FileError.
  void Write() const;

 private:
  struct Key {
    std::string page;
    std::string rule;
    std::string id;
    std::string text;  // a hash
    auto operator<=>(const Key&) const = default;
  };
  Key KeyOf(const std::string& page, const page::Page& contents,
            const page::Problem& problem) const;
  std::string NameOf(const std::string& page) const;

  std::string file_;
  std::map<Key, std::size_t> left_;  // known ones, or noted ones, and how many are alike
  std::set<std::string> asked_;
  std::size_t noted_ = 0;
};

}  // namespace kvo
