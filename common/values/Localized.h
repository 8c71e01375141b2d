// Texts for people, in the two languages that the programs speak.
#pragma once

#include <initializer_list>
#include <string>
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

// The user's language: the first of LC_ALL, LC_MESSAGES and LANG that is set decides; "de..." is
// German, everything else English.
Language UserLanguage();
// For hosts that know the user's language from elsewhere. Takes the place of the above from now on.
void UserLanguage(Language newLanguage);

// A text in the user's language, each "{}" replaced by the next of `values`.
std::string Say(const Localized& text, std::initializer_list<std::string_view> values = {});

}  // namespace kvo
