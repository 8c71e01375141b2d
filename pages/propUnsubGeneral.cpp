#include "pages/propUnsubGeneral.h"

namespace kvo {

void propUnsubGeneral::ApplyChanges() {
  for (const TextField& field : fields_) {
    std::string text = field.box.Text();
    // An address of a folder; behind an empty one as well: deliberate.
    if (&field.box == &txtSite && !text.ends_with('/')) text += '/';
    Write(field.property, std::move(text));
  }
}

}  // namespace kvo
