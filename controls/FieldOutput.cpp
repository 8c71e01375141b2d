#include "controls/FieldOutput.h"

#include "common/TagWriter.h"

namespace kvo {

void FieldOutput::AppendOutputTag(std::string& out, std::string_view attribute) const {
  if (mainValue_.empty()) return;
  TagWriter(out, Namespace(), basename())
      .Attribute(attribute, mainValue_)
      .AttributeIfSet("format", format_)
      .CloseEmpty();
}

std::string_view FieldOutput::ValueCaption(const Control& control) {
  const auto& self = static_cast<const FieldOutput&>(control);
  return self.displayValue_.empty() ? self.mainValue_ : self.displayValue_;
}

}  // namespace kvo
