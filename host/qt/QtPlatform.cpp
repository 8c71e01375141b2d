#include "host/qt/QtPlatform.h"

#include <QApplication>
#include <QColorDialog>
#include <QInputDialog>
#include <QLabel>
#include <QPointer>

#include "host/qt/FormDialog.h"
#include "host/qt/Messages.h"
#include "host/qt/PropertyFrameDialog.h"
#include "host/qt/QtText.h"

namespace kvo {
namespace {

QWidget* TopWindow() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : QApplication::activeWindow();
}

QWidget* WindowOf(WindowHandle owner) {
  QWidget* widget = owner == 0 ? nullptr : QWidget::find(static_cast<WId>(owner));
  return widget == nullptr ? TopWindow() : widget->window();
}

QColor ToQtColor(ColorNumber color) {
  return {color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF};
}

// Runs a modal dialog. Its parent may delete it meanwhile.
template <class Dialog>
int Execute(std::unique_ptr<Dialog> dialog) {
  const QPointer<Dialog> shown(dialog.release());
  const int result = shown->exec();
  if (shown != nullptr) delete shown.data();
  return result;
}

}  // namespace

void QtPlatform::ShowMessage(WindowHandle owner, std::string_view text) {
  ShowMessageBox(WindowOf(owner), ToQt(text));
}

std::optional<std::string> QtPlatform::InputPrompt(std::string_view prompt,
                                                   std::string_view title) {
  QInputDialog dialog(TopWindow());
  dialog.setWindowTitle(ToQt(title));
  dialog.setLabelText(ToQtCaption(prompt));
  dialog.setOkButtonText(InUserLanguage(kOk));
  dialog.setCancelButtonText(InUserLanguage(kCancel));
  if (auto* label = dialog.findChild<QLabel*>()) label->setTextFormat(Qt::PlainText);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return FromQt(dialog.textValue());
}

void QtPlatform::ShowModal(Form& form) {
  if (form.IsLoaded()) Execute(std::make_unique<FormDialog>(form, TopWindow()));
}

ColorNumber QtPlatform::ChooseColor(ColorNumber preset) {
  const QColor chosen = QColorDialog::getColor(ToQtColor(preset), TopWindow());
  if (!chosen.isValid()) return preset;
  return chosen.red() + chosen.green() * 0x100 + chosen.blue() * 0x10000;
}

Platform::KeyStates QtPlatform::KeyboardState() {
  constexpr std::uint8_t kDown = 0x80;
  KeyStates keys{};
  const Qt::MouseButtons buttons = QGuiApplication::mouseButtons();
  if (buttons.testFlag(Qt::LeftButton)) keys[0x01] = kDown;
  if (buttons.testFlag(Qt::RightButton)) keys[0x02] = kDown;
  if (buttons.testFlag(Qt::MiddleButton)) keys[0x04] = kDown;
  const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
  if (modifiers.testFlag(Qt::ShiftModifier)) keys[0x10] = kDown;
  if (modifiers.testFlag(Qt::ControlModifier)) keys[0x11] = kDown;
  if (modifiers.testFlag(Qt::AltModifier)) keys[0x12] = kDown;
  return keys;
}

void QtPlatform::ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                                   const std::vector<std::string>& pages) {
  QWidget* parent = WindowOf(owner);
  auto dialog = std::make_unique<PropertyFrameDialog>(
      caption, std::vector<ObjectRef>{std::move(object)}, pages, pages_, parent);
  dialog->onApplied = onApplied;
  dialog->Note(frameNote);
  if (parent != nullptr) dialog->move(parent->mapToGlobal(QPoint(0, 0)));
  Execute(std::move(dialog));
}

}  // namespace kvo
