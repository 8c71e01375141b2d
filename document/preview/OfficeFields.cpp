#include "document/preview/OfficeFields.h"

#include <new>

#include "document/preview/Record.h"

namespace kvo::preview {
namespace {

constexpr struct {
  std::string_view list;
  std::string_view group;
} kLists[] = {{"ContactFields", kCustomer}, {"OrderFields", kOrder}};

}  // namespace

std::vector<OfficeField> FieldsOf(const ObjectRef& office) {
  std::vector<OfficeField> fields;
  if (office == nullptr) return fields;
  for (const auto& [list, group] : kLists) {
    try {
      ForEach(*ToObject(office->Get(list)), [&, group = group](const Variant& each) {
        Object& field = *ToObject(each);
        fields.push_back({group, ToText(field.Get("SQLName")), ToText(field.Get("DisplayName")),
                          ToInteger(field.Get("DataType"))});
      });
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception&) {  // a context object without this list
    }
  }
  return fields;
}

}  // namespace kvo::preview
