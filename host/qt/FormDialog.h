#pragma once

#include <QDialog>

#include "host/qt/FormView.h"

namespace kvo {

// The window of a modal form. Closes only when the form is unloaded.
class FormDialog final : public QDialog {
 public:
  FormDialog(Form& form, QWidget* parent);
  FormView& View() { return *view_; }

  // The user closed the window, or pressed Escape and no button of the form handles it.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  FormView* view_;
};

}  // namespace kvo
