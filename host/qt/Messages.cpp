#include "host/qt/Messages.h"

#include <QMessageBox>
#include <QPushButton>

#include "host/qt/QtText.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

void SetUp(QMessageBox& box, const QString& text) {
  box.setIcon(QMessageBox::Information);
  box.setWindowTitle(MessageTitle());
  box.setTextFormat(Qt::PlainText);
  box.setText(text);
  box.setStandardButtons(QMessageBox::Ok);
  box.button(QMessageBox::Ok)->setText(QStringLiteral("OK"));
}

}  // namespace

QString InUserLanguage(const Localized& text) { return ToQt(text.In(UserLanguage())); }

QString MessageTitle() { return ToQt(kLibraryName); }

void ShowMessageBox(QWidget* parent, const QString& text) {
  QMessageBox box(parent);
  SetUp(box, text);
  box.exec();
}

void ShowMessageBoxLater(QWidget& parent, const QString& text) {
  const auto show = [&parent, text] {
    auto* box = new QMessageBox(&parent);
    SetUp(*box, text);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
  };
  QMetaObject::invokeMethod(&parent, show, Qt::QueuedConnection);
}

}  // namespace kvo
