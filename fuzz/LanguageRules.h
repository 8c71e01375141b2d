// What holds for any conversation with the language server.
#pragma once

#include <string_view>

namespace kvo::language {

// The input is a conversation, a message a line; see LanguageRules.cpp. Throws std::logic_error
// when a rule is broken.
void CheckLanguage(std::string_view input);

}  // namespace kvo::language
