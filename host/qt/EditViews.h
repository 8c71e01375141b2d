// The views of edit boxes.
#pragma once

#include <QComboBox>
#include <QLineEdit>

#include "host/desktop/TextSync.h"
#include "host/qt/ControlView.h"

namespace kvo {

// A line edit that keeps its selection when it loses the focus or its window is activated. As in a
// multi-line box, the arrow keys move from a selection to its ends.
class SteadyLine : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  bool event(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void KeepSelection(const std::function<void()>& action);
};

class LineSync final : public TextSync {
 public:
  LineSync(QLineEdit& line, EditedText& text, FormActions& host);

 private:
  std::u16string Units() const override;
  void ShowUnits(const std::u16string& units) override;
  UnitRange Selection() const override;
  void Select(const UnitRange& selection) override;

  QLineEdit& line_;
};

class TextBoxView final : public WidgetViewOf<TextBox, QWidget> {
 public:
  TextBoxView(TextBox& box, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;

 private:
  BoxText text_;
  std::unique_ptr<TextSync> sync_;
};

class ComboBoxView final : public WidgetViewOf<ComboBox, QComboBox> {
 public:
  ComboBoxView(ComboBox& box, QWidget& parent, ViewHost& host);
  void Show(Aspect aspect) override;

 private:
  void ShowChoices();

  BoxText text_;
  std::unique_ptr<LineSync> sync_;  // for editable boxes
};

// Adapts a list for ShowRows.
class ListOfRows {
 public:
  explicit ListOfRows(QComboBox& list) : list_(list) {}
  std::size_t Count() const { return static_cast<std::size_t>(list_.count()); }
  void Clear() { list_.clear(); }
  void Add(std::string_view text);
  int Chosen() const { return list_.currentIndex(); }
  void Choose(int row) { list_.setCurrentIndex(row); }

 private:
  QComboBox& list_;
};

// Makes a list editable, without completion and without matching the text to a row.
void MakeFreeText(QComboBox& list);

}  // namespace kvo
