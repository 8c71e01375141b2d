// Writes the elements of controls for tests.
#pragma once

#include <string>
#include <string_view>

namespace kvo::uses {

inline std::string Param(std::string_view key, std::string_view value) {
  return "<param name=\"" + std::string(key) + "\" value=\"" + std::string(value) + "\">";
}
inline std::string Control(std::string_view className, std::string_view params,
                           std::string_view id = "Eins") {
  return "<object classid=\"progid:KVOPDesignObjects." + std::string(className) + "\" id=\"" +
         std::string(id) + "\">" + std::string(params) + "</object>";
}

}  // namespace kvo::uses
