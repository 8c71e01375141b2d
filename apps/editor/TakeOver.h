// Takes the page over as an old template: shows what would become controls, and lets the author
// choose.
#pragma once

#include <QDialog>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/editor/PageText.h"
#include "common/values/Object.h"
#include "document/adopt/Adopt.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace kvo::editor {

class TakeOverDialog final : public QDialog {
 public:
  // `folder` is where the choice of a mapping begins.
  TakeOverDialog(const PageText& page, ObjectRef office, QString folder, QWidget* parent);

  // Reads a mapping file. Reports its errors and then keeps the previous mapping.
  void UseMapping(const QString& file);

  // The page with the checked finds; nothing when there are none.
  std::optional<PageText> Result();

  QTreeWidget& Table() { return *table_; }
  QPlainTextEdit& Source() { return *source_; }
  // What is wrong, or how many finds are checked.
  QLabel& Note() { return *note_; }

 private:
  void FindAgain();
  void AddRow(const adopt::Find& find);
  void ShowPlace();
  void Count();
  QString ContextOf(const adopt::Find& find) const;

  PageText page_;
  PageText::Places places_;
  std::string bytes_;
  ObjectRef office_;
  QString folder_;
  adopt::Mapping mapping_;
  std::vector<adopt::Find> finds_;
  QTreeWidget* table_;
  QPlainTextEdit* source_;
  QLabel* mappingName_;
  QLabel* note_;
  QPushButton* ok_ = nullptr;
};

}  // namespace kvo::editor
