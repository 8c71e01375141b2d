#include "apps/editor/PreviewPanel.h"

#include <QAbstractItemView>
#include <QActionGroup>
#include <QComboBox>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/editor/DesignFrame.h"
#include "apps/editor/FocusFrame.h"
#include "apps/editor/Icons.h"
#include "apps/editor/PreviewLists.h"
#include "apps/editor/PreviewView.h"
#include "apps/editor/Words.h"
#include "document/preview/Template.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr int kBarIcon = 18;
constexpr int kStateMargin = 24;
// From here on, a mail of 600 pixels and the lists fit side by side.
constexpr int kWideEnough = 940;

QString ShownName(const QString& name, std::int64_t index) {
  return name.isEmpty() ? Text(words::kRecordNumber, {QString::number(index + 1)}) : name;
}

}  // namespace

PreviewPanel::PreviewPanel(QWidget* parent)
    : QWidget(parent),
      bar_(new QToolBar(Text(words::kPreview), this)),
      records_(new QComboBox(this)),
      count_(new QLabel(this)),
      face_(new QLabel(this)),
      problems_(new QToolButton(this)),
      parts_(new QSplitter(Qt::Vertical, this)),
      lists_(new QSplitter(Qt::Horizontal, this)),
      middle_(new QStackedWidget(this)),
      view_(new PreviewView(this)),
      frame_(new DesignFrame(*view_, view_->View(), this)),
      state_(new QLabel(this)),
      switches_(new SwitchList(this)),
      findings_(new FindingList(this)) {
  MakeBar();
  face_->setTextFormat(Qt::PlainText);
  face_->setWordWrap(true);
  face_->setMargin(4);
  problems_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  problems_->setAutoRaise(true);
  problems_->setText(Text(words::kShowProblems));
  problems_->hide();
  connect(problems_, &QToolButton::clicked, this, [this] {
    if (onShowProblems) onShowProblems();
  });
  auto* face = new QHBoxLayout;
  face->setContentsMargins(4, 0, 4, 0);
  face->addWidget(face_, 1);
  face->addWidget(problems_);

  state_->setTextFormat(Qt::RichText);
  state_->setWordWrap(true);
  state_->setMargin(kStateMargin);
  state_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  state_->setAutoFillBackground(true);
  state_->setBackgroundRole(QPalette::Base);
  state_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  middle_->addWidget(frame_);
  middle_->addWidget(state_);

  lists_->addWidget(MakeSwitches());
  lists_->addWidget(new FocusFrame(findings_, this));
  lists_->setChildrenCollapsible(false);
  parts_->addWidget(middle_);
  parts_->addWidget(lists_);
  parts_->setChildrenCollapsible(false);
  parts_->setStretchFactor(0, 1);
  parts_->setSizes({520, 170});

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(bar_);
  column->addLayout(face);
  column->addWidget(parts_, 1);
  setFocusProxy(view_);

  view_->onClicked = [this](int control) {
    if (onPlace) onPlace(control, 0, false);
  };
  view_->onScheme = [this](bool own) { ShowDarkTip(own); };
  switches_->onPlace =
      findings_->onPlace = [this](std::optional<int> control, int position, bool goes) {
        if (onPlace) onPlace(control, position, goes);
      };
  switches_->onChosen = [this](const QString& key, preview::Choice choice) {
    if (onChoice) onChoice(key, choice);
  };
}

QAction* PreviewPanel::Button(const Localized& text, const QString& icon,
                              const QKeySequence& keys) {
  QAction* action = bar_->addAction(LineIcon(icon), Text(text));
  QString tip = Text(text);
  if (!keys.isEmpty()) tip += " (" + keys.toString(QKeySequence::NativeText) + ')';
  action->setToolTip(tip);
  bar_->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  return action;
}

void PreviewPanel::MakeBar() {
  bar_->setIconSize({kBarIcon, kBarIcon});
  for (auto* more : bar_->findChildren<QToolButton*>()) {  // the button for what does not fit
    more->setFocusPolicy(Qt::TabFocus);
    more->setAccessibleName(Text(words::kMore));
  }
  previous_ = Button(words::kPreviousRecordTip, "previous", QKeySequence("Shift+F7"));
  connect(previous_, &QAction::triggered, this, [this] { onStep(-1); });

  records_->setEditable(true);
  records_->setInsertPolicy(QComboBox::NoInsert);
  records_->setDuplicatesEnabled(true);
  records_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  records_->setMinimumContentsLength(16);
  for (QWidget* part :
       std::initializer_list<QWidget*>{records_, records_->lineEdit(), records_->view()})
    part->setAccessibleName(Text(words::kRecord));
  records_->setToolTip(Text(words::kRecordTip));
  records_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  records_->completer()->setFilterMode(Qt::MatchContains);
  records_->completer()->setCaseSensitivity(Qt::CaseInsensitive);
  connect(records_, &QComboBox::activated, this, [this](int index) {
    if (onRecord) onRecord(index);
  });
  connect(records_->lineEdit(), &QLineEdit::returnPressed, this, [this] { FindTyped(); });
  bar_->addWidget(records_);
  count_->setMargin(4);
  bar_->addWidget(count_);
  next_ = Button(words::kNextRecordTip, "next", QKeySequence("F7"));
  connect(next_, &QAction::triggered, this, [this] { onStep(1); });

  QAction* edit = Button(words::kEditRecord, "edit");
  connect(edit, &QAction::triggered, this, [this] {
    if (onEdit) onEdit();
  });
  bar_->addSeparator();
  auto* widths = new QActionGroup(this);
  const auto width = [&](const Localized& text, const char* icon, DesignFrame::PageWidth each) {
    QAction* action = Button(text, icon);
    action->setText(action->text().remove('&'));
    action->setToolTip(action->text());
    action->setCheckable(true);
    action->setChecked(each == frame_->Shown());
    widths->addAction(action);
    connect(action, &QAction::triggered, this, [this, each] { frame_->Show(each); });
  };
  width(words::kFit, "fit", DesignFrame::PageWidth::fit);
  width(words::kMailWidth, "desktop", DesignFrame::PageWidth::mail);
  width(words::kPhoneWidth, "phone", DesignFrame::PageWidth::phone);
  bar_->addSeparator();
  dark_ = Button(words::kDarkMail, "dark");
  dark_->setCheckable(true);
  connect(dark_, &QAction::toggled, this, [this](bool on) { view_->ShowDark(on); });
  ShowDarkTip(false);
  QAction* pictures = Button(words::kNoPictures, "no-pictures");
  pictures->setCheckable(true);
  connect(pictures, &QAction::toggled, this, [this](bool off) { view_->ShowPictures(!off); });
  shop_ = Button(words::kReadShop, "shop");
  shop_->setToolTip(Text(words::kReadShopTip));
  shop_->setVisible(false);
  connect(shop_, &QAction::triggered, this, [this] {
    if (onShop) onShop();
  });
}

QWidget* PreviewPanel::MakeSwitches() {
  auto* side = new QWidget(this);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  reset_ = new QPushButton(Text(words::kAllAsInRecord), side);
  reset_->setAutoDefault(true);
  reset_->hide();
  connect(reset_, &QPushButton::clicked, this, [this] {
    if (onReset) onReset();
  });
  column->addWidget(new FocusFrame(switches_, this), 1);
  column->addWidget(reset_);
  return side;
}

void PreviewPanel::Show(const std::shared_ptr<const PreviewResult>& result) {
  result_ = result;
  ShowRecords(*result);
  ShowFace(*result);
  lists_->setVisible(result->hasRecord);
  switches_->Show(result);
  findings_->Show(result);
  reset_->setVisible(std::ranges::any_of(result->switches, [](const SwitchEntry& entry) {
    return entry.choice != preview::Choice::asRecord;
  }));
  if (!result->hasRecord)
    return result->recordsFailure.isEmpty()
               ? ShowState(Text(words::kNoRecord), Text(words::kNoRecordHelp))
               : ShowState(Text(words::kBrokenRecords),
                           result->recordsFailure + "\n\n" + Text(words::kBrokenRecordsHelp));
  view_->Show(*result);
  if (result->isEmpty) return ShowState(Text(words::kEmptyPage), Text(words::kEmptyPageHelp));
  middle_->setCurrentWidget(frame_);
  frame_->PageChanged();
}

void PreviewPanel::ShowRecords(const PreviewResult& result) {
  QStringList names;
  for (const QString& name : result.names) names += ShownName(name, names.size());
  QStringList shown;
  for (int at = 0; at < records_->count(); ++at) shown += records_->itemText(at);
  if (shown != names) {
    records_->clear();
    records_->addItems(names);
  }
  const bool isListed = result.hasRecord && result.record < names.size();
  records_->setCurrentIndex(isListed ? static_cast<int>(result.record) : -1);
  // Leaves alone what the author is typing to search for.
  if (!isListed || !records_->lineEdit()->hasFocus() || !records_->lineEdit()->isModified())
    records_->setEditText(result.hasRecord ? ShownName(ToQt(result.current.name), result.record)
                                           : QString());
  records_->setEnabled(result.count > 0);
  count_->setText(result.count > 0 ? Text(words::kMatchOf, {QString::number(result.record + 1),
                                                            QString::number(result.count)})
                                   : QString());
  previous_->setEnabled(result.record > 0);
  next_->setEnabled(result.record + 1 < result.count);
}

void PreviewPanel::ShowFace(const PreviewResult& result) {
  QString face = Text(preview::kFace);
  if (result.current.madeUp) face += ' ' + Text(words::kMadeUp);
  if (result.isFromQuery) face += ' ' + Text(words::kFromQuery);
  if (result.hasRecord && !result.recordsFailure.isEmpty()) face += "\n" + result.recordsFailure;
  if (result.errors > 0) face += "\n" + Text(words::kNotPublishable);
  face_->setText(face);
  problems_->setVisible(result.errors > 0);
}

void PreviewPanel::ShowState(const QString& title, const QString& text) {
  QString html = "<h3>" + title.toHtmlEscaped() + "</h3>";
  for (const QString& line : text.split("\n\n"))
    html += "<p>" + line.toHtmlEscaped().replace('\n', "<br>") + "</p>";
  state_->setText(html);
  state_->setAccessibleName(title + ' ' + text);
  middle_->setCurrentWidget(state_);
}

QString PreviewPanel::StateText() const {
  return middle_->currentWidget() == state_ ? state_->accessibleName() : QString();
}

QString PreviewPanel::FaceText() const { return face_->text(); }

void PreviewPanel::ShowDarkTip(bool own) {
  QString tip = Text(words::kDarkMail);
  if (dark_->isChecked()) tip += ": " + Text(own ? words::kDarkByMail : words::kDarkByReader);
  dark_->setToolTip(tip);
}

void PreviewPanel::FindTyped() {
  const QString typed = records_->lineEdit()->text().trimmed();
  records_->lineEdit()->setModified(false);
  if (typed.isEmpty() || result_ == nullptr) return;
  int found = records_->findText(typed, Qt::MatchFixedString);
  if (found < 0) found = records_->findText(typed, Qt::MatchContains);
  if (found >= 0) {
    if (onRecord) onRecord(found);
  } else if (onFind) {
    onFind(typed);
  }
}

void PreviewPanel::OfferShop(bool offers) { shop_->setVisible(offers); }

void PreviewPanel::Mark(int control) { view_->Mark(control, true); }

void PreviewPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (onVisible) onVisible();
}

void PreviewPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const Qt::Orientation wanted = width() >= kWideEnough ? Qt::Horizontal : Qt::Vertical;
  if (parts_->orientation() == wanted) return;
  parts_->setOrientation(wanted);
  lists_->setOrientation(wanted == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
  lists_->setSizes({1, 1});
  parts_->setSizes(wanted == Qt::Horizontal ? QList<int>{width() - 320, 320}
                                            : QList<int>{520, 170});
}

}  // namespace kvo::editor
