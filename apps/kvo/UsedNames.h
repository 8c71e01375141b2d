// The names that pages use, to tell a user who asks for one that none uses.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "document/uses/Uses.h"

namespace kvo {

class UsedNames {
 public:
  void Add(const std::vector<uses::Use>& uses);
  void Add(const UsedNames& others);

  // Reports on standard error that no page uses the name, and which one was probably meant.
  void TellUsedNowhere(const std::string& word) const;
  // Tells of names that differ from it in case alone: the template engine may take them for the
  // same.
  void TellOtherCases(const std::string& word) const;

 private:
  std::map<std::string, std::size_t> counts_;  // by uses::Written
};

}  // namespace kvo
