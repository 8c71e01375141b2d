#include "document/compare/Merge.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "document/compare/ControlMerge.h"
#include "document/compare/Properties.h"
#include "document/compare/Skeleton.h"
#include "document/compare/Version.h"

namespace kvo::compare {
namespace {

// A control in all versions that have it.
struct Joined {
  Side base;
  Side ours;
  Side theirs;
  // Whether its versions stay apart, because they conflict.
  bool split = false;
  std::string merged;
  std::size_t placed = 0;  // how often it is in the merged text, outside of conflicts
  bool shown = false;      // in the merged text or in a conflict

  const page::FoundControl& Any() const { return *(ours ? ours : theirs ? theirs : base).control; }
};

Message operator+(const Message& a, const Message& b) {
  return {a.german + b.german, a.english + b.english};
}
Message operator+(const Message& a, const Localized& b) {
  return {a.german + std::string(b.german), a.english + std::string(b.english)};
}

Side SideOf(const Version& version, std::size_t control) {
  if (control == kNone) return {};
  return {&version, &version.Controls()[control]};
}

class Merger {
 public:
  Merger(std::string_view base, std::string_view ours, std::string_view theirs,
         const TextMerge& mergeText, std::size_t markerSize)
      : base_{std::string(base)},
        ours_{std::string(ours)},
        theirs_{std::string(theirs)},
        mergeText_(mergeText),
        markerSize_(markerSize) {}

  Merged Run() {
    if (const auto why = WhyAsText()) return AsText(*why);
    JoinControls();
    for (Joined& each : joined_) MergeJoined(each);
    if (!MergeTexts() || !AllShown())
      return AsText({"Der Text lässt sich nicht getrennt von den Controls zusammenführen",
                     "the text cannot be merged apart from the controls"});
    CheckPlaces();
    if (merged_.IsClean()) CheckResult();
    return std::move(merged_);
  }

 private:
  std::optional<Message> WhyAsText() const {
    for (const Version* version : {&base_, &ours_, &theirs_}) {
      if (version->IsBroken())
        return Message{"eine Fassung enthält etwas, das sich nicht als Control lesen lässt",
                       "a version holds something that cannot be read as a control"};
      if (HoldsMarkers(version->Bytes(), markerSize_))
        return Message{"eine Fassung enthält einen ungelösten Konflikt",
                       "a version holds an unresolved conflict"};
      if (!version->Bytes().empty() && !version->Page().Encoding().ReadsAs(ours_.Page().Encoding()))
        return Message{"die Fassungen haben verschiedene Kodierungen",
                       "the versions have different encodings"};
    }
    return std::nullopt;
  }

  Merged AsText(Message why) {
    Merged merged;
    auto text = mergeText_(base_.Bytes(), ours_.Bytes(), theirs_.Bytes(), markerSize_);
    if (text) {
      merged.bytes = std::move(text->bytes);
      merged.textConflicts = text->hasConflicts;
    } else {
      merged.bytes = ours_.Bytes();
      merged.textConflicts = true;
    }
    merged.asText = std::move(why);
    return merged;
  }

  void JoinControls() {
    const Pairs withOurs = PairControls(base_, ours_, Pairing::certain);
    const Pairs withTheirs = PairControls(base_, theirs_, Pairing::certain);
    const Pairs added = PairControls(ours_, theirs_, Pairing::never);
    inBase_.resize(base_.Controls().size());
    inOurs_.resize(ours_.Controls().size());
    inTheirs_.resize(theirs_.Controls().size());
    for (std::size_t i = 0; i < inBase_.size(); ++i) {
      inBase_[i] = joined_.size();
      Join(i, withOurs.ofA[i], withTheirs.ofA[i]);
    }
    for (std::size_t i = 0; i < inOurs_.size(); ++i) {
      if (withOurs.ofB[i] != kNone) continue;
      const std::size_t partner = added.ofA[i];
      const bool both = partner != kNone && withTheirs.ofB[partner] == kNone;
      Join(kNone, i, both ? partner : kNone);
    }
    for (std::size_t i = 0; i < inTheirs_.size(); ++i) {
      if (withTheirs.ofB[i] != kNone) continue;
      const std::size_t partner = added.ofB[i];
      if (partner == kNone || withOurs.ofB[partner] != kNone) Join(kNone, kNone, i);
    }
  }
  void Join(std::size_t base, std::size_t ours, std::size_t theirs) {
    if (ours != kNone) inOurs_[ours] = joined_.size();
    if (theirs != kNone) inTheirs_[theirs] = joined_.size();
    Joined& joined = joined_.emplace_back();
    joined.base = SideOf(base_, base);
    joined.ours = SideOf(ours_, ours);
    joined.theirs = SideOf(theirs_, theirs);
  }

  void MergeJoined(Joined& joined) {
    if (joined.ours && joined.theirs) {
      MergedControl merged = MergeControl(joined.base, joined.ours, joined.theirs);
      joined.merged = std::move(merged.bytes);
      for (Message& conflict : merged.conflicts) Conflict(joined, std::move(conflict));
      joined.split = !merged.conflicts.empty();
      return;
    }
    const Side& left = joined.ours ? joined.ours : joined.theirs ? joined.theirs : joined.base;
    joined.merged = left.Bytes();
    if (!joined.base || left.control == joined.base.control || !IsChanged(joined.base, left))
      return;
    joined.split = true;
    Conflict(joined, joined.ours ? Message{"hier geändert, dort gelöscht", "changed | removed"}
                                 : Message{"hier gelöscht, dort geändert", "removed | changed"});
  }

  void Conflict(const Joined& joined, Message what) {
    merged_.conflicts.push_back(NameOf(joined.Any()) + Message{": ", ": "} + what);
  }

  bool MergeTexts() {
    const std::array<std::string_view, 3> bytes{base_.Bytes(), ours_.Bytes(), theirs_.Bytes()};
    words_.emplace(bytes);
    const std::string base = SkeletonOf(base_, inBase_, Which::base);
    const std::string ours = SkeletonOf(ours_, inOurs_, Which::ours);
    const std::string theirs = SkeletonOf(theirs_, inTheirs_, Which::theirs);
    const std::size_t markerSize =
        UnusedMarkerSize(std::array<std::string_view, 3>{base, ours, theirs});
    const auto text = mergeText_(base, ours, theirs, markerSize);
    if (!text) return false;
    for (const Region& region : DivideAtMarkers(text->bytes, markerSize)) {
      if (!region.conflict) {
        Append(region.text, Which::merged);
      } else if (const auto resolved = Resolved(region)) {
        Append(*resolved, Which::merged);
      } else {
        AppendConflict(region, markerSize);
      }
    }
    return true;
  }

  std::string SkeletonOf(const Version& version, const std::vector<std::size_t>& joined,
                         Which which) const {
    std::string skeleton;
    for (const Piece& piece : version.Pieces()) {
      if (piece.control == kNone) {
        skeleton += version.BytesOf(piece);
        continue;
      }
      const std::size_t index = joined[piece.control];
      skeleton += words_->Of({index, joined_[index].split ? which : Which::merged});
    }
    return skeleton;
  }

  // Appends a text with the controls in place of their words. In the base's part of a conflict,
  // controls are as they were.
  void Append(std::string_view text, Which part) {
    for (const auto& [before, word] : words_->Divide(text)) {
      merged_.bytes += before;
      if (!word) continue;
      Joined& joined = joined_.at(word->control);
      joined.shown = joined.shown || part != Which::base;
      if (part == Which::merged) ++joined.placed;
      switch (word->which) {
        case Which::merged:
          merged_.bytes += part == Which::base && joined.base ? joined.base.Bytes()
                                                              : std::string_view(joined.merged);
          break;
        case Which::base:
          merged_.bytes += joined.base.Bytes();
          break;
        case Which::ours:
          merged_.bytes += joined.ours.Bytes();
          break;
        case Which::theirs:
          merged_.bytes += joined.theirs.Bytes();
          break;
      }
    }
  }

  void AppendConflict(const Region& region, std::size_t markerSize) {
    const auto appendMarker = [&](const std::string& line) {
      if (line.empty()) return;
      merged_.bytes.append(markerSize_, line.front());
      merged_.bytes.append(line, markerSize);
    };
    merged_.textConflicts = true;
    appendMarker(region.oursMarker);
    Append(region.ours, Which::ours);
    appendMarker(region.baseMarker);
    Append(region.base, Which::base);
    appendMarker(region.theirsMarker);
    Append(region.theirs, Which::theirs);
    appendMarker(region.endMarker);
  }

  // A text without its words, and the words by the offsets where they were.
  struct Placed {
    std::string text;
    std::map<std::size_t, std::vector<std::size_t>> words;
    bool split = false;
  };
  Placed PlacedIn(std::string_view text) const {
    Placed placed;
    for (const auto& [before, word] : words_->Divide(text)) {
      placed.text += before;
      if (!word) continue;
      placed.words[placed.text.size()].push_back(word->control);
      placed.split = placed.split || word->which != Which::merged;
    }
    return placed;
  }

  // Merges a conflict in which the sides differ only in which controls they hold, and each change
  // is at a place of its own.
  std::optional<std::string> Resolved(const Region& region) const {
    Placed ours = PlacedIn(region.ours);
    Placed theirs = PlacedIn(region.theirs);
    if (ours.text != theirs.text || ours.split || theirs.split) return std::nullopt;
    for (const auto& [at, words] : theirs.words) ours.words.try_emplace(at);
    std::string resolved;
    std::size_t copied = 0;
    for (const auto& [at, oursHere] : ours.words) {
      const std::vector<std::size_t>& theirsHere = theirs.words[at];
      const auto kept = KeptOf(oursHere, &Joined::theirs, region.theirs);
      const auto keptOfTheirs = KeptOf(theirsHere, &Joined::ours, region.ours);
      if (!kept || !keptOfTheirs) return std::nullopt;
      // Where both sides changed one place, the order would be a guess.
      const std::vector<std::size_t>* here = nullptr;
      if (*kept == *keptOfTheirs || IsSubsequence(*keptOfTheirs, *kept))
        here = &*kept;
      else if (IsSubsequence(*kept, *keptOfTheirs))
        here = &*keptOfTheirs;
      else
        return std::nullopt;
      resolved.append(ours.text, copied, at - copied);
      copied = at;
      for (const std::size_t control : *here) resolved += words_->Of({control, Which::merged});
    }
    return resolved.append(ours.text, copied);
  }

  // Returns the words without those whose control the other side removed. Nothing when a control
  // is at another place there.
  std::optional<std::vector<std::size_t>> KeptOf(const std::vector<std::size_t>& words,
                                                 Side Joined::*other,
                                                 std::string_view otherText) const {
    std::vector<std::size_t> kept;
    for (const std::size_t control : words) {
      const Joined& joined = joined_.at(control);
      if (joined.*other) {
        if (otherText.find(words_->Of({control, Which::merged})) == std::string_view::npos)
          return std::nullopt;
        kept.push_back(control);
      } else if (!joined.base) {
        kept.push_back(control);
      }
    }
    return kept;
  }
  static bool IsSubsequence(const std::vector<std::size_t>& part,
                            const std::vector<std::size_t>& whole) {
    auto at = whole.begin();
    for (const std::size_t each : part) {
      at = std::find(at, whole.end(), each);
      if (at == whole.end()) return false;
      ++at;
    }
    return true;
  }

  // Whether every control is in the result that no side removed.
  bool AllShown() const {
    return std::ranges::all_of(joined_, [](const Joined& each) {
      const bool removed = each.base && !(each.ours && each.theirs) && !each.split;
      return removed || each.shown;
    });
  }

  void CheckPlaces() {
    for (const Joined& each : joined_) {
      if (!each.base || each.split) continue;
      if (each.ours && each.theirs) {
        if (each.placed > 1)
          Conflict(each, {"auf beiden Seiten verschoben, steht nun zweimal",
                          "moved on both sides, is there twice now"});
      } else if (each.placed > 0) {
        Conflict(each, {"auf einer Seite gelöscht, auf der anderen verschoben",
                        "removed on one side, moved on the other"});
      }
    }
  }

  // What merges line by line may still not fit together.
  void CheckResult() {
    const Version result(merged_.bytes);
    std::size_t placed = 0;
    for (const Joined& each : joined_) placed += each.placed;
    if (result.IsBroken() || result.Controls().size() != placed ||
        !result.Page().Encoding().ReadsAs(ours_.Page().Encoding()))
      merged_.conflicts.push_back(
          {"Die Seite liest sich nach dem Zusammenführen anders; „kvo check“ sagt, was ihr fehlt",
           "the merged page reads differently; \"kvo check\" tells what is wrong with it"});
    const auto had = IdsOf(ours_);
    const auto other = IdsOf(theirs_);
    for (const auto& [id, count] : IdsOf(result)) {
      const auto before = [&id = id](const std::map<std::string, std::size_t>& ids) {
        const auto found = ids.find(id);
        return found == ids.end() ? 0 : found->second;
      };
      if (count > 1 && count > std::max(before(had), before(other)))
        merged_.conflicts.push_back(
            Message{Shown(id), Shown(id)} +
            Localized{": die id steht nun zweimal", ": the id is there twice now"});
    }
  }
  static std::map<std::string, std::size_t> IdsOf(const Version& version) {
    std::map<std::string, std::size_t> ids;
    for (const page::FoundControl& control : version.Controls())
      if (!control.id.empty()) ++ids[control.id];
    return ids;
  }

  Version base_;
  Version ours_;
  Version theirs_;
  const TextMerge& mergeText_;
  std::size_t markerSize_;
  std::vector<Joined> joined_;
  // By control of each version: its index in joined_.
  std::vector<std::size_t> inBase_;
  std::vector<std::size_t> inOurs_;
  std::vector<std::size_t> inTheirs_;
  std::optional<Words> words_;
  Merged merged_;
};

}  // namespace

Merged Merge(std::string_view base, std::string_view ours, std::string_view theirs,
             const TextMerge& mergeText, std::size_t markerSize) {
  if (ours == theirs || base == theirs) return {std::string(ours), {}, false, {}};
  if (base == ours) return {std::string(theirs), {}, false, {}};
  return Merger(base, ours, theirs, mergeText, markerSize).Run();
}

}  // namespace kvo::compare
