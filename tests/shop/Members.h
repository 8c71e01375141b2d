// Reads and calls members by name, as a page does.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/values/Object.h"
#include "common/values/Recordset.h"
#include "common/values/RuntimeError.h"
#include "document/shop/Connection.h"
#include "document/shop/Recordset.h"
#include "document/shop/Shop.h"

namespace kvo::shop {

inline constexpr const char* kProducts = "SELECT ProductNo, Desc1, Desc2 FROM Products";

inline void Call(const ObjectRef& object, std::string_view name,
                 const std::vector<Variant>& arguments = {}) {
  object->Call(name, arguments);
}

// Opens a recordset as the picker does.
inline ObjectRef OpenRecordset(const Variant& connection, const char* source = kProducts) {
  const ObjectRef recordset = NewRecordset();
  Call(recordset, "Open",
       {source, connection, ado::kOpenDynamic, ado::kLockReadOnly, ado::kOptionsUnspecified});
  return recordset;
}

inline Variant FieldOf(const ObjectRef& recordset, const char* field) {
  const Variant name = field;
  return ToObject(recordset->Call("Fields", {&name, 1}))->Get("Value");
}

inline bool IsAtEnd(const ObjectRef& recordset) { return ToFlag(recordset->Get("EOF")); }
inline void MoveTo(const ObjectRef& recordset, std::int32_t record) {
  Call(recordset, "Move", {record, ado::kBookmarkFirst});
}

// Returns the traffic on a recordset's connection.
inline Traffic AskedBy(const ObjectRef& recordset) {
  return dynamic_cast<Recordset&>(*recordset).Asked();
}

// The number and the texts of a failed call's error; 0 when it succeeds.
struct Failure {
  int number = 0;
  std::string german;
  std::string english;
};

inline Failure FailureOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return {error.Number(), error.Text(Language::german), error.what()};
  }
  return {};
}

}  // namespace kvo::shop
