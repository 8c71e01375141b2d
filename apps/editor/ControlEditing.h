// What is done to single controls: their property pages, their properties, new ones.
#pragma once

#include <QWidget>
#include <memory>
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

  // An instance of the control at a position.
  std::shared_ptr<Control> Load(int position) const;

  // Shows the property pages; a double click goes to the control first. What is applied is stored
  // in the page as one step each time.
  void OpenPages(int position, bool doubleClicked);
  void Let(int position, const std::string& property, const Variant& value);
  // At the caret, or in place of what is selected; the caret stands behind it then.
  void Insert(const Tool& tool);

  QString NameAt(int position) const;

 private:
  // What the frame of its pages says besides: why their lists are empty.
  QString NoteFor(const Control& control) const;
  void Store(int position, const Control& control, const QString& step);
  void ShowError(const std::exception& failure) const;

  Session& session_;
  PageDocument& page_;
  SourceEdit& source_;
  QtPlatform& platform_;
  QWidget& window_;
};

}  // namespace kvo::editor
