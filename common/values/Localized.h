// Texts for users, in the two languages of the programs.
#pragma once

#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace kvo {

enum class Language { german, english };

// One text in both languages. German is the system's own language; English is the translation.
template <class String>
struct BothLanguages {
  String german;
  String english;

  constexpr const String& In(Language language) const {
    return language == Language::german ? german : english;
  }
};
using Localized = BothLanguages<std::string_view>;  // a constant
using Message = BothLanguages<std::string>;         // put together at run time

// The user's language: the first of LC_ALL, LC_MESSAGES and LANG that is set decides; "de..." is
// German, everything else English.
Language UserLanguage();
// Overrides the above, for hosts that know the user's language from elsewhere.
void UserLanguage(Language newLanguage);

// Replaces each "{}" by the next value. There must be a "{}" for each value.
template <class Values>
std::string Filled(std::string_view text, const Values& values) {
  std::string filled;
  for (const std::string_view value : values) {
    const std::size_t at = text.find("{}");
    filled.append(text.substr(0, at)).append(value);
    text.remove_prefix(at + 2);
  }
  return filled.append(text);
}
template <class Values>
Message Filled(const Localized& text, const Values& values) {
  return {Filled(text.german, values), Filled(text.english, values)};
}
// The same in the user's language.
std::string Say(const Localized& text, std::initializer_list<std::string_view> values = {});

// A failure that is reported in the user's language.
class LocalizedError : public std::exception {
 public:
  explicit LocalizedError(Message message) : message_(std::move(message)) {}

  const Message& What() const { return message_; }
  const std::string& Text(Language language) const { return message_.In(language); }
  const char* what() const noexcept override { return message_.english.c_str(); }

 private:
  Message message_;
};

// The message of any failure, in both languages where it has them.
Message FailureMessage(const std::exception& failure);
// The same in the user's language.
std::string FailureText(const std::exception& failure);

}  // namespace kvo
