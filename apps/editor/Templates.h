// The pages to begin with, which come with the editor.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace kvo::editor {

struct Template {
  QString title;  // from its title element
  QByteArray page;
};
std::vector<Template> Templates();

}  // namespace kvo::editor
