#pragma once

#include "common/forms/PageField.h"

namespace kvo {

// Recipient, confirmation page and text of an unsubscribe link.
class propUnsubGeneral final : public PropertyPage {
 public:
  propUnsubGeneral() : PropertyPage("Allgemein", Filling::isNoChange) {}

  KVO_CONTROL(Label, lblRecipient,
              .caption = "Email-Adresse für den Empfang von Newsletter Abmeldungen",
              .at = {240, 360, 5295, 240});
  KVO_FIELD(TextBox, txtRecipient, "Recipient", .at = {240, 600, 5295, 285});
  KVO_CONTROL(Label, lblSite, .caption = "Internet-Adresse der Bestätigungsseite",
              .at = {240, 1080, 5295, 240});
  KVO_FIELD(TextBox, txtSite, Binding("Site").Stored(WithSlash), .at = {240, 1320, 5295, 285});
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
  // Deliberate: the initial text ends with a line break.
  KVO_FIELD(TextBox, txtHTMLContent, "HTMLContent", .at = {240, 3960, 5295, 285},
            .font = kMarkupFont, .text = "Abmelden\r\n", .multiLine = true);

 private:
  // Deliberate: a slash also follows an empty address.
  static std::string WithSlash(std::string address) {
    return address.ends_with('/') ? std::move(address) : std::move(address) + '/';
  }
};

}  // namespace kvo
