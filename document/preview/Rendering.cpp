#include <algorithm>

#include "common/frame/Choices.h"
#include "common/values/Ascii.h"
#include "document/check/Products.h"
#include "document/preview/Compiled.h"
#include "document/preview/Expression.h"
#include "document/preview/Tables.h"
#include "document/preview/Words.h"
#include "host/registration/classes.h"

namespace kvo::preview {
namespace {

// Two positions for a list that is to be shown filled, whatever the record says.
std::vector<Values> SamplePositions() {
  std::vector<Values> positions(2);
  for (std::size_t at = 0; at < positions.size(); ++at) {
    const auto number = static_cast<std::int32_t>(at + 1);
    positions[at].Set("productNo", "B-" + std::to_string(number));
    positions[at].Set("description", "Beispiel " + std::to_string(number));
    positions[at].Set("quantity", number);
    positions[at].Set("price", 9.5);
  }
  return positions;
}

bool IsElementName(std::string_view name) {
  return !name.empty() && IsLetter(name[0]) && std::ranges::all_of(name, [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '-' || c == ':' || c == '_';
  });
}
bool IsAttributeName(std::string_view name) {
  return std::ranges::all_of(name, [](char c) {
    return static_cast<unsigned char>(c) > ' ' && std::string_view("\"'<>/=").find(c) == page::npos;
  });
}
constexpr std::string_view kVoidElements[] = {"area",  "base",   "br",    "col",  "embed",
                                              "hr",    "img",    "input", "link", "meta",
                                              "param", "source", "track", "wbr"};

// Whether this pattern is a word for a currency, which only the shop knows.
bool IsCurrency(std::string_view pattern) {
  return std::ranges::any_of(DataFormats(), [&](const DataFormat& format) {
    return format.sample == nullptr && format.pattern == pattern;
  });
}

class Rendering {
 public:
  Rendering(const Template::Compiled& compiled, const Record& record, const RenderOptions& options)
      : compiled_(compiled),
        record_(record),
        options_(options),
        html_(result_.html, compiled.encoding) {
    result_.switches.resize(compiled.switches.size());
    constexpr std::size_t kRoomForValue = 300;
    result_.html.reserve(compiled.page.bytes.size() + compiled.nodes.size() * kRoomForValue);
  }

  Preview Render() {
    Append(compiled_.pieces);
    return std::move(result_);
  }

 private:
  using Kind = Finding::Kind;

  void Append(const std::vector<Piece>& pieces) {
    for (const Piece& piece : pieces) {
      switch (piece.kind) {
        case Piece::Kind::plain:
          result_.html += compiled_.Bytes(piece);
          break;
        case Piece::Kind::tag:
          AppendNode(compiled_.nodes[piece.node]);
          break;
        case Piece::Kind::banner:
          AppendBanner();
      }
    }
  }

  void AppendBanner() {
    if (!options_.banner) return;
    std::string face(kFace.In(options_.language));
    if (!record_.name.empty()) face += ": " + record_.name;
    if (record_.madeUp) face += words::MadeUp().In(options_.language);
    html_
        .Open("div", {{"style",
                       "background:#263238;color:#ffffff;padding:6px 12px;text-align:center;"
                       "font:13px/18px sans-serif"}})
        .Text(face)
        .Close("div");
  }

  void AppendNode(const Node& node) {
    const bool marks = options_.marks && node.takesTags && node.tag.part != RuntimeTag::kNoPart;
    if (marks)
      result_.html += "<!--kvo " + std::to_string(compiled_.ControlOf(node)->index) + "-->";
    if (NoteMistake(node)) AppendTag(node);
    if (marks) result_.html += "<!--/kvo-->";
  }

  // Returns whether the tag can be shown all the same.
  bool NoteMistake(const Node& node) {
    const std::string& name = node.tag.name;
    switch (node.tag.mistake) {
      case RuntimeTag::Mistake::none:
        return true;
      case RuntimeTag::Mistake::quote:
        Miss(node, name, words::BrokenTag());
        break;
      case RuntimeTag::Mistake::unended:
        Miss(node, name, words::UnendedTag());
        break;
      case RuntimeTag::Mistake::unclosed:
        Miss(node, name, words::UnclosedTag(name));
        break;
      case RuntimeTag::Mistake::stray:
        Miss(node, "/" + name, words::StrayEnd());
        break;
      case RuntimeTag::Mistake::deep:
        Miss(node, name, words::TooDeep());
    }
    return false;
  }

  void AppendTag(const Node& node) {
    const RuntimeTag& tag = node.tag;
    switch (tag.kind) {
      case TagKind::print:
        return AppendValue(node, Value(node, "value"), Print(Value(node, "value"), lookUp_));
      case TagKind::contact:
        return AppendField(node, kCustomer, Value(node, "field"));
      case TagKind::order:
        return AppendField(node, kOrder, Value(node, "field"));
      case TagKind::config:
        return AppendField(node, kConfig, Value(node, "item"));
      case TagKind::element:
        return AppendElement(node);
      case TagKind::script:
        return Note(node, Kind::outside, words::Script());
      case TagKind::view:
        return Note(node, Kind::outside, words::Counter());
      case TagKind::condition:
        return AppendCondition(node);
      case TagKind::products:
        return AppendProducts(node);
      case TagKind::positions:
        return AppendPositions(node);
      case TagKind::click:
        return AppendLink(node, Value(node, "href"), Value(node, "href"));
      case TagKind::unsubscribe: {
        const std::string& site = Value(node, "site");
        return AppendLink(
            node, site, words::Unsubscribes(Value(node, "recipient"), site).In(options_.language));
      }
      case TagKind::failed:
        return Miss(node, TitleOf(node), words::FailedControl());
      case TagKind::otherwise:
      case TagKind::unknown:
        Miss(node, tag.name, words::UnknownTag(tag.name));
        return Append(node.content);
    }
  }

  // --- values -----------------------------------------------------------------------------------

  static const std::string& Value(const Node& node, std::string_view attribute) {
    static const std::string kNone;
    const std::string* const value = node.tag.Find(attribute);
    return value == nullptr ? kNone : *value;
  }

  Outcome LookedUp(std::string_view group, std::string_view name) const {
    if (const Variant* const value = record_.Find(group, name)) return {*value, std::nullopt};
    const std::string key = std::string(group) + '.' + std::string(name);
    const auto unknown = compiled_.unknownFields.find(Lowered(key));
    if (unknown != compiled_.unknownFields.end()) return {{}, unknown->second};
    return {{}, words::NoValue(record_.name, key)};
  }

  void AppendField(const Node& node, std::string_view group, const std::string& name) {
    AppendValue(node, name, LookedUp(group, name));
  }

  // `shown` stands for a value that is not known.
  void AppendValue(const Node& node, const std::string& shown, const Outcome& outcome) {
    if (outcome.unknown) return Miss(node, shown, *outcome.unknown);
    const std::string& pattern = Value(node, "format");
    std::string text;
    if (IsCurrency(pattern)) {
      text = FormatValue(outcome.value, "#,##0.00");
      Note(node, Kind::outside, words::Currency());
    } else {
      text = FormatValue(outcome.value, pattern);
    }
    AppendText(node, text);
  }

  void AppendText(const Node& node, const std::string& text) {
    if (AppendTextAt(node.html, text, compiled_.encoding, result_.html)) return;
    AppendPlaceholder(node);
    const bool isAddress = node.html == HtmlPlace::address || node.html == HtmlPlace::source;
    Note(node, Kind::missing, isAddress ? words::UnsafeAddress(text) : words::UnsafeText(text));
  }

  // A tag needs something in its place, or what follows would be read as its value.
  void AppendPlaceholder(const Node& node) {
    if (node.html == HtmlPlace::bare || node.html == HtmlPlace::tag) result_.html += '?';
  }

  // --- findings ---------------------------------------------------------------------------------

  void Note(const Node& node, Kind kind, Message message) {
    Finding& finding = result_.findings.emplace_back();
    finding.kind = kind;
    finding.message = std::move(message);
    finding.place = node.place;
    finding.offset = node.offset;
    if (const page::PublishedControl* const control = compiled_.ControlOf(node)) {
      finding.control = control->className;
      finding.id = control->id;
      finding.index = control->index;
    }
  }

  // Shows in a frame that something is missing here.
  void Miss(const Node& node, std::string_view shown, const Message& why) {
    if (node.takesTags)
      html_.Open("span", {{"style", kMissingStyle}, {"title", why.In(options_.language)}})
          .Text(shown)
          .Close("span");
    else if (!AppendTextAt(node.html, shown, compiled_.encoding, result_.html))
      AppendPlaceholder(node);
    Note(node, Kind::missing, why);
  }

  // What authors call the control of a node.
  std::string TitleOf(const Node& node) const {
    const page::PublishedControl* const control = compiled_.ControlOf(node);
    if (control == nullptr) return node.tag.name;
    const RegisteredControl* const registered = FindControlByName(control->className);
    return registered == nullptr ? control->className
                                 : std::string(registered->contract().title.In(options_.language));
  }

  // --- blocks -----------------------------------------------------------------------------------

  Choice ChoiceOf(const Node& node) const {
    return node.toggle < options_.choices.size() ? options_.choices[node.toggle] : Choice::asRecord;
  }
  // Notes which form a switch shows.
  bool Shows(const Node& node, bool holds) {
    if (node.toggle != Switch::kNoSwitch) result_.switches[node.toggle] = {true, holds};
    return holds;
  }

  void AppendCondition(const Node& node) {
    const Choice choice = ChoiceOf(node);
    bool holds = choice == Choice::holds;
    if (choice == Choice::asRecord) {
      const Outcome test = Test(Value(node, "test"), lookUp_);
      if (test.unknown) {
        Miss(node, compiled_.switches[node.toggle].name, *test.unknown);
        holds = true;
      } else {
        holds = *test.value.If<bool>();
      }
    }
    Append(Shows(node, holds) ? node.content : node.otherwise);
  }

  void AppendElement(const Node& node) {
    const RuntimeTag& tag = node.tag;
    const std::string& name = Value(node, "name");
    if (!node.takesTags || !IsElementName(name)) {
      Miss(node, name, words::NoElementHere());
      return Append(node.content);
    }
    const bool onlyOpens = Value(node, "render-open-tag-only") == "true";
    const bool onlyCloses = Value(node, "render-closing-tag-only") == "true";
    if (onlyOpens || !onlyCloses) {
      result_.html += '<' + name;
      bool named = false;  // by the first "name"; another one is an attribute
      for (const auto& [attribute, value] : tag.attributes) {
        if (attribute == "render-open-tag-only" || attribute == "render-closing-tag-only") continue;
        if (attribute == "name" && !std::exchange(named, true)) continue;
        AppendAttribute(node, attribute, value);
      }
      result_.html += '>';
    }
    Append(node.content);
    if (onlyOpens && !onlyCloses) return;
    if (std::ranges::find(kVoidElements, Lowered(name)) == std::end(kVoidElements))
      html_.Close(name);
  }

  // The author's text stands as it is; values of the record, as everywhere in such an attribute.
  void AppendAttribute(const Node& node, std::string_view name, const std::string& value) {
    if (!IsAttributeName(name)) return;
    HtmlReader reader;
    reader.Read("<a " + std::string(name) + "=\"");
    std::string written;
    const auto put = [&](const Outcome& outcome) {
      if (outcome.unknown) return Note(node, Kind::missing, *outcome.unknown);
      const std::string text = FormatValue(outcome.value, {});
      if (!AppendTextAt(reader.Place(), text, compiled_.encoding, written))
        Note(node, Kind::missing, words::UnsafeAttribute(name, text));
    };
    std::size_t plain = 0;
    const auto copy = [&](std::size_t end) {
      const std::string_view text = std::string_view(value).substr(plain, end - plain);
      reader.Read(text);
      AppendEscaped(text, compiled_.encoding, written);
    };
    if (IsComputed(value)) {
      put(Fill(value, lookUp_));
    } else {
      ForEachReference(value, [&](const Reference& reference) {
        copy(reference.at);
        put(lookUp_(reference.group, reference.name));
        plain = reference.at + reference.length;
      });
      copy(value.size());
    }
    result_.html.append(" ").append(name).append("=\"").append(written).append("\"");
  }

  void AppendLink(const Node& node, const std::string& address, const std::string& title) {
    if (!node.takesTags) return Append(node.content);
    result_.html += "<a";
    AppendAttribute(node, "href", address);
    const Outcome filled = Fill(title, lookUp_);
    html_.Attribute("title", filled.unknown ? title : FormatValue(filled.value, {}));
    result_.html += '>';
    Append(node.content);
    html_.Close("a");
  }

  // --- lists ------------------------------------------------------------------------------------

  void AppendProducts(const Node& node) {
    if (!node.takesTags) return Miss(node, TitleOf(node), words::NoTableHere());
    std::vector<ProductCell> cells;
    if (Shows(node, ChoiceOf(node) != Choice::fails && node.toggle != Switch::kNoSwitch))
      cells = ProductsOf(node);
    const std::string& headline = Value(node, "header-caption");
    const Outcome filled = Fill(headline, lookUp_);
    if (filled.unknown) Note(node, Kind::missing, *filled.unknown);
    AppendProductTable(node.tag, filled.unknown ? headline : FormatValue(filled.value, {}), cells,
                       options_.language, html_);
  }

  std::vector<ProductCell> ProductsOf(const Node& node) {
    const std::vector<std::string> numbers = check::NumbersIn(Value(node, "selected-products"));
    std::optional<Message> failure;
    std::vector<std::optional<Product>> found(numbers.size());
    if (options_.shop != nullptr)
      found = options_.shop->Find(numbers, failure);
    else
      failure = words::NoShop();
    std::vector<ProductCell> cells;
    for (std::size_t at = 0; at < numbers.size(); ++at) {
      ProductCell& cell = cells.emplace_back();
      cell.number = numbers[at];
      if (at < found.size()) cell.product = found[at];
      if (cell.product || failure) continue;
      const Message why = words::UnknownProduct(cell.number);
      cell.reason = why.In(options_.language);
      Note(node, Kind::missing, why);
    }
    if (failure)
      Note(node, Kind::outside, std::move(*failure));
    else
      Note(node, Kind::outside, words::ShopsOwn());
    return cells;
  }

  void AppendPositions(const Node& node) {
    if (!node.takesTags) return Miss(node, TitleOf(node), words::NoTableHere());
    std::vector<Values> positions = record_.positions.value_or(std::vector<Values>());
    switch (ChoiceOf(node)) {
      case Choice::holds:
        if (positions.empty()) positions = SamplePositions();
        break;
      case Choice::fails:
        positions.clear();
        break;
      case Choice::asRecord:
        if (!record_.positions) return Miss(node, TitleOf(node), words::NoPositions(record_.name));
    }
    const Outcome order = Fill(Value(node, "order-id"), lookUp_);
    if (order.unknown) Note(node, Kind::missing, *order.unknown);
    Shows(node, !positions.empty());
    AppendPositionTable(node.tag, positions, html_);
  }

  const Template::Compiled& compiled_;
  const Record& record_;
  const RenderOptions& options_;
  Preview result_;
  Html html_;
  LookUp lookUp_ = [this](std::string_view group, std::string_view name) {
    return LookedUp(group, name);
  };
};

}  // namespace

Preview Template::Render(const Record& record, const RenderOptions& options) const {
  return Rendering(*compiled_, record, options).Render();
}

}  // namespace kvo::preview
