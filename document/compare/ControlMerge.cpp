#include "document/compare/ControlMerge.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "document/compare/Properties.h"
#include "document/page/ControlChange.h"

namespace kvo::compare {
namespace {

using Value = std::optional<std::string_view>;

class ControlMerger {
 public:
  ControlMerger(const Side& base, const Side& ours, const Side& theirs)
      : contract_(*ours.control->contract),
        ours_(*ours.version, *ours.control),
        theirs_(*theirs.version, *theirs.control) {
    if (base) base_.emplace(*base.version, *base.control);
  }

  MergedControl Run() {
    MergeValues();
    if (!merged_.conflicts.empty()) return std::move(merged_);
    const Values& host = Host();
    try {
      merged_.bytes = Changed(host);
    } catch (const std::exception& error) {
      Refuse(FailureMessage(error));
    }
    return std::move(merged_);
  }

 private:
  static std::string_view BytesOf(const Values& values) {
    return values.Of().BytesOf(values.Control());
  }

  void MergeValues() {
    std::vector<Property> all = PropertiesOf(ours_, theirs_);
    if (base_)
      for (Property& property : base_->All())
        if (std::ranges::find(all, property) == all.end()) all.push_back(std::move(property));
    for (Property& property : all) {
      const Value ours = ours_.Of(property);
      const Value theirs = theirs_.Of(property);
      const bool oursChanged = !base_ || base_->Of(property) != ours;
      const bool theirsChanged = !base_ || base_->Of(property) != theirs;
      if (oursChanged && theirsChanged && ours != theirs) {
        Conflict(property, ours, theirs);
        continue;
      }
      const Values& from = theirsChanged && !oursChanged ? theirs_ : ours_;
      if (property.kind == Property::Kind::row)
        if (const Value written = from.Written(property.row))
          bag_.emplace_back(contract_.bag[property.row].key, *written);
      values_.push_back({std::move(property), from.Of(property)});
    }
  }

  void Conflict(const Property& property, Value ours, Value theirs) {
    const Message name = NameOf(property, contract_);
    const std::string values = ": " + Shown(ours, theirs) + " | " + Shown(theirs, ours);
    merged_.conflicts.push_back({name.german + values, name.english + values});
  }
  void Refuse(Message why) { merged_.conflicts.push_back(std::move(why)); }

  struct MergedValue {
    Property property;
    Value value;
  };
  static bool Holds(const Values& side, const MergedValue& merged) {
    return side.Of(merged.property) == merged.value;
  }
  bool IsMergedInAll(const Values& side) const {
    return std::ranges::all_of(values_, [&](const auto& each) { return Holds(side, each); });
  }
  // Whether the side has everything that only its own bytes can give: id, attributes and a text
  // edited by hand.
  bool HasRest(const Values& side) const {
    return std::ranges::all_of(values_, [&](const MergedValue& each) {
      return each.property.kind == Property::Kind::row || Holds(side, each);
    });
  }
  page::Form MergedForm() const {
    const page::Form ours = ours_.Control().form;
    const page::Form theirs = theirs_.Control().form;
    if (!base_) return ours == page::Form::span ? ours : theirs;
    return ours != base_->Control().form ? ours : theirs;
  }
  // The side whose bytes the merged control is made of.
  const Values& Host() const {
    const auto has = [&](const Values& side, bool all) {
      return side.Control().form == MergedForm() && (all ? IsMergedInAll(side) : HasRest(side));
    };
    for (const bool all : {true, false})
      if (has(ours_, all) != has(theirs_, all)) return has(ours_, all) ? ours_ : theirs_;
    if (!base_) return BytesOf(ours_) <= BytesOf(theirs_) ? ours_ : theirs_;
    // Keeps the layout that one side changed, or the identifier that it made.
    return SameValues(*base_, ours_) ? theirs_ : ours_;
  }

  std::string Changed(const Values& host) {
    if (IsMergedInAll(host)) return std::string(BytesOf(host));
    const bool edited = std::ranges::any_of(values_, [](const MergedValue& each) {
      return each.property.kind == Property::Kind::text && each.value;
    });
    if (!HasRest(host) || edited) {
      Refuse(edited ? Message{"Laufzeittext von Hand geändert, Eigenschaften auf der anderen Seite",
                              "runtime text edited by hand, properties on the other side"}
                    : Message{"id oder Attribute auf beiden Seiten geändert",
                              "id or attributes changed on both sides"});
      return {};
    }
    const page::FoundControl& found = host.Control();
    page::ControlChange change =
        page::ChangeControl(host.Of().Page(), found, [this](Control& control) {
          MemoryBag entries(bag_);
          control.ReadProperties(entries);
        });
    for (page::Problem& problem : change.problems) Refuse(std::move(problem.message));
    if (!change.problems.empty()) return {};
    for (page::TextEdit& edit : change.edits) {
      edit.begin -= found.begin;
      edit.end -= found.begin;
    }
    std::string bytes = page::Applied(BytesOf(host), change.edits);
    if (!ReadsAsMerged(bytes, host)) {
      Refuse({"Die Werte lassen sich nicht zusammen speichern",
              "The values cannot be stored together"});
      return {};
    }
    return bytes;
  }

  // A few values change when they are stored.
  bool ReadsAsMerged(const std::string& bytes, const Values& host) const {
    const std::string declaration = "<meta charset=\"" + host.Of().Page().Encoding().Name() + "\">";
    const Version alone(declaration + bytes);
    return !alone.IsBroken() && alone.Controls().size() == 1 &&
           IsMergedInAll(Values(alone, alone.Controls().front()));
  }

  const ControlClass& contract_;
  std::optional<Values> base_;
  Values ours_;
  Values theirs_;
  std::vector<MergedValue> values_;
  std::vector<MemoryBag::Entry> bag_;
  MergedControl merged_;
};

}  // namespace

MergedControl MergeControl(const Side& base, const Side& ours, const Side& theirs) {
  if (ours.Bytes() == theirs.Bytes()) return {std::string(ours.Bytes()), {}};
  if (base && base.Bytes() == ours.Bytes()) return {std::string(theirs.Bytes()), {}};
  if (base && base.Bytes() == theirs.Bytes()) return {std::string(ours.Bytes()), {}};
  return ControlMerger(base, ours, theirs).Run();
}

bool IsChanged(const Side& base, const Side& side) {
  return base.Bytes() != side.Bytes() &&
         !SameValues(Values(*base.version, *base.control), Values(*side.version, *side.control));
}

}  // namespace kvo::compare
