// Colours HTML source line by line, following the HTML tokenizer.
#pragma once

#include <QPalette>
#include <QSyntaxHighlighter>
#include <array>

namespace kvo::editor {

class Highlighter final : public QSyntaxHighlighter {
 public:
  Highlighter(QTextDocument* document, const QPalette& palette);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  // The state at the end of a line, where the next one continues.
  enum State { text, comment, tag, doubleQuoted, singleQuoted };
  // The content that follows the current tag, kept while the tag spans several lines.
  enum Content { markup, script, style };
  enum Look { tagName, attribute, value, quiet, reference, lookCount };

  int Text(const QString& line, int at, Content& content, State& state);
  int Tag(const QString& line, int at, Content& content, State& state);
  void Paint(int begin, int end, Look look) { setFormat(begin, end - begin, looks_[look]); }

  std::array<QTextCharFormat, lookCount> looks_;
};

}  // namespace kvo::editor
