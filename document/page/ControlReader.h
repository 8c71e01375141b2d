// Reads the controls of a page, one after the other, and says what is wrong with them.
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

// A control as it stands in the page. What it points to lives until the reader goes on.
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

  // Of a span; else empty.
  std::string_view OldText(std::string_view page) const {
    return page.substr(textBegin, textEnd - textBegin);
  }
  kvo::page::Subject Subject() const { return {className, id.value_or(std::string_view())}; }
};

class ControlReader {
 public:
  // Which params are handed over besides those that the class can read.
  enum class Params { known, all };

  ControlReader(std::string_view page, const PageEncoding& encoding, Params params,
                ProblemList& problems)
      : page_(page),
        encoding_(encoding),
        allParams_(params == Params::all),
        problems_(problems),
        scanner_(page) {}

  // The next control, broken ones included; false at the end of the page.
  bool Next();
  const ReadControl& Control() const { return control_; }
  // How far the page was read, and how it is read from there on.
  const Scanner& Reading() const { return scanner_; }

  // Goes back into the text of the span just read, which turned out not to be one, but for so many
  // bytes at its beginning.
  void ReadSpanTextAsPage(std::size_t ownSize = 0);

 private:
  // Both answer whether there is a control; either way the scanner goes on behind what was read.
  bool ReadObject(std::size_t at);
  bool ReadSpan(std::size_t at);

  // Complains about elements of ours in [from, to), a stretch of the page in which HTML sees none.
  // `before` is in front of it, in content.
  void FindMisplaced(const Scanner& before, std::size_t from, std::size_t to);
  void ReportStrayEnd(std::size_t at);

  // Reads the element at `at` into control_ and moves `at` behind it, or to where reading stopped.
  // False when the element is none of ours, or its class cannot be told.
  bool ReadElement(std::size_t& at);
  bool ReadClass(const RawAttribute& classId);
  void ReadAttributes(TagReader& tag, bool hasClassId);
  void CheckAttributeNames(std::size_t at);
  // Answers whether "</object>" was found.
  bool ReadParams(std::size_t& at);
  void ReadParam(std::size_t& at);
  void AddParam(std::size_t at, std::string_view key, std::string_view value);
  // Behind the element of a span: the rest of its comment, the text and the end comment.
  void ReadSpanText(std::size_t at, bool elementClosed);

  std::size_t BehindComment(std::size_t at) const {
    return std::min(EndOfComment(page_, at), page_.size());
  }
  // The tag's next attribute. False at its end, and also when the tag does not end or goes past
  // the end of the comment that it stands in: then stopped_ is set.
  bool NextAttribute(TagReader& tag, RawAttribute& attribute);

  std::string_view Decoded(const RawAttribute& attribute);
  // For messages: bytes of the page, whatever they are, as UTF-8.
  std::string Printable(std::string_view bytes) const;
  void Fail(std::size_t at, std::string_view rule, Message message);
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - page_.data());
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

  // In front of an object of others, whose tag and what follows are still to be searched for
  // misplaced controls.
  std::optional<Scanner> foreignObject_;
  // For the lines in which places begin. Values have one of their own, since each asks for the
  // beginnings in order, and a tag begins in front of its values.
  PlaceFinder places_{page_, encoding_};
  PlaceFinder valuePlaces_{page_, encoding_};
  struct Misplaced {
    Surroundings place;
    std::size_t line;
  };
  std::map<std::size_t, Misplaced> misplacedSpans_;  // by number; their end comments may follow

  // Values that are not in the page letter by letter.
  std::deque<std::string> decoded_;
  std::size_t decodedInUse_ = 0;

  // The class found last, by the raw value of its classid.
  std::string_view lastClassId_;
  const ControlClass* lastContract_ = nullptr;

  // The comment that the element being read stands in.
  bool inComment_ = false;
  std::size_t commentEnd_ = 0;  // npos when it never ends
  bool stopped_ = false;
  bool isOurs_ = false;  // the element's class is known to be of this library

  // All end comments from some place on: number and offset, sorted. Made when a search did not
  // end where reading goes on, so that no text is searched again and again.
  using SpanEndEntry = std::pair<std::size_t, std::size_t>;
  std::optional<std::vector<SpanEndEntry>> spanEnds_;
};

}  // namespace kvo::page
