// What the desktop says to the user.
#pragma once

#include <QString>

#include "host/desktop/Words.h"

class QWidget;

namespace kvo {

QString InUserLanguage(const Localized& text);

// The title of the component's own message boxes.
QString MessageTitle();

// A message box over `parent`; returns when it was answered.
void ShowMessageBox(QWidget* parent, const QString& text);
// Shows it as soon as whatever happens now is over, and returns at once. Over a parent that ends
// before, nothing shows.
void ShowMessageBoxLater(QWidget& parent, const QString& text);

}  // namespace kvo
