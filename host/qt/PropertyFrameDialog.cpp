#include "host/qt/PropertyFrameDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "common/values/RuntimeError.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/qt/Twips.h"

namespace kvo {
namespace {

constexpr Localized kApply = {"Übernehmen", "Apply"};

QPushButton* AddButton(QHBoxLayout& row, const Localized& caption, const char* name) {
  auto* button = new QPushButton(InUserLanguage(caption));
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  row.addWidget(button);
  return button;
}

}  // namespace

PropertyFrameDialog::PropertyFrameDialog(std::string_view caption, std::vector<ObjectRef> objects,
                                         const std::vector<std::string>& pages,
                                         const PageFactory& factory, QWidget* parent)
    : QDialog(parent),
      frame_(*this, std::move(objects), pages, factory, PropertyFrame::Applies::markedOrTouched),
      tabs_(new QTabWidget),
      note_(new QLabel),
      views_(frame_.PageCount()) {
  LoadTahoma();
  setFont(QtFont({}));
  setWindowTitle(ToQt(caption));
  for (std::size_t tab = 0; tab < frame_.PageCount(); ++tab) {
    const PropertyPage& page = frame_.Page(tab);
    auto* place = new QWidget;
    place->setFixedSize(ToPixels(page.FormSize().width, *this),
                        ToPixels(page.FormSize().height, *this));
    tabs_->addTab(place, ToQtCaption(page.Caption()));
  }
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(tabs_);
  note_->setObjectName("note");
  note_->setTextFormat(Qt::PlainText);
  note_->setWordWrap(true);
  note_->hide();
  layout->addWidget(note_);
  layout->addWidget(MakeButtons());
  connect(tabs_, &QTabWidget::currentChanged, this, [this](int tab) { ShowTab(tab); });
  if (frame_.PageCount() > 0) ShowTab(0);
  // Uses shortcuts, because some widgets handle these keys themselves.
  for (const auto& [keys, step] : {std::pair("Ctrl+Tab", 1), std::pair("Ctrl+Shift+Tab", -1)})
    connect(new QShortcut(QKeySequence(QLatin1String(keys)), this), &QShortcut::activated, this,
            [this, step = step] {
              const int count = tabs_->count();
              if (count > 0) tabs_->setCurrentIndex((tabs_->currentIndex() + step + count) % count);
            });
}

// Deletes the views before their pages.
PropertyFrameDialog::~PropertyFrameDialog() {
  for (const FormView* view : views_) delete view;
}

void PropertyFrameDialog::Note(const QString& note) {
  note_->setText(note);
  note_->setFixedWidth(ToPixels(PropertyPage::kSize.width, *this));
  note_->setVisible(!note.isEmpty());
}

QWidget* PropertyFrameDialog::MakeButtons() {
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch();
  QPushButton* ok = AddButton(*row, kOk, "cmdOk");
  ok->setDefault(true);
  QPushButton* cancel = AddButton(*row, kCancel, "cmdCancel");
  apply_ = AddButton(*row, kApply, "cmdApply");
  apply_->setEnabled(false);
  connect(ok, &QPushButton::clicked, this, [this] { accept(); });
  connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
  connect(apply_, &QPushButton::clicked, this, [this] { ApplyThen(false); });
  return buttons;
}

// --- pages ---

void PropertyFrameDialog::ShowTab(int tab) {
  const auto shown = static_cast<std::size_t>(tab);
  frame_.Show(shown);
  if (views_[shown] == nullptr) {
    views_[shown] = new FormView(frame_.Page(shown), tabs_->widget(tab));
    views_[shown]->onFailure = [this](const std::exception& failure) {
      ShowMessageBoxLater(*this, ToQt(FailureText(failure)));
    };
    views_[shown]->show();
  }
  // A page that could not be filled must not be edited.
  views_[shown]->setEnabled(frame_.IsFilled(shown));
  // Moves the focus into the page, unless it is on the tabs or a button.
  const QWidget* focused = focusWidget();
  if (focused == nullptr || !focused->isVisibleTo(this)) views_[shown]->FocusFirst();
}

void PropertyFrameDialog::ShowError(PropertyPage& page, const std::exception& error) {
  ShowMessageBoxLater(*this, ToQt(FailureText(error)));
  for (std::size_t tab = 0; tab < views_.size(); ++tab) {
    if (&frame_.Page(tab) != &page || views_[tab] == nullptr) continue;
    views_[tab]->setEnabled(frame_.IsFilled(tab));
    tabs_->setCurrentIndex(static_cast<int>(frame_.ShownTab()));
  }
}

// --- buttons ---

void PropertyFrameDialog::ApplyEnabledChanged() { apply_->setEnabled(frame_.CanApply()); }

bool PropertyFrameDialog::IsBusy() const {
  return std::ranges::any_of(views_, [](const FormView* view) { return view && view->IsBusy(); });
}

void PropertyFrameDialog::ApplyThen(bool close) {
  if (IsBusy()) return;
  const std::size_t before = frame_.PagesToApply();
  const bool applied = frame_.Apply();
  if (frame_.PagesToApply() < before && onApplied) onApplied();
  if (!applied || !close) return;
  result_ = Accepted;
  frame_.Ok();
}

void PropertyFrameDialog::accept() { ApplyThen(true); }

void PropertyFrameDialog::reject() {
  if (!IsBusy()) frame_.Cancel();
}

void PropertyFrameDialog::Closed() { done(result_); }

}  // namespace kvo
