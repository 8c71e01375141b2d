// Reads the toolbox from a file: one JSON object with
//
//   tools  list of objects:
//     class        a class of the library
//     caption      the tool's name: a text, or an object with "de" and "en"
//     description  one line about it, in the same way; without it, the class's own
//     icon         a picture file, relative to the toolbox file; missing: that of the class
//     bag          an object of keys and texts from which a new control is loaded; what is missing
//                  in it gets the class's own defaults
//
// Errors are: any other key, a duplicate key, a bag key that the class does not have, and a bag
// that the control cannot be loaded from.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"
#include "common/values/Localized.h"
#include "document/office/JsonFile.h"
#include "document/office/Office.h"

namespace kvo::editor {

inline constexpr std::string_view kToolboxFileRule = "toolbox-file";

struct Tool {
  const ControlClass* contract = nullptr;
  std::string caption;  // in the user's language
  std::string description;
  std::string icon;   // a file; empty for that of the class
  std::string group;  // its heading; empty in a file's tools, which have none
  std::string field;  // the SQL name of the field that it inserts; shown only by a search
  std::vector<MemoryBag::Entry> bag;
};

// Returns one tool for each class of the library, then one for each field of the office.
std::vector<Tool> BuiltInTools(const office::Office::Description& office = {});

// Returns one for each field of the office.
std::vector<Tool> FieldTools(const office::Office::Description& office);
// Returns the fields that a class can print; empty for most classes.
std::span<const office::Field> FieldsOf(const ControlClass& contract,
                                        const office::Office::Description& office);
// Returns its name for users.
const std::string& NameOf(const office::Field& field);

// Reads the contents of a file; `file` is its name. Throws office::JsonFileError.
std::vector<Tool> ReadToolbox(std::string_view contents, const std::string& file);

}  // namespace kvo::editor
