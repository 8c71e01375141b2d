#include "host/qt/FormDialog.h"

#include <QCloseEvent>
#include <QVBoxLayout>

#include "common/values/RuntimeError.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo {

FormDialog::FormDialog(Form& form, QWidget* parent)
    : QDialog(parent), view_(new FormView(form, this)) {
  setWindowTitle(view_->windowTitle());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(view_);
  view_->onFailure = [this](const std::exception& failure) {
    ShowMessageBoxLater(*this, ToQt(FailureText(failure)));
  };
  view_->onUnloaded = [this] { done(Accepted); };
}

void FormDialog::reject() { view_->UserClosesWindow(); }

void FormDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

}  // namespace kvo
