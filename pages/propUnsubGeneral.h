#pragma once

#include "common/forms/PropertyPage.h"

namespace kvo {

// Recipient, confirmation page and text of an unsubscribe link.
class propUnsubGeneral final : public PropertyPage {
 public:
  propUnsubGeneral() : PropertyPage("Allgemein") {}

  KVO_CONTROL(Label, lblRecipient,
              .caption = "Email-Adresse für den Empfang von Newsletter Abmeldungen",
              .at = {240, 360, 5295, 240});
  KVO_CONTROL(TextBox, txtRecipient, .at = {240, 600, 5295, 285},
              .onChange = marksChangedUnlessLoading, .onGotFocus = SelectAllText);
  KVO_CONTROL(Label, lblSite, .caption = "Internet-Adresse der Bestätigungsseite",
              .at = {240, 1080, 5295, 240});
  KVO_CONTROL(TextBox, txtSite, .at = {240, 1320, 5295, 285}, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);
  KVO_CONTROL(PictureBox, picInfo, .picture = Picture::information, .at = {300, 1680, 480, 480});
  KVO_CONTROL(Label, lblWhatsThat, .caption = "Hinweis:", .at = {960, 1680, 4560, 240},
              .font = kBoldFont);
  KVO_CONTROL(Label, lblWhatsThatInfo,
              .caption =
                  "Über den Formulargenerator wurde automatisch eine Bestätigungsseite "
                  "'newsletter_response.html' angelegt. Bitte geben Sie hier die URL dieser "
                  "Seite ohne den Dateinamen ein.",
              .at = {960, 2040, 4560, 840}, .wraps = true);
  KVO_CONTROL(Label, lblWhatsThatExample, .caption = "Bsp: http://www.ihr-shop.example/assets/own/",
              .at = {960, 3000, 4560, 480}, .wraps = true);
  KVO_CONTROL(Label, lblHTMLContent, .caption = "Link-Text", .at = {240, 3720, 5295, 240});
  // The initial text ends with a line break: deliberate.
  KVO_CONTROL(TextBox, txtHTMLContent, .at = {240, 3960, 5295, 285}, .font = kMarkupFont,
              .text = "Abmelden\r\n", .multiLine = true, .onChange = marksChangedUnlessLoading,
              .onGotFocus = SelectAllText);

 private:
  void SelectionChanged() override {
    const Loading loading(*this);
    Fill(fields_);
  }
  void ApplyChanges() override;

  const TextField fields_[3] = {
      {txtRecipient, "Recipient"}, {txtSite, "Site"}, {txtHTMLContent, "HTMLContent"}};
};

}  // namespace kvo
