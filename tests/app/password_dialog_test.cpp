#include "app/password_dialog.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr char kCaption[] = "  iTunes Backup Password";
constexpr char kText[] =
    "The selected iTunes Backup File is encrypted. Please enter the password to unlock it.";

class PasswordDialog : public testing::Test {
 protected:
  void Show() {
    m_dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_dialog));
  }
  QLabel* Label(const QString& qstrText) {
    for (QLabel* pLabel : m_dialog.findChildren<QLabel*>()) {
      if (pLabel->text() == qstrText) return pLabel;
    }
    throw std::runtime_error("the dialog doesn't say: " + qstrText.toStdString());
  }
  QLineEdit* Edit() { return m_dialog.findChild<QLineEdit*>(); }
  QPushButton* Button(const char* pszName) { return m_dialog.findChild<QPushButton*>(pszName); }
  /// Whether a part is completely inside the dialog and not covered by another part.
  bool IsInView(QWidget* pPart) { return pPart->visibleRegion() == QRegion(pPart->rect()); }

  CPasswordUI m_dialog;
};

TEST_F(PasswordDialog, HasTitleIconFixedSizeAndFont) {
  EXPECT_EQ("iTunes Backup Password", m_dialog.windowTitle());
  EXPECT_EQ(QIcon(":/image/logo.ico").pixmap(32, 32).toImage(),
            m_dialog.windowIcon().pixmap(32, 32).toImage());
  EXPECT_FALSE(m_dialog.windowIcon().isNull());
  EXPECT_EQ(QSize(500, 250), m_dialog.minimumSize());
  EXPECT_EQ(QSize(500, 250), m_dialog.maximumSize());
  EXPECT_EQ("Calibri 12/50", FontOf(&m_dialog));
  EXPECT_EQ(nullptr, m_dialog.parentWidget());
}

TEST_F(PasswordDialog, HasThreeBandsFromTopToBottom) {
  Show();
  QLabel* pCaption = Label(kCaption);
  QWidget* pPanel = Edit()->parentWidget();
  QWidget* pStrip = Button("OK")->parentWidget();

  EXPECT_EQ(40, pCaption->minimumHeight());
  EXPECT_EQ(180, pPanel->minimumHeight());
  EXPECT_EQ(50, pStrip->minimumHeight());
  EXPECT_EQ("background-color: rgb(220, 220, 220);", pStrip->styleSheet());
  EXPECT_EQ(pStrip, Button("Cancel")->parentWidget());
  EXPECT_EQ(QPoint(0, 0), pCaption->pos());
  EXPECT_EQ(0, pPanel->x());
  EXPECT_EQ(0, pStrip->x());
  EXPECT_LT(pCaption->y(), pPanel->y());
  EXPECT_LT(pPanel->y(), pStrip->y());
  for (const QWidget* pBand : {static_cast<QWidget*>(pCaption), pPanel, pStrip})
    EXPECT_EQ(500, pBand->width());
}

TEST_F(PasswordDialog, PromptIsBlackAndWraps) {
  QLabel* pText = Label(kText);

  EXPECT_EQ(QRect(20, 30, 460, 25), pText->geometry());
  EXPECT_EQ(Edit()->parentWidget(), pText->parentWidget());
  EXPECT_EQ(QColor(Qt::black), TextColour(pText));
  EXPECT_TRUE(pText->wordWrap());
}

TEST_F(PasswordDialog, ShowsThePasswordAsItIsTyped) {
  Show();

  QTest::keyClicks(Edit(), "geh heim");

  EXPECT_EQ(QRect(20, 70, 460, 25), Edit()->geometry());
  EXPECT_EQ(QLineEdit::Normal, Edit()->echoMode());
  EXPECT_EQ("geh heim", Edit()->displayText());
  EXPECT_EQ("geh heim", m_dialog.GetPassword());
}

TEST_F(PasswordDialog, HasTwoFlatButtonsOnTheStrip) {
  // A quarter of the width and 20, a third of it and 80.
  const std::vector<std::pair<const char*, QRect>> buttons = {{"OK", QRect(145, 10, 80, 25)},
                                                              {"Cancel", QRect(246, 10, 80, 25)}};

  EXPECT_EQ(2, m_dialog.findChildren<QPushButton*>().size());
  for (const auto& [pszName, rect] : buttons) {
    const QPushButton* pButton = Button(pszName);
    EXPECT_EQ(pszName, pButton->text());
    EXPECT_EQ(rect, pButton->geometry()) << pszName;
    EXPECT_TRUE(pButton->isFlat()) << pszName;
    EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape()) << pszName;
    EXPECT_EQ("Calibri 12/50", FontOf(pButton)) << pszName;
    EXPECT_EQ(dialog_style::main_button_style, pButton->styleSheet()) << pszName;
  }
}

TEST_F(PasswordDialog, ShowsAllItsPartsInFull) {
  Show();

  for (QWidget* pPart : {static_cast<QWidget*>(Label(kText)), static_cast<QWidget*>(Edit()),
                         static_cast<QWidget*>(Button("OK")), static_cast<QWidget*>(Button("Cancel"))})
    EXPECT_TRUE(IsInView(pPart)) << pPart->objectName().toStdString();
}

TEST_F(PasswordDialog, HasResultOneAndNoTextAtFirst) {
  EXPECT_EQ(1, m_dialog.GetResult());
  EXPECT_EQ("", m_dialog.GetPassword());
}

struct WayOut {
  const char* pszName;
  std::function<void(CPasswordUI&)> take;
  int nResult;
};

void PrintTo(const WayOut& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class PasswordDialogEnd : public testing::TestWithParam<WayOut> {};

TEST_P(PasswordDialogEnd, GivesItsResultAndKeepsTheText) {
  CPasswordUI dialog;
  ModalSteps steps;
  steps.Then("CPasswordUI", [&](QWidget*) {
    QTest::keyClicks(dialog.findChild<QLineEdit*>(), "secret");
    GetParam().take(dialog);
  });

  dialog.exec();

  EXPECT_EQ(GetParam().nResult, dialog.GetResult());
  EXPECT_EQ("secret", dialog.GetPassword());
  EXPECT_FALSE(dialog.isVisible());
}

const auto kPress = [](const char* pszButton) {
  return [pszButton](CPasswordUI& dialog) { Click(dialog.findChild<QPushButton*>(pszButton)); };
};
const auto kRightClick = [](const QPoint& place) {
  return [place](CPasswordUI& dialog) {
    QWidget* pHit = dialog.childAt(place);
    ASSERT_NE(nullptr, pHit);
    QTest::mouseClick(pHit, Qt::RightButton, Qt::NoModifier, pHit->mapFrom(&dialog, place));
  };
};

INSTANTIATE_TEST_SUITE_P(
    Ways, PasswordDialogEnd,
    testing::Values(WayOut{"Ok", kPress("OK"), 0}, WayOut{"Cancel", kPress("Cancel"), 1},
                    WayOut{"Close", [](CPasswordUI& dialog) { dialog.close(); }, 1},
                    WayOut{"Escape", [](CPasswordUI& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                           1},
                    WayOut{"RightClickOnTheCaption", kRightClick({300, 10}), 1},
                    WayOut{"RightClickOnThePanel", kRightClick({300, 160}), 1},
                    WayOut{"RightClickOnTheStrip", kRightClick({480, 240}), 1},
                    WayOut{"CancelAfterOk",
                           [](CPasswordUI& dialog) {
                             dialog.btnSlotOK();
                             dialog.btnSlotNO();
                           },
                           1}),
    [](const testing::TestParamInfo<WayOut>& info) { return std::string(info.param.pszName); });

TEST_F(PasswordDialog, CanBeDraggedByTheLeftButtonAlone) {
  Show();
  QWidget* pCaption = Label(kCaption);
  const QPoint before = m_dialog.pos();
  const QPoint global = pCaption->mapToGlobal(QPoint(400, 10));
  const auto move = [&](Qt::MouseButtons buttons) {
    QMouseEvent event(QEvent::MouseMove, QPoint(400, 10), global + QPoint(-12, 9), Qt::NoButton, buttons, {});
    QApplication::sendEvent(pCaption, &event);
  };
  QMouseEvent press(QEvent::MouseButtonPress, QPoint(400, 10), global, Qt::LeftButton, Qt::LeftButton, {});
  QApplication::sendEvent(pCaption, &press);

  move(Qt::NoButton);
  const QPoint free = m_dialog.pos();
  move(Qt::LeftButton);

  EXPECT_EQ(before, free);
  EXPECT_EQ(before + QPoint(-12, 9), m_dialog.pos());
}

}  // namespace
