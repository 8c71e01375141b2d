// A question whose answers say what they do.
#pragma once

#include <QString>
#include <vector>

#include "common/values/Localized.h"

class QWidget;

namespace kvo::editor {

struct Answer {
  enum class Kind { agrees, destroys, acts, refuses };  // a desktop orders its buttons by them
  Kind kind;
  Localized text;
};

// Exactly one answer refuses; Escape and the window's button are the same as that one.
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

// Asks the user in a message box, under the program's title, and answers with the number of the
// answer. The text is never taken for markup: names of files and texts of pages may hold anything.
std::size_t Ask(QWidget* parent, const Question& question);

}  // namespace kvo::editor
