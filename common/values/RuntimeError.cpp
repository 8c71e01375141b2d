#include "common/values/RuntimeError.h"

#include <array>
#include <utility>

namespace kvo {
namespace {

struct Row {
  ErrorNumber number;
  Localized description;
};

constexpr std::array kDescriptions = {
    Row{ErrorNumber::invalidCall,
        {"Ungültiger Prozeduraufruf oder ungültiges Argument",
         "Invalid procedure call or argument"}},
    Row{ErrorNumber::overflow, {"Überlauf", "Overflow"}},
    Row{ErrorNumber::subscriptOutOfRange,
        {"Index außerhalb des gültigen Bereichs", "Subscript out of range"}},
    Row{ErrorNumber::typeMismatch, {"Typen unverträglich", "Type mismatch"}},
    Row{ErrorNumber::objectNotSet, {"Objektvariable nicht festgelegt", "Object variable not set"}},
    Row{ErrorNumber::cannotCreateObject,
        {"Objekterstellung nicht möglich", "Can't create the object"}},
    Row{ErrorNumber::unknownMember,
        {"Objekt unterstützt diese Eigenschaft oder Methode nicht",
         "Object doesn't support this property or method"}},
    Row{ErrorNumber::keyInUse,
        {"Dieser Schlüssel ist bereits einem Element dieser Auflistung zugeordnet",
         "This key is already associated with an element of this collection"}},
    Row{ErrorNumber::statementRejected,
        {"Die Datenbank lehnt die Abfrage ab; prüfen Sie, ob es die Tabelle und ihre Felder gibt",
         "The database rejects the statement; check that the table and its fields exist"}},
    Row{ErrorNumber::fileNotOpened,
        {"Die Datenbankdatei lässt sich nicht öffnen; prüfen Sie Pfad, Leserecht und Inhalt",
         "The database file cannot be opened; check its path, its contents and that it may be "
         "read"}},
    Row{ErrorNumber::databaseLocked,
        {"Die Datenbank ist gesperrt; versuchen Sie es noch einmal, wenn das andere Programm "
         "fertig ist",
         "The database is locked; try again when the other program is done"}},
    Row{ErrorNumber::noCurrentRecord,
        {"Hier steht kein Datensatz: das Ende ist erreicht, oder er wurde geändert oder gelöscht",
         "There is no record here: the end is reached, or it was changed or deleted"}},
    Row{ErrorNumber::fieldNotFound,
        {"Dieses Feld gibt es nicht in der Abfrage", "The statement has no such field"}},
    Row{ErrorNumber::closed,
        {"Das geht nicht, solange das Objekt geschlossen ist",
         "This cannot be done while the object is closed"}},
    Row{ErrorNumber::alreadyOpen,
        {"Das geht nicht, solange das Objekt geöffnet ist",
         "This cannot be done while the object is open"}},
    Row{ErrorNumber::driverNotFound,
        {"Diese Art Datenbank ist unbekannt (möglich sind sqlite3://, postgresql://, mysql:// und "
         "odbc://), oder ihr Treiber ist nicht installiert",
         "This kind of database is unknown (there are sqlite3://, postgresql://, mysql:// and "
         "odbc://), or its driver is not installed"}},
    Row{ErrorNumber::noConnection,
        {"Es besteht keine Verbindung zur Datenbank; prüfen Sie Server, Zugangsdaten und Netz",
         "There is no connection to the database; check server, credentials and network"}},
};

Message MessageOf(ErrorNumber number, const std::string& about) {
  Message message;
  for (const Row& row : kDescriptions)
    if (row.number == number)
      message = {std::string(row.description.german), std::string(row.description.english)};
  if (!about.empty()) {
    message.german += ": " + about;
    message.english += ": " + about;
  }
  return message;
}

}  // namespace

RuntimeError::RuntimeError(ErrorNumber number, std::string about)
    : LocalizedError(MessageOf(number, about)), number_(number), about_(std::move(about)) {}

}  // namespace kvo
