#include "apps/editor/TextDialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QVBoxLayout>

#include "apps/editor/Words.h"
#include "common/forms/Form.h"
#include "host/qt/FormView.h"

namespace kvo::editor {
namespace {

// A form, because its text boxes keep any text unchanged.
class TextForm final : public Form {
 public:
  explicit TextForm(std::string_view text) : Form("", {7200, 4800}) {
    txtText.Text(std::string(text));
  }
  KVO_CONTROL(TextBox, txtText, .at = {0, 0, 7200, 4800}, .font = kMarkupFont, .multiLine = true);
};

}  // namespace

std::optional<std::string> EditText(const QString& title, const std::string& text,
                                    QWidget* parent) {
  TextForm form(text);
  QDialog dialog(parent);
  dialog.setWindowTitle(title);
  auto* view = new FormView(form, &dialog);
  view->onFailure = [](const std::exception&) {};  // a lone text box raises no events
  QWidget* box = view->WidgetOf(form.txtText);
  box->setAccessibleName(title);
  auto* buttons = new QDialogButtonBox(&dialog);
  buttons->addButton(Text(words::kOk), QDialogButtonBox::AcceptRole);
  buttons->addButton(Text(words::kCancel), QDialogButtonBox::RejectRole);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(&dialog);
  layout->addWidget(view);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  box->setFocus();
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return form.txtText.Text();
}

}  // namespace kvo::editor
