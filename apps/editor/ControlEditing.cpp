#include "apps/editor/ControlEditing.h"

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

void ControlEditing::OpenPages(int position, bool doubleClicked) {
  try {
    const std::shared_ptr<Control> control = Load(position);
    const QString step = Text(words::kPagesStep, {NameAt(position)});
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
      if (taken) source_.StandBehind(position);
      return;
    }
    const auto pages = control->PropertyPages();
    if (!pages || pages->empty()) {
      ShowMessageBox(&window_, Text(words::kNoPages, {NameAt(position)}));
      return;
    }
    PropertyFrameDialog frame(FromQt(step), {control}, *pages, CreatePage, &window_);
    frame.onApplied = applied;
    frame.Note(note);
    // Keeps the next typed character from replacing the control.
    if (frame.exec() == QDialog::Accepted || taken) source_.StandBehind(position);
  } catch (const std::exception& failure) {
    platform_.onApplied = nullptr;
    ShowError(failure);
  }
}

void ControlEditing::Let(int position, const std::string& property, const Variant& value) {
  try {
    const std::shared_ptr<Control> control = Load(position);
    control->Let(property, value);
    Store(position, *control, Text(words::kPropertyStep, {ToQt(property), NameAt(position)}));
  } catch (const std::exception& failure) {
    ShowError(failure);
  }
}

void ControlEditing::Store(int position, const Control& control, const QString& step) {
  const ControlSource source = page_.SourceAt(position);
  if (page::StoredBag(control) == page::StoredBag(*source.Load())) return;
  auto bytes = source.Edited(control, false);
  if (!bytes) {
    if (Ask(&window_, Confirmation(Text(words::kOverwriteHandEdited, {NameAt(position)}),
                                   words::kOverwriteAnyway, words::kCancel, Default::no)) != 0)
      return;
    bytes = source.Edited(control, true);
  }
  const bool selected = source_.CurrentControl() == position;
  page_.ReplaceControl(position, *bytes, step);
  if (selected) source_.SelectControl(position);
}

void ControlEditing::Insert(const Tool& tool) {
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
    const auto inserted = source_.Insert(control, Text(words::kInsertStep, {ToQt(tool.caption)}));
    const auto pages = fresh->PropertyPages();
    if (inserted == SourceEdit::Inserted::asItIs && pages && !pages->empty()) source_.ExpectEnter();
    source_.setFocus();
  } catch (const std::exception& failure) {
    ShowError(failure);
  }
}

void ControlEditing::ShowError(const std::exception& failure) const {
  ShowMessageBox(&window_, ToQt(FailureText(failure)));
}

}  // namespace kvo::editor
