#include "document/check/MailRules.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/values/Ascii.h"
#include "controls/BlockLevel.h"
#include "document/page/Messages.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"

namespace kvo::check {
namespace {

using page::Severity;
using page::messages::Quoted;

constexpr std::size_t kMostBytes = 102 * 1024;

constexpr Rule kSize{"mail-size",
                     Severity::warning,
                     {"Eine Mail, die Postfächer abschneiden", "A mail that mailboxes cut off"}};
constexpr Rule kUnsubscribe{
    "mail-unsubscribe",
    Severity::error,
    {"Ein Newsletter ohne Abmeldelink", "A newsletter without an unsubscribe link"}};
constexpr Rule kViewtracker{
    "mail-viewtracker",
    Severity::error,
    {"Mehr als ein Zähler für Öffnungen", "More than one counter of openings"}};
constexpr Rule kEmptyLink{
    "mail-empty-link", Severity::error, {"Ein Link, der nirgends hinführt", "A link to nowhere"}};
constexpr Rule kInsecureLink{"mail-insecure-link",
                             Severity::warning,
                             {"Ein Link ohne Verschlüsselung", "A link without encryption"}};
constexpr Rule kAlt{"mail-alt", Severity::warning, {"Ein Bild ohne alt", "A picture without alt"}};
constexpr Rule kLang{
    "mail-lang", Severity::warning, {"Eine Mail ohne Sprache", "A mail without a language"}};
constexpr Rule kTitle{
    "mail-title", Severity::warning, {"Eine Mail ohne Titel", "A mail without a title"}};
constexpr Rule kActive{"mail-active-content",
                       Severity::error,
                       {"Ein Skript oder Formular in der Mail", "A script or form in the mail"}};

constexpr Rule kMailRules[] = {kSize, kUnsubscribe, kViewtracker, kEmptyLink, kInsecureLink,
                               kAlt,  kLang,        kTitle,       kActive};

std::string_view WithoutSpace(std::string_view text) {
  while (!text.empty() && page::IsHtmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && page::IsHtmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

// A start tag of the published page.
struct Tag {
  std::string name;  // in lower case, without a namespace
  bool ofEngine = false;
  std::vector<page::RawAttribute> attributes;
  std::size_t begin = 0;
  std::size_t end = 0;

  const page::RawAttribute* Find(std::string_view attribute) const {
    for (const page::RawAttribute& each : attributes)
      if (EqualIgnoringCase(each.name, attribute)) return &each;
    return nullptr;
  }
};

class MailCheck {
 public:
  explicit MailCheck(const page::Page& page)
      : page_(page), published_(page::PublishWithPlaces(page)), bytes_(published_.bytes) {}

  page::Problems Run() {
    ReadTags();
    if (!hasContent_) return {};
    if (bytes_.size() > kMostBytes) ReportSize();
    if (isWhole_) CheckWhole();
    return problems_.Take(page_.Bytes(), page_.Encoding());
  }

 private:
  void ReadTags() {
    std::size_t at = 0;
    while (at < bytes_.size()) {
      if (bytes_[at] != '<') {
        const std::size_t next = std::min(bytes_.find('<', at), bytes_.size());
        if (inBody_ && !WithoutSpace(bytes_.substr(at, next - at)).empty()) hasContent_ = true;
        at = next;
      } else if (bytes_.substr(at).starts_with(kBlockStart)) {
        at += kBlockStart.size();  // the template engine takes the comment for the block inside
      } else if (bytes_.substr(at).starts_with(page::kCommentStart)) {
        at = std::min(page::EndOfComment(bytes_, at), bytes_.size());
      } else {
        at = ReadTag(at);
      }
    }
    // Only a part of a page has no body.
    if (!isWhole_) hasContent_ = !WithoutSpace(bytes_).empty();
  }

  std::size_t ReadTag(std::size_t at) {
    const std::size_t nameAt = at + 1;
    const std::string_view rest = bytes_.substr(nameAt);
    const bool isOther = rest.starts_with('/') || rest.starts_with('!') || rest.starts_with('?');
    if (isOther) return std::min(bytes_.find('>', nameAt), bytes_.size() - 1) + 1;
    if (rest.empty() || !IsLetter(rest.front())) return nameAt;
    const std::size_t nameEnd = page::EndOfTagName(bytes_, nameAt);
    Tag tag;
    tag.begin = at;
    tag.name = Lowered(bytes_.substr(nameAt, nameEnd - nameAt));
    if (const std::size_t colon = tag.name.find(':'); colon != std::string::npos) {
      tag.ofEngine = true;
      tag.name.erase(0, colon + 1);
    }
    page::TagReader reader(bytes_, nameEnd);
    page::RawAttribute attribute;
    while (reader.Next(attribute)) tag.attributes.push_back(attribute);
    if (reader.CutOff()) return bytes_.size();
    tag.end = reader.Position();
    Check(tag);
    return SkipRawText(tag);
  }

  // Returns where the text of a script or the like ends.
  std::size_t SkipRawText(const Tag& tag) {
    if (tag.ofEngine) return tag.end;
    for (const std::string_view raw : {"script", "style", "title", "textarea"}) {
      if (tag.name != raw) continue;
      std::size_t end = bytes_.find("</", tag.end);
      while (end != std::string::npos && !page::IsTagAt(bytes_, end, "</", raw))
        end = bytes_.find("</", end + 1);
      end = std::min(end, bytes_.size());
      if (raw == "title" && !WithoutSpace(bytes_.substr(tag.end, end - tag.end)).empty())
        hasTitle_ = true;
      return end;
    }
    return tag.end;
  }

  void Check(const Tag& tag) {
    if (tag.ofEngine) return CheckOfEngine(tag);
    if (tag.name == "html") {
      isWhole_ = true;
      html_ = tag;
    } else if (tag.name == "body") {
      isWhole_ = inBody_ = true;
    } else if (tag.name == "a" || tag.name == "area") {
      CheckLink(tag);
    } else if (tag.name == "img") {
      hasContent_ = true;
      if (tag.Find("alt") == nullptr) ReportAlt(tag);
    } else if (tag.name == "script" || tag.name == "form") {
      ReportActive(tag);
    }
  }

  void CheckOfEngine(const Tag& tag) {
    if (inBody_) hasContent_ = true;
    if (tag.name == "unsubscribe") hasUnsubscribe_ = true;
    if (tag.name == "order" || tag.name == "positionlist") isAboutOrder_ = true;
    if (tag.name == "viewtracker" && ++viewtrackers_ > 1) ReportViewtracker(tag);
    if (tag.name == "click") CheckLink(tag);
  }

  void CheckLink(const Tag& tag) {
    const page::RawAttribute* const href = tag.Find("href");
    if (href == nullptr) return;  // no link, but a place to link to
    const std::string address = Lowered(WithoutSpace(href->value));
    for (const std::string_view word : {"unsubscrib", "abmeld", "abbestell", "austrag"})
      if (address.find(word) != std::string::npos) hasUnsubscribe_ = true;
    // A control without an address is another rule's.
    if (address.empty() && !tag.ofEngine) ReportEmptyLink(tag);
    if (address.starts_with("http:")) ReportInsecureLink(tag, *href);
  }

  // Order mails need no unsubscribe link: nobody subscribed to them.
  void CheckWhole() {
    const bool isAboutOrder = isAboutOrder_ || bytes_.find("#order.") != std::string::npos;
    if (!hasUnsubscribe_ && !isAboutOrder) ReportUnsubscribe();
    if (html_) {
      const page::RawAttribute* const lang = html_->Find("lang");
      if (lang == nullptr || WithoutSpace(lang->value).empty()) ReportLang(*html_);
    }
    if (!hasTitle_) ReportTitle();
  }

  void ReportSize() {
    const auto kilobytes = std::to_string((bytes_.size() + 1023) / 1024);
    Add(0, 0, kSize,
        {"Die veröffentlichte Seite ist " + kilobytes +
             " KB groß; große Postfächer schneiden Mails nach 102 KB ab. Kürzen Sie sie.",
         "The published page has " + kilobytes +
             " KB; large mailboxes cut mails off after 102 KB. Shorten it."});
  }
  void ReportUnsubscribe() {
    Add(0, 0, kUnsubscribe,
        {"Die Mail hat keinen Abmeldelink. Fügen Sie das Control Abmeldelink ein.",
         "The mail has no unsubscribe link. Insert the control Unsubscribe link."});
  }
  void ReportViewtracker(const Tag& tag) {
    Add(tag.begin, tag.end, kViewtracker,
        {"Die Mail zählt ihre Öffnungen schon an anderer Stelle. Löschen Sie diesen Zähler.",
         "The mail counts its openings elsewhere already. Delete this counter."});
  }
  void ReportEmptyLink(const Tag& tag) {
    Add(tag.begin, tag.end, kEmptyLink,
        {"Der Link hat keine Adresse. Füllen Sie href.", "The link has no address. Fill in href."});
  }
  void ReportInsecureLink(const Tag& tag, const page::RawAttribute& href) {
    std::string address;
    page_.Encoding().Decode(href.value, address);
    Add(tag.begin, tag.end, kInsecureLink,
        {"Der Link " + Quoted(address) + " ist nicht verschlüsselt. Schreiben Sie https:.",
         "The link " + Quoted(address) + " is not encrypted. Write https:."});
  }
  void ReportAlt(const Tag& tag) {
    Add(tag.begin, tag.end, kAlt,
        {"Ohne Bilder bleibt hier eine Lücke. Beschreiben Sie das Bild in alt, oder schreiben Sie "
         "alt=\"\", wenn es nur schmückt.",
         "Without pictures, this leaves a gap. Describe the picture in alt, or write alt=\"\" if "
         "it only decorates."});
  }
  void ReportLang(const Tag& tag) {
    Add(tag.begin, tag.end, kLang,
        {"Die Mail nennt ihre Sprache nicht, in der sie vorgelesen wird. Schreiben Sie "
         "<html lang=\"de\">.",
         "The mail does not name its language, in which it is read aloud. Write "
         "<html lang=\"en\">."});
  }
  void ReportTitle() {
    Add(0, 0, kTitle,
        {"Die Mail hat keinen Titel, den Browser und Vorleseprogramme nennen. Füllen Sie "
         "<title> im Kopf.",
         "The mail has no title for browsers and screen readers. Fill in <title> in the head."});
  }
  void ReportActive(const Tag& tag) {
    Add(tag.begin, tag.end, kActive,
        {"Postfächer entfernen ein Element " + Quoted(tag.name) + ". Verlinken Sie eine Seite.",
         "Mailboxes remove an element " + Quoted(tag.name) + ". Link to a page instead."});
  }

  // Adds a problem at a place of the published page; (0, 0) is the whole page.
  void Add(std::size_t begin, std::size_t end, const Rule& rule, Message message) {
    const auto& controls = published_.controls;
    // The last control that begins at or before the place.
    const auto next = std::ranges::upper_bound(controls, begin, {}, &page::PublishedControl::begin);
    const page::PublishedControl* const before =
        next == controls.begin() || end == 0 ? nullptr : &*std::prev(next);
    if (before != nullptr && begin < before->end)
      return problems_.Add({before->sourceBegin, before->sourceEnd}, rule.id,
                           {before->className, before->id}, std::move(message), rule.severity);
    const std::size_t shift = before == nullptr ? 0 : before->sourceEnd - before->end;
    problems_.Add({begin + shift, end == 0 ? 0 : end + shift}, rule.id, {}, std::move(message),
                  rule.severity);
  }

  const page::Page& page_;
  page::PublishedPage published_;
  std::string_view bytes_;
  page::ProblemList problems_;
  std::optional<Tag> html_;
  std::size_t viewtrackers_ = 0;
  bool isWhole_ = false;
  bool inBody_ = false;
  bool hasContent_ = false;
  bool hasTitle_ = false;
  bool hasUnsubscribe_ = false;
  bool isAboutOrder_ = false;
};

}  // namespace

std::span<const Rule> MailRules() { return kMailRules; }

page::Problems CheckMail(const page::Page& page) {
  if (page.Encoding().kind() == page::PageEncoding::Kind::utf16) return {};
  return MailCheck(page).Run();
}

}  // namespace kvo::check
