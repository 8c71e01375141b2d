// The form for the records of a preview: one row for each field that the page uses or the office
// has, the positions of the order as a table, and the records themselves. Writes preview.json.
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>

#include "apps/editor/PageFile.h"
#include "apps/editor/PreviewWork.h"
#include "document/office/Office.h"
#include "document/preview/Records.h"

namespace kvo::editor {

struct RecordsToEdit {
  PageFile file;  // as it was read; its name may be that of a file to be made
  preview::RecordsFile records;
  std::int64_t current = 0;
  // The current record if it is not one of the file: a made-up one, which becomes its first, or a
  // row of its query, which can only be read.
  std::optional<preview::Record> other;
  std::shared_ptr<const office::Office::Description> office;  // nullptr: none
  std::set<PageField> fields;                                 // that the page uses
};

// Shows the form. Returns the record to show next if the file was written. Never loses what was
// typed without asking.
std::optional<std::int64_t> EditRecords(RecordsToEdit edit, QWidget* parent);

}  // namespace kvo::editor
