#include "pages/propElementProperties.h"

namespace kvo {

void propElementProperties::SelectionChanged() {
  const Loading loading(*this);
  txtElementBasename.Text(Read("Value"));
  if (ToFlag(SelectedControls(0).Get("OpeningTagOnly")))
    optOpeningTagOnly.Value(true);
  else if (ToFlag(SelectedControls(0).Get("ClosingTagOnly")))
    optClosingTagOnly.Value(true);
  else
    optSingleLineElement.Value(true);
  txtHTMLContent.Text(Read("HTMLContent"));
}

void propElementProperties::ApplyChanges() {
  Write("Value", txtElementBasename.Text());
  // An element of which only one tag is rendered never keeps content.
  Write("HTMLContent", optSingleLineElement.Value() ? txtHTMLContent.Text() : "");
  Write("OpeningTagOnly", optOpeningTagOnly.Value());
  Write("ClosingTagOnly", optClosingTagOnly.Value());
}

void propElementProperties::ModeChosen(OptionButton& option) {
  marksChangedUnlessLoading(option);
  // While loading as well, so that the content box always follows the mode.
  lblHTMLContent.Enabled(optSingleLineElement.Value());
  txtHTMLContent.Enabled(optSingleLineElement.Value());
}

}  // namespace kvo
