#include "apps/editor/ControlEditing.h"

#include <QSettings>
#include <QTimer>
#include <algorithm>

#include "apps/editor/Ask.h"
#include "apps/editor/Words.h"
#include "common/frame/Office.h"
#include "common/values/RuntimeError.h"
#include "document/page/Page.h"
#include "host/qt/Messages.h"
#include "host/qt/PropertyFrameDialog.h"
#include "host/qt/QtText.h"
#include "host/registration/classes.h"

namespace kvo::editor {
namespace {

constexpr char kOpensInserted[] = "editInserted";

}  // namespace

std::shared_ptr<Control> ControlEditing::Load(int position) const {
  std::shared_ptr<Control> control = page_.SourceAt(position).Load();
  GiveOffice(*control, session_.Office());
  return control;
}

QString ControlEditing::NoteFor(const Control& control) const {
  if (!HoldsOffice(control)) return {};
  if (session_.OfficeFile().isEmpty()) return Text(words::kNoOffice);
  const office::Office::Description& described = session_.Office()->Described();
  if (!described.contactFields.empty() || !described.orderFields.empty()) return {};
  return Text(words::kNoFields, {session_.OfficeFile()});
}

QString ControlEditing::NameAt(int position) const {
  const auto look = page_.LookAt(position);
  return ToQt(look->id.empty() ? look->contract->name : std::string_view(look->id));
}

void ControlEditing::StandBehind(int position) {
  source_.StandBehind(position);
  if (onPagesClosed) onPagesClosed();
}

void ControlEditing::OpenPages(int position, bool doubleClicked, Steps steps) {
  try {
    const std::shared_ptr<Control> control = Load(position);
    const QString title = Text(words::kPagesStep, {NameAt(position)});
    const QString step = steps == Steps::ofTheirOwn ? title : QString();
    bool taken = false;
    const auto applied = [this, position, &control, &step, &taken] {
      Store(position, *control, step);
      taken = true;
    };
    const QString note = NoteFor(*control);
    platform_.onApplied = applied;
    platform_.frameNote = note;
    const auto handled =
        doubleClicked && control->DblClick(static_cast<WindowHandle>(window_.winId()));
    platform_.onApplied = nullptr;
    if (handled) {
      if (taken) StandBehind(position);
      return;
    }
    const auto pages = control->PropertyPages();
    if (!pages || pages->empty()) {
      ShowMessageBox(&window_, Text(words::kNoPages, {NameAt(position)}));
      return;
    }
    PropertyFrameDialog frame(FromQt(title), {control}, *pages, CreatePage, &window_);
    frame.onApplied = applied;
    frame.Note(note);
    // Keeps the next typed character from replacing the control.
    if (frame.exec() == QDialog::Accepted || taken) StandBehind(position);
  } catch (const std::exception& failure) {
    platform_.onApplied = nullptr;
    ShowError(failure);
  }
}

void ControlEditing::Let(int position, const std::string& property, const Variant& value) {
  try {
    const std::shared_ptr<Control> control = Load(position);
    control->Let(property, value);
    const PropertyRow& row = *control->Class().FindProperty(property);
    // Sets the caption, as the property page does.
    if (row.input.kind == InputKind::officeField)
      for (const office::Field& field : FieldsOf(control->Class(), session_.Office()->Described()))
        if (value == Variant(field.sqlName)) control->Let("DisplayValue", field.displayName);
    Store(position, *control, Text(words::kPropertyStep, {Text(row.Caption()), NameAt(position)}));
  } catch (const std::exception& failure) {
    ShowError(failure);
  }
}

void ControlEditing::Rename(int position, const std::string& id) {
  try {
    const ControlSource source = page_.SourceAt(position);
    if (id == source.Id()) return;
    // Includes controls that cannot be loaded.
    const auto controls = page::Inspect(page::Page(page_.Content().Bytes())).controls;
    if (!id.empty() && std::ranges::find(controls, id, &page::FoundControl::id) != controls.end())
      return ShowMessageBox(&window_, Text(words::kIdTaken, {ToQt(id)}));
    const QString step = Text(words::kPropertyStep, {Text(words::kId), NameAt(position)});
    const auto bytes = Edited(source, *source.Load(), NameAt(position));
    if (!bytes) return;
    const page::PageEncoding& encoding = page_.Content().Encoding();
    const ControlSource renamed(ControlSource(*bytes, encoding).WithId(id), encoding);
    Replace(position, *renamed.Edited(*renamed.Load(), true), step);
  } catch (const std::exception& failure) {
    ShowError(failure);
  }
}

void ControlEditing::Store(int position, const Control& control, const QString& step) {
  const ControlSource source = page_.SourceAt(position);
  if (page::StoredBag(control) == page::StoredBag(*source.Load())) return;
  if (const auto bytes = Edited(source, control, NameAt(position))) Replace(position, *bytes, step);
}

std::optional<QByteArray> ControlEditing::Edited(const ControlSource& source,
                                                 const Control& control,
                                                 const QString& name) const {
  if (auto bytes = source.Edited(control, false)) return bytes;
  if (Ask(&window_, Confirmation(Text(words::kOverwriteHandEdited, {name}), words::kOverwriteAnyway,
                                 words::kCancel, Default::no)) != 0)
    return std::nullopt;
  return source.Edited(control, true);
}

void ControlEditing::Replace(int position, const QByteArray& bytes, const QString& step) {
  const bool selected = source_.CurrentControl() == position;
  page_.ReplaceControl(position, bytes, step);
  if (selected) source_.SelectControl(position);
}

QString ControlEditing::InsertStep(const Tool& tool) {
  return Text(words::kInsertStep, {ToQt(tool.caption)});
}

void ControlEditing::Insert(const Tool& tool, Steps steps) {
  try {
    constexpr std::string_view kPrefix = "DTC";
    std::string_view name = tool.contract->name;
    if (name.starts_with(kPrefix)) name.remove_prefix(kPrefix.size());
    const std::shared_ptr<Control> fresh = page::Load(*tool.contract, tool.bag);
    const QByteArray element =
        ControlSource::Element(*fresh, page_.FreeId(std::string(name)), page_.Content().Encoding());
    PageText control;
    control.Replace(0, 0, QStringView(&kEmbeddedCharacter, 1),
                    {{Embedded::Kind::control, 0, element}});
    const auto inserted =
        source_.Insert(control, steps == Steps::ofTheirOwn ? InsertStep(tool) : QString());
    const auto pages = fresh->PropertyPages();
    if (inserted != SourceEdit::Inserted::asItIs || !pages || pages->empty()) return;
    if (!OpensInserted() || !tool.field.empty()) return source_.ExpectEnter();
    // Waits for the end of a drop.
    const int position = source_.textCursor().position() - 1;
    QTimer::singleShot(0, &window_, [this, position] {
      if (page_.IsControl(position)) OpenPages(position, false, Steps::partOfTheLast);
    });
  } catch (const std::exception& failure) {
    ShowError(failure);
  }
}

bool ControlEditing::OpensInserted() { return QSettings().value(kOpensInserted, true).toBool(); }

void ControlEditing::OpensInserted(bool opens) { QSettings().setValue(kOpensInserted, opens); }

void ControlEditing::ShowError(const std::exception& failure) const {
  ShowMessageBox(&window_, ToQt(FailureText(failure)));
}

}  // namespace kvo::editor
