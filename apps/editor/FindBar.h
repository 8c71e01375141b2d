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

  // Opens with what is selected in the source.
  void Open(bool withReplace);
  // To the next place or the one before. Without anything to find yet, opens the bar.
  void Step(bool backwards);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Match {
    int begin;
    int length;
    PageText replacement;
  };
  // All places; nothing when the expression is wrong, which is then said.
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
