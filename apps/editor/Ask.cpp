#include "apps/editor/Ask.h"

#include <QPushButton>

#include "apps/editor/Words.h"
#include "host/qt/Messages.h"

namespace kvo::editor {

PlainMessageBox::PlainMessageBox(Icon icon, const QString& text, QWidget* parent)
    : QMessageBox(icon, MessageTitle(), text, NoButton, parent) {
  setTextFormat(Qt::PlainText);
}

bool Confirm(QWidget* parent, const QString& question, const Localized& yes, const Localized& no,
             Default preset) {
  PlainMessageBox box(QMessageBox::Question, question, parent);
  QPushButton* agree = box.addButton(Said(yes), QMessageBox::AcceptRole);
  QPushButton* refuse = box.addButton(Said(no), QMessageBox::RejectRole);
  box.setDefaultButton(preset == Default::yes ? agree : refuse);
  box.setEscapeButton(refuse);
  box.exec();
  return box.clickedButton() == agree;
}

}  // namespace kvo::editor
