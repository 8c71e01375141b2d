#include "apps/editor/Ask.h"

#include <QMessageBox>
#include <QPushButton>

#include "apps/editor/Words.h"
#include "host/qt/Messages.h"

namespace kvo::editor {

bool Confirm(QWidget* parent, const QString& question, const Localized& yes, const Localized& no,
             Default preset) {
  QMessageBox box(QMessageBox::Question, MessageTitle(), question, QMessageBox::NoButton, parent);
  QPushButton* agree = box.addButton(Said(yes), QMessageBox::AcceptRole);
  QPushButton* refuse = box.addButton(Said(no), QMessageBox::RejectRole);
  box.setDefaultButton(preset == Default::yes ? agree : refuse);
  box.setEscapeButton(refuse);
  box.exec();
  return box.clickedButton() == agree;
}

}  // namespace kvo::editor
