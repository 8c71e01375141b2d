// The rows of a record's form: which fields they show, and how texts become values.
#pragma once

#include <QString>
#include <QWidget>
#include <set>
#include <string>
#include <vector>

#include "apps/editor/PreviewWork.h"
#include "document/office/Office.h"
#include "document/preview/Record.h"

namespace kvo::editor {

struct RecordField {
  std::string group;
  std::string name;
  QString caption;
  bool isFlag = false;
  bool isNumber = false;
};

// The fields of the office, then those that only the page or the record has; by group.
std::vector<RecordField> FieldsOf(const preview::Record& record,
                                  const office::Office::Description* office,
                                  const std::set<PageField>& used);
QString GroupCaption(const std::string& group);

// Returns the value that a typed text stands for. A number stays a number as long as the text is
// one; "12,5" and "12.5" are the same.
Variant ValueOf(const QString& typed, const Variant* before, bool isNumber);
QString ShownValue(const Variant* value);

}  // namespace kvo::editor
