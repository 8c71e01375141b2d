// The one list of the library's classes. The command line tool, the editor and the Windows
// component are all fed from it; a class that stands here appears in all of them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "common/Control.h"
#include "common/PropertyPage.h"

namespace kvo {

inline constexpr std::string_view kLibraryName = "KVOPDesignObjects";

struct RegisteredControl {
  const ControlClass& (*contract)();
  std::string_view classId;  // registry form: braces, upper case; never changes
};

std::span<const RegisteredControl> RegisteredControls();

// By class name, exactly as it is spelt; nullptr when there is none.
const RegisteredControl* FindControlByName(std::string_view className);
// By the `classid` of a page's object element: "progid:KVOPDesignObjects.NAME" or "clsid:GUID"
// with or without braces, in any case; nullptr when it is none of ours.
const RegisteredControl* FindControlByClassId(std::string_view classId);
// Property pages. Which class shows which pages stands in the class's own list.
struct RegisteredPage {
  std::string_view name;
  std::unique_ptr<PropertyPage> (*create)();
  std::string_view classId;  // registry form: braces, upper case; never changes
};

std::span<const RegisteredPage> RegisteredPages();
// By class name, exactly as it is spelt; nullptr when there is none.
const RegisteredPage* FindPage(std::string_view className);
// Makes a page: what a property frame needs. nullptr when there is none of the name.
std::unique_ptr<PropertyPage> CreatePage(std::string_view className);

// Whether a `classid` claims to be of this library, known or not.
bool IsOurProgId(std::string_view classId);

}  // namespace kvo
