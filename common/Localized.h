// Texts for people, in the two languages that the programs speak.
#pragma once

#include <string_view>

namespace kvo {

enum class Language { german, english };

// One text in both languages. German is the system's own language; English is the translation.
struct Localized {
  std::string_view german;
  std::string_view english;

  constexpr std::string_view In(Language language) const {
    return language == Language::german ? german : english;
  }
};

}  // namespace kvo
