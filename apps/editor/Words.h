// All texts of the editor, in both languages.
#pragma once

#include <QString>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/values/Localized.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo::editor {

// Returns a text in the user's language, replacing each "{}" by the next of `values`.
inline QString Text(const Localized& text, std::initializer_list<QString> values = {}) {
  std::vector<std::string> texts;
  for (const QString& value : values) texts.push_back(FromQt(value));
  return ToQt(Filled(text.In(UserLanguage()), texts));
}

namespace words {

// --- steps, shown after "Undo:" ---
inline constexpr Localized kTakeOver = {"Vorlage übernehmen", "Take over template"};
inline constexpr Localized kTyping = {"Eingabe", "Typing"};
inline constexpr Localized kInsertStep = {"{} einfügen", "Insert {}"};
inline constexpr Localized kFormatMenu = {"F&ormat", "F&ormat"};
inline constexpr Localized kBold = {"Fett", "Bold"};
inline constexpr Localized kItalic = {"Kursiv", "Italic"};
inline constexpr Localized kUnderline = {"Unterstrichen", "Underline"};
inline constexpr Localized kLink = {"Link", "Link"};
inline constexpr Localized kLinkAction = {"Link …", "Link…"};
inline constexpr Localized kLinkAddress = {"Adresse (leer: kein Link):",
                                           "Address (empty: no link):"};
inline constexpr Localized kTextColor = {"Textfarbe", "Text color"};
inline constexpr Localized kTextColorAction = {"Textfarbe …", "Text color…"};
inline constexpr Localized kParagraphStyle = {"Absatzart", "Paragraph style"};
inline constexpr Localized kParagraph = {"Absatz", "Paragraph"};
inline constexpr Localized kHeading = {"Überschrift {}", "Heading {}"};
inline constexpr Localized kList = {"Liste", "List"};
inline constexpr Localized kBulletList = {"Aufzählung", "Bullet list"};
inline constexpr Localized kNumberedList = {"Nummerierung", "Numbered list"};
inline constexpr Localized kPicture = {"Bild", "Picture"};
inline constexpr Localized kPictureAction = {"Bild …", "Picture…"};
inline constexpr Localized kPictureFiles = {"Bilder (*.png *.jpg *.jpeg *.gif *.svg *.webp)",
                                            "Pictures (*.png *.jpg *.jpeg *.gif *.svg *.webp)"};
inline constexpr Localized kAltText = {"Was zeigt das Bild? (für alle, die es nicht sehen)",
                                       "What does the picture show? (for those who cannot see it)"};
inline constexpr Localized kPictureOutside = {
    "{} liegt nicht im Ordner der Seite. Legen Sie das Bild dorthin und wählen Sie es noch einmal.",
    "{} is not in the page's folder. Put the picture there and choose it again."};
inline constexpr Localized kPictureUnsaved = {
    "Speichern Sie die Seite zuerst: Bilder liegen im Ordner der Seite.",
    "Save the page first: pictures are in the page's folder."};
inline constexpr Localized kShowInSource = {"Stelle im Quelltext zeigen", "Show place in source"};
inline constexpr Localized kOnlyInSource = {
    "Diese Stelle lässt sich nur im Quelltext bearbeiten: Strg+J geht dorthin.",
    "This place can only be edited in the source: Ctrl+J goes there."};
inline constexpr Localized kFormatOfStyle = {
    "Dieses Format steht in einem Stil: Strg+J zeigt die Stelle im Quelltext.",
    "A style sets this format: Ctrl+J shows the place in the source."};
inline constexpr Localized kPasteStep = {"Einfügen", "Paste"};
inline constexpr Localized kCutStep = {"Ausschneiden", "Cut"};
inline constexpr Localized kDeleteStep = {"Löschen", "Delete"};
inline constexpr Localized kMoveStep = {"Verschieben", "Move"};
inline constexpr Localized kPropertyStep = {"{} von {} ändern", "Change {} of {}"};
inline constexpr Localized kPagesStep = {"Eigenschaften von {}", "Properties of {}"};
inline constexpr Localized kReplaceStep = {"Ersetzen", "Replace"};
inline constexpr Localized kReplaceAllStep = {"{} Stellen ersetzen", "Replace {} places"};
inline constexpr Localized kTextsStep = {"Laufzeittexte schreiben", "Write runtime texts"};
inline constexpr Localized kRecognizeStep = {"Controls im Text erkennen",
                                             "Recognize controls in text"};

// --- controls ---
inline constexpr Localized kControlSpoken = {"Control {}", "Control {}"};
inline constexpr Localized kBytesSpoken = {"Zeichen {}", "Character {}"};

// --- the window ---
inline constexpr Localized kUntitled = {"Unbenannt", "Untitled"};
inline constexpr Localized kSource = {"Quelltext", "Source"};
inline constexpr Localized kDesign = {"Entwurf", "Design"};
inline constexpr Localized kToolbox = {"Werkzeuge", "Toolbox"};
inline constexpr Localized kOutline = {"Gliederung", "Outline"};
inline constexpr Localized kProperties = {"Eigenschaften", "Properties"};
inline constexpr Localized kRuntimeText = {"Laufzeittext", "Runtime text"};
inline constexpr Localized kProblems = {"Probleme", "Problems"};
inline constexpr Localized kOutput = {"Ausgabe", "Output"};
inline constexpr Localized kToolGroup = {"Gruppe {}", "Group {}"};
inline constexpr Localized kSearchTools = {"Werkzeug suchen", "Search tools"};
inline constexpr Localized kNoControl = {"Kein Control gewählt", "No control selected"};
inline constexpr Localized kProperty = {"Eigenschaft", "Property"};
inline constexpr Localized kValue = {"Wert", "Value"};
inline constexpr Localized kReset = {"Zurücksetzen", "Reset"};
inline constexpr Localized kEditText = {"Als Text bearbeiten …", "Edit as text …"};
inline constexpr Localized kChangedProperty = {"geändert", "changed"};
inline constexpr Localized kYes = {"Ja", "Yes"};
inline constexpr Localized kNo = {"Nein", "No"};
inline constexpr Localized kAdvanced = {"Erweitert", "Advanced"};
inline constexpr Localized kAdvancedHelp = {"Für Kenner der Template-Engine",
                                            "For users who know the template engine"};
inline constexpr Localized kPickColor = {"Farbe wählen", "Choose a colour"};
inline constexpr Localized kPickColorFor = {"Farbe wählen: {}", "Choose a colour: {}"};
inline constexpr Localized kId = {"Id", "Id"};
inline constexpr Localized kIdHelp = {
    "Der Name dieses Controls; kein anderes auf der Seite hat ihn",
    "The name of this control, unique in the page"};
inline constexpr Localized kFields = {"Felder", "Fields"};
inline constexpr Localized kSearchFields = {"Feld suchen", "Search fields"};
inline constexpr Localized kInsertField = {"Feld einfügen:", "Insert a field:"};
inline constexpr Localized kNoFieldsToInsert = {
    "Ohne Office-Datei gibt es keine Felder zum Einfügen.",
    "Without an office file there are no fields to insert."};
inline constexpr Localized kClass = {"Klasse", "Class"};
inline constexpr Localized kCaption = {"Beschriftung", "Caption"};
inline constexpr Localized kPlace = {"Stelle", "Place"};
inline constexpr Localized kProblemControl = {"Control", "Control"};
inline constexpr Localized kMessage = {"Meldung", "Message"};
inline constexpr Localized kError = {"Fehler", "Error"};
inline constexpr Localized kWarning = {"Warnung", "Warning"};
inline constexpr Localized kCaretPlace = {"Zeile {}, Zeichen {}", "Line {}, character {}"};
inline constexpr Localized kZoom = {"Entwurf {} %", "Design {}%"};
inline constexpr Localized kPreviewZoom = {"Vorschau {} %", "Preview {}%"};
inline constexpr Localized kProblemCountNone = {"Keine Probleme", "No problems"};
inline constexpr Localized kProblemCountTip = {"Probleme zeigen oder verbergen",
                                               "Show or hide the problems"};
inline constexpr Localized kToolBar = {"Werkzeugleiste", "Tool bar"};
inline constexpr Localized kProblemCount = {"Fehler: {}  Warnungen: {}",
                                            "Errors: {}  Warnings: {}"};

// --- the preview ---
inline constexpr Localized kPreview = {"Vorschau", "Preview"};
inline constexpr Localized kMore = {"Mehr", "More"};
inline constexpr Localized kMadeUp = {"(ausgedachte Werte)", "(made-up values)"};
inline constexpr Localized kFromQuery = {"(aus der Abfrage, nur zum Lesen)",
                                         "(from the query, read only)"};
inline constexpr Localized kRecord = {"Datensatz", "Record"};
inline constexpr Localized kRecordNumber = {"Datensatz {}", "Record {}"};
inline constexpr Localized kRecordTip = {
    "Datensatz wählen: Tippen sucht im Namen, eine Zahl geht zum Datensatz dieser Nummer",
    "Choose a record: typing searches the names, a number goes to the record of that number"};
inline constexpr Localized kPreviousRecordTip = {"Voriger Datensatz", "Previous record"};
inline constexpr Localized kNextRecordTip = {"Nächster Datensatz", "Next record"};
inline constexpr Localized kEditRecord = {"Datensatz bearbeiten …", "Edit the record…"};
inline constexpr Localized kDarkMail = {"Dunkles Mailprogramm", "Dark mail program"};
inline constexpr Localized kDarkByMail = {"Die Mail hat dafür eigene Farben.",
                                          "The mail has colours of its own for it."};
inline constexpr Localized kDarkByReader = {
    "Die Mail hat dafür keine eigenen Farben; so kehren Mailprogramme sie um.",
    "The mail has no colours of its own for it; this is how mail programs invert them."};
inline constexpr Localized kNoPictures = {"Ohne Bilder", "Without pictures"};
inline constexpr Localized kReadShop = {"Shop lesen", "Read the shop"};
inline constexpr Localized kReadShopTip = {
    "Shop lesen: Produkte und Abfragen aus der Datenbank, die office.json nennt",
    "Read the shop: products and queries from the database that office.json names"};
inline constexpr Localized kSwitches = {"Bedingungen und Listen", "Conditions and lists"};
inline constexpr Localized kSwitch = {"Bedingung oder Liste", "Condition or list"};
inline constexpr Localized kShows = {"Zeigt", "Shows"};
inline constexpr Localized kAsInRecord = {"wie im Datensatz", "as in the record"};
inline constexpr Localized kAsInRecordNow = {"wie im Datensatz: {}", "as in the record: {}"};
inline constexpr Localized kNotReached = {"{} (kommt nicht vor)", "{} (not reached)"};
inline constexpr Localized kHolds = {"wahr", "true"};
inline constexpr Localized kFails = {"falsch", "false"};
inline constexpr Localized kFilled = {"gefüllt", "filled"};
inline constexpr Localized kEmptyList = {"leer", "empty"};
inline constexpr Localized kForced = {"anders als im Datensatz", "not as in the record"};
inline constexpr Localized kAllAsInRecord = {"Alles wie im Datensatz", "All as in the record"};
inline constexpr Localized kProductList = {"Produktliste", "Product list"};
inline constexpr Localized kPositionList = {"Positionsliste", "Position list"};
inline constexpr Localized kByHand = {"von Hand", "by hand"};
inline constexpr Localized kFindings = {"Was fehlt", "What is missing"};
inline constexpr Localized kMissing = {"Es fehlt etwas", "Something is missing"};
inline constexpr Localized kOutside = {"Weiß nur die Template-Engine oder der Shop",
                                       "Only the template engine or the shop knows"};
inline constexpr Localized kRecordNotFound = {"Keinen solchen Datensatz gefunden",
                                              "No such record found"};
inline constexpr Localized kNotPublishable = {
    "Die Seite hat Fehler und lässt sich nicht veröffentlichen; fehlerhafte Controls sind gerahmt.",
    "The page has errors and can't be published; faulty controls are framed."};
inline constexpr Localized kBrokenRecords = {"Die Beispieldaten lassen sich nicht lesen",
                                             "The sample data can't be read"};
inline constexpr Localized kBrokenRecordsHelp = {
    "Berichtigen Sie die Datei. Sobald sie gespeichert ist, kommt die Vorschau von selbst wieder.",
    "Correct the file. The preview comes back by itself as soon as it is saved."};
inline constexpr Localized kNoRecord = {"Es gibt keinen Datensatz", "There is no record"};
inline constexpr Localized kNoRecordHelp = {
    "preview.json hat keinen, und ihre Abfrage liefert keinen. „Datensatz bearbeiten …“ legt einen "
    "an.",
    "preview.json has none, and its query gives none. \"Edit the record…\" creates one."};
inline constexpr Localized kEmptyPage = {"Die Seite ist leer", "The page is empty"};
inline constexpr Localized kEmptyPageHelp = {
    "Schreiben Sie im Entwurf (Strg+2) oder im Quelltext (Strg+1), oder fügen Sie mit Strg+T ein "
    "Control ein. Hier steht dann, was ein Empfänger bekommt.",
    "Write in the design view (Ctrl+2) or in the source (Ctrl+1), or insert a control with Ctrl+T. "
    "What a recipient gets then appears here."};

// --- the form for records ---
inline constexpr Localized kRecords = {"Datensätze", "Records"};
inline constexpr Localized kRecordsUnsaved = {
    "Speichern Sie die Seite zuerst: Die Datensätze stehen in preview.json in ihrem Ordner.",
    "Save the page first: the records are in preview.json in its folder."};
inline constexpr Localized kRecordName = {"Name des Datensatzes", "Name of the record"};
inline constexpr Localized kValues = {"Werte", "Values"};
inline constexpr Localized kCustomerGroup = {"Kontakt", "Contact"};
inline constexpr Localized kOrderGroup = {"Bestellung", "Order"};
inline constexpr Localized kConfigGroup = {"Einstellungen", "Settings"};
inline constexpr Localized kPositions = {"Positionen der Bestellung", "Positions of the order"};
inline constexpr Localized kAddPosition = {"Position hinzufügen", "Add a position"};
inline constexpr Localized kDeletePosition = {"Position löschen", "Delete the position"};
inline constexpr Localized kNewRecord = {"Neu", "New"};
inline constexpr Localized kNewRecordName = {"Neuer Datensatz", "New record"};
inline constexpr Localized kCopyRecord = {"Kopieren", "Copy"};
inline constexpr Localized kDeleteRecord = {"Löschen …", "Delete…"};
inline constexpr Localized kDelete = {"Löschen", "Delete"};
inline constexpr Localized kDeleteRecordAsk = {"Den Datensatz „{}“ löschen?",
                                               "Delete the record \"{}\"?"};
inline constexpr Localized kFlagUnknown = {"keine Angabe", "not given"};
inline constexpr Localized kQueryRecord = {"{} (aus der Abfrage)", "{} (from the query)"};
inline constexpr Localized kQueryRecordHelp = {
    "Dieser Datensatz kommt aus der Abfrage und lässt sich hier nur lesen. „Kopieren“ macht daraus "
    "einen eigenen.",
    "This record comes from the query and can only be read here. \"Copy\" makes one of your own."};
inline constexpr Localized kNoRecordYet = {"„Neu“ legt den ersten Datensatz an.",
                                           "\"New\" creates the first record."};
inline constexpr Localized kUnsavedRecords = {"Die Datensätze wurden geändert. Speichern?",
                                              "The records were changed. Save them?"};

// --- what empty panels say ---
inline constexpr Localized kNoSwitches = {
    "Hier stehen die Bedingungen und Listen der Seite. Für jede lässt sich wählen, was sie zeigt.",
    "The conditions and lists of the page appear here. You can choose what each one shows."};
inline constexpr Localized kNoFindings = {"Mit diesem Datensatz fehlt nichts.",
                                          "Nothing is missing with this record."};
inline constexpr Localized kNoControls = {
    "Die Seite hat noch keine Controls. Mit Strg+T suchen Sie eines aus und fügen es ein.",
    "The page has no controls yet. Press Ctrl+T to find and insert one."};
inline constexpr Localized kNoProperties = {
    "Wählen Sie ein Control: mit einem Klick im Entwurf, im Quelltext oder in der Gliederung.",
    "Select a control: click it in the design view, the source or the outline."};
inline constexpr Localized kNoProblems = {
    "Keine Probleme. Fehler, mit denen sich die Seite nicht veröffentlichen lässt, und Warnungen "
    "stehen hier.",
    "No problems. Errors that keep the page from being published, and warnings, appear here."};
inline constexpr Localized kNoUses = {
    "Mit Strg+Umschalt+F auf einem Feld oder Control stehen hier alle Stellen, die es verwenden.",
    "Press Ctrl+Shift+F on a field or control to list all places that use it."};
inline constexpr Localized kNoRuntimeText = {
    "Wählen Sie ein Control. Hier steht dann, was es für die Template-Engine schreibt.",
    "Select a control to see what it writes for the template engine."};
inline constexpr Localized kNoOutput = {
    "Hier steht die Seite, wie „Veröffentlichen“ sie schreibt, sobald sie keine Fehler hat.",
    "The page as \"Publish\" writes it appears here once it has no errors."};

// --- the welcome page ---
inline constexpr Localized kWelcome = {"Willkommen", "Welcome"};
inline constexpr Localized kWelcomeText = {
    "Beginnen Sie eine Seite, oder öffnen Sie eine, an der Sie schon gearbeitet haben.",
    "Begin a page, or open one that you have worked on."};
inline constexpr Localized kBegin = {"Anfangen", "Begin"};
inline constexpr Localized kNewPage = {"Neue Seite", "New page"};
inline constexpr Localized kOpenPage = {"Öffnen …", "Open …"};
inline constexpr Localized kFromTemplate = {"Aus einer Vorlage", "From a template"};
inline constexpr Localized kRecentHeading = {"Zuletzt geöffnet", "Opened recently"};
inline constexpr Localized kNoRecent = {"Hier stehen die Seiten, die Sie geöffnet haben.",
                                        "Pages that you open appear here."};

// --- taking a template over ---
inline constexpr Localized kTakeOverDo = {"Übernehmen", "Take over"};
inline constexpr Localized kTakeOverFinds = {"Fundstellen", "Finds"};
inline constexpr Localized kTakeOverFound = {"Gefunden", "Found"};
inline constexpr Localized kTakeOverTarget = {"Wird zu", "Becomes"};
inline constexpr Localized kTakeOverPage = {"Seite", "Page"};
inline constexpr Localized kTakeOverAsTag = {"{} als Tag", "{} as a tag"};
inline constexpr Localized kTakeOverCount = {"{} von {} Fundstellen werden übernommen.",
                                             "{} of {} finds are taken over."};
inline constexpr Localized kNothingToTakeOver = {"Es wurde nichts gefunden, das zu übernehmen ist.",
                                                 "Nothing was found to take over."};
inline constexpr Localized kTakeOverErrors = {"Die Seite hat Fehler. Beheben Sie sie zuerst: {}",
                                              "The page has errors. Mend them first: {}"};
inline constexpr Localized kNoMapping = {"Keine Zuordnung für Platzhalter anderer Systeme",
                                         "No mapping for placeholders of other systems"};
inline constexpr Localized kMappingIs = {"Zuordnung: {}", "Mapping: {}"};
inline constexpr Localized kChooseMapping = {"&Zuordnung wählen …", "Choose &mapping …"};
inline constexpr Localized kMappingTitle = {"Zuordnung wählen", "Choose a mapping"};

// --- menus; the letter after "&" is the access key ---
inline constexpr Localized kFileMenu = {"&Datei", "&File"};
inline constexpr Localized kNew = {"&Neu", "&New"};
inline constexpr Localized kNewFromTemplate = {"Neu aus Vor&lage", "New from te&mplate"};
inline constexpr Localized kOpen = {"Ö&ffnen …", "&Open …"};
inline constexpr Localized kRecent = {"&Zuletzt geöffnet", "Open &recent"};
inline constexpr Localized kNothingRecent = {"Noch nichts", "Nothing yet"};
inline constexpr Localized kSaveAction = {"&Speichern", "&Save"};
inline constexpr Localized kSaveAs = {"Speichern &unter …", "Save &as …"};
inline constexpr Localized kPublish = {"&Veröffentlichen …", "&Publish …"};
inline constexpr Localized kTakeOverAction = {"Vorla&ge übernehmen …", "Take o&ver template …"};
inline constexpr Localized kChooseOffice = {"&Office-Datei wählen …", "Choose o&ffice file …"};
inline constexpr Localized kChooseToolbox = {"&Werkzeug-Datei wählen …", "Choose &toolbox file …"};
inline constexpr Localized kBuiltInToolbox = {"&Eingebaute Werkzeuge", "&Built-in toolbox"};
inline constexpr Localized kQuit = {"&Beenden", "&Quit"};
inline constexpr Localized kEditMenu = {"&Bearbeiten", "&Edit"};
inline constexpr Localized kUndo = {"&Rückgängig", "&Undo"};
inline constexpr Localized kUndoStep = {"&Rückgängig: {}", "&Undo: {}"};
inline constexpr Localized kRedo = {"&Wiederholen", "&Redo"};
inline constexpr Localized kRedoStep = {"&Wiederholen: {}", "&Redo: {}"};
inline constexpr Localized kCut = {"&Ausschneiden", "Cu&t"};
inline constexpr Localized kCopy = {"&Kopieren", "&Copy"};
inline constexpr Localized kPaste = {"&Einfügen", "&Paste"};
inline constexpr Localized kSelectAll = {"A&lles auswählen", "Select &all"};
inline constexpr Localized kFindAction = {"&Suchen …", "&Find …"};
inline constexpr Localized kReplaceAction = {"Erse&tzen …", "R&eplace …"};
inline constexpr Localized kFindNext = {"Weiters&uchen", "Find &next"};
inline constexpr Localized kFindPrevious = {"Rückwärts su&chen", "Find pre&vious"};
inline constexpr Localized kControlMenu = {"&Control", "&Control"};
inline constexpr Localized kOpenPages = {"&Eigenschaftenseiten …", "Property &pages …"};
inline constexpr Localized kNextControl = {"&Nächstes Control", "&Next control"};
inline constexpr Localized kPreviousControl = {"&Voriges Control", "P&revious control"};
inline constexpr Localized kNextProblem = {"Nächstes &Problem", "Next pro&blem"};
inline constexpr Localized kPreviousProblem = {"V&origes Problem", "Previous prob&lem"};
inline constexpr Localized kFixProblem = {"Problem be&heben", "&Fix problem"};
inline constexpr Localized kFixTip = {"Strg+. behebt es: {}", "Ctrl+. fixes it: {}"};
inline constexpr Localized kNoFix = {
    "Dieses Problem lässt sich nicht auf eine sichere Weise beheben.",
    "There is no one sure way to fix this problem."};
inline constexpr Localized kNoProblemHere = {"Hier ist kein Problem.", "There is no problem here."};
inline constexpr Localized kFixLater = {"Die Seite wird noch geprüft.",
                                        "The page is still being checked."};
inline constexpr Localized kInsertControl = {"Control e&infügen", "&Insert control"};
inline constexpr Localized kOpensInserted = {"Nach dem Einfügen &bearbeiten",
                                             "&Edit after inserting"};
inline constexpr Localized kRecognize = {"Controls im Text e&rkennen",
                                         "Re&cognize controls in text"};
inline constexpr Localized kWriteTexts = {"&Laufzeittexte schreiben", "&Write runtime texts"};
inline constexpr Localized kWhereUsed = {"&Wo wird dieses Feld verwendet? …",
                                         "Where is this field &used? …"};
inline constexpr Localized kViewMenu = {"&Ansicht", "&View"};
inline constexpr Localized kLayoutBeside = {"Entwurf und Quelltext neben&einander",
                                            "Design and source side &by side"};
inline constexpr Localized kLayoutBelow = {"Quelltext &unter dem Entwurf", "Source be&low design"};
inline constexpr Localized kLayoutAlone = {"Nur Ent&wurf", "D&esign only"};
inline constexpr Localized kPreviewAction = {"Vo&rschau", "Pre&view"};
inline constexpr Localized kNextRecord = {"Nä&chster Datensatz", "Ne&xt record"};
inline constexpr Localized kPreviousRecord = {"Voriger Da&tensatz", "Previous re&cord"};
inline constexpr Localized kFit = {"An die Breite an&passen", "&Fit to width"};
inline constexpr Localized kMailWidth = {"&600 Pixel breit, wie im Mailprogramm",
                                         "&600 pixels wide, as in a mail program"};
inline constexpr Localized kPhoneWidth = {"&360 Pixel breit, wie auf dem Telefon",
                                          "&360 pixels wide, as on a phone"};
inline constexpr Localized kZoomIn = {"Ver&größern", "Zoom &in"};
inline constexpr Localized kZoomOut = {"Ver&kleinern", "Zoom &out"};
inline constexpr Localized kZoomActual = {"&Originalgröße", "&Actual size"};
inline constexpr Localized kWrap = {"Zeilen um&brechen", "W&rap lines"};
inline constexpr Localized kNextPanel = {"&Nächster Bereich", "&Next panel"};
inline constexpr Localized kPreviousPanel = {"&Voriger Bereich", "&Previous panel"};

// --- where is it used ---
inline constexpr Localized kWhereUsedTitle = {"Wo wird es verwendet?", "Where is it used?"};
inline constexpr Localized kWhichName = {
    "Welches Feld? („customer.“ oder „order.“ und sein Name; auch die id eines Controls)",
    "Which field? (\"customer.\" or \"order.\" and its name; or the id of a control)"};
inline constexpr Localized kUsePage = {"Seite", "Page"};
inline constexpr Localized kUse = {"Verwendung", "Use"};
inline constexpr Localized kSearchingUses = {"{} wird in den Seiten des Ordners gesucht …",
                                             "Searching the pages of the folder for {} …"};
inline constexpr Localized kUsesCancelled = {"Abgebrochen", "Cancelled"};
inline constexpr Localized kUsedIn = {"{}: {} in {} dieses Ordners", "{}: {} in {} of this folder"};
inline constexpr Localized kUsedNowhere = {
    "{} kommt in den Seiten dieses Ordners und seiner Unterordner nicht vor.",
    "{} is not used in the pages of this folder and its subfolders."};
inline constexpr Localized kUnreadPage = {"{} lässt sich nicht lesen.", "{} cannot be read."};
inline constexpr Localized kOnePlace = {"{} Stelle", "{} place"};
inline constexpr Localized kPlaces = {"{} Stellen", "{} places"};
inline constexpr Localized kOnePage = {"{} Seite", "{} page"};
inline constexpr Localized kPages = {"{} Seiten", "{} pages"};
inline constexpr Localized kRenameUses = {"&Umbenennen …", "&Rename …"};
inline constexpr Localized kRename = {"Umbenennen", "Rename"};
inline constexpr Localized kRenameOfficeToo = {"Auch im Office umbenennen",
                                               "Rename in office, too"};
inline constexpr Localized kRenameTitle = {"Umbenennen", "Rename"};
inline constexpr Localized kNewName = {"Neuer Name für {}:", "New name for {}:"};
inline constexpr Localized kRenameQuestion = {"{} in {} umbenennen: {} in {}?",
                                              "Rename {} to {}: {} in {}?"};
inline constexpr Localized kRenameWrites = {
    "Die anderen Seiten werden gleich geschrieben, alle oder keine. In der offenen lässt es sich "
    "rückgängig machen.",
    "The other pages are written at once, all or none. In the open one it can be undone."};
inline constexpr Localized kRenameMerges = {
    "{} kommt schon vor ({}); danach lassen sich die beiden nicht mehr unterscheiden.",
    "{} is used already ({}); nobody can tell the two apart afterwards."};
inline constexpr Localized kRenameInOffice = {"{} führt das Feld noch unter dem alten Namen.",
                                              "{} still lists the field by its old name."};
inline constexpr Localized kCannotRename = {
    "{} lässt sich nicht überall umbenennen, und darum wurde nichts geändert:\n\n{}",
    "{} cannot be renamed everywhere, so nothing was changed:\n\n{}"};
inline constexpr Localized kRenameStep = {"Umbenennen von {} in {}", "Renaming {} to {}"};

// --- find and replace ---
inline constexpr Localized kFind = {"Suchen", "Find"};
inline constexpr Localized kReplaceWith = {"Ersetzen durch", "Replace with"};
inline constexpr Localized kNext = {"Weiter", "Next"};
inline constexpr Localized kPrevious = {"Zurück", "Previous"};
inline constexpr Localized kReplaceOne = {"Ersetzen", "Replace"};
inline constexpr Localized kReplaceAll = {"Alle ersetzen", "Replace all"};
inline constexpr Localized kMatchCase = {"Groß/klein", "Match case"};
inline constexpr Localized kExpression = {"Regulärer Ausdruck", "Regular expression"};
inline constexpr Localized kNotFound = {"Nicht gefunden", "Not found"};
inline constexpr Localized kMatchOf = {"{} von {}", "{} of {}"};
inline constexpr Localized kReplaced = {"{} ersetzt", "{} replaced"};
inline constexpr Localized kWrongExpression = {"Zeichen {}: {}", "Character {}: {}"};

// --- questions and messages ---
using kvo::kCancel;
using kvo::kOk;
inline constexpr Localized kSave = {"Speichern", "Save"};
inline constexpr Localized kDiscard = {"Verwerfen", "Discard"};
inline constexpr Localized kRecover = {"Wiederherstellen", "Recover"};
inline constexpr Localized kLater = {"Später", "Later"};
inline constexpr Localized kOverwrite = {"Handgeändertes überschreiben", "Overwrite hand edits"};
inline constexpr Localized kOverwriteAnyway = {"Überschreiben", "Overwrite"};
inline constexpr Localized kReload = {"Neu laden", "Reload"};
inline constexpr Localized kKeep = {"Behalten", "Keep"};
inline constexpr Localized kInsertText = {"Text einfügen", "Insert text"};
inline constexpr Localized kSaveAsItStands = {"Trotzdem speichern", "Save anyway"};
inline constexpr Localized kSaveAnywayMeans = {
    "„Trotzdem speichern“ schreibt die Seite, wie sie dasteht, ohne neue Laufzeittexte.",
    "\"Save anyway\" writes the page as it is, without new runtime texts."};
inline constexpr Localized kShowProblems = {"Probleme zeigen", "Show problems"};
inline constexpr Localized kUnsaved = {"„{}“ wurde geändert. Vorher speichern?",
                                       "\"{}\" was changed. Save it first?"};
inline constexpr Localized kCannotSave = {
    "Die Seite hat Fehler; die Laufzeittexte lassen sich nicht schreiben.",
    "The page has errors; the runtime texts can't be written."};
inline constexpr Localized kCannotPublish = {
    "Die Seite hat Fehler und lässt sich nicht veröffentlichen.",
    "The page has errors and can't be published."};
inline constexpr Localized kPublishOverPage = {
    "Das ist die Seite selbst: Veröffentlicht verlöre sie ihre Controls. Wählen Sie eine andere "
    "Datei.",
    "That is the page itself: published, it would lose its controls. Choose another file."};
inline constexpr Localized kUtf16 = {
    "„{}“ ist in UTF-16 geschrieben. Speichern Sie die Seite in einem anderen Editor als UTF-8.",
    "\"{}\" is encoded in UTF-16. Save the page as UTF-8 in another editor."};
inline constexpr Localized kSaved = {"„{}“ gespeichert", "\"{}\" saved"};
inline constexpr Localized kPublished = {"„{}“ veröffentlicht", "\"{}\" published"};
inline constexpr Localized kChangedOutside = {
    "„{}“ wurde außerhalb des Editors geändert. Neu laden?",
    "\"{}\" was changed outside the editor. Reload it?"};
inline constexpr Localized kChangedOutsideModified = {
    "„{}“ wurde außerhalb des Editors geändert. Neu laden? Ihre eigenen Änderungen gehen dann "
    "verloren.",
    "\"{}\" was changed outside the editor. Reload it? Your own changes will be lost."};
inline constexpr Localized kOverwriteOutside = {
    "„{}“ wurde außerhalb des Editors geändert. Trotzdem überschreiben?",
    "\"{}\" was changed outside the editor. Overwrite it?"};
inline constexpr Localized kOverwriteHandEdited = {
    "Der Laufzeittext von „{}“ wurde in der Seite von Hand geändert. Überschreiben?",
    "The runtime text of \"{}\" was edited in the page by hand. Overwrite it?"};
inline constexpr Localized kIdTaken = {
    "Die Id „{}“ hat schon ein anderes Control der Seite. Wählen Sie eine andere.",
    "Another control of the page already has the id \"{}\". Choose a different one."};
inline constexpr Localized kNoPages = {
    "„{}“ hat keine Eigenschaftenseiten. Das Feld „Eigenschaften“ zeigt alle Werte.",
    "\"{}\" has no property pages. The \"Properties\" panel shows all values."};
inline constexpr Localized kNoOffice = {
    "Felder und Produkte lassen sich nicht auswählen: Neben der Seite liegt keine office.json, und "
    "keine andere Office-Datei ist gewählt. Wählen Sie eine mit „Datei – Office-Datei wählen …“.",
    "Fields and products can't be chosen: there is no office.json beside the page, and no other "
    "office file is chosen. Choose one with \"File - Choose office file …\"."};
inline constexpr Localized kNoFields = {
    "Felder lassen sich nicht auswählen: „{}“ nennt keine. Wählen Sie eine andere Datei mit "
    "„Datei – Office-Datei wählen …“.",
    "Fields can't be chosen: \"{}\" lists none. Choose another file with \"File - "
    "Choose office file …\"."};
inline constexpr Localized kDraftFound = {
    "Der Editor wurde nicht ordentlich beendet. Es gibt einen Entwurf von „{}“ vom {}.",
    "The editor did not close properly. There is a draft of \"{}\" from {}."};
inline constexpr Localized kNoDraft = {"Der Entwurf lässt sich nicht sichern: {}",
                                       "The draft can't be saved: {}"};
inline constexpr Localized kOpenTitle = {"Seite öffnen", "Open a page"};
inline constexpr Localized kSaveTitle = {"Seite speichern", "Save the page"};
inline constexpr Localized kOfficeTitle = {"Office-Datei wählen", "Choose an office file"};
inline constexpr Localized kToolboxTitle = {"Werkzeug-Datei wählen", "Choose a toolbox file"};
inline constexpr Localized kPublishTitle = {"Seite veröffentlichen", "Publish the page"};
inline constexpr Localized kPageFiles = {"Seiten (*.html *.htm);;Alle Dateien (*)",
                                         "Pages (*.html *.htm);;All files (*)"};
inline constexpr Localized kAbout = {"Editor für HTML-Vorlagen mit Controls.",
                                     "Editor for HTML templates with controls."};
inline constexpr Localized kPageArgument = {"die Seite, die geöffnet wird", "the page to open"};

}  // namespace words
}  // namespace kvo::editor
