// Pages designed to be slow to read: a reader that searches again for each end, or keeps copying
// the rest, takes quadratic time.
#pragma once

#include <string>

namespace kvo::page {

struct HostilePage {
  const char* name;
  std::string (*of)(int parts);  // about 5 to 100 bytes per part
};

namespace hostile {

inline std::string Times(int count, const std::string& part) {
  std::string text;
  text.reserve(part.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

inline const std::string kPrint = "<object classid=progid:KVOPDesignObjects.DTCPrint>";
inline const std::string kStart = "<!--KVO CONTROL STARTSPAN ";

inline std::string PrintOf(const std::string& value) {
  return kPrint + "<param name=value value=\"" + value + "\"></object>";
}

inline const HostilePage kHostilePages[] = {
    {"UnclosedObjects", [](int n) { return Times(n, "<object>"); }},
    {"UnclosedControls", [](int n) { return Times(n, kPrint); }},
    {"UnclosedControlsWithText", [](int n) { return Times(n, kPrint + "text"); }},
    {"OneUnclosedControlAndMuchElse", [](int n) { return kPrint + Times(n, "<b>x</b> "); }},
    {"Angles", [](int n) { return Times(10 * n, "<"); }},
    {"ClosingAngles", [](int n) { return "<!--" + Times(10 * n, ">"); }},
    {"EndTagStarts", [](int n) { return Times(n, "</"); }},
    {"CommentsThatNeverEnd", [](int n) { return Times(n, "<!-- "); }},
    {"CommentsThatNeverEndInControls", [](int n) { return Times(n, kPrint + "<!-- "); }},
    {"DashesInAComment", [](int n) { return "<!--" + Times(10 * n, "-") + "!"; }},
    {"CDataThatNeverEnds", [](int n) { return Times(n, "<![CDATA[ a>"); }},
    {"CDataBrackets", [](int n) { return "<![CDATA[" + Times(10 * n, "]"); }},
    {"CDataSections", [](int n) { return "<svg>" + Times(n, "<![CDATA[ a>]]>"); }},
    {"CDataStartsInSvg", [](int n) { return "<svg>" + Times(n, "<![CDATA[ a>"); }},
    {"OpenSvgs", [](int n) { return Times(n, "<svg>"); }},
    {"MisplacedControls", [](int n) { return "<!--" + Times(n, PrintOf("x")); }},
    {"MisplacedControlsInComments",
     [](int n) { return Times(n, "<!--" + PrintOf("x") + "-->\n"); }},
    {"MisplacedControlsInValues",
     [](int n) { return "<a" + Times(n, " b='" + PrintOf("x") + "'") + ">"; }},
    {"MisplacedControlsInForeignObjects",
     [](int n) { return Times(n, "<object a='" + PrintOf("x") + "'>"); }},
    {"MisplacedTagsWithoutEnd",
     [](int n) {
       return "<!--" + Times(n, "<object classid=progid:KVOPDesignObjects.DTCPrint </object ");
     }},
    {"MisplacedObjectsOfOthers", [](int n) { return "<!--" + Times(n, "<object "); }},
    {"MisplacedClassIds", [](int n) { return "<!--<object" + Times(n, " classid=\" classid='"); }},
    {"MisplacedBetweenAndInValues",
     [](int n) {
       return Times(n, "<a b='<object classid=progid:KVOPDesignObjects.X <object classid='");
     }},
    {"MisplacedSpans",
     [](int n) {
       return Times(n,
                    "<!-- " + kStart + "1 " + kPrint + "</object>-->x<!--KVO CONTROL ENDSPAN 1-->");
     }},
    {"QuotesThatNeverClose", [](int n) { return Times(n, "<a title=\"<a title='"); }},
    {"OneQuoteThatNeverCloses", [](int n) { return "<a title=\"" + Times(n, "<a>"); }},
    {"QuotesInNames", [](int n) { return Times(n, "<a \">"); }},
    {"OneTagOfManyAttributes", [](int n) { return "<a" + Times(n, " b=c") + ">"; }},
    {"OneTagOfManyOddAttributes", [](int n) { return "<a" + Times(n, " =\"/'=") + ">"; }},
    {"ScriptsThatNeverEnd", [](int n) { return Times(n, "<script><!--<script>"); }},
    {"TitlesThatNeverEnd", [](int n) { return Times(n, "<title></titl"); }},
    {"StrayEnds", [](int n) { return Times(n, "<!--KVO CONTROL ENDSPAN 1-->"); }},
    {"SpansWithoutEnd", [](int n) { return Times(n, kStart + "1 " + kPrint + "</object>-->"); }},
    {"SpansWithOtherEnd",
     [](int n) {
       return Times(n, kStart + "1 " + kPrint + "</object>--><!--KVO CONTROL ENDSPAN 2-->");
     }},
    {"SpansWithOneEndAtTheEnd",
     [](int n) {
       return Times(n, kStart + "1 " + kPrint + "</object>-->x") + "<!--KVO CONTROL ENDSPAN 1-->";
     }},
    {"SpansOfDifferentNumbersWithoutEnd",
     [](int n) {
       std::string page;
       for (int i = 1; i <= n; ++i)
         page += kStart + std::to_string(i) + " " + kPrint + "</object>-->";
       return page;
     }},
    {"SpansOfDifferentNumbersWithEndsAtTheEnd",
     [](int n) {
       std::string page;
       for (int i = 1; i <= n; ++i)
         page += kStart + std::to_string(i) + " " + kPrint + "</object>-->";
       for (int i = 1; i <= n; ++i) page += "<!--KVO CONTROL ENDSPAN " + std::to_string(i) + "-->";
       return page;
     }},
    {"SpansWithoutControl", [](int n) { return Times(n, kStart + "1 -->"); }},
    {"SpansWhoseCommentNeverEnds", [](int n) { return Times(n, kStart + "1 " + kPrint); }},
    {"SpansThatEndInsideAQuote",
     [](int n) {
       return Times(n, kStart + "1 <object classid=progid:KVOPDesignObjects.DTCPrint x=\"-->\"");
     }},
    {"ForeignSpansThatEndInsideAQuote",
     [](int n) { return Times(n, kStart + "1 <object x=\"-->\""); }},
    {"BrokenSpansWithOneEndAtTheEnd",
     [](int n) {
       return Times(n, kStart + "1 " + kPrint + "<param></object>-->") +
              "<!--KVO CONTROL ENDSPAN 1-->";
     }},
    {"DuplicateParams",
     [](int n) { return kPrint + Times(n, "<param name=value value=x>") + "</object>"; }},
    {"UnknownParams",
     [](int n) {
       std::string params;
       for (int i = 0; i < n; ++i) params += "<param name=key" + std::to_string(i) + " value=x>";
       return kPrint + params + "</object>";
     }},
    {"ManyAttributes",
     [](int n) {
       std::string page = "<object classid=progid:KVOPDesignObjects.DTCPrint";
       for (int i = 0; i < n; ++i) page += " a" + std::to_string(i) + "=x";
       return page + "></object>";
     }},
    {"ManyEqualAttributes",
     [](int n) {
       return "<object classid=progid:KVOPDesignObjects.DTCPrint" + Times(n, " a=x") + "></object>";
     }},
    {"OneLargeValue", [](int n) { return PrintOf(Times(10 * n, "a-- &amp;")); }},
    {"AmpersandsThatAreNoReference", [](int n) { return PrintOf(Times(n, "&CounterClockwise")); }},
    {"TextFullOfEndComments",
     [](int n) {
       std::string value;
       for (int i = 1; i <= n; ++i)
         value += "&lt;!--KVO CONTROL ENDSPAN " + std::to_string(i) + "--&gt;";
       return PrintOf(value);
     }},
    {"ProblemsInOneLongLine",
     [](int n) { return Times(n, "\xC3\xBC<!--KVO CONTROL ENDSPAN 1--> "); }},
};

}  // namespace hostile

using hostile::kHostilePages;

}  // namespace kvo::page
