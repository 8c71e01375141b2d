// The one list of the library's classes. The command line tool, the editor and the Windows
// component are all fed from it; a class that stands here appears in all of them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "common/forms/PropertyPage.h"
#include "common/frame/Control.h"

namespace kvo {

inline constexpr std::string_view kLibraryName = "KVOPDesignObjects";

// The two type libraries: this one's, and that of the contract with hosts.
struct TypeLibraryId {
  std::string_view name;
  std::string_view id;
  int major;
  int minor;
};
inline constexpr TypeLibraryId kLibrary = {kLibraryName, "{1D0A9E6B-5F3C-4C0E-9B52-8A4E6C7F2D10}",
                                           1, 0};
inline constexpr TypeLibraryId kFramework = {"DTCFramework",
                                             "{8E3B6A42-0C57-4E19-A6D4-3F9C1B7E5A21}", 1, 0};
// What a host calls when it saves a page: the framework's interface, and the id of its one method.
inline constexpr std::string_view kRuntimeTextInterface = "IProvideRuntimeText";
inline constexpr std::string_view kRuntimeTextInterfaceId =
    "{C7D2F1A8-6B4E-4D35-9E0A-52B8D4F3C6E1}";
inline constexpr int kRuntimeTextId = 1000;  // beside those of every class's properties

// Ids are in registry form: braces, upper case. They never change.
struct RegisteredControl {
  const ControlClass& (*contract)();
  std::string_view classId;
  std::string_view interfaceId;  // of its properties in the type library
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
  std::string_view classId;
};

std::span<const RegisteredPage> RegisteredPages();
// By class name, exactly as it is spelt; nullptr when there is none.
const RegisteredPage* FindPage(std::string_view className);
// Makes a page: what a property frame needs. nullptr when there is none of the name.
std::unique_ptr<PropertyPage> CreatePage(std::string_view className);

// Whether a `classid` claims to be of this library, known or not.
bool IsOurProgId(std::string_view classId);

}  // namespace kvo
