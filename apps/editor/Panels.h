// The panels that show the analysis: outline and problems as lists, and plain texts.
#pragma once

#include <QAbstractTableModel>
#include <QPlainTextEdit>
#include <QTreeView>
#include <functional>
#include <memory>

#include "apps/editor/Analysis.h"

namespace kvo::editor {

// A list of places in the page: a click on a row shows its place, activating it goes there. Only
// visible rows cost time.
class PlaceList : public QTreeView {
 public:
  class Model;
  PlaceList(Model* model, const QString& name, QWidget* parent);
  void Show(std::shared_ptr<const Analysis> analysis);

  std::function<void(int position)> onClicked;  // the keyboard focus stays in the list
  std::function<void(int position)> onGoTo;

 private:
  Model* model_;
};

class OutlinePanel final : public PlaceList {
 public:
  explicit OutlinePanel(QWidget* parent);
  // Marks the row of a control; -1 for none.
  void Mark(int row);
};

class ProblemsPanel final : public PlaceList {
 public:
  explicit ProblemsPanel(QWidget* parent);

  // -1 for none.
  int ChosenRow() const;
  void Choose(int row);
  // The user wants the fix of the chosen row.
  std::function<void()> onFix;

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
};

// A read-only text.
class TextPanel final : public QPlainTextEdit {
 public:
  TextPanel(const QString& name, QWidget* parent);
  // Lays out only what differs from the previous text.
  void Show(const QString& text);

 private:
  QString shown_;
};

}  // namespace kvo::editor
