#include "pages/propGeneralFormat.h"

#include "common/frame/Choices.h"

namespace kvo {

void propGeneralFormat::Initialize() {
  for (Choice& format : choices::Formats())
    cboFormat.AddItem(ToText(std::move(format.value)), std::move(format.caption.german));
}

void propGeneralFormat::cboFormat_Change() {
  Changed(true);
  const std::string format = ToText(cboFormat.Held());
  lblFormatString.Caption(format.empty() ? std::string(kNoFormat) : format);
}

}  // namespace kvo
