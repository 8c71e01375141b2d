// As kvo finds it: in another program.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "apps/kvo/Shop.h"
#include "apps/kvo/Terminal.h"

namespace kvo {
namespace {

constexpr const char* kShopProgram = "kvo-shop";

std::vector<std::string> OwnArguments() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> words;
  for (std::string word; std::getline(file, word, '\0');) words.push_back(word);
  return words;
}

// Returns only when the program cannot be started; errno says why.
void Become(const std::filesystem::path& program) {
  std::vector<std::string> words = OwnArguments();
  std::vector<char*> arguments(words.size() + 1);  // the last one stays null
  std::ranges::transform(words, arguments.begin(), [](std::string& word) { return word.data(); });
  execv(program.c_str(), arguments.data());
}

}  // namespace

Shop FindShop() {
  // Where kvo stands is the only place to look: in any other, the current folder above all, a
  // program of that name may be anybody's.
  std::error_code unknown;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  std::string reason = unknown.message();
  program = unknown ? kShopProgram : program.replace_filename(kShopProgram);
  if (!unknown) {
    Become(program);
    reason = std::strerror(errno);
  }
  const auto none = [program, reason, said = false](const std::string&) mutable -> ObjectRef {
    if (!std::exchange(said, true))
      Complain(
          Say({"Die Produkte des Shops lassen sich nicht lesen, denn „{}“ lässt sich nicht starten "
               "({}). Mit libsoci-dev, libboost-dev und libsqlite3-dev entsteht das Programm so: "
               "cmake --preset release -DKVO_SHOP=ON && cmake --build --preset release",
               "The shop's products can't be read, because \"{}\" can't be started ({}). With "
               "libsoci-dev, libboost-dev and libsqlite3-dev, the program is made by: "
               "cmake --preset release -DKVO_SHOP=ON && cmake --build --preset release"},
              {program.string(), reason}));
    return nullptr;
  };
  return {none, {}};
}

}  // namespace kvo
