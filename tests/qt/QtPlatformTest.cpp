#include "host/qt/QtPlatform.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRawFont>
#include <QTest>
#include <QTimer>
#include <cmath>

#include "host/headless/HeadlessPlatform.h"
#include "host/qt/FormDialog.h"
#include "host/qt/PropertyFrameDialog.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/registration/classes.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

class Platforms : public testing::Test {
 protected:
  // Acts as the user as soon as a dialog of this kind is shown.
  template <class Dialog, class Action>
  void Meanwhile(Action action) {
    auto* waiting = new QTimer(&timers_);
    waiting->callOnTimeout([this, waiting, action] {
      auto* dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || !dialog->isActiveWindow()) return;
      waiting->stop();
      ++answered;
      action(*dialog);
    });
    waiting->start(1);
  }

  QtPlatform platform{CreatePage};
  PlatformScope scope{platform};
  int answered = 0;

 private:
  QObject timers_;
};

TEST_F(Platforms, ShowMessagesUnderTheComponentsTitle) {
  Meanwhile<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), u"KVOPDesignObjects"_s);
    EXPECT_EQ(box.text(), u"<b>a</b> & b"_s);
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.buttons().size(), 1);
    box.button(QMessageBox::Ok)->click();
  });
  platform.ShowMessage(0, "<b>a</b> & b");
  EXPECT_EQ(answered, 1);
}

TEST_F(Platforms, AskForALine) {
  Meanwhile<QInputDialog>([](QInputDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), u"Titel"_s);
    EXPECT_EQ(dialog.findChild<QLabel*>()->text(), u"R&&D?"_s);
    QTest::keyClicks(dialog.findChild<QLineEdit*>(), "abc");
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  EXPECT_EQ(platform.InputPrompt("R&D?", "Titel"), "abc");
  Meanwhile<QInputDialog>([](QInputDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(platform.InputPrompt("?", "Titel"), std::nullopt);
  EXPECT_EQ(answered, 2);
}

TEST_F(Platforms, ChooseColours) {
  Meanwhile<QColorDialog>([](QColorDialog& dialog) {
    EXPECT_EQ(dialog.currentColor(), QColor(0x12, 0x34, 0x56));
    dialog.setCurrentColor(QColor(0xAB, 0xCD, 0xEF));
    dialog.accept();
  });
  EXPECT_EQ(platform.ChooseColor(0x563412), 0xEFCDAB);
  Meanwhile<QColorDialog>([](QColorDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(platform.ChooseColor(0x563412), 0x563412);
  EXPECT_EQ(answered, 2);
}

TEST_F(Platforms, ShowModalFormsUntilTheyAreUnloaded) {
  const auto press = [&](Qt::Key key) {
    frmExpressionBuilder dialog;
    dialog.CancelForm = key == Qt::Key_Return;
    Meanwhile<FormDialog>([&](FormDialog& window) {
      EXPECT_EQ(window.windowTitle(), u"Ausdruck-Assistent"_s);
      EXPECT_EQ(dialog.Focused(), &dialog.cboFields);
      QTest::keyClick(window.View().WidgetOf(dialog.cboFields), key);
    });
    dialog.ShowModal();
    return dialog.CancelForm;
  };
  EXPECT_FALSE(press(Qt::Key_Return));
  EXPECT_TRUE(press(Qt::Key_Escape));
  frmExpressionBuilder closed;
  Meanwhile<FormDialog>([](FormDialog& window) { window.close(); });
  closed.ShowModal();
  EXPECT_TRUE(closed.CancelForm);
  EXPECT_EQ(answered, 3);
}

TEST_F(Platforms, AFailureInADialogIsShownAndLeavesItOpen) {
  frmExpressionBuilder dialog;
  Meanwhile<FormDialog>([&](FormDialog& window) {
    Meanwhile<QMessageBox>([&](QMessageBox& box) {
      EXPECT_FALSE(box.text().isEmpty());
      box.button(QMessageBox::Ok)->click();
      QTimer::singleShot(0, &window, [&window] { window.close(); });
    });
    QTest::mouseClick(window.View().WidgetOf(dialog.cmdAdd), Qt::LeftButton);  // no field chosen
    EXPECT_TRUE(window.isVisible());
  });
  dialog.ShowModal();
  EXPECT_EQ(answered, 2);
}

TEST_F(Platforms, ShowPropertyFramesAtTheirOwner) {
  QWidget owner;
  owner.setGeometry(50, 60, 300, 200);
  owner.show();
  int applied = 0;
  platform.onApplied = [&] { ++applied; };
  const auto object =
      std::make_shared<PropertyObject>(PropertyObject::Properties{{"Value", "alt"}});
  Meanwhile<PropertyFrameDialog>([&](PropertyFrameDialog& dialog) {
    EXPECT_EQ(dialog.parentWidget(), &owner);
    EXPECT_EQ(dialog.pos(), owner.mapToGlobal(QPoint(0, 0)));
    EXPECT_EQ(dialog.windowTitle(), u"preis"_s);
    auto* line = dialog.findChild<QLineEdit*>(u"txtValue"_s);
    line->selectAll();
    QTest::keyClicks(line, "neu");
    QTest::mouseClick(dialog.findChild<QPushButton*>(u"cmdOk"_s), Qt::LeftButton);
  });
  platform.ShowPropertyFrame(static_cast<WindowHandle>(owner.winId()), "preis", object,
                             {"propPrintGeneral"});
  EXPECT_EQ(answered, 1);
  EXPECT_EQ(applied, 1);
  EXPECT_EQ(ToText((*object)["Value"]), "neu");
  EXPECT_EQ(ErrorOf([&] { platform.ShowPropertyFrame(0, "x", object, {"propNichts"}); }), 429);
}

TEST_F(Platforms, APropertyFrameEndsWithItsOwner) {
  auto owner = std::make_unique<QWidget>();
  owner->show();
  const auto object =
      std::make_shared<PropertyObject>(PropertyObject::Properties{{"Value", "alt"}});
  Meanwhile<PropertyFrameDialog>([&](PropertyFrameDialog&) { owner.reset(); });
  platform.ShowPropertyFrame(static_cast<WindowHandle>(owner->winId()), "x", object,
                             {"propPrintGeneral"});
  EXPECT_EQ(answered, 1);
}

TEST_F(Platforms, KnowTheMouseButton) {
  // A button that reads the keyboard state when it is pressed.
  QPushButton button;
  Platform::KeyStates down{};
  QObject::connect(&button, &QPushButton::pressed, [&] { down = platform.KeyboardState(); });
  button.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&button));
  EXPECT_EQ(platform.KeyboardState()[1], 0);
  QTest::mouseClick(button.windowHandle(), Qt::LeftButton, Qt::ShiftModifier, {5, 5});
  EXPECT_EQ(down[1], 0x80);
  EXPECT_EQ(down[2], 0);
  EXPECT_EQ(platform.KeyboardState()[1], 0);
}

TEST_F(Platforms, MakeIdentifiersInRegistryForm) {
  const std::string guid(std::string_view(platform.NewGuid()));
  ASSERT_EQ(guid.size(), 38U);
  for (std::size_t at = 0; at < guid.size(); ++at) {
    const char* expected = at == 0                                       ? "{"
                           : at == 37                                    ? "}"
                           : at == 9 || at == 14 || at == 19 || at == 24 ? "-"
                                                                         : "0123456789ABCDEF";
    EXPECT_NE(std::string_view(expected).find(guid[at]), std::string_view::npos) << guid;
  }
  EXPECT_NE(guid, std::string_view(platform.NewGuid()));
}

// The text's width in the font's own units at 11 pixels per em: 8.25 points at 96 dpi.
int MeasuredWidth(const QRawFont& font, const QString& text) {
  double units = 0;
  for (const QPointF& advance : font.advancesForGlyphIndexes(font.glyphIndexesForString(text)))
    units += advance.x();
  return static_cast<int>(std::ceil(units * 11 / font.unitsPerEm())) * 15;
}

TEST_F(Platforms, TextWidthMatchesTahoma) {
  for (const FontWeight weight : {FontWeight::normal, FontWeight::bold}) {
    const bool bold = weight == FontWeight::bold;
    const QString file = bold ? u"tahomabd.ttf"_s : u"tahoma.ttf"_s;
    const QRawFont font(u"/usr/share/wine/fonts/"_s + file, 2048, QFont::PreferNoHinting);
    for (const char* text : {"", "i", "Kontakt", "Bestellung: ÄÖÜ äöüß €", "if (a < b) && 17,50",
                             "WWWWWWWWWWiiiiiiiiii"}) {
      const int width = platform.TextWidth(text, weight);
      EXPECT_EQ(width, TahomaTextWidth(text, weight));
      if (font.isValid()) {
        EXPECT_EQ(width, MeasuredWidth(font, ToQt(text))) << text;
      }
    }
  }
}

// A line is as high as in Windows, so that umlauts keep their dots and four lines fit.
TEST_F(Platforms, LinesOfTahomaAreAsHighAsInWindows) {
  LoadTahoma();
  const QFont font = QtFont({});
  if (QFontInfo(font).family() != "Tahoma"_L1) GTEST_SKIP() << "Tahoma is not installed";
  QImage device(1, 1, QImage::Format_ARGB32);
  device.setDotsPerMeterX(3780);
  device.setDotsPerMeterY(3780);
  const QFontMetricsF metrics(font, &device);
  EXPECT_EQ(std::ceil(metrics.ascent()), 11);
  EXPECT_EQ(std::ceil(metrics.descent()), 2);
}

TEST_F(Platforms, FormatInGermanAndNeedADatabaseLayer) {
  HeadlessPlatform headless;
  EXPECT_EQ(platform.Format(1134.5, "#,##0.00"), "1.134,50");
  EXPECT_EQ(platform.Format(1134.5, "#,##0.00"), headless.Format(1134.5, "#,##0.00"));
  EXPECT_EQ(ErrorOf([&] { platform.NewRecordset(); }), 429);
  platform.recordsets = [] { return std::make_shared<Collection>(); };
  EXPECT_NE(platform.NewRecordset(), nullptr);
}

}  // namespace
}  // namespace kvo
