#include "apps/editor/Highlighter.h"

#include <algorithm>

#include "apps/editor/Colors.h"

namespace kvo::editor {
namespace {

constexpr int kContentShift = 8;

int EndOf(const QString& line, qsizetype found, int length) {
  return found < 0 ? static_cast<int>(line.size()) : static_cast<int>(found) + length;
}

bool IsNameCharacter(QChar c) {
  return !c.isSpace() && c != u'>' && c != u'/' && c != u'=' && c != u'<';
}

}  // namespace

Highlighter::Highlighter(QTextDocument* document, const QPalette& palette)
    : QSyntaxHighlighter(document) {
  const SourceColors colors = ColorsOfSource(SchemeOf(palette));
  looks_[tagName].setForeground(colors.tagName);
  looks_[attribute].setForeground(colors.attribute);
  looks_[value].setForeground(colors.value);
  looks_[quiet].setForeground(colors.quiet);
  looks_[reference].setForeground(colors.reference);
}

void Highlighter::highlightBlock(const QString& line) {
  const int before = std::max(previousBlockState(), 0);
  auto state = static_cast<State>(before & ((1 << kContentShift) - 1));
  auto content = static_cast<Content>(before >> kContentShift);
  for (int at = 0; at < line.size();) {
    switch (state) {
      case comment: {
        const int end = EndOf(line, line.indexOf("-->", at), 3);
        Paint(at, end, quiet);
        if (line.mid(0, end).endsWith("-->")) state = text;
        at = end;
        break;
      }
      case doubleQuoted:
      case singleQuoted: {
        const QChar quote = state == doubleQuoted ? u'"' : u'\'';
        const auto found = line.indexOf(quote, at);
        const int end = EndOf(line, found, 1);
        Paint(at, end, value);
        if (found >= 0) state = tag;
        at = end;
        break;
      }
      case tag:
        at = Tag(line, at, content, state);
        break;
      case text:
        at = Text(line, at, content, state);
        break;
    }
  }
  setCurrentBlockState(state | (content << kContentShift));
}

int Highlighter::Text(const QString& line, int at, Content& content, State& state) {
  const QStringView rest = QStringView(line).sliced(at);
  if (content != markup) {
    const QStringView end = content == script ? u"</script" : u"</style";
    const auto found = rest.indexOf(end, 0, Qt::CaseInsensitive);
    Paint(at, found < 0 ? static_cast<int>(line.size()) : at + static_cast<int>(found), quiet);
    if (found < 0) return static_cast<int>(line.size());
    content = markup;
    return at + static_cast<int>(found);
  }
  if (rest.startsWith(u"<!--")) {
    state = comment;
    Paint(at, at + 4, quiet);
    return at + 4;
  }
  if (rest.startsWith(u'<') && rest.size() > 1 &&
      (rest[1].isLetter() || rest[1] == u'/' || rest[1] == u'!' || rest[1] == u'?')) {
    int end = at + (rest[1].isLetter() ? 1 : 2);
    const int name = end;
    while (end < line.size() && IsNameCharacter(line[end])) ++end;
    Paint(at, end, tagName);
    const QStringView tagText = QStringView(line).sliced(name, end - name);
    if (name == at + 1 && tagText.compare(u"script", Qt::CaseInsensitive) == 0) content = script;
    if (name == at + 1 && tagText.compare(u"style", Qt::CaseInsensitive) == 0) content = style;
    state = tag;
    return end;
  }
  if (rest.startsWith(u'&')) {
    int end = at + 1;
    while (end < line.size() && (line[end].isLetterOrNumber() || line[end] == u'#')) ++end;
    if (end < line.size() && line[end] == u';') {
      Paint(at, end + 1, reference);
      return end + 1;
    }
    return at + 1;
  }
  const auto next =
      std::find_if(rest.begin() + 1, rest.end(), [](QChar c) { return c == u'<' || c == u'&'; });
  return at + static_cast<int>(next - rest.begin());
}

int Highlighter::Tag(const QString& line, int at, Content&, State& state) {
  const QChar c = line[at];
  if (c == u'>') {
    Paint(at, at + 1, tagName);
    state = text;
    return at + 1;
  }
  if (c == u'"' || c == u'\'') {
    state = c == u'"' ? doubleQuoted : singleQuoted;
    Paint(at, at + 1, value);
    return at + 1;
  }
  if (!IsNameCharacter(c)) return at + 1;
  int end = at;
  while (end < line.size() && IsNameCharacter(line[end])) ++end;
  const bool unquotedValue = at > 0 && line[at - 1] == u'=';
  Paint(at, end, unquotedValue ? value : attribute);
  return end;
}

}  // namespace kvo::editor
