#include "document/compare/Compare.h"
#include "document/compare/Properties.h"
#include "document/page/Encoding.h"

namespace kvo::compare {
namespace {

class Reader {
 public:
  explicit Reader(const Version& version) : version_(version) {}

  std::string Read() {
    for (const Piece& piece : version_.Pieces()) {
      if (piece.control == kNone) {
        AddText(version_.BytesOf(piece));
      } else {
        AddControl(version_.Controls()[piece.control]);
      }
    }
    if (!properties_.empty()) text_ += "\n" + properties_;
    return std::move(text_);
  }

 private:
  // Shows the properties behind the end of their line.
  void AddText(std::string_view bytes) {
    const std::size_t size = text_.size();
    if (version_.Page().Encoding().Decode(bytes, text_) != std::string::npos)
      text_.replace(size, std::string::npos, bytes);  // not all of it is text
    if (!bytes.ends_with('\n')) return;
    text_ += properties_;
    properties_.clear();
  }

  void AddControl(const page::FoundControl& control) {
    const Values values(version_, control);
    std::string name = control.className;
    if (!control.id.empty()) name += ' ' + Whole(control.id);
    text_ += '{' + name + (control.form == page::Form::element ? ", not saved" : "") + '}';
    for (const Property& property : values.All()) {
      if (property.kind == Property::Kind::id) continue;
      if (property.kind == Property::Kind::row && !values.Written(property.row)) continue;
      const auto value = values.Of(property);
      if (!value) continue;
      properties_ += "    " + (control.id.empty() ? control.className : Whole(control.id)) + ": " +
                     NameOf(property, *control.contract).english + " = " + Whole(*value) + '\n';
    }
  }

  // Continues a value with line breaks on lines of their own.
  static std::string Whole(std::string_view value) {
    std::string whole;
    for (const char c : value) {
      if (c == '\r')
        whole += "\\r";
      else if (c == '\n')
        whole += "\\n\n        ";
      else
        whole += c;
    }
    return whole;
  }

  const Version& version_;
  std::string text_;
  std::string properties_;  // of the controls of this line
};

}  // namespace

std::string Readable(const Version& version) {
  if (version.Controls().empty()) return std::string(version.Bytes());
  return Reader(version).Read();
}

}  // namespace kvo::compare
