// Reads the controls of a page one by one and reports their problems.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "document/page/Encoding.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"
#include "document/page/Surroundings.h"

namespace kvo::page {

// A control as written in the page. Its views are valid until the reader moves on.
struct ReadControl {
  struct Attribute {
    std::string_view name;  // in the page's encoding
    std::string_view value;
    bool hasValue;
  };
  struct Param {
    std::string_view key;
    std::string_view value;
  };
  static constexpr std::size_t kNoParam = static_cast<std::size_t>(-1);

  std::size_t index = 0;
  std::size_t begin = 0;  // offsets of the whole control
  std::size_t end = 0;
  bool isSpan = false;
  std::size_t textBegin = 0;  // of a span's text; the end comment follows
  std::size_t textEnd = 0;
  std::size_t number = 0;  // of a span
  const ControlClass* contract = nullptr;
  std::string_view className;
  std::optional<std::string_view> id;
  std::vector<Attribute> attributes;
  std::vector<Param> params;
  std::vector<std::size_t> paramOfKey;  // by row of the class's bag: index in params, or kNoParam
  bool broken = false;

  // The saved text of a span; empty for an element.
  std::string_view OldText(std::string_view page) const {
    return page.substr(textBegin, textEnd - textBegin);
  }
  kvo::page::Subject Subject() const { return {className, id.value_or(std::string_view())}; }
};

class ControlReader {
 public:
  // Which params to return: those that the class can read, or all.
  enum class Params { known, all };

  ControlReader(std::string_view page, const PageEncoding& encoding, Params params,
                ProblemList& problems)
      : page_(page),
        encoding_(encoding),
        allParams_(params == Params::all),
        problems_(problems),
        scanner_(page) {}

  // Reads the next control, even a broken one; false at the end of the page.
  bool Next();
  const ReadControl& Control() const { return control_; }
  // The scanner, in its state at the current position.
  const Scanner& Reading() const { return scanner_; }

  // Continues reading inside the text of the span just read, which turned out not to be saved text
  // beyond its first `ownSize` bytes.
  void ReadSpanTextAsPage(std::size_t ownSize = 0);

 private:
  // Both return whether there is a control, and move the scanner past what was read.
  bool ReadObject(std::size_t at);
  bool ReadSpan(std::size_t at);

  // Reports our elements in [from, to), a part of the page where HTML sees none. `before` is the
  // scanner before that part, in content.
  void FindMisplaced(const Scanner& before, std::size_t from, std::size_t to);
  void ReportStrayEnd(std::size_t at);

  // Reads the element at `at` into control_ and moves `at` past it, or to where reading stopped.
  // False when the element is not ours or its class is unreadable.
  bool ReadElement(std::size_t& at);
  bool ReadClass(const RawAttribute& classId);
  void ReadAttributes(TagReader& tag, bool hasClassId);
  void CheckAttributeNames(Range tag);
  // Returns whether "</object>" was found.
  bool ReadParams(std::size_t& at);
  void ReadParam(std::size_t& at);
  void AddParam(Range where, std::string_view key, std::string_view value);
  // Reads what follows a span's element: the rest of its comment, the text and the end comment.
  void ReadSpanText(std::size_t at, bool elementClosed);

  std::size_t BehindComment(std::size_t at) const {
    return std::min(EndOfComment(page_, at), page_.size());
  }
  // Reads the tag's next attribute; false at the tag's end. Also returns false, and sets stopped_,
  // when the tag never ends or runs past the end of its comment.
  bool NextAttribute(TagReader& tag, RawAttribute& attribute);

  std::string_view Decoded(const RawAttribute& attribute);
  // Returns bytes of the page as UTF-8 for messages, replacing invalid ones.
  std::string Printable(std::string_view bytes) const;
  void Fail(Range where, std::string_view rule, Message message);
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - page_.data());
  }
  Range RangeOf(std::string_view part) const {
    return {OffsetOf(part), OffsetOf(part) + part.size()};
  }
  // From the attribute's name to the end of its value, without the closing quotation mark.
  Range RangeOf(const RawAttribute& attribute) const {
    return {OffsetOf(attribute.name),
            RangeOf(attribute.hasValue ? attribute.value : attribute.name).end};
  }

  std::size_t FindSpanEnd(std::size_t from, std::size_t number);
  void IndexSpanEnds(std::size_t from);

  std::string_view page_;
  const PageEncoding& encoding_;
  bool allParams_;
  ProblemList& problems_;
  Scanner scanner_;
  ReadControl control_;
  std::size_t count_ = 0;
  bool refused_ = false;

  // Before a foreign object, whose tag and following text have yet to be searched for misplaced
  // controls.
  std::optional<Scanner> foreignObject_;
  // Find the line where a place begins. Attribute values have their own finder: offsets must
  // ascend, and a tag begins before its values.
  PlaceFinder places_{page_, encoding_};
  PlaceFinder valuePlaces_{page_, encoding_};
  struct Misplaced {
    Surroundings place;
    std::size_t line;
  };
  std::map<std::size_t, Misplaced> misplacedSpans_;  // by number; end comments may follow

  // Decoded values, where they differ from the page's bytes.
  std::deque<std::string> decoded_;
  std::size_t decodedInUse_ = 0;

  // The last class found, and the raw value of its classid.
  std::string_view lastClassId_;
  const ControlClass* lastContract_ = nullptr;

  // The comment around the element being read.
  bool inComment_ = false;
  std::size_t commentEnd_ = 0;  // npos when it never ends
  bool stopped_ = false;
  bool isOurs_ = false;  // the element's class is one of this library

  // All end comments from some offset on, as sorted (number, offset). Made once a search fails or
  // reading goes back, so that no text is searched repeatedly.
  using SpanEndEntry = std::pair<std::size_t, std::size_t>;
  std::optional<std::vector<SpanEndEntry>> spanEnds_;
};

}  // namespace kvo::page
