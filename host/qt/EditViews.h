// The views of what can be typed into.
#pragma once

#include <QComboBox>
#include <QLineEdit>

#include "host/qt/ControlView.h"
#include "host/qt/ShownText.h"

namespace kvo {

// A line edit whose selection stays when it is left or its window activated, and from whose
// selection the arrow keys go to its ends, as with several lines.
class CalmLine : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  bool event(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void KeepSelection(const std::function<void()>& action);
};

// Keeps a line edit and the text and selection of an edit box in step.
class LineSync {
 public:
  LineSync(QLineEdit& line, EditBox& box, ViewHost& host);
  LineSync(const LineSync&) = delete;
  LineSync& operator=(const LineSync&) = delete;

  void ShowText();
  void ShowSelection();

 private:
  void Edited();
  void Selected();

  QLineEdit& line_;
  EditBox& box_;
  ViewHost& host_;
  ShownText shown_;
};

class LineView final : public ControlView {
 public:
  LineView(TextBox& box, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override { return widget_; }
  void Show(Aspect aspect) override;

 private:
  TextBox& box_;
  QLineEdit* widget_;
  LineSync sync_;
};

class TextAreaView final : public ControlView {
 public:
  TextAreaView(TextBox& box, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override;
  void Show(Aspect aspect) override;

 private:
  class Area;
  void ShowText();
  void ShowSelection();
  void Edited();
  void Selected();
  QString Units() const;
  UnitRange Selection() const;

  TextBox& box_;
  ViewHost& host_;
  Area* widget_;
  ShownText shown_;
  bool editing_ = false;  // the widget's text is ahead of the form's
};

class ComboBoxView final : public ControlView {
 public:
  ComboBoxView(ComboBox& box, QWidget& parent, ViewHost& host);
  QWidget* Widget() const override { return widget_; }
  void Show(Aspect aspect) override;

 private:
  void ShowChoices();
  void ShowChoice();

  ComboBox& box_;
  QComboBox* widget_;
  std::unique_ptr<LineSync> sync_;  // of a box that can be typed into
};

// A list whose text, when it can be typed into, is free: it is not completed, and never taken for
// the row that it reads like.
void MakeFreeText(QComboBox& list);

}  // namespace kvo
