// A page file: an HTML file with controls in it. A control is either an element,
//
//   <object classid="progid:KVOPDesignObjects.DTCPrint" id="Preis"><param name="value"
//   value="x"></object>
//
// or a saved span: the element in a comment, its runtime text, and an end comment:
//
//   <!--KVO CONTROL STARTSPAN 1 <object ...>...</object>--><kv:print value="x"/><!--KVO CONTROL
//   ENDSPAN 1-->
//
// Every byte outside the controls is copied unchanged. All functions take time and memory in
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

// An attribute of a control's object element. The value is UTF-8; attributes such as `declare` have
// none.
struct Attribute {
  std::string name;
  std::optional<std::string> value;
};

// A control in a page.
struct FoundControl {
  std::size_t index = 0;  // among the page's controls, from 0
  Place place;            // of the "<" of its object element or start comment
  std::size_t begin = 0;  // its bytes in the page, start and end comment included
  std::size_t end = 0;
  Form form = Form::element;
  const ControlClass* contract = nullptr;  // nullptr when the class is unknown
  std::string className;                   // the registered name, or the one in the page
  std::string id;
  std::vector<Attribute> attributes;  // except classid and id, in order
  std::vector<MemoryBag::Entry> bag;  // UTF-8, in the order of the page
  std::size_t textBegin = 0;          // span: the bytes between the comments
  std::size_t textEnd = 0;
  bool broken = false;  // has errors and cannot be loaded as it is
};

struct Inspection {
  std::vector<FoundControl> controls;
  Problems problems;  // of the page's text; no control is created
};

// Finds everything that looks like one of our controls, broken ones included.
Inspection Inspect(const Page& page);

// Creates a control of the class, loaded from the bag. Throws what the control throws
// (RuntimeError).
std::shared_ptr<Control> Load(const ControlClass& contract, std::vector<MemoryBag::Entry> bag);

// Returns what the control would store now, in order.
std::vector<MemoryBag::Entry> StoredBag(const Control& control);

// A change to one control of the page, made between loading and storing it.
struct Edit {
  std::size_t index;  // FoundControl::index
  std::function<void(Control&)> change;
};

struct SaveOptions {
  bool force = false;  // overwrite saved texts that were edited by hand
  const Edit* edit = nullptr;
  bool editedOnly = false;  // copy every other control unchanged
};

// Writes the page with every control as a saved span. If the result holds an error, the sink's
// contents are incomplete and must be discarded. Tries every control, so that all problems are
// reported at once.
Problems Save(const Page& page, Sink& sink, const SaveOptions& options = {});

// Writes the page with each control replaced by its runtime text.
Problems Publish(const Page& page, Sink& sink);

// A control in a published page.
struct PublishedControl {
  std::size_t index = 0;  // FoundControl::index
  std::string className;
  std::string id;
  std::size_t begin = 0;  // its runtime text in the published page
  std::size_t end = 0;
  std::size_t sourceBegin = 0;  // its bytes in the page
  std::size_t sourceEnd = 0;
  bool failed = false;  // has errors; its runtime text is left out
};
// A published page, and where its controls went. A page with errors is published as far as
// possible.
struct PublishedPage {
  std::string bytes;
  std::vector<PublishedControl> controls;
  Problems problems;
};
PublishedPage PublishWithPlaces(const Page& page);

// The controls of a page, as Inspect() finds them, each with what was loaded from it.
struct LoadedControls {
  struct Loaded {
    std::shared_ptr<Control> control;  // nullptr when the found one is broken or fails to load
    std::string runtimeText;           // UTF-8; empty when the control fails
  };
  std::vector<FoundControl> found;
  std::vector<Loaded> loaded;
};

// Returns the problems that Save would report, and further oddities. `controls` may be nullptr.
Problems Check(const Page& page, LoadedControls* controls = nullptr);

// Returns a control's element, as Save writes it, in the page's encoding. Writes no id without a
// value. RuntimeError 5 when the encoding cannot hold it even with character references.
std::string ElementText(const ControlClass& contract, std::optional<std::string_view> id,
                        const std::vector<MemoryBag::Entry>& bag,
                        const std::vector<Attribute>& attributes = {},
                        const PageEncoding& encoding = {});

}  // namespace kvo::page
