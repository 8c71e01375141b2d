// Messages to the user.
#pragma once

#include <QString>

#include "host/desktop/Words.h"

class QWidget;

namespace kvo {

QString InUserLanguage(const Localized& text);

// The title of the component's own message boxes.
QString MessageTitle();

// Shows a message box over `parent`; returns when it is closed.
void ShowMessageBox(QWidget* parent, const QString& text);
// Shows it after the current event and returns at once. Shows nothing if `parent` is destroyed
// first.
void ShowMessageBoxLater(QWidget& parent, const QString& text);

}  // namespace kvo
