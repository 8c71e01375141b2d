#include "document/compare/Version.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "common/values/RuntimeError.h"
#include "document/page/ElementWriter.h"
#include "document/page/NewGuids.h"

namespace kvo::compare {
namespace {

// Gives equal texts equal numbers.
class Numbers {
 public:
  std::size_t Of(std::string text) {
    return numbers_.try_emplace(std::move(text), numbers_.size()).first->second;
  }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
};

void AppendField(std::string& text, std::string_view field) {
  text += std::to_string(field.size());
  text += ':';
  text += field;
}

// Everything that a control holds in the page, apart from its runtime text.
std::string ContentOf(const page::FoundControl& control) {
  std::string content;
  AppendField(content, control.className);
  AppendField(content, control.id);
  for (const page::Attribute& attribute : control.attributes) {
    AppendField(content, attribute.name);
    content += attribute.value ? '=' : '-';
    AppendField(content, attribute.value.value_or(std::string()));
  }
  content += ';';
  for (const auto& [key, value] : control.bag) {
    AppendField(content, key);
    AppendField(content, value);
  }
  return content;
}

class Pairer {
 public:
  Pairer(const Version& a, const Version& b)
      : a_(a),
        b_(b),
        pairs_{std::vector<std::size_t>(a.Controls().size(), kNone),
               std::vector<std::size_t>(b.Controls().size(), kNone)} {}

  Pairs Run(Pairing pairing) {
    PairUnique([](const page::FoundControl& control) {
      if (control.id.empty()) return std::string();
      std::string name;
      AppendField(name, control.id);
      return name;
    });
    PairUnique(ContentOf);
    const std::vector<Match> matches =
        Align(Keys(a_, pairs_.ofA, false), Keys(b_, pairs_.ofB, true));
    std::vector<Match> gapEnds = matches;
    gapEnds.push_back({a_.Pieces().size(), b_.Pieces().size()});
    for (const auto& [inA, inB] : matches)
      if (a_.Pieces()[inA].control != kNone) Pair(a_.Pieces()[inA], b_.Pieces()[inB]);
    if (pairing == Pairing::never) return std::move(pairs_);
    Match from{0, 0};
    for (const Match& end : gapEnds) {
      PairGap(from, end, pairing);
      from = {end.a + 1, end.b + 1};
    }
    return std::move(pairs_);
  }

 private:
  void Pair(std::size_t inA, std::size_t inB) {
    pairs_.ofA[inA] = inB;
    pairs_.ofB[inB] = inA;
  }
  void Pair(const Piece& inA, const Piece& inB) { Pair(inA.control, inB.control); }

  // Pairs controls of one class whose name occurs once in each version. An empty name is none.
  template <class NameOf>
  void PairUnique(NameOf nameOf) {
    struct Seen {
      std::size_t inA = 0;
      std::size_t inB = 0;
      std::size_t a = 0;
      std::size_t b = 0;
    };
    std::unordered_map<std::string, Seen> seen;
    const auto& ofA = a_.Controls();
    const auto& ofB = b_.Controls();
    for (std::size_t i = 0; i < ofA.size(); ++i) {
      if (pairs_.ofA[i] != kNone) continue;
      Seen& each = seen[nameOf(ofA[i])];
      ++each.inA;
      each.a = i;
    }
    for (std::size_t i = 0; i < ofB.size(); ++i) {
      if (pairs_.ofB[i] != kNone) continue;
      Seen& each = seen[nameOf(ofB[i])];
      ++each.inB;
      each.b = i;
    }
    for (const auto& [name, each] : seen)
      if (!name.empty() && each.inA == 1 && each.inB == 1 &&
          ofA[each.a].contract == ofB[each.b].contract)
        Pair(each.a, each.b);
  }

  // Numbers the pieces: equal for equal texts, partners, and controls that hold the same.
  std::vector<std::size_t> Keys(const Version& version, const std::vector<std::size_t>& partners,
                                bool isB) {
    std::vector<std::size_t> keys;
    keys.reserve(version.Pieces().size());
    for (const Piece& piece : version.Pieces()) {
      if (piece.control == kNone) {
        keys.push_back(numbers_.Of('t' + std::string(version.BytesOf(piece))));
      } else if (partners[piece.control] != kNone) {
        const std::size_t inA = isB ? partners[piece.control] : piece.control;
        keys.push_back(numbers_.Of('p' + std::to_string(inA)));
      } else {
        keys.push_back(numbers_.Of('c' + ContentOf(version.Controls()[piece.control])));
      }
    }
    return keys;
  }

  void PairGap(Match from, Match to, Pairing pairing) {
    const std::vector<std::size_t> inA = Left(a_, pairs_.ofA, from.a, to.a);
    const std::vector<std::size_t> inB = Left(b_, pairs_.ofB, from.b, to.b);
    const std::vector<std::size_t> classesA = Classes(a_, inA);
    const std::vector<std::size_t> classesB = Classes(b_, inB);
    const auto fits = [&](std::size_t a, std::size_t b) {
      const std::string& id = a_.Controls()[a].id;
      const std::string& other = b_.Controls()[b].id;
      return id.empty() || other.empty() || id == other;
    };
    if (pairing == Pairing::certain &&
        (classesA != classesB || !std::ranges::equal(inA, inB, fits)))
      return;
    for (const auto& [a, b] : Align(classesA, classesB)) Pair(inA[a], inB[b]);
  }
  static std::vector<std::size_t> Left(const Version& version,
                                       const std::vector<std::size_t>& partners, std::size_t from,
                                       std::size_t to) {
    std::vector<std::size_t> left;
    for (std::size_t at = from; at < to; ++at) {
      const std::size_t control = version.Pieces()[at].control;
      if (control != kNone && partners[control] == kNone) left.push_back(control);
    }
    return left;
  }
  std::vector<std::size_t> Classes(const Version& version,
                                   const std::vector<std::size_t>& controls) {
    std::vector<std::size_t> classes;
    for (const std::size_t control : controls)
      classes.push_back(numbers_.Of('k' + version.Controls()[control].className));
    return classes;
  }

  const Version& a_;
  const Version& b_;
  Pairs pairs_;
  Numbers numbers_;
};

}  // namespace

Version::Version(std::string bytes) : page_(std::move(bytes)) {
  page::Inspection inspection = page::Inspect(page_);
  broken_ = page::HasErrors(inspection.problems);
  std::size_t at = 0;
  for (page::FoundControl& control : inspection.controls) {
    if (control.broken || control.contract == nullptr || control.begin < at) continue;
    AddText(at, control.begin);
    pieces_.push_back({control.begin, control.end, controls_.size(), line_});
    at = control.end;
    const std::string_view own = BytesOf(control);
    line_ += static_cast<std::size_t>(std::ranges::count(own, '\n'));
    controls_.push_back(std::move(control));
  }
  AddText(at, Bytes().size());
}

void Version::AddText(std::size_t begin, std::size_t end) {
  while (begin < end) {
    const std::size_t lineEnd = Bytes().find('\n', begin);
    const std::size_t next = lineEnd < end ? lineEnd + 1 : end;
    pieces_.push_back({begin, next, kNone, line_});
    if (lineEnd < end) ++line_;
    begin = next;
  }
}

std::optional<std::string> Version::HandText(const page::FoundControl& control) const {
  if (control.form != page::Form::span) return std::nullopt;
  const std::string_view old =
      Bytes().substr(control.textBegin, control.textEnd - control.textBegin);
  try {
    const auto loaded = page::Load(*control.contract, control.bag);
    std::string text;
    std::string again;
    if (!page::AppendText(loaded->GetRuntimeText(), page_.Encoding(), text) &&
        !page::AppendText(loaded->GetRuntimeText(), page_.Encoding(), again) &&
        (old == text || page::EqualButForNewGuids(old, text, again)))
      return std::nullopt;
  } catch (const RuntimeError&) {  // gives no text, so this one is from elsewhere
  }
  std::string utf8;
  if (page_.Encoding().Decode(old, utf8) == std::string::npos) return utf8;
  return std::string(old);
}

Pairs PairControls(const Version& a, const Version& b, Pairing pairing) {
  return Pairer(a, b).Run(pairing);
}

}  // namespace kvo::compare
