#include "document/adopt/TagControl.h"

#include <algorithm>
#include <map>
#include <memory>
#include <span>

#include "common/frame/TagWriter.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "controls/BlockLevel.h"
#include "document/adopt/Words.h"
#include "document/page/NewGuids.h"
#include "document/page/Page.h"
#include "host/registration/classes.h"

namespace kvo::adopt {
namespace {

using page::npos;

constexpr std::string_view kAttributeSeparator = "||";

// What a row writes into the tag: nothing, or ` name="value"` once or several times.
std::string Written(const PropertyRow& row, const Control& control) {
  std::string tag;
  TagWriter writer(tag, {}, {});
  row.emission.append(row, control, writer);
  writer.Close();
  constexpr std::size_t kBegin = std::string_view("<:").size();
  return tag.substr(kBegin, tag.size() - kBegin - 1);
}

std::string AsWritten(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + std::string(value) + '"';
}

std::shared_ptr<Control> TryLoad(const ControlClass& contract, const Bag& bag) {
  try {
    return page::Load(contract, bag);
  } catch (const RuntimeError&) {
    return nullptr;
  }
}

// A row that writes an attribute. Without a name it writes whatever attributes its value lists.
struct WritingRow {
  const PropertyRow* row = nullptr;
  std::string attribute{};
};

// Asks the rows themselves, with values that make each of them write.
std::vector<WritingRow> FindWritingRows(const ControlClass& contract) {
  constexpr std::string_view kListed = "listed";
  std::vector<WritingRow> found;
  for (const bool yes : {true, false}) {
    Bag bag;
    for (const PropertyRow& row : contract.bag) {
      std::string value = std::string(kListed) + "|x";
      if (row.type == PropertyType::flag) value = yes ? row.codec.yes : row.codec.no;
      if (row.type == PropertyType::integer) value = "2";
      bag.emplace_back(row.key, std::move(value));
    }
    const std::shared_ptr<Control> control = page::Load(contract, std::move(bag));
    for (const PropertyRow& row : contract.bag) {
      const bool known = std::ranges::find(found, &row, &WritingRow::row) != found.end();
      if (known || row.emission.append == nullptr) continue;
      const std::string written = Written(row, *control);
      if (written.empty()) continue;
      std::string name = written.substr(1, written.find('=') - 1);
      if (name == kListed) name.clear();
      found.push_back({&row, std::move(name)});
    }
  }
  return found;
}

const std::vector<WritingRow>& WritingRows(const ControlClass& contract) {
  static const std::map<const ControlClass*, std::vector<WritingRow>> rows = [] {
    std::map<const ControlClass*, std::vector<WritingRow>> all;
    for (const RegisteredControl& registered : RegisteredControls())
      all.emplace(&registered.contract(), FindWritingRows(registered.contract()));
    return all;
  }();
  return rows.at(&contract);
}

std::string Replaced(std::string_view text, std::string_view from, std::string_view to) {
  std::string out;
  for (;;) {
    const std::size_t at = text.find(from);
    out += text.substr(0, at);
    if (at == npos) return out;
    out += to;
    text.remove_prefix(at + from.size());
  }
}

std::string WithoutAmpersandReferences(std::string_view text) {
  return Replaced(text, "&amp;", "&");
}

// A value to try for a row; nothing leaves the key out.
using Candidate = std::optional<std::string>;

// One row's search for the stored value that makes it write what the page has.
struct Search {
  const PropertyRow* row;
  std::string wanted;  // what the row is to write
  std::vector<Candidate> candidates{};
  std::size_t at = 0;
  std::string written{};  // what it wrote for the first candidate
};

void AddCandidate(Search& search, const ControlClass& contract, Candidate candidate) {
  if (std::ranges::find(search.candidates, candidate) != search.candidates.end()) return;
  if (candidate && search.row->type != PropertyType::text &&
      !TryLoad(contract, {{std::string(search.row->key), *candidate}}))
    return;
  search.candidates.push_back(std::move(candidate));
}

void AddWords(Search& search, const ControlClass& contract) {
  for (const std::string_view word : {search.row->codec.yes, search.row->codec.no})
    if (!word.empty()) AddCandidate(search, contract, std::string(word));
}

// The ways in which the control may hold what it writes as `value`, the likeliest first.
void AddValues(Search& search, const ControlClass& contract, std::string_view value) {
  AddWords(search, contract);
  if (search.row->type == PropertyType::flag) return;
  const std::string plain = WithoutAmpersandReferences(value);
  AddCandidate(search, contract,
               Replaced(Replaced(Replaced(plain, "&lt;", "<"), "&gt;", ">"), "&quot;", "\""));
  AddCandidate(search, contract,
               Replaced(Replaced(Replaced(value, "&lt;", "<"), "&gt;", ">"), "&quot;", "\""));
  AddCandidate(search, contract, plain);
  AddCandidate(search, contract, std::string(value));
  AddCandidate(search, contract, EncodeMarkupTokens(plain));
  AddCandidate(search, contract, EncodeMarkupTokens(value));
}

void AddAbsences(Search& search, const ControlClass& contract) {
  AddCandidate(search, contract, std::nullopt);
  AddCandidate(search, contract, "");
  if (search.row->type == PropertyType::integer) AddCandidate(search, contract, "0");
  AddWords(search, contract);
}

// A list of attributes as one value of a row; empty when an item could not be read back.
using Items = std::vector<std::pair<std::string, std::string>>;
std::string Listed(const Items& items, std::string (*as)(std::string_view)) {
  std::string list;
  for (const auto& [name, value] : items) {
    if (!list.empty()) list += kAttributeSeparator;
    list += name + '|' + as(value);
  }
  return list;
}

// Writes each row's first candidate, and the next one where a row writes something else.
class Matcher {
 public:
  Matcher(const ControlClass& contract, const WrittenTag& tag) : contract_(contract), tag_(tag) {}

  TagControl Read() {
    Fix("Namespace", tag_.prefix);
    Fix("basename", tag_.name);
    for (const auto& [property, content] : tag_.contents)
      Fix(property, EncodeMarkupTokens(content));
    if (auto reason = AddSearches()) return {std::nullopt, std::move(*reason)};
    for (;;) {
      const Bag bag = Current();
      const std::shared_ptr<Control> control = TryLoad(contract_, bag);
      if (!control) return {std::nullopt, words::NotTheSame()};
      Search* const wrong = Advance(*control);
      if (wrong == nullptr) return Compared(*control, bag);
      if (wrong->at >= wrong->candidates.size())
        return {std::nullopt, Difference(wrong->wanted, wrong->written)};
    }
  }

 private:
  void Fix(std::string_view property, std::string value) {
    const PropertyRow* const row = contract_.FindProperty(property);
    if (value != row->readDefault) fixed_.emplace_back(row->key, std::move(value));
  }

  std::optional<Message> AddSearches() {
    Items rest = tag_.attributes;
    const WritingRow* lister = nullptr;
    for (const WritingRow& writing : WritingRows(contract_)) {
      if (writing.attribute.empty()) {
        lister = &writing;
        continue;
      }
      Search search{writing.row, {}};
      const auto attribute = std::ranges::find(rest, writing.attribute, &Items::value_type::first);
      if (attribute == rest.end()) {
        AddAbsences(search, contract_);
      } else {
        search.wanted = AsWritten(attribute->first, attribute->second);
        AddValues(search, contract_, attribute->second);
        rest.erase(attribute);
      }
      searches_.push_back(std::move(search));
    }
    if (lister != nullptr) {
      Search search{lister->row, {}};
      for (const auto& [name, value] : rest) search.wanted += AsWritten(name, value);
      if (rest.empty()) AddAbsences(search, contract_);
      AddCandidate(search, contract_, Listed(rest, WithoutAmpersandReferences));
      AddCandidate(search, contract_,
                   Listed(rest, [](std::string_view value) { return std::string(value); }));
      searches_.push_back(std::move(search));
    } else if (!rest.empty()) {
      const bool twice =
          std::ranges::count(tag_.attributes, rest.front().first, &Items::value_type::first) > 1;
      return twice ? words::AttributeTwice(rest.front().first)
                   : words::NoSuchAttribute(rest.front().first);
    }
    return std::nullopt;
  }

  Bag Current() const {
    Bag bag;
    for (const PropertyRow& row : contract_.bag) {
      if (const auto fixed = std::ranges::find(fixed_, row.key, &MemoryBag::Entry::first);
          fixed != fixed_.end())
        bag.push_back(*fixed);
      const auto search = std::ranges::find(searches_, &row, [](const Search& s) { return s.row; });
      if (search == searches_.end() || search->at >= search->candidates.size()) continue;
      if (const Candidate& value = search->candidates[search->at])
        bag.emplace_back(row.key, *value);
    }
    return bag;
  }

  // Returns the first row that has to try its next value; nullptr when all write what they should.
  Search* Advance(const Control& control) {
    Search* first = nullptr;
    for (Search& search : searches_) {
      std::string written;
      std::string again;
      try {
        written = Written(*search.row, control);
        again = Written(*search.row, control);
      } catch (const RuntimeError&) {
        written.clear();
      }
      if (written == search.wanted || page::EqualButForNewGuids(search.wanted, written, again))
        continue;
      if (search.at == 0) search.written = std::move(written);
      ++search.at;
      if (first == nullptr || search.at >= search.candidates.size()) first = &search;
      if (search.at >= search.candidates.size()) break;
    }
    return first;
  }

  // Compares the whole text.
  TagControl Compared(const Control& control, const Bag& bag) const {
    const std::string text = control.GetRuntimeText();
    if (text == tag_.text) return {AsStored(contract_, bag), {}};
    if (text == std::string(kBlockStart) + tag_.text + std::string(kBlockEnd))
      return {std::nullopt, words::NoMarkers()};
    if (page::EqualButForNewGuids(tag_.text, text, control.GetRuntimeText()))
      return {std::nullopt, words::NewIdentifier()};
    return {std::nullopt, Difference(tag_.text, text)};
  }

  // Shows two texts from where they differ.
  static Message Difference(std::string_view page, std::string_view control) {
    constexpr std::size_t kBefore = 12;
    constexpr std::size_t kShown = 30;
    const auto different = std::ranges::mismatch(page, control).in1;
    std::size_t at = static_cast<std::size_t>(different - page.begin());
    at = std::min(at, std::min(page.size(), control.size()));
    at = at < kBefore ? 0 : at - kBefore;
    while (at > 0 && (static_cast<unsigned char>(page[at]) & 0xC0U) == 0x80) --at;
    const auto part = [at](std::string_view text) {
      std::size_t end = std::min(text.size(), at + kShown);
      while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) ++end;
      return text.substr(at, end - at);
    };
    return words::OtherText(part(page), part(control));
  }

  const ControlClass& contract_;
  const WrittenTag& tag_;
  Bag fixed_;
  std::vector<Search> searches_;
};

}  // namespace

TagControl ControlOf(const ControlClass& contract, const WrittenTag& tag) {
  return Matcher(contract, tag).Read();
}

bool Writes(const ControlClass& contract, std::string_view attribute) {
  return std::ranges::any_of(WritingRows(contract), [&](const WritingRow& row) {
    return !attribute.empty() && EqualIgnoringCase(row.attribute, attribute);
  });
}

Bag AsStored(const ControlClass& contract, Bag bag) {
  const std::shared_ptr<Control> control = page::Load(contract, bag);
  Bag stored = page::StoredBag(*control);
  const std::shared_ptr<Control> again = TryLoad(contract, stored);
  const bool same = again && page::StoredBag(*again) == stored &&
                    page::EqualButForNewGuids(again->GetRuntimeText(), control->GetRuntimeText(),
                                              control->GetRuntimeText());
  return same ? stored : bag;
}

}  // namespace kvo::adopt
