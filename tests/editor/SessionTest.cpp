// The session without a window. The first tests cover the loss of work, the author's or somebody
// else's.
#include "apps/editor/Session.h"

#include <QDir>
#include <deque>
#include <filesystem>

#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

// A user who only gives answers, each identified by its button's caption.
class Author final : public SessionUser {
 public:
  std::deque<QString> answers;
  QString chosen;                    // the file, when a question asks for one
  std::function<void()> whileAsked;  // runs before the answer
  QStringList asked, told, notes;
  int shownProblems = 0;

  std::size_t Ask(const Question& question) override {
    asked += question.text;
    std::size_t refusing = 0;
    std::optional<std::size_t> answer;
    for (std::size_t i = 0; i < question.answers.size(); ++i) {
      const Answer& each = question.answers[i];
      if (each.kind == Answer::Kind::refuses) ++refusing;
      if (!answers.empty() && each.text.german == answers.front().toStdString()) answer = i;
    }
    EXPECT_EQ(refusing, 1U) << question.text.toStdString();
    EXPECT_LT(question.preset, question.answers.size());
    EXPECT_NE(question.answers[question.preset].kind, Answer::Kind::destroys);
    if (whileAsked) std::exchange(whileAsked, {})();
    EXPECT_TRUE(answer) << "unknown answer: " << question.text.toStdString();
    if (!answers.empty()) answers.pop_front();
    return answer.value_or(question.preset);
  }
  void Tell(const QString& text) override { told += text; }
  void Note(const QString& text, std::chrono::milliseconds) override { notes += text; }
  QString ChooseFile(const Localized&, const QString&) override { return chosen; }
  void ShowProblems() override { ++shownProblems; }
  void PageChanged() override {}
  void PageEnds() override {}
  void PageStarted(bool) override {}
  void FileNamed() override {}
  void FolderChanged() override {}
  void OfficeChanged() override {}
};

const std::string kUtf16Page("\xFF\xFEx\0", 4);
constexpr char kBroken[] = "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>";

class SessionTest : public testing::Test {
 protected:
  SessionTest() { session->New(); }
  ~SessionTest() override {
    EXPECT_TRUE(author.answers.empty()) << "some questions were not asked";
  }

  // Opens a file with these bytes and types before them.
  void OpenAndType(const std::string& bytes, const QString& typed = "neu ") {
    ASSERT_TRUE(session->Open(desk.Put("seite.html", bytes)));
    Type(typed);
  }
  void Type(const QString& text) {
    QTextCursor cursor(session->Page().Document());
    cursor.insertText(text);
  }
  std::string Bytes() const { return session->Page().Content().Bytes(); }
  bool IsModified() const { return session->Page().IsModified(); }

  QString Drafts() const { return desk.Path("drafts"); }
  // Returns the bytes of all drafts.
  std::vector<std::string> DraftBytes() const {
    std::vector<std::string> drafts;
    for (const QString& name : QDir(Drafts()).entryList({"*.page"}, QDir::Files))
      drafts.push_back(desk.Bytes("drafts/" + name));
    return drafts;
  }
  bool WaitForDraft() const {
    return WaitFor([this] { return DraftBytes() == std::vector{Bytes()}; });
  }
  // Blocks the session's draft with a folder of that name.
  void BlockDraft() const {
    for (const QString& lock : QDir(Drafts()).entryList({"*.lock"}))
      EXPECT_TRUE(QDir(Drafts()).mkpath(QString(lock).replace(".lock", ".page") + "/x"));
  }

  Desk desk;
  Author author;
  std::unique_ptr<Session> session =
      std::make_unique<Session>(author, Session::Places{desk.Path("drafts"), {}});
};

// --- losing work ---

TEST_F(SessionTest, AForeignChangeIsOverwrittenOnlyWithConsent) {
  OpenAndType("alt");
  desk.Put("seite.html", "von anderen");
  author.answers = {"Abbrechen"};
  EXPECT_FALSE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), "von anderen");
  EXPECT_TRUE(IsModified());
  author.answers = {"Überschreiben"};
  EXPECT_TRUE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
  EXPECT_FALSE(IsModified());
}

TEST_F(SessionTest, AFailedSaveKeepsPageNameAndDraft) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  EXPECT_FALSE(session->SaveAs(desk.Path("fehlt/seite.html")));
  EXPECT_EQ(author.told.size(), 1);
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_TRUE(IsModified());
  EXPECT_EQ(session->File().Name(), desk.Path("seite.html"));
  EXPECT_TRUE(WaitForDraft());
}

TEST_F(SessionTest, UnsavedWorkIsNeverDroppedWithoutAsking) {
  OpenAndType("alt");
  const QString other = desk.Put("andere.html", "andere");
  author.answers = {"Abbrechen", "Abbrechen", "Abbrechen"};
  session->New();
  EXPECT_FALSE(session->Open(other));
  EXPECT_FALSE(session->End());
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_TRUE(IsModified());
  EXPECT_TRUE(WaitForDraft());
}

TEST_F(SessionTest, AnActionThatSavesFirstStopsIfSavingFails) {
  OpenAndType(kBroken);
  author.answers = {"Speichern", "Probleme zeigen"};
  EXPECT_FALSE(session->End());
  EXPECT_EQ(author.shownProblems, 1);
  EXPECT_EQ(desk.Bytes("seite.html"), kBroken);

  author.answers = {"Verwerfen"};
  session->New();
  Type("nie gespeichert");
  author.answers = {"Speichern"};  // and then chooses no file
  EXPECT_FALSE(session->Open(desk.Path("seite.html")));
  EXPECT_TRUE(session->File().Name().isEmpty());
  EXPECT_TRUE(Bytes().starts_with("nie gespeichert"));

  author.answers = {"Speichern"};
  author.chosen = desk.Path("neu.html");
  EXPECT_TRUE(session->End());
  EXPECT_TRUE(desk.Bytes("neu.html").starts_with("nie gespeichert"));
}

TEST_F(SessionTest, AFailedOpenKeepsThePage) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  author.answers = {"Verwerfen", "Verwerfen"};
  EXPECT_FALSE(session->Open(desk.Path("fehlt.html")));
  EXPECT_FALSE(session->Open(desk.Put("utf16.html", kUtf16Page)));
  EXPECT_EQ(author.told.size(), 2);
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_TRUE(IsModified());
  EXPECT_EQ(session->Title(), "seite.html");
  EXPECT_TRUE(WaitForDraft());
}

TEST_F(SessionTest, AChangeOnDiskIsAskedAboutOnceAndMayBeRefused) {
  OpenAndType("alt");
  desk.Put("seite.html", "von anderen");
  author.answers = {"Behalten"};
  author.whileAsked = [this] {
    session->LookAtFile();
    QTest::qWait(400);
  };
  EXPECT_TRUE(WaitFor([this] { return author.answers.empty(); }));
  session->LookAtFile();
  QTest::qWait(400);
  EXPECT_EQ(author.asked.size(), 1);
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_TRUE(session->Save()) << "the question was already answered";
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
}

TEST_F(SessionTest, KeepingAPageWhoseFileChangedMakesItUnsaved) {
  ASSERT_TRUE(session->Open(desk.Put("seite.html", "alt")));
  desk.Put("seite.html", "von anderen");
  author.answers = {"Behalten", "Abbrechen"};
  EXPECT_TRUE(WaitForDraft());
  EXPECT_FALSE(session->End());
  EXPECT_EQ(Bytes(), "alt");
}

TEST_F(SessionTest, ReloadingRemovesTheDraft) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  desk.Put("seite.html", "von anderen");
  author.answers = {"Neu laden"};
  EXPECT_TRUE(WaitFor([this] { return Bytes() == "von anderen"; }));
  EXPECT_FALSE(IsModified());
  EXPECT_TRUE(DraftBytes().empty());
}

TEST_F(SessionTest, AfterAFailedReloadTheFileIsNotOverwrittenWithoutAsking) {
  OpenAndType("alt");
  desk.Put("seite.html", kUtf16Page);
  author.answers = {"Neu laden", "Abbrechen"};
  EXPECT_TRUE(WaitFor([this] { return author.told.size() == 1; }));
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_TRUE(IsModified());
  EXPECT_FALSE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), kUtf16Page);
}

TEST_F(SessionTest, AMissingFileIsWrittenAgain) {
  OpenAndType("alt");
  QFile::remove(desk.Path("seite.html"));
  session->LookAtFile();
  QTest::qWait(400);
  EXPECT_TRUE(author.asked.isEmpty());
  EXPECT_TRUE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
}

TEST_F(SessionTest, PublishingNeverReplacesThePage) {
  const std::string page = Print("a", "1");
  ASSERT_TRUE(session->Open(desk.Put("seite.html", page)));
  std::filesystem::create_symlink(desk.Path("seite.html").toStdString(),
                                  desk.Path("verweis.html").toStdString());
  for (const char* name : {"seite.html", "drafts/../seite.html", "verweis.html"})
    EXPECT_FALSE(session->Publish(desk.Path(name))) << name;
  EXPECT_EQ(author.told.size(), 3);
  EXPECT_EQ(desk.Bytes("seite.html"), page);
  EXPECT_TRUE(session->Publish(desk.Path("fertig.html")));
  EXPECT_EQ(desk.Bytes("fertig.html"), "<kv:print value=\"1\"/>");
}

TEST_F(SessionTest, ErrorsNeverPreventSavingWork) {
  OpenAndType(kBroken);
  author.answers = {"Trotzdem speichern"};
  EXPECT_TRUE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), std::string("neu ") + kBroken);
  EXPECT_TRUE(author.asked[0].contains("DTCPrnt")) << author.asked[0].toStdString();

  Type("!");
  EXPECT_FALSE(session->WriteRuntimeTexts());
  EXPECT_FALSE(session->Publish(desk.Path("fertig.html")));
  EXPECT_EQ(author.shownProblems, 2);
  EXPECT_EQ(Bytes(), std::string("!neu ") + kBroken);
}

// --- drafts ---

TEST_F(SessionTest, ASessionThatEndsUnexpectedlyLeavesItsDraft) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  session.reset();
  const auto left = Draft::LeftIn(Drafts());
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].pageFile, desk.Path("seite.html"));
  EXPECT_EQ(Draft::Read(left[0]), "neu alt");
}

TEST_F(SessionTest, SavingOrEndingOnPurposeLeavesNoDraft) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  EXPECT_TRUE(session->Save());
  EXPECT_TRUE(DraftBytes().empty());
  Type("!");
  ASSERT_TRUE(WaitForDraft());
  author.answers = {"Verwerfen"};
  EXPECT_TRUE(session->End());
  EXPECT_TRUE(DraftBytes().empty());
}

TEST_F(SessionTest, ADraftIsOfferedUntilTheSessionTakesItOver) {
  { Draft(Drafts()).Write("getippt", desk.Path("seite.html"), "f00"); }
  author.answers = {"Wiederherstellen"};
  EXPECT_TRUE(session->OfferDrafts());
  EXPECT_EQ(Bytes(), "getippt");
  EXPECT_TRUE(IsModified());
  EXPECT_EQ(session->Title(), "seite.html");
  EXPECT_EQ(DraftBytes(), std::vector<std::string>{"getippt"});
  EXPECT_TRUE(Draft::LeftIn(Drafts()).empty()) << "the session has taken it over";

  desk.Put("seite.html", "von anderen");  // after the draft was written
  author.answers = {"Abbrechen"};
  EXPECT_FALSE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), "von anderen");
}

TEST_F(SessionTest, ADraftThatCannotBeTakenOverIsKept) {
  { Draft(Drafts()).Write("getippt", "", ""); }
  BlockDraft();
  author.answers = {"Wiederherstellen"};
  EXPECT_TRUE(session->OfferDrafts());
  EXPECT_EQ(Bytes(), "getippt");
  EXPECT_EQ(Draft::LeftIn(Drafts()).size(), 1U);
}

TEST_F(SessionTest, RecoveringADraftAsksAboutTheOpenPage) {
  { Draft(Drafts()).Write("getippt", "", ""); }
  OpenAndType("alt");
  author.answers = {"Wiederherstellen", "Abbrechen"};
  EXPECT_FALSE(session->OfferDrafts());
  EXPECT_EQ(Bytes(), "neu alt");
  EXPECT_EQ(Draft::LeftIn(Drafts()).size(), 1U);
}

TEST_F(SessionTest, ADraftOfARunningSessionIsNotOffered) {
  OpenAndType("alt");
  ASSERT_TRUE(WaitForDraft());
  Session other(author, {Drafts(), {}});
  EXPECT_FALSE(other.OfferDrafts());
}

TEST_F(SessionTest, AFailedDraftIsReportedAndSavingStillWorks) {
  BlockDraft();
  OpenAndType("alt");
  EXPECT_TRUE(WaitFor([this] { return author.notes.size() == 1; }));
  EXPECT_TRUE(author.notes[0].startsWith("Der Entwurf lässt sich nicht sichern"));
  EXPECT_TRUE(session->Save());
  EXPECT_EQ(desk.Bytes("seite.html"), "neu alt");
}

// --- steps ---

TEST_F(SessionTest, SavingIsUndoneWithTheStepBeforeIt) {
  const std::string page = Print("a", "1");
  OpenAndType(page, "!");
  EXPECT_TRUE(session->Save());
  EXPECT_NE(Bytes().find("<kv:print value=\"1\"/>"), std::string::npos);
  EXPECT_FALSE(IsModified());
  EXPECT_EQ(session->Page().UndoName(), "Eingabe");
  session->Page().Undo();
  EXPECT_EQ(Bytes(), page);
  EXPECT_TRUE(IsModified());
}

TEST_F(SessionTest, EveryChangeIsAStepWithAName) {
  ASSERT_TRUE(session->Open(desk.Put("seite.html", Print("a", "1"))));
  EXPECT_TRUE(session->WriteRuntimeTexts());
  EXPECT_EQ(session->Page().UndoName(), "Laufzeittexte schreiben");
  Type(QString::fromStdString(Print("b", "2")));
  session->RecognizeControls();
  EXPECT_EQ(session->Page().UndoName(), "Controls im Text erkennen");
  EXPECT_TRUE(session->Page().IsControl(0));
  session->Page().Undo();
  EXPECT_FALSE(session->Page().IsControl(0));
}

// --- the office and recent files ---

constexpr char kOffice[] =
    R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0}]})";

TEST_F(SessionTest, TheOfficeIsTheFoldersChoiceOrElseNextToThePage) {
  EXPECT_EQ(session->OfficeFile(), "");
  EXPECT_TRUE(session->Office()->Described().contactFields.empty());
  desk.Put("office.json", kOffice);
  ASSERT_TRUE(session->Open(desk.Put("seite.html", "")));
  EXPECT_EQ(session->OfficeFile(), desk.Path("office.json"));
  EXPECT_EQ(session->Office()->Described().contactFields.size(), 1U);
  EXPECT_TRUE(session->ChooseOffice(desk.Put("andere.json", "{}")));
  ASSERT_TRUE(session->Open(desk.Path("seite.html")));
  EXPECT_EQ(session->OfficeFile(), desk.Path("andere.json"));
  session->New();
  EXPECT_EQ(session->OfficeFile(), desk.Path("andere.json")) << "continues with the existing one";

  QDir(desk.Path("")).mkdir("ordner");
  desk.Put("ordner/office.json", kOffice);
  EXPECT_TRUE(session->SaveAs(desk.Path("ordner/seite.html")));
  EXPECT_EQ(session->OfficeFile(), desk.Path("ordner/office.json"));
}

TEST_F(SessionTest, ABrokenOfficeIsReportedAndNeverChosen) {
  desk.Put("office.json", "{");
  ASSERT_TRUE(session->Open(desk.Put("seite.html", "alt")));
  EXPECT_EQ(author.told.size(), 1);
  EXPECT_EQ(Bytes(), "alt");
  EXPECT_EQ(session->OfficeFile(), "");
  EXPECT_FALSE(session->ChooseOffice(desk.Path("office.json")));
  ASSERT_TRUE(session->Open(desk.Put("office.json", "{}")));
  EXPECT_EQ(author.told.size(), 2) << "remembered only the file next to the page";
}

TEST_F(SessionTest, RecentFilesAreInOrderWithoutDuplicates) {
  QStringList wanted;
  for (int i = 0; i < 12; ++i) {
    const QString file = desk.Put(QString::number(i) + ".html", "");
    ASSERT_TRUE(session->Open(file));
    wanted.prepend(file);
  }
  EXPECT_EQ(Session::RecentFiles(), wanted.mid(0, 10));
  ASSERT_TRUE(session->Open(wanted[3]));
  wanted.move(3, 0);
  EXPECT_EQ(Session::RecentFiles(), wanted.mid(0, 10));
}

}  // namespace
}  // namespace kvo::editor
