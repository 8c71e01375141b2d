#include "document/page/Page.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "common/values/RuntimeError.h"
#include "document/page/ControlReader.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/NewGuids.h"
#include "document/page/OurElements.h"
#include "document/page/ProblemList.h"
#include "document/page/Settle.h"
#include "document/page/Utf8.h"

namespace kvo::page {
namespace {

// The bag that a control loads from: the params found in the page.
class FoundBag final : public PropertyBag {
 public:
  explicit FoundBag(const ReadControl& control) : control_(control) {}

  // Whether the class would read this value for a row of its bag.
  bool Reads(std::size_t row, std::string_view value) const {
    const std::size_t param = control_.paramOfKey[row];
    return value == (param == ReadControl::kNoParam ? control_.contract->bag[row].readDefault
                                                    : control_.params[param].value);
  }
  // Whether it would read the row's default.
  bool ReadsDefault(std::size_t row) const {
    return control_.paramOfKey[row] == ReadControl::kNoParam ||
           Reads(row, control_.contract->bag[row].readDefault);
  }

 protected:
  std::optional<std::string_view> Find(std::string_view key) override {
    const auto param =
        std::find_if(control_.params.begin(), control_.params.end(),
                     [&](const ReadControl::Param& each) { return each.key == key; });
    if (param == control_.params.end()) return std::nullopt;
    return param->value;
  }
  void Store(std::string_view, std::string_view) override {}

 private:
  const ReadControl& control_;
};

// The bag that a control is stored into: writes params of an element, and compares them with those
// it was loaded from.
class WrittenBag final : public PropertyBag {
 public:
  WrittenBag(const ReadControl& control, const FoundBag& found, ElementWriter& element)
      : rows_(control.contract->bag), found_(found), element_(element) {}

  // Whether a control loaded from what was stored would hold the values that this one was loaded
  // from.
  bool ReadsAsFound() {
    SkipTo(rows_.size());
    return same_;
  }

 protected:
  std::optional<std::string_view> Find(std::string_view) override { return std::nullopt; }
  void Store(std::string_view key, std::string_view value) override {
    std::size_t row = next_;
    while (row < rows_.size() && rows_[row].key != key) ++row;
    SkipTo(row);
    if (row == rows_.size()) return element_.Param(key, value);
    element_.Param(row, value);
    if (!found_.Reads(row, value)) same_ = false;
    next_ = row + 1;
  }

 private:
  // Notes that the rows before this one were not stored.
  void SkipTo(std::size_t row) {
    for (; next_ < row; ++next_)
      if (!found_.ReadsDefault(next_)) same_ = false;
  }

  std::span<const PropertyRow> rows_;
  const FoundBag& found_;
  ElementWriter& element_;
  std::size_t next_ = 0;
  bool same_ = true;
};

// Copies a page into a sink, replacing some of its parts.
class PageCopy {
 public:
  PageCopy(std::string_view page, Sink& sink) : page_(page), sink_(sink) {}

  // Replace parts in page order.
  void Replace(std::size_t begin, std::size_t end, std::initializer_list<std::string_view> pieces) {
    std::size_t size = 0;
    for (const std::string_view piece : pieces) size += piece.size();
    if (size == end - begin && Consists(page_.data() + begin, pieces)) return;
    Append(page_.substr(copied_, begin - copied_));
    if (size > room_ / 2) {
      for (const std::string_view piece : pieces) Append(piece);
    } else {
      if (size > room_ - used_) Flush();
      for (const std::string_view piece : pieces) Copy(piece);
    }
    copied_ = end;
  }
  void Finish() {
    Append(page_.substr(copied_));
    copied_ = page_.size();
    Flush();
  }
  // The start of the copy, enough to detect its encoding. Valid after Finish().
  std::string_view Head() const { return head_; }

 private:
  // A small page needs only its own size plus what its controls add.
  static constexpr std::size_t kMostRoom = 1 << 16;
  static constexpr std::size_t kRoomBesidePage = 1 << 11;

  static bool Consists(const char* part, std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) {
      if (std::memcmp(part, piece.data(), piece.size()) != 0) return false;
      part += piece.size();
    }
    return true;
  }

  void Append(std::string_view piece) {
    const bool large = piece.size() > room_ / 2;
    if (large || piece.size() > room_ - used_) Flush();
    if (large)
      Write(piece);
    else
      Copy(piece);
  }
  // There must be room.
  void Copy(std::string_view piece) {
    std::memcpy(buffer_.get() + used_, piece.data(), piece.size());
    used_ += piece.size();
  }
  void Flush() {
    if (used_ != 0) Write({buffer_.get(), used_});
    used_ = 0;
  }
  void Write(std::string_view piece) {
    if (head_.size() < PageEncoding::kDeclarationReach)
      head_ += piece.substr(0, PageEncoding::kDeclarationReach - head_.size());
    sink_.append(piece);
  }

  std::string_view page_;
  Sink& sink_;
  std::size_t copied_ = 0;
  std::string head_;
  std::size_t room_ = std::min(kMostRoom, page_.size() + kRoomBesidePage);
  std::unique_ptr<char[]> buffer_{new char[room_]};
  std::size_t used_ = 0;
};

struct WriteOptions : SaveOptions {
  bool checkIds = false;
  // Goes on after errors, and notes every control.
  std::vector<PublishedControl>* published = nullptr;
  // Receives the controls. Lacks some when the page has errors.
  LoadedControls* loaded = nullptr;
};

std::string Utf8Of(std::string_view bytes, const PageEncoding& encoding) {
  std::string text;
  encoding.Decode(bytes, text);
  return text;
}

FoundControl Describe(const ReadControl& control, const PageEncoding& encoding, Place place) {
  FoundControl found;
  found.index = control.index;
  found.place = place;
  found.begin = control.begin;
  found.end = control.end;
  found.contract = control.contract;
  found.className = control.className;
  found.id = control.id.value_or(std::string_view());
  for (const ReadControl::Attribute& attribute : control.attributes)
    found.attributes.push_back(
        {Utf8Of(attribute.name, encoding),
         attribute.hasValue ? std::optional(std::string(attribute.value)) : std::nullopt});
  for (const ReadControl::Param& param : control.params)
    found.bag.emplace_back(param.key, param.value);
  if (control.isSpan) {
    found.form = Form::span;
    found.textBegin = control.textBegin;
    found.textEnd = control.textEnd;
  }
  found.broken = control.broken;
  return found;
}

// Writes a page with each control in its new form.
class Writer {
 public:
  enum class Result { savedSpans, runtimeText };

  Writer(const Page& page, Sink& sink, Result result, const WriteOptions& options)
      : page_(page.Bytes()),
        encoding_(page.Encoding()),
        reader_(page_, encoding_, ControlReader::Params::known, problems_),
        copy_(page_, sink),
        result_(result),
        options_(options) {}

  Problems Write() {
    if (encoding_.kind() == PageEncoding::Kind::utf16) {
      problems_.Add(0, rule::encoding, {}, messages::Utf16());
      return problems_.Take(page_, encoding_);
    }
    while (reader_.Next()) {
      if (options_.checkIds) CheckId();
      const bool edited = options_.edit != nullptr && options_.edit->index == Found().index;
      if (options_.published != nullptr && !NoteControl()) continue;
      if (Found().broken || (options_.editedOnly && !edited)) {
        LeaveOut();
        continue;
      }
      const std::size_t errors = problems_.Errors();
      try {
        WriteControl(edited);
      } catch (const RuntimeError& error) {
        if (changing_) throw;
        Fail(rule::controlFails, messages::ControlFails(error));
      }
      if (problems_.Errors() != errors) LeaveOut();
    }
    if (WritesOn()) {
      copy_.Finish();
      if (result_ == Result::savedSpans) CheckEncoding();
    }
    WarnOfUndeclaredEncoding();
    return problems_.Take(page_, encoding_);
  }

 private:
  const ReadControl& Found() const { return reader_.Control(); }

  void Fail(std::string_view rule, Message message, Severity severity = Severity::error) {
    problems_.Add({Found().begin, Found().end}, rule, Found().Subject(), std::move(message),
                  severity);
  }

  // Controls' output may push the page's declaration out of reach, contain a declaration, or remove
  // the bytes that showed the page is not UTF-8.
  void CheckEncoding() {
    PageEncoding saved;
    if (const auto declared = PageEncoding::Declared(copy_.Head()))
      saved = *declared;
    else if (!encoding_.IsDeclared() || encoding_.IsUtf8())
      saved = PageEncoding::Undeclared(ReadsAsUtf8WhenSaved());
    if (!saved.ReadsAs(encoding_))
      problems_.Add(0, rule::encodingChanges, {},
                    messages::EncodingChanges(encoding_.Name(), saved.Name()));
  }
  bool ReadsAsUtf8WhenSaved() {
    if (encoding_.IsUtf8()) return !encoding_.IsDeclared() || FindInvalidUtf8(page_) == npos;
    NoteWritten(page_.substr(noted_));
    return !wroteInvalidUtf8_;
  }
  // Notes what is written of a page that is not UTF-8 only because of its bytes.
  void NoteWritten(std::string_view bytes) {
    wroteInvalidUtf8_ = wroteInvalidUtf8_ || FindInvalidUtf8(bytes) != npos;
  }

  void WarnOfUndeclaredEncoding() {
    if (encoding_.IsDeclared()) return;
    if (const auto declaration = PageEncoding::FindVoidDeclaration(page_))
      problems_.Add(declaration->offset, rule::undeclaredEncoding, {},
                    messages::VoidDeclaration(*declaration, encoding_.Name()), Severity::warning);
    else if (!encoding_.IsUtf8())
      problems_.Add(FindInvalidUtf8(page_), rule::undeclaredEncoding, {},
                    messages::UndeclaredEncoding(encoding_.Name()), Severity::warning);
  }

  void CheckId() {
    const std::string_view id = Found().Subject().id;
    if (!id.empty() && !ids_.emplace(id).second)
      Fail(rule::duplicateId, messages::DuplicateId(id), Severity::warning);
  }

  void WriteControl(bool edited) {
    const std::shared_ptr<Control> control = Found().contract->create();
    FoundBag found(Found());
    control->ReadProperties(found);
    std::string_view text;
    if (!ChooseText(*control, text)) return;
    if (options_.loaded != nullptr) NoteLoaded(control);
    if (Found().isSpan && !keepsOldText_ && !MayReplaceText(text)) return;
    if (result_ == Result::runtimeText) return Replace({text});
    if (edited) {
      changing_ = true;
      options_.edit->change(*control);
      changing_ = false;
      if (!ChooseText(*control, text)) return;
    }
    if (WriteElement(*control, found, text, edited)) WriteSpan(text);
  }

  void NoteLoaded(const std::shared_ptr<Control>& control) {
    const bool isUtf8 = encoding_.IsUtf8() || AsciiPrefix(text_) == text_.size();
    options_.loaded->found.push_back(Describe(Found(), encoding_, places_.At(Found().begin)));
    options_.loaded->loaded.push_back({control, isUtf8 ? text_ : control->GetRuntimeText()});
  }

  // Chooses the text to write: the span's own if the control produced it earlier, else the
  // control's new one, which is also in text_. False when the page cannot hold it.
  bool ChooseText(const Control& control, std::string_view& text) {
    if (!RuntimeTextOf(control, text_)) return false;
    const std::string_view old = Found().OldText(page_);
    keepsOldText_ = Found().isSpan && (old == text_ || IsEarlierTextOf(control, old));
    text = keepsOldText_ ? old : text_;
    return true;
  }

  // Whether `text` may replace the span's text, which differs from what its control returns.
  bool MayReplaceText(std::string_view text) {
    if (RefuseLoss(text)) return false;
    if (result_ == Result::runtimeText) {
      Fail(rule::editedByHand, messages::EditedByHandPublished(), Severity::warning);
    } else if (!options_.force) {
      Fail(rule::editedByHand, messages::EditedByHand());
      return false;
    }
    return true;
  }

  // Reports another control inside the span's text that would be lost because `text` does not
  // contain it. Returns whether there is one.
  bool RefuseLoss(std::string_view text) {
    const auto lost = FindLost(text);
    if (!lost) return false;
    const LoneElement alone =
        ReadAlone(page_.substr(lost->begin, lost->end - lost->begin), encoding_);
    const std::string end = EndComment(Found().number);
    const std::size_t line = lostPlaces_.At(lost->begin).line;
    const Subject other = {alone.className, alone.id};
    if (lost->begin == lost->end || SpanNumberBefore(page_, lost->begin) != 0) {
      Fail(rule::missingEnd, messages::ControlInsideSpan(other, line, end));
      reader_.ReadSpanTextAsPage(Found().OldText(page_).starts_with(text) ? text.size() : 0);
    } else {
      Fail(rule::nestedControl, messages::NestedControl(other, line, end));
    }
    return true;
  }

  // Finds the first element that occurs more often in the span's text than in `text`. Returns an
  // empty element for such a start comment without an element.
  std::optional<OurElements::Element> FindLost(std::string_view text) const {
    std::unordered_map<std::string_view, std::size_t> elements;
    OurElements mine(text, 0, text.size(), encoding_);
    while (const auto element = mine.Next()) ++elements[Bytes(text, *element)];
    OurElements all(page_, Found().textBegin, Found().textEnd, encoding_);
    while (const auto element = all.Next()) {
      const auto same = elements.find(Bytes(page_, *element));
      if (same == elements.end() || same->second == 0) return element;
      --same->second;
    }
    std::size_t comment = page_.find(kSpanStart, Found().textBegin);
    for (std::size_t at = 0; comment < Found().textEnd; ++at) {
      at = text.find(kSpanStart, at);
      if (at == npos) return OurElements::Element{comment, comment};
      comment = page_.find(kSpanStart, comment + 1);
    }
    return std::nullopt;
  }
  // Returns the bytes that identify an element.
  static std::string_view Bytes(std::string_view page, OurElements::Element element) {
    const std::string_view whole = page.substr(element.begin, element.end - element.begin);
    const std::size_t close = whole.find("</");
    return whole.substr(0, close != npos ? close : whole.find('>'));
  }

  // Writes the control's element into element_; may change `text`. False after reporting a problem.
  bool WriteElement(const Control& control, const FoundBag& found, std::string_view& text,
                    bool edited) {
    BeginElement();
    WrittenBag written(Found(), found, element_);
    control.WriteProperties(written);
    if (!EndElement()) return false;
    return (!edited && written.ReadsAsFound()) || WriteSettled(control, text, edited);
  }

  bool WriteElement(std::span<const MemoryBag::Entry> bag) {
    BeginElement();
    for (const auto& [key, value] : bag) element_.Param(key, value);
    return EndElement();
  }

  bool EndElement() {
    element_.End();
    std::optional<Unwritable> failure = element_.Failure();
    if (!failure && MakesControlCharacter(element_.Text()))
      failure = ControlCharacterIn(element_.Text());
    if (!failure) return true;
    Fail(rule::notInEncoding, messages::ValueNotInEncoding(failure->text, encoding_.Name()));
    return false;
  }

  // If storing changes the text, keeps the bag as it is in the page; after an edit, when that is
  // impossible, changes the text to match what was stored.
  bool WriteSettled(const Control& control, std::string_view& text, bool edited) {
    bool otherText = false;
    const Settled settled =
        Settle(control, text_,
               {[this](const Control& each, std::string& its) { return RuntimeTextOf(each, its); },
                [&] {
                  otherText = true;
                  Fail(rule::unstableBag, messages::UnstableBag(), Severity::warning);
                },
                edited});
    if (otherText && edited) text = text_;
    switch (settled.outcome) {
      case Settled::Outcome::same:
        return true;
      case Settled::Outcome::moved:
        return WriteElement(settled.bag);
      case Settled::Outcome::otherText:
        return WriteElement(EntriesInPage());
      case Settled::Outcome::refused:
        break;
    }
    return false;
  }

  std::vector<MemoryBag::Entry> EntriesInPage() const {
    std::vector<MemoryBag::Entry> entries;
    for (const ReadControl::Param& param : Found().params)
      entries.emplace_back(param.key, param.value);
    return entries;
  }

  void WriteSpan(std::string_view text) {
    if (const std::size_t number = SpanNumber(text); number != spanNumber_) {
      spanNumber_ = number;
      spanBegin_ = SpanBegin(number);
      spanEnd_ = EndComment(number);
    }
    Replace({spanBegin_, element_.Text(), kCommentEnd, text, spanEnd_});
  }

  void BeginElement() {
    element_.Begin(*Found().contract, Found().id);
    for (const ReadControl::Attribute& attribute : Found().attributes)
      element_.Attribute(attribute.name,
                         attribute.hasValue ? std::optional(attribute.value) : std::nullopt);
  }

  // After an error nothing is worth writing, unless all that can be published is wanted.
  bool WritesOn() const { return options_.published != nullptr || !problems_.HasErrors(); }

  // False for a control inside the text of one that was left out.
  bool NoteControl() {
    std::vector<PublishedControl>& all = *options_.published;
    if (!all.empty() && Found().begin < all.back().sourceEnd) return false;
    const Subject subject = Found().Subject();
    PublishedControl& noted = all.emplace_back();
    noted.index = Found().index;
    noted.className = subject.control;
    noted.id = subject.id;
    noted.sourceBegin = Found().begin;
    noted.sourceEnd = Found().end;
    return true;
  }
  void LeaveOut() {
    if (options_.published == nullptr) return;
    options_.published->back().failed = true;
    Replace({});
  }

  void Replace(std::initializer_list<std::string_view> pieces) {
    if (!WritesOn()) return;
    if (options_.published != nullptr) {
      PublishedControl& noted = options_.published->back();
      noted.begin = Found().begin + shift_;
      noted.end = noted.begin;
      for (const std::string_view piece : pieces) noted.end += piece.size();
      shift_ += (noted.end - noted.begin) - (Found().end - Found().begin);
    }
    copy_.Replace(Found().begin, Found().end, pieces);
    if (encoding_.IsDeclared() || encoding_.IsUtf8()) return;
    // Pieces can be checked one by one: no character spans two of them.
    NoteWritten(page_.substr(noted_, Found().begin - noted_));
    for (const std::string_view piece : pieces) NoteWritten(piece);
    noted_ = Found().end;
  }

  // Returns the control's runtime text in the page's encoding; false when the page cannot hold it.
  bool RuntimeTextOf(const Control& control, std::string& text) {
    text.clear();
    control.AppendRuntimeText(text);
    if (AsciiPrefix(text) == text.size()) return true;
    if (encoding_.IsUtf8() && FindInvalidUtf8(text) == std::string_view::npos) return true;
    std::string encoded;
    if (const auto unwritable = AppendText(text, encoding_, encoded)) {
      FailText(control, *unwritable);
      return false;
    }
    if (MakesControlCharacter(encoded)) {
      FailText(control, ControlCharacterIn(encoded));
      return false;
    }
    text.swap(encoded);
    return true;
  }

  // In ISO-8859-1 the bytes 0x80 to 0x9F are control characters, which browsers show as letters. A
  // control that has some keeps them; otherwise none are written.
  bool MakesControlCharacter(std::string_view written) const {
    return encoding_.IsReadAsWindows1252() && FindControlCharacter(written) != npos &&
           FindControlCharacter(page_.substr(Found().begin, Found().end - Found().begin)) == npos;
  }
  static std::size_t FindControlCharacter(std::string_view bytes) {
    const auto* const at = std::find_if(bytes.begin(), bytes.end(), [](unsigned char byte) {
      return byte >= 0x80 && byte <= 0x9F;
    });
    return at == bytes.end() ? npos : static_cast<std::size_t>(at - bytes.begin());
  }
  static Unwritable ControlCharacterIn(std::string_view bytes) {
    return NotHeld(static_cast<unsigned char>(bytes[FindControlCharacter(bytes)]));
  }

  void FailText(const Control& control, const Unwritable& unwritable) {
    messages::TextWayOut wayOut;
    wayOut.windows1252 = encoding_.IsReadAsWindows1252() && unwritable.character != 0 &&
                         PageEncoding::IsInWindows1252(unwritable.character);
    const std::string reference =
        "&#" + std::to_string(static_cast<std::uint32_t>(unwritable.character)) + ";";
    wayOut.reference = reference;
    if (unwritable.character > 0x9F) wayOut.content = HtmlWith(control, unwritable.character);
    Fail(rule::notInEncoding,
         messages::TextNotInEncoding(unwritable.text, encoding_.Name(), wayOut));
  }

  // Returns the name of an HTML property that contains the character; empty when there is none.
  static std::string_view HtmlWith(const Control& control, char32_t character) {
    std::string wanted;
    AppendUtf8(wanted, character);
    const ControlClass& contract = control.Class();
    if (contract.name == "DTCScript") return {};  // contains statements
    for (const std::string_view name : {"HTMLContent", "OnTrue", "OnFalse"}) {
      const PropertyRow* const property = contract.FindProperty(name);
      if (property != nullptr && ToText(property->get(control)).find(wanted) != npos) return name;
    }
    return {};
  }

  // Whether the control returned this text earlier, apart from identifiers that are new at each
  // call.
  bool IsEarlierTextOf(const Control& control, std::string_view earlier) {
    if (earlier.size() != text_.size()) return false;
    return RuntimeTextOf(control, again_) && EqualButForNewGuids(earlier, text_, again_);
  }

  std::string_view page_;
  const PageEncoding& encoding_;
  ProblemList problems_;
  ControlReader reader_;
  PageCopy copy_;
  Result result_;
  WriteOptions options_;
  std::unordered_set<std::string> ids_;
  PlaceFinder lostPlaces_{page_, encoding_};
  PlaceFinder places_{page_, encoding_};  // of controls

  // Reused for each control to save allocations.
  std::string text_;  // the control's runtime text
  bool keepsOldText_ = false;
  std::size_t noted_ = 0;  // how far NoteWritten() has covered the page
  bool wroteInvalidUtf8_ = false;
  std::size_t shift_ = 0;  // from a place in the page to the written one; wraps around
  bool changing_ = false;  // the caller's change is running; pass its failures on
  std::string again_;      // the same from a second call
  ElementWriter element_{encoding_};
  std::size_t spanNumber_ = 0;
  std::string spanBegin_;
  std::string spanEnd_;
};

LoadedControls::Loaded LoadFound(const FoundControl& found) {
  LoadedControls::Loaded loaded;
  if (found.contract == nullptr || found.broken) return loaded;
  try {
    loaded.control = Load(*found.contract, found.bag);
    loaded.runtimeText = loaded.control->GetRuntimeText();
  } catch (const RuntimeError&) {  // Check() reports it
  }
  return loaded;
}

LoadedControls LoadAll(const Page& page) {
  LoadedControls all;
  all.found = Inspect(page).controls;
  for (const FoundControl& found : all.found) all.loaded.push_back(LoadFound(found));
  return all;
}

}  // namespace

Page::Page(std::string bytes) : bytes_(std::move(bytes)), encoding_(PageEncoding::Of(bytes_)) {}

Inspection Inspect(const Page& page) {
  const std::string_view bytes = page.Bytes();
  const PageEncoding& encoding = page.Encoding();
  Inspection inspection;
  ProblemList problems;
  if (encoding.kind() == PageEncoding::Kind::utf16) {
    problems.Add(0, rule::encoding, {}, messages::Utf16());
  } else {
    ControlReader reader(bytes, encoding, ControlReader::Params::all, problems);
    PlaceFinder places(bytes, encoding);
    while (reader.Next()) {
      inspection.controls.push_back(
          Describe(reader.Control(), encoding, places.At(reader.Control().begin)));
    }
  }
  inspection.problems = problems.Take(bytes, encoding);
  return inspection;
}

std::shared_ptr<Control> Load(const ControlClass& contract, std::vector<MemoryBag::Entry> bag) {
  std::shared_ptr<Control> control = contract.create();
  MemoryBag entries(std::move(bag));
  control->ReadProperties(entries);
  return control;
}

std::vector<MemoryBag::Entry> StoredBag(const Control& control) {
  MemoryBag bag;
  control.WriteProperties(bag);
  return bag.Entries();
}

Problems Save(const Page& page, Sink& sink, const SaveOptions& options) {
  return Writer(page, sink, Writer::Result::savedSpans, {options}).Write();
}

Problems Publish(const Page& page, Sink& sink) {
  return Writer(page, sink, Writer::Result::runtimeText, {}).Write();
}

PublishedPage PublishWithPlaces(const Page& page) {
  PublishedPage published;
  StringSink sink;
  WriteOptions options;
  options.published = &published.controls;
  published.problems = Writer(page, sink, Writer::Result::runtimeText, options).Write();
  published.bytes = sink.Take();
  return published;
}

Problems Check(const Page& page, LoadedControls* controls) {
  NullSink sink;
  WriteOptions options;
  options.checkIds = true;
  options.loaded = controls;
  Problems problems = Writer(page, sink, Writer::Result::savedSpans, options).Write();
  if (controls != nullptr && HasErrors(problems)) *controls = LoadAll(page);
  return problems;
}

std::string ElementText(const ControlClass& contract, std::optional<std::string_view> id,
                        const std::vector<MemoryBag::Entry>& bag,
                        const std::vector<Attribute>& attributes, const PageEncoding& encoding) {
  ElementWriter element(encoding);
  element.Begin(contract, id);
  for (const auto& [name, value] : attributes) {
    std::string encoded;
    if (const auto unwritable = AppendText(name, encoding, encoded))
      throw RuntimeError(ErrorNumber::invalidCall, unwritable->text);
    element.Attribute(encoded, value);
  }
  for (const auto& [key, value] : bag) element.Param(key, value);
  element.End();
  if (element.Failure()) throw RuntimeError(ErrorNumber::invalidCall, element.Failure()->text);
  return element.Text();
}

}  // namespace kvo::page
