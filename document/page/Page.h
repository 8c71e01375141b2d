// A page file: an HTML file with controls in it. A control stands there either as an element,
//
//   <object classid="progid:KVOPDesignObjects.DTCPrint" id="Preis"><param name="value"
//   value="x"></object>
//
// or as a saved span, the element in a comment, its runtime text, and an end comment:
//
//   <!--KVO CONTROL STARTSPAN 1 <object ...>...</object>--><kv:print value="x"/><!--KVO CONTROL
//   ENDSPAN 1-->
//
// Every byte outside the controls is copied as it stands. All functions take time and memory in
// proportion to the page. They call controls, so a platform must be installed
// (common/frame/Platform.h).
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"
#include "common/frame/PropertyBag.h"
#include "document/page/Encoding.h"
#include "document/page/Problem.h"
#include "document/page/Sink.h"

namespace kvo::page {

// The bytes of a page and the encoding they are in.
class Page {
 public:
  explicit Page(std::string bytes);

  std::string_view Bytes() const { return bytes_; }
  const PageEncoding& Encoding() const { return encoding_; }

 private:
  std::string bytes_;
  PageEncoding encoding_;
};

enum class Form { element, span };

// An attribute of a control's object element, value as UTF-8. Without a value it is `declare`.
struct Attribute {
  std::string name;
  std::optional<std::string> value;
};

// A control as it stands in a page.
struct FoundControl {
  std::size_t index = 0;  // among the page's controls, from 0
  Place place;            // of the "<" of its object element or start comment
  std::size_t begin = 0;  // its bytes in the page, start and end comment included
  std::size_t end = 0;
  Form form = Form::element;
  const ControlClass* contract = nullptr;  // nullptr when the class is unknown
  std::string className;                   // the registered name, or what the page says
  std::string id;
  std::vector<Attribute> attributes;  // all but classid and id, in order
  std::vector<MemoryBag::Entry> bag;  // UTF-8, in the order of the page
  std::size_t textBegin = 0;          // span: the bytes between the comments
  std::size_t textEnd = 0;
  bool broken = false;  // it has errors of its own: it cannot be loaded as it stands
};

struct Inspection {
  std::vector<FoundControl> controls;
  Problems problems;  // of the page as a text; no control is created
};

// Everything that looks like a control of ours, broken ones included.
Inspection Inspect(const Page& page);

// A new control of the class, loaded from the bag. Throws what the control throws (RuntimeError).
std::shared_ptr<Control> Load(const ControlClass& contract, std::vector<MemoryBag::Entry> bag);

// What the control would store now, in order.
std::vector<MemoryBag::Entry> StoredBag(const Control& control);

// A change of one control of the page, made after it is loaded and before it is stored.
struct Edit {
  std::size_t index;  // FoundControl::index
  std::function<void(Control&)> change;
};

struct SaveOptions {
  bool force = false;  // saved texts that were edited by hand are overwritten
  const Edit* edit = nullptr;
  bool editedOnly = false;  // every other control is copied as it stands
};

// Writes the page with every control as a saved span. When the result holds an error, what went
// into the sink is incomplete and must be thrown away. Every control is tried, so that all problems
// are listed at once.
Problems Save(const Page& page, Sink& sink, const SaveOptions& options = {});

// Writes the page with the runtime text alone in place of each control.
Problems Publish(const Page& page, Sink& sink);

// What Save would complain about, and what is odd beyond that.
Problems Check(const Page& page);

// A control's element, as Save writes it, in the page's encoding. Without a value no id is written.
// RuntimeError 5 when the encoding cannot hold it, not even by character references.
std::string ElementText(const ControlClass& contract, std::optional<std::string_view> id,
                        const std::vector<MemoryBag::Entry>& bag,
                        const std::vector<Attribute>& attributes = {},
                        const PageEncoding& encoding = {});

}  // namespace kvo::page
