#include "common/frame/PropertyRow.h"

#include "common/frame/TagWriter.h"

namespace kvo {

void ReadAssigning(const PropertyRow& row, Control& control, std::string_view stored) {
  row.let(control, Variant(stored));
}
std::string_view WriteHeld(const PropertyRow& row, const Control& control, std::string& scratch) {
  return row.held(control, scratch);
}

void ReadTrimmed(const PropertyRow& row, Control& control, std::string_view stored) {
  row.hold(control, TrimCrLf(std::string(stored)));
}

void ReadTokens(const PropertyRow& row, Control& control, std::string_view stored) {
  row.let(control, Variant(DecodeMarkupTokens(stored)));
}
std::string_view WriteTokens(const PropertyRow& row, const Control& control, std::string& scratch) {
  return scratch = EncodeMarkupTokens(row.held(control, scratch));
}

void ReadUnlessNo(const PropertyRow& row, Control& control, std::string_view stored) {
  row.let(control, Variant(stored != row.codec.no));
}
void ReadOnlyYes(const PropertyRow& row, Control& control, std::string_view stored) {
  row.let(control, Variant(stored == row.codec.yes));
}
std::string_view WriteWord(const PropertyRow& row, const Control& control, std::string&) {
  return ToFlag(row.get(control)) ? row.codec.yes : row.codec.no;
}

std::string StoredText(const PropertyRow& row, const Variant& value) {
  return value.IsEmpty() && row.type != PropertyType::text ? "0" : ToText(value);
}

void EmitAlways(const PropertyRow& row, const Control& control, TagWriter& tag) {
  std::string scratch;
  tag.Attribute(row.key, row.held(control, scratch));
}
void EmitIfSet(const PropertyRow& row, const Control& control, TagWriter& tag) {
  std::string scratch;
  const std::string_view value = row.held(control, scratch);
  if (!value.empty()) tag.Attribute(row.key, value);
}
void EmitUnlessDefault(const PropertyRow& row, const Control& control, TagWriter& tag) {
  std::string scratch;
  const std::string_view value = row.codec.write(row, control, scratch);
  if (value != row.readDefault) tag.Attribute(row.key, value);
}
void EmitIfSetUnlessDefault(const PropertyRow& row, const Control& control, TagWriter& tag) {
  std::string scratch;
  if (!row.held(control, scratch).empty()) EmitUnlessDefault(row, control, tag);
}

}  // namespace kvo
