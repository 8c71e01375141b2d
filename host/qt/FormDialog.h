#pragma once

#include <QDialog>

#include "host/qt/FormView.h"

namespace kvo {

// The window of a modal form. It closes when the form is unloaded, and not before.
class FormDialog final : public QDialog {
 public:
  FormDialog(Form& form, QWidget* parent);
  FormView& View() { return *view_; }

  // By the window's own button, or the escape key where no button of the form has it.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  FormView* view_;
};

}  // namespace kvo
