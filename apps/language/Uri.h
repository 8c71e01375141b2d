// The addresses of files in messages: "file:///folder/page.html".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kvo::language {

// Returns the path that an address names; nothing when it names no file of this machine.
std::optional<std::string> PathOf(std::string_view uri);
// Returns the address of an absolute path.
std::string UriOf(std::string_view path);

}  // namespace kvo::language
