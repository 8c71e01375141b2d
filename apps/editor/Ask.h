// Asks a question whose answers name their actions.
#pragma once

#include <QString>
#include <vector>

#include "common/values/Localized.h"

class QWidget;

namespace kvo::editor {

struct Answer {
  enum class Kind { agrees, destroys, acts, refuses };  // decides the order of the buttons
  Kind kind;
  Localized text;
};

// Exactly one answer refuses; Escape and the window's close button choose it.
struct Question {
  QString text;
  std::vector<Answer> answers;
  std::size_t preset = 0;
  bool warns = false;  // something went wrong
};

enum class Default { yes, no };

// Answer 0 is yes.
inline Question Confirmation(QString question, const Localized& yes, const Localized& no,
                             Default preset) {
  return {std::move(question),
          {{Answer::Kind::agrees, yes}, {Answer::Kind::refuses, no}},
          preset == Default::yes ? 0U : 1U};
}

// Asks the user in a message box with the program's title and returns the index of the answer.
// Never interprets the text as markup: file names and page texts may contain anything.
std::size_t Ask(QWidget* parent, const Question& question);

}  // namespace kvo::editor
