// Colours HTML source, as the tokenizer of HTML reads it line by line.
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
  // Where a line ends, and the next one goes on.
  enum State { text, comment, tag, doubleQuoted, singleQuoted };
  // In whose content a tag's end leads, kept while its start tag goes over several lines.
  enum Content { markup, script, style };
  enum Look { tagName, attribute, value, quiet, reference, lookCount };

  int Text(const QString& line, int at, Content& content, State& state);
  int Tag(const QString& line, int at, Content& content, State& state);
  void Paint(int begin, int end, Look look) { setFormat(begin, end - begin, looks_[look]); }

  std::array<QTextCharFormat, lookCount> looks_;
};

}  // namespace kvo::editor
