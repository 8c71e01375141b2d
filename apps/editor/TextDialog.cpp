#include "apps/editor/TextDialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QVBoxLayout>

#include "apps/editor/Highlighter.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "common/forms/Form.h"
#include "document/page/Page.h"
#include "host/qt/FormView.h"
#include "host/qt/QtText.h"

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

class TextDialog final : public QDialog {
 public:
  TextDialog(const QString& title, const std::string& text, QWidget* parent)
      : QDialog(parent),
        form_(text),
        view_(new FormView(form_, this)),
        parts_(new QSplitter(this)) {
    setWindowTitle(title);
    view_->onFailure = [](const std::exception&) {};  // a lone text box raises no events
    box_ = static_cast<QPlainTextEdit*>(view_->WidgetOf(form_.txtText));
    box_->setAccessibleName(title);
    // As in the source view, not as on a property page.
    box_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // Lets the box follow the window's size.
    view_->setMinimumSize(view_->size() / 2);
    view_->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    auto* fill = new QVBoxLayout(view_);
    fill->setContentsMargins(0, 0, 0, 0);
    fill->addWidget(box_);
    parts_->addWidget(view_);
    parts_->setChildrenCollapsible(false);
  }
  ~TextDialog() override { delete view_; }  // before its form

  void ColorHtml() { new Highlighter(box_->document(), box_->palette()); }

  void OfferFields(std::vector<Tool> fields) {
    auto* side = new QWidget(this);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(Text(fields.empty() ? words::kNoFieldsToInsert : words::kInsertField));
    label->setWordWrap(true);
    column->addWidget(label);
    if (fields.empty()) {
      column->addStretch();
    } else {
      for (Tool& field : fields) {
        field.field.clear();  // shows it without a search
        field.group = field.contract->title.In(UserLanguage());
      }
      auto* list = new Toolbox(side, words::kFields, words::kSearchFields);
      list->Tools(std::move(fields));
      list->onInsert = [this, list](int number) {
        const Tool& field = list->Tools()[static_cast<std::size_t>(number)];
        box_->insertPlainText(ToQt(page::Load(*field.contract, field.bag)->GetRuntimeText()));
        box_->setFocus();
      };
      column->addWidget(list);
    }
    parts_->addWidget(side);
    parts_->setStretchFactor(0, 1);
    parts_->setSizes({560, 220});
  }

  std::optional<std::string> Edited() {
    auto* buttons = new QDialogButtonBox(this);  // the last stops of the Tab key
    buttons->addButton(Text(words::kOk), QDialogButtonBox::AcceptRole);
    buttons->addButton(Text(words::kCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(parts_, 1);
    layout->addWidget(buttons);
    box_->setFocus();
    if (exec() != QDialog::Accepted) return std::nullopt;
    return form_.txtText.Text();
  }

 protected:
  // Ignores Enter, which inserts a field in the list and must not also press OK.
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
      QDialog::keyPressEvent(event);
  }

 private:
  TextForm form_;
  FormView* view_;
  QSplitter* parts_;
  QPlainTextEdit* box_;
};

}  // namespace

std::optional<std::string> EditText(const QString& title, const std::string& text,
                                    QWidget* parent) {
  TextDialog dialog(title, text, parent);
  dialog.resize(520, 380);
  return dialog.Edited();
}

std::optional<std::string> EditHtml(const QString& title, const std::string& html,
                                    std::vector<Tool> fields, QWidget* parent) {
  TextDialog dialog(title, html, parent);
  dialog.ColorHtml();
  dialog.OfferFields(std::move(fields));
  dialog.resize(860, 520);
  return dialog.Edited();
}

}  // namespace kvo::editor
