// The wording of every problem of a page: what is wrong, and what to do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "common/values/RuntimeError.h"
#include "document/page/Problem.h"
#include "document/page/ProblemList.h"
#include "document/page/Surroundings.h"

namespace kvo::page::messages {

// A text from a page in quotes. It may be of any length; a message shows its beginning.
std::string Quoted(std::string_view text);
// "Meinten Sie ...?" behind the message, unless the suggestion is empty.
Message WithSuggestion(Message message, std::string_view suggestion);

// `suggestion` may be empty.
Message UnknownClass(std::string_view className, std::string_view suggestion);
Message UnknownKey(std::string_view key, std::string_view suggestion);
Message DuplicateParam(std::string_view key);
Message ParamWithoutName();
Message ParamWithoutValue(std::string_view key);
Message ParamAttribute(std::string_view attribute);
Message DuplicateAttribute(std::string_view attribute);
Message UnwritableAttribute(std::string_view attribute);
Message UnexpectedContent(std::string_view content);
Message UnclosedControl();
Message CutOffTag();

Message SpanWithoutNumber();
Message SpanWithoutControl();
Message SpanCommentGoesOn();
Message SpanCommentEndsEarly();
Message SpanCommentNeverEnds();
Message MissingEnd(std::string_view endComment);
// Another control, which begins in `line`, stands in the text of a saved one.
Message ControlInsideSpan(Subject other, std::size_t line, std::string_view endComment);
Message NestedControl(Subject other, std::size_t line, std::string_view endComment);
// `line` is that in which the place begins.
Message MisplacedControl(const Surroundings& place, std::size_t line, std::string_view runtimeText,
                         Pasting pasting);
Message StrayEnd();
// Its start comment is in a place where it does not count.
Message StrayEndOfMisplaced(const Surroundings& place, std::size_t line);

Message Utf16();
Message OtherEncoding(std::string_view encoding);
Message EncodingChanges(std::string_view now, std::string_view saved);
Message InvalidBytes(unsigned char byte, std::string_view encoding);
Message ValueNotInEncoding(std::string_view character, std::string_view encoding);
// With whichever way out there is: windows-1252 instead, or `reference` in the property `content`,
// which are empty where it would not help.
struct TextWayOut {
  bool windows1252 = false;
  std::string_view content;
  std::string_view reference;
};
Message TextNotInEncoding(std::string_view character, std::string_view encoding,
                          const TextWayOut& wayOut);
// The page is read in `encoding` because it declares none.
Message UndeclaredEncoding(std::string_view encoding);
// The same in spite of a declaration.
Message VoidDeclaration(const PageEncoding::VoidDeclaration& declaration,
                        std::string_view encoding);

Message ControlFails(const RuntimeError& error);
Message EditedByHand();
Message EditedByHandPublished();
Message UnstableBag();
Message DuplicateId(std::string_view id);

}  // namespace kvo::page::messages
