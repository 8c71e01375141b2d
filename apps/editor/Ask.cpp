#include "apps/editor/Ask.h"

#include <QMessageBox>
#include <QPushButton>

#include "apps/editor/Words.h"
#include "host/qt/Messages.h"

namespace kvo::editor {
namespace {

QMessageBox::ButtonRole RoleOf(Answer::Kind kind) {
  switch (kind) {
    case Answer::Kind::agrees:
      return QMessageBox::AcceptRole;
    case Answer::Kind::destroys:
      return QMessageBox::DestructiveRole;
    case Answer::Kind::acts:
      return QMessageBox::ActionRole;
    case Answer::Kind::refuses:
      break;
  }
  return QMessageBox::RejectRole;
}

}  // namespace

std::size_t Ask(QWidget* parent, const Question& question) {
  QMessageBox box(question.warns ? QMessageBox::Warning : QMessageBox::Question, MessageTitle(),
                  question.text, QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  std::vector<QPushButton*> buttons;
  for (const Answer& answer : question.answers) {
    buttons.push_back(box.addButton(Text(answer.text), RoleOf(answer.kind)));
    if (answer.kind == Answer::Kind::refuses) box.setEscapeButton(buttons.back());
  }
  box.setDefaultButton(buttons[question.preset]);
  box.exec();
  const auto clicked = std::ranges::find(buttons, box.clickedButton());
  return static_cast<std::size_t>(clicked - buttons.begin());
}

}  // namespace kvo::editor
