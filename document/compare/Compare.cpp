#include "document/compare/Compare.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "document/compare/Properties.h"

namespace kvo::compare {
namespace {

using Kind = Difference::Kind;

// The text of a page without its controls, by lines, and where in it the controls are.
struct PlainText {
  struct Line {
    std::string bytes;
    std::size_t first = 1;  // in the page; a control may reach over several lines
    std::size_t last = 1;
  };
  struct Position {
    std::size_t line = 0;  // in `lines`, behind the last one at the end of the page
    std::size_t offset = 0;
    bool operator==(const Position&) const = default;
  };
  std::vector<Line> lines;
  std::vector<Position> controls;

  explicit PlainText(const Version& version) {
    Line line;
    for (const Piece& piece : version.Pieces()) {
      if (piece.control != kNone) {
        controls.push_back({lines.size(), line.bytes.size()});
        continue;
      }
      if (line.bytes.empty()) line.first = piece.line;
      line.last = piece.line;
      line.bytes += version.BytesOf(piece);
      if (line.bytes.ends_with('\n')) lines.push_back(std::exchange(line, {}));
    }
    if (!line.bytes.empty()) lines.push_back(std::move(line));
  }

  Lines Told(std::size_t begin, std::size_t end) const {
    if (begin < end) return {lines[begin].first, lines[end - 1].last - lines[begin].first + 1};
    if (begin < lines.size()) return {lines[begin].first, 0};
    return {lines.empty() ? 1 : lines.back().last + 1, 0};
  }
};

class Comparison {
 public:
  Comparison(const Version& before, const Version& after)
      : a_(before),
        b_(after),
        textOfA_(before),
        textOfB_(after),
        pairs_(PairControls(before, after, Pairing::likely)) {}

  std::vector<Difference> Run() {
    AlignLines();
    FindMoved();
    for (const Hunk& hunk : hunks_) AddText(hunk);
    for (std::size_t control = 0; control < a_.Controls().size(); ++control)
      if (pairs_.ofA[control] == kNone) {
        const std::size_t line = textOfA_.controls[control].line;
        const std::size_t hunk = HunkOf(line);
        Add(Kind::removed, &a_.Controls()[control], nullptr,
            hunk != kNone ? hunks_[hunk].bBegin : lineInB_[line]);
      }
    for (std::size_t control = 0; control < b_.Controls().size(); ++control) AddControl(control);
    std::ranges::stable_sort(found_, {}, &Found::line);
    std::vector<Difference> differences;
    for (Found& each : found_) differences.push_back(std::move(each.difference));
    return differences;
  }

 private:
  // Lines that changed.
  struct Hunk {
    std::size_t aBegin, aEnd, bBegin, bEnd;
  };

  // Aligns lines with the same controls in them first: where a line repeats, they tell which one
  // is gone.
  void AlignLines() {
    const std::vector<std::size_t> textA = NumbersOf(textOfA_, nullptr);
    const std::vector<std::size_t> textB = NumbersOf(textOfB_, nullptr);
    std::vector<std::size_t> all(a_.Controls().size());
    std::iota(all.begin(), all.end(), 0);
    std::vector<Match> matches = Align(NumbersOf(textOfA_, &all), NumbersOf(textOfB_, &pairs_.ofB));
    const Match end{textOfA_.lines.size(), textOfB_.lines.size()};
    matches.push_back(end);
    std::vector<Match> more;
    Match from{0, 0};
    for (const Match& match : matches) {
      const std::span<const std::size_t> a(textA);
      const std::span<const std::size_t> b(textB);
      for (const Match& each :
           Align(a.subspan(from.a, match.a - from.a), b.subspan(from.b, match.b - from.b)))
        more.push_back({from.a + each.a, from.b + each.b});
      more.push_back(match);
      from = {match.a + 1, match.b + 1};
    }
    lineInB_.assign(end.a + 1, kNone);
    from = {0, 0};
    for (const Match& match : more) {
      const bool changed = from.a < match.a || from.b < match.b;
      if (changed) hunks_.push_back({from.a, match.a, from.b, match.b});
      if (match != end || !changed) lineInB_[match.a] = match.b;
      from = {match.a + 1, match.b + 1};
    }
  }

  // Numbers the lines, equal for equal texts with the same controls. `numbers` are those of the
  // controls; without them, texts alone count.
  std::vector<std::size_t> NumbersOf(const PlainText& text,
                                     const std::vector<std::size_t>* numbers) {
    std::vector<std::string> keys;
    for (const PlainText::Line& line : text.lines) keys.push_back(line.bytes);
    for (std::size_t i = 0; numbers != nullptr && i < text.controls.size(); ++i)
      if (const std::size_t line = text.controls[i].line;
          line < keys.size() && (*numbers)[i] != kNone)
        keys[line] += '#' + std::to_string((*numbers)[i]);
    std::vector<std::size_t> all;
    for (std::string& key : keys)
      all.push_back(lineNumbers_.try_emplace(std::move(key), lineNumbers_.size()).first->second);
    return all;
  }

  // Returns the changed lines that hold this line of `a`; kNone for a line that is the same.
  std::size_t HunkOf(std::size_t line) const {
    if (lineInB_[line] != kNone) return kNone;
    const auto next = std::ranges::upper_bound(hunks_, line, {}, &Hunk::aBegin);
    return static_cast<std::size_t>(next - hunks_.begin()) - 1;
  }

  // A control is moved that is in other text or on the other side of a control.
  void FindMoved() {
    moved_.assign(b_.Controls().size(), true);
    std::vector<std::size_t> inPlace;
    for (std::size_t inB = 0; inB < moved_.size(); ++inB) {
      const std::size_t inA = pairs_.ofB[inB];
      if (inA != kNone && IsInPlace(textOfA_.controls[inA], textOfB_.controls[inB]))
        inPlace.push_back(inA);
    }
    std::vector<std::size_t> inOrder = inPlace;
    std::ranges::sort(inOrder);
    for (const Match& match : Align(inOrder, inPlace)) moved_[pairs_.ofA[inPlace[match.b]]] = false;
  }
  bool IsInPlace(const PlainText::Position& inA, const PlainText::Position& inB) const {
    const std::size_t hunk = HunkOf(inA.line);
    if (hunk == kNone) return PlainText::Position{lineInB_[inA.line], inA.offset} == inB;
    const std::size_t end = textOfB_.lines.size();
    return hunks_[hunk].bBegin <= inB.line &&
           (inB.line < hunks_[hunk].bEnd || (inB.line == end && hunks_[hunk].bEnd == end));
  }

  void AddText(const Hunk& hunk) {
    Difference& added = found_.emplace_back(Found{{}, hunk.bBegin}).difference;
    added.oldLines = textOfA_.Told(hunk.aBegin, hunk.aEnd);
    added.newLines = textOfB_.Told(hunk.bBegin, hunk.bEnd);
  }

  Difference& Add(Kind kind, const page::FoundControl* before, const page::FoundControl* after,
                  std::size_t line) {
    const page::FoundControl& control = after != nullptr ? *after : *before;
    Difference& added = found_.emplace_back(Found{{}, line}).difference;
    added.kind = kind;
    added.className = control.className;
    added.id = control.id;
    added.name = NameOf(control);
    if (before != nullptr) added.oldPlace = before->place;
    if (after != nullptr) added.newPlace = after->place;
    return added;
  }

  // Adds what is new of a control, or what it holds that its partner does not.
  void AddControl(std::size_t inB) {
    const page::FoundControl& after = b_.Controls()[inB];
    const std::size_t line = textOfB_.controls[inB].line;
    if (pairs_.ofB[inB] == kNone) {
      Add(Kind::added, nullptr, &after, line);
      return;
    }
    const page::FoundControl& before = a_.Controls()[pairs_.ofB[inB]];
    if (moved_[inB]) Add(Kind::moved, &before, &after, line);
    if (a_.BytesOf(before) == b_.BytesOf(after)) return;
    const Values old(a_, before);
    const Values now(b_, after);
    std::vector<PropertyChange> changes;
    for (const Property& property : PropertiesOf(old, now)) {
      const auto was = old.Of(property);
      const auto is = now.Of(property);
      if (was == is) continue;
      changes.push_back({NameOf(property, *after.contract),
                         was ? std::optional<std::string>(*was) : std::nullopt,
                         is ? std::optional<std::string>(*is) : std::nullopt});
    }
    const bool changed = !changes.empty();
    if (changed) Add(Kind::changed, &before, &after, line).properties = std::move(changes);
    if (before.form != after.form)
      Add(after.form == page::Form::span ? Kind::saved : Kind::unsaved, &before, &after, line);
    else if (!changed)
      Add(Kind::rewritten, &before, &after, line);
  }

  struct Found {
    Difference difference;
    std::size_t line;  // of textOfB_, to sort by
  };

  const Version& a_;
  const Version& b_;
  PlainText textOfA_;
  PlainText textOfB_;
  Pairs pairs_;
  std::unordered_map<std::string, std::size_t> lineNumbers_;
  std::vector<std::size_t> lineInB_;  // by line of `a`, the end included; kNone when changed
  std::vector<Hunk> hunks_;
  std::vector<bool> moved_;  // by control of `b`
  std::vector<Found> found_;
};

// In the order of Difference::Kind.
constexpr std::array<std::string_view, 8> kKinds = {"added", "removed", "moved",     "changed",
                                                    "saved", "unsaved", "rewritten", "text"};

// "Zeile 3", "Zeilen 3-5".
Message Told(const Lines& lines) {
  const std::string first = std::to_string(lines.first);
  if (lines.count < 2)
    return Filled(Localized{"Zeile {}", "line {}"}, std::vector<std::string>{first});
  return Filled(Localized{"Zeilen {}-{}", "lines {}-{}"},
                std::vector<std::string>{first, std::to_string(lines.first + lines.count - 1)});
}

Message WithValues(const Localized& text, const std::vector<Message>& values) {
  std::vector<std::string> german;
  std::vector<std::string> english;
  for (const Message& value : values) {
    german.push_back(value.german);
    english.push_back(value.english);
  }
  return {Filled(text.german, german), Filled(text.english, english)};
}

Message Plain(std::string text) { return {text, text}; }

Message Told(const std::optional<page::Place>& place) {
  return Plain(std::to_string(place ? place->line : 0));
}

Message TextChange(const Difference& difference) {
  const Message before = Told(difference.oldLines);
  const Message after = Told(difference.newLines);
  if (difference.oldLines.count == 0)
    return WithValues({"Text: {} neu", "text: {} added"}, {after});
  if (difference.newLines.count == 0)
    return WithValues({"Text: {} gelöscht", "text: {} removed"}, {before});
  if (difference.oldLines == difference.newLines)
    return WithValues({"Text: {} geändert", "text: {} changed"}, {after});
  return WithValues({"Text: {} geändert, bisher {}", "text: {} changed, formerly {}"},
                    {after, before});
}

}  // namespace

std::vector<Difference> Compare(const Version& before, const Version& after) {
  return Comparison(before, after).Run();
}

std::string_view KindName(Difference::Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::vector<Message> Describe(const Difference& difference) {
  const Message& name = difference.name;
  const Message className = Plain(difference.className);
  switch (difference.kind) {
    case Kind::added:
      if (difference.id.empty()) return {WithValues({"{}: neu", "{}: added"}, {name})};
      return {WithValues({"{}: neu, {} in Zeile {}", "{}: added, {} in line {}"},
                         {name, className, Told(difference.newPlace)})};
    case Kind::removed:
      if (difference.id.empty()) return {WithValues({"{}: gelöscht", "{}: removed"}, {name})};
      return {WithValues({"{}: gelöscht, {} in Zeile {}", "{}: removed, {} in line {}"},
                         {name, className, Told(difference.oldPlace)})};
    case Kind::moved:
      if (difference.oldPlace->line == difference.newPlace->line)
        return {WithValues({"{}: verschoben in Zeile {}", "{}: moved within line {}"},
                           {name, Told(difference.newPlace)})};
      return {WithValues(
          {"{}: verschoben von Zeile {} nach Zeile {}", "{}: moved from line {} to line {}"},
          {name, Told(difference.oldPlace), Told(difference.newPlace)})};
    case Kind::changed: {
      std::vector<Message> lines;
      for (const PropertyChange& change : difference.properties) {
        const Message values =
            Plain(Shown(change.before, change.after) + " -> " + Shown(change.after, change.before));
        lines.push_back(WithValues({"{}: {} {}", "{}: {} {}"}, {name, change.name, values}));
      }
      return lines;
    }
    case Kind::saved:
      return {WithValues({"{}: gespeichert", "{}: saved"}, {name})};
    case Kind::unsaved:
      return {WithValues({"{}: nicht mehr gespeichert", "{}: no longer saved"}, {name})};
    case Kind::rewritten:
      return {WithValues(
          {"{}: anders geschrieben, gleicher Inhalt", "{}: written differently, same content"},
          {name})};
    case Kind::text:
      break;
  }
  return {TextChange(difference)};
}

}  // namespace kvo::compare
