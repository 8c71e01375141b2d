// The single list of the library's classes, from which the command line tool, the editor and the
// Windows component take them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "common/forms/PropertyPage.h"
#include "common/frame/Control.h"

namespace kvo {

inline constexpr std::string_view kLibraryName = "KVOPDesignObjects";

// The two type libraries: this library's, and that of the interface to hosts.
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
// The interface that a host calls when it saves a page, and the id of its one method.
inline constexpr std::string_view kRuntimeTextInterface = "IProvideRuntimeText";
inline constexpr std::string_view kRuntimeTextInterfaceId =
    "{C7D2F1A8-6B4E-4D35-9E0A-52B8D4F3C6E1}";
inline constexpr int kRuntimeTextId = 1000;  // next to the ids of the class's properties

// Ids are in registry form: in braces and upper case. They never change.
struct RegisteredControl {
  const ControlClass& (*contract)();
  std::string_view classId;
  std::string_view interfaceId;  // of its properties, in the type library
};

std::span<const RegisteredControl> RegisteredControls();

// Finds a control by its exact class name; nullptr when there is none.
const RegisteredControl* FindControlByName(std::string_view className);
// Finds a control by the `classid` of a page's object element: "progid:KVOPDesignObjects.NAME" or
// "clsid:GUID" with or without braces, in any case. Returns nullptr for foreign ones.
const RegisteredControl* FindControlByClassId(std::string_view classId);
// A property page. Each control class lists the pages that it shows.
struct RegisteredPage {
  std::string_view name;
  std::unique_ptr<PropertyPage> (*create)();
  std::string_view classId;
};

std::span<const RegisteredPage> RegisteredPages();
// Finds a page by its exact class name; nullptr when there is none.
const RegisteredPage* FindPage(std::string_view className);
// Creates a page, as a PageFactory for property frames. nullptr when there is no such page.
std::unique_ptr<PropertyPage> CreatePage(std::string_view className);

// Whether a `classid` names this library, with a known class or not.
bool IsOurProgId(std::string_view classId);

}  // namespace kvo
