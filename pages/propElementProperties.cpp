#include "pages/propElementProperties.h"

namespace kvo {

void propElementProperties::SelectionChanged() {
  txtElementBasename.Read();
  if (ToFlag(optOpeningTagOnly.Get()))
    optOpeningTagOnly.Value(true);
  else if (ToFlag(optClosingTagOnly.Get()))
    optClosingTagOnly.Value(true);
  else
    optSingleLineElement.Value(true);
  txtHTMLContent.Read();
}

void propElementProperties::ModeChosen(OptionButton& option) {
  marksChanged(option);
  // Also while the page is filled, so that the content box always follows the mode.
  lblHTMLContent.Enabled(optSingleLineElement.Value());
  txtHTMLContent.Enabled(optSingleLineElement.Value());
}

}  // namespace kvo
