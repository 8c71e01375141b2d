// Drafts: typed text survives a killed editor.
#include "apps/editor/Drafts.h"

#include <QCoreApplication>
#include <QDir>
#include <QMessageBox>
#include <QProcess>

#include "tests/editor/EditorTest.h"
#include "tests/editor/Victim.h"

namespace kvo::editor {
namespace {

class DraftTest : public testing::Test {
 protected:
  QString Drafts() const { return desk.Path("drafts"); }
  QStringList Files() const { return QDir(Drafts()).entryList(QDir::Files); }

  Desk desk;
};

TEST_F(DraftTest, IsAvailableOnceItsEditorIsGone) {
  auto draft = std::make_unique<Draft>(Drafts());
  EXPECT_TRUE(Draft::LeftIn(Drafts()).empty());
  draft->Write(std::string("a\0\xFF", 3), "/seiten/größe.html", "f00");
  EXPECT_TRUE(Draft::LeftIn(Drafts()).empty());  // its editor is still running
  draft.reset();
  const auto left = Draft::LeftIn(Drafts());
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].pageFile, "/seiten/größe.html");
  EXPECT_EQ(left[0].known, "f00");
  EXPECT_EQ(Draft::Read(left[0]), std::string("a\0\xFF", 3));
  Draft::Remove(left[0]);
  EXPECT_TRUE(Draft::LeftIn(Drafts()).empty());
  EXPECT_EQ(Draft::Read(left[0]), std::nullopt);
}

TEST_F(DraftTest, LeavesNothingWhenItIsDiscarded) {
  {
    Draft draft(Drafts());
    draft.Write("x", "", "");
    draft.Discard();
  }
  EXPECT_EQ(Files(), QStringList());
}

TEST_F(DraftTest, SavingAndClosingLeaveNoDraft) {
  const auto window = desk.NewWindow();
  ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", "alt")));
  QTest::keyClicks(&window->Source(), "neu ");
  EXPECT_TRUE(WaitFor([&] { return !Files().filter(".page").isEmpty(); }));
  EXPECT_TRUE(window->Work().Save());
  EXPECT_TRUE(Files().filter(".page").isEmpty());
  QTest::keyClicks(&window->Source(), "und ");
  EXPECT_TRUE(WaitFor([&] { return !Files().filter(".page").isEmpty(); }));
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Verwerfen"); },
              [&] { EXPECT_TRUE(window->close()); });
  EXPECT_TRUE(Files().filter(".page").isEmpty());
}

TEST_F(DraftTest, AKilledEditorLosesNothing) {
  const std::string bytes = "<p>\r\nalt\xFF</p>\n";
  const QString page = desk.Put("seite.html", bytes);
  const std::string edited = kVictimText.toStdString() + bytes;
  QProcess victim;
  victim.setProcessChannelMode(QProcess::ForwardedChannels);
  victim.start(QCoreApplication::applicationFilePath(), {kVictimArgument, Drafts(), page});
  ASSERT_TRUE(victim.waitForStarted());
  const auto isKept = [&] {
    for (const QString& name : Files().filter(".page"))
      if (desk.Bytes("drafts/" + name) == edited) return true;
    return false;
  };
  EXPECT_TRUE(WaitFor(isKept));
  victim.kill();
  ASSERT_TRUE(victim.waitForFinished());
  EXPECT_EQ(victim.exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(desk.Bytes("seite.html"), bytes);

  const auto window = desk.NewWindow();
  QString said;
  WithDialogs(
      [&](QWidget& dialog) {
        said = static_cast<QMessageBox&>(dialog).text();
        PressButton(dialog, "Wiederherstellen");
      },
      [&] { EXPECT_TRUE(window->Work().OfferDrafts()); });
  EXPECT_TRUE(said.contains("seite.html")) << said.toStdString();
  EXPECT_EQ(window->Page().Content().Bytes(), edited);
  EXPECT_TRUE(window->isWindowModified());
  EXPECT_EQ(window->Work().File().Name(), page);
  EXPECT_FALSE(window->Work().OfferDrafts());
  EXPECT_TRUE(window->Work().Save());
  EXPECT_EQ(desk.Bytes("seite.html"), edited);
}

TEST_F(DraftTest, AFileChangedSinceIsNotOverwrittenWithoutAsking) {
  {
    const auto window = desk.NewWindow();
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", "alt")));
    QTest::keyClicks(&window->Source(), "neu ");
    EXPECT_TRUE(WaitFor([&] { return !Files().filter(".page").isEmpty(); }));
  }
  desk.Put("seite.html", "von anderen");
  const auto window = desk.NewWindow();
  WithDialogs(
      [&](QWidget& dialog) {
        const bool draft = static_cast<QMessageBox&>(dialog).text().contains("Entwurf");
        PressButton(dialog, draft ? "Wiederherstellen" : "Abbrechen");
      },
      [&] {
        EXPECT_TRUE(window->Work().OfferDrafts());
        EXPECT_FALSE(window->Work().Save());
      });
  EXPECT_EQ(desk.Bytes("seite.html"), "von anderen");
}

TEST_F(DraftTest, MayBeLeftForLater) {
  { Draft(Drafts()).Write("x", "", ""); }
  const auto window = desk.NewWindow();
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Später"); },
              [&] { EXPECT_FALSE(window->Work().OfferDrafts()); });
  EXPECT_EQ(Draft::LeftIn(Drafts()).size(), 1U);
  WithDialogs([](QWidget& dialog) { PressButton(dialog, "Verwerfen"); },
              [&] { EXPECT_FALSE(window->Work().OfferDrafts()); });
  EXPECT_TRUE(Draft::LeftIn(Drafts()).empty());
}

}  // namespace
}  // namespace kvo::editor
