#include "common/values/Localized.h"

#include <cstdlib>
#include <cstring>

namespace kvo {
namespace {

std::string_view Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

Language ReadLanguage() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string_view value = Setting(variable);
    if (value.empty()) continue;
    const bool german =
        value.starts_with("de") && (value.size() == 2 || std::strchr("_.@-", value[2]) != nullptr);
    return german ? Language::german : Language::english;
  }
  return Language::english;
}

Language& TheLanguage() {
  static Language language = ReadLanguage();
  return language;
}

}  // namespace

Language UserLanguage() { return TheLanguage(); }
void UserLanguage(Language newLanguage) { TheLanguage() = newLanguage; }

std::string Say(const Localized& text, std::initializer_list<std::string_view> values) {
  return Filled(text.In(UserLanguage()), values);
}

Message FailureMessage(const std::exception& failure) {
  if (const auto* localized = dynamic_cast<const LocalizedError*>(&failure))
    return localized->What();
  return {failure.what(), failure.what()};
}

std::string FailureText(const std::exception& failure) {
  return FailureMessage(failure).In(UserLanguage());
}

}  // namespace kvo
