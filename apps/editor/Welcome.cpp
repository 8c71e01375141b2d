#include "apps/editor/Welcome.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "apps/editor/Icons.h"
#include "apps/editor/Session.h"
#include "apps/editor/Templates.h"
#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kWidest = 860;
constexpr int kMargin = 32;
constexpr int kGap = 8;
constexpr int kPageIcon = 20;

QLabel* Heading(const Localized& text, double size, QWidget* parent) {
  auto* label = new QLabel(Text(text), parent);
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  font.setBold(true);
  label->setFont(font);
  return label;
}

// A button as wide as its column, with its text at the left.
QPushButton* Button(const QString& text, const QString& icon, QWidget* parent) {
  auto* button = new QPushButton(LineIcon(icon), QString(text).replace('&', "&&"), parent);
  button->setStyleSheet("QPushButton { text-align: left; padding: 8px 12px; }");
  button->setIconSize({kPageIcon, kPageIcon});
  button->setAutoDefault(true);
  return button;
}

}  // namespace

Welcome::Welcome(QWidget* parent)
    : QScrollArea(parent), recent_(new QListWidget(this)), noRecent_(new QLabel(this)) {
  setFrameShape(NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  auto* content = new QWidget(this);
  auto* column = new QWidget(content);
  column->setMaximumWidth(kWidest);
  auto* halves = new QHBoxLayout;
  halves->setSpacing(kMargin);
  halves->addWidget(Beginnings(), 1);
  halves->addWidget(RecentFiles(), 1);
  auto* rows = new QVBoxLayout(column);
  rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  rows->setSpacing(kMargin / 2);
  auto* introduction = new QLabel(Text(words::kWelcomeText), column);
  introduction->setTextFormat(Qt::PlainText);
  introduction->setWordWrap(true);
  rows->addWidget(Heading(words::kWelcome, 1.8, column));
  rows->addWidget(introduction);
  rows->addLayout(halves, 1);
  auto* outer = new QHBoxLayout(content);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addStretch(1);
  outer->addWidget(column, 100);
  outer->addStretch(1);
  setWidget(content);
  Refresh();
}

QWidget* Welcome::Beginnings() {
  auto* side = new QWidget(this);
  auto* rows = new QVBoxLayout(side);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kGap);
  const auto add = [&](const QString& text, const QString& icon, std::function<void()> run) {
    auto* button = Button(text, icon, side);
    connect(button, &QPushButton::clicked, this, std::move(run));
    rows->addWidget(button);
    return button;
  };
  rows->addWidget(Heading(words::kBegin, 1.2, side));
  setFocusProxy(add(Text(words::kNewPage), "new", [this] {
    if (onNew) onNew();
  }));
  add(Text(words::kOpenPage), "open", [this] {
    if (onOpen) onOpen();
  });
  rows->addSpacing(kGap);
  rows->addWidget(Heading(words::kFromTemplate, 1.2, side));
  for (const Template& each : Templates())
    add(each.title, "template", [this, page = each.page] {
      if (onTemplate) onTemplate(page);
    });
  rows->addStretch();
  return side;
}

QWidget* Welcome::RecentFiles() {
  auto* side = new QWidget(this);
  auto* rows = new QVBoxLayout(side);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kGap);
  rows->addWidget(Heading(words::kRecentHeading, 1.2, side));
  recent_->setAccessibleName(Text(words::kRecentHeading));
  recent_->setWordWrap(true);
  recent_->setTextElideMode(Qt::ElideMiddle);
  recent_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  recent_->setIconSize({kPageIcon, kPageIcon});
  recent_->setUniformItemSizes(true);
  recent_->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
  recent_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  noRecent_->setText(Text(words::kNoRecent));
  noRecent_->setTextFormat(Qt::PlainText);
  noRecent_->setWordWrap(true);
  rows->addWidget(noRecent_);
  rows->addWidget(recent_);
  rows->addStretch();
  const auto open = [this](const QListWidgetItem* item) {
    // Ignores the second signal on desktops where a click also activates.
    if (item != nullptr && isVisible() && onRecent) onRecent(item->data(Qt::UserRole).toString());
  };
  // One click is enough; Enter activates.
  connect(recent_, &QListWidget::itemClicked, this, open);
  connect(recent_, &QListWidget::itemActivated, this, open);
  return side;
}

void Welcome::Refresh() {
  recent_->clear();
  for (const QString& file : Session::RecentFiles()) {
    const QFileInfo info(file);
    auto* item =
        new QListWidgetItem(LineIcon("template"), info.fileName() + '\n' + info.path(), recent_);
    item->setSizeHint({0, 2 * fontMetrics().lineSpacing() + 2 * kGap});
    item->setData(Qt::UserRole, file);
    item->setToolTip(ToolTipOf(file));
  }
  recent_->setVisible(recent_->count() > 0);
  noRecent_->setVisible(recent_->count() == 0);
}

}  // namespace kvo::editor
