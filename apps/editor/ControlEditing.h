// Edits single controls: opens property pages, sets properties, inserts new controls.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/editor/Session.h"
#include "apps/editor/SourceEdit.h"
#include "apps/editor/ToolboxFile.h"
#include "host/qt/QtPlatform.h"

namespace kvo::editor {

class ControlEditing {
 public:
  ControlEditing(Session& session, SourceEdit& source, QtPlatform& platform, QWidget& window)
      : session_(session),
        page_(session.Page()),
        source_(source),
        platform_(platform),
        window_(window) {}

  // Creates an instance of the control at a position.
  std::shared_ptr<Control> Load(int position) const;

  // Shows the property pages; offers a double click to the control first. Stores each Apply in the
  // page as one undo step, or as a part of the step before.
  enum class Steps { ofTheirOwn, partOfTheLast };
  void OpenPages(int position, bool doubleClicked, Steps steps = Steps::ofTheirOwn);
  // The pages were applied; the caret of the source is after the control.
  std::function<void()> onPagesClosed;
  void Let(int position, const std::string& property, const Variant& value);
  // Sets the id; an empty one removes the attribute. Refuses an id that another control has.
  void Rename(int position, const std::string& id);
  // Inserts at the caret or in place of the selection, and puts the caret after it. Then opens the
  // property pages, unless the user switched that off or the tool already has its field. All of it
  // is one undo step, with what was done before if `steps` says so.
  void Insert(const Tool& tool, Steps steps);
  static QString InsertStep(const Tool& tool);
  // Whether it does; remembered in the settings.
  static bool OpensInserted();
  static void OpensInserted(bool opens);

  QString NameAt(int position) const;

 private:
  void StandBehind(int position);
  // Returns the note for the frame of its pages that explains why their lists are empty.
  QString NoteFor(const Control& control) const;
  void Store(int position, const Control& control, const QString& step);
  // Returns the bytes of the changed control; nothing when the user keeps a runtime text that was
  // edited by hand.
  std::optional<QByteArray> Edited(const ControlSource& source, const Control& control,
                                   const QString& name) const;
  void Replace(int position, const QByteArray& bytes, const QString& step);
  void ShowError(const std::exception& failure) const;

  Session& session_;
  PageDocument& page_;
  SourceEdit& source_;
  QtPlatform& platform_;
  QWidget& window_;
};

}  // namespace kvo::editor
