// The panels that show what the analysis found: outline and problems as lists, texts as they are.
#pragma once

#include <QAbstractTableModel>
#include <QPlainTextEdit>
#include <QTreeView>
#include <functional>
#include <memory>

#include "apps/editor/Analysis.h"

namespace kvo::editor {

// A list of places in the page: a click on a row shows its place, activating it leads there. Long
// lists cost nothing but their visible rows.
class PlaceList : public QTreeView {
 public:
  class Model;
  PlaceList(Model* model, const QString& name, QWidget* parent);
  void Show(std::shared_ptr<const Analysis> analysis);

  std::function<void(int position)> onClicked;  // the keyboard stays in the list
  std::function<void(int position)> onGoTo;

 private:
  Model* model_;
};

class OutlinePanel final : public PlaceList {
 public:
  explicit OutlinePanel(QWidget* parent);
  // Marks the row of a control; -1: none.
  void Mark(int row);
};

class ProblemsPanel final : public PlaceList {
 public:
  explicit ProblemsPanel(QWidget* parent);
};

// A text that is only shown.
class TextPanel final : public QPlainTextEdit {
 public:
  TextPanel(const QString& name, QWidget* parent);
  // Only what differs from the text before is laid out anew.
  void Show(const QString& text);

 private:
  QString shown_;
};

}  // namespace kvo::editor
