#include "apps/editor/RecordFields.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "apps/editor/Words.h"
#include "common/values/Ascii.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr std::int32_t kNumberType = 1;
constexpr std::int32_t kFlagType = 3;

struct GroupName {
  std::string_view group;
  Localized caption;
};
constexpr GroupName kGroupNames[] = {{preview::kCustomer, words::kCustomerGroup},
                                     {preview::kOrder, words::kOrderGroup},
                                     {preview::kConfig, words::kConfigGroup}};

class FieldRows {
 public:
  explicit FieldRows(const preview::Record& record) : record_(record) {}

  void Add(std::string_view group, const std::string& name, const QString& caption = {},
           std::int32_t type = 0) {
    const auto isSame = [&](const RecordField& row) {
      return EqualIgnoringCase(row.group, group) && EqualIgnoringCase(row.name, name);
    };
    if (std::ranges::any_of(rows_, isSame)) return;
    const Variant* value = record_.Find(group, name);
    const bool empty = value == nullptr || value->IsEmpty();
    RecordField row{std::string(group), name, caption.isEmpty() ? ToQt(name) : caption, false,
                    false};
    row.isFlag = empty ? type == kFlagType : value->If<bool>() != nullptr;
    row.isNumber = empty ? type == kNumberType
                         : value->If<std::int32_t>() != nullptr || value->If<double>() != nullptr ||
                               type == kNumberType;
    rows_.push_back(std::move(row));
  }
  void AddGroup(const preview::Record& record, std::string_view group) {
    for (const auto& [name, values] : record.groups)
      if (EqualIgnoringCase(name, group))
        for (const auto& [key, value] : values.All()) Add(group, key);
  }
  std::vector<RecordField> Take() { return std::move(rows_); }

 private:
  const preview::Record& record_;
  std::vector<RecordField> rows_;
};

// Reads a number as it is written in German, or with a decimal point.
std::optional<double> NumberIn(QString typed) {
  constexpr qsizetype kGrouped = 3;
  typed = typed.trimmed();
  const qsizetype point = typed.indexOf('.');
  if (point >= 0 && !typed.contains(',') && typed.count('.') == 1 &&
      typed.size() - point - 1 != kGrouped)
    typed[point] = ',';
  return ParseNumber(FromQt(typed));
}

}  // namespace

std::vector<RecordField> FieldsOf(const preview::Record& record,
                                  const office::Office::Description* office,
                                  const std::set<PageField>& used) {
  std::vector<std::string> groups;
  const auto addGroup = [&groups](std::string_view group) {
    if (std::ranges::none_of(
            groups, [group](const std::string& each) { return EqualIgnoringCase(each, group); }))
      groups.emplace_back(group);
  };
  for (const GroupName& each : kGroupNames) addGroup(each.group);
  for (const auto& [group, name] : used) addGroup(group);
  for (const auto& [group, values] : record.groups) addGroup(group);

  FieldRows rows(record);
  for (const std::string& group : groups) {
    if (office != nullptr && (group == preview::kCustomer || group == preview::kOrder))
      for (const office::Field& field :
           group == preview::kCustomer ? office->contactFields : office->orderFields)
        rows.Add(group, field.sqlName, ToQt(field.displayName), field.dataType);
    for (const auto& [usedGroup, name] : used)
      if (EqualIgnoringCase(usedGroup, group)) rows.Add(group, name);
    rows.AddGroup(record, group);
  }
  return rows.Take();
}

QString GroupCaption(const std::string& group) {
  const auto* known = std::ranges::find_if(kGroupNames, [&group](const GroupName& each) {
    return EqualIgnoringCase(each.group, group);
  });
  return known == std::end(kGroupNames) ? ToQt(group) : Text(known->caption);
}

Variant ValueOf(const QString& typed, const Variant* before, bool isNumber) {
  const bool wasText = before != nullptr && before->If<std::string>() != nullptr;
  if (isNumber) {
    if (const auto number = NumberIn(typed)) {
      const bool whole = std::trunc(*number) == *number &&
                         std::abs(*number) <= std::numeric_limits<std::int32_t>::max();
      return whole ? Variant(static_cast<std::int32_t>(*number)) : Variant(*number);
    }
    if (typed.isEmpty() && !wasText) return {};
  }
  return FromQt(typed);
}

QString ShownValue(const Variant* value) {
  return value == nullptr ? QString() : ToQt(ToText(*value));
}

}  // namespace kvo::editor
