// Find and replace in the source, below it.
#pragma once

#include <QWidget>
#include <optional>
#include <utility>
#include <vector>

#include "apps/editor/PageText.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRegularExpressionMatch;

namespace kvo::editor {

class SourceEdit;

class FindBar final : public QWidget {
 public:
  FindBar(SourceEdit& source, QWidget* parent);

  // Opens with the text selected in the source.
  void Open(bool withReplace);
  // Moves to the next or previous match. Opens the bar if there is nothing to find yet.
  void Step(bool backwards);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Match {
    int begin;
    int length;
    PageText replacement;
  };
  // Returns all matches; nothing after reporting a wrong expression.
  std::optional<std::vector<Match>> Matches();
  void ReplaceOne();
  void ReplaceAll();
  PageText ReplacementOf(const QRegularExpressionMatch& match) const;

  SourceEdit& source_;
  QLineEdit* find_;
  QLineEdit* replace_;
  QCheckBox* matchCase_;
  QCheckBox* expression_;
  QLabel* message_;
  QWidget* replaceRow_;
};

}  // namespace kvo::editor
