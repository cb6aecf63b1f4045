#include "ui/message_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

constexpr char kQuestion[] = "Are you sure to cancel the scanning?";

class MessageBox : public testing::Test {
 protected:
  /// Runs the box modally with an action. @return its answer.
  int Answer(const std::function<void(QWidget*)>& action) {
    ModalSteps steps;
    steps.Then("CMessageBox", action);
    m_box.exec();
    return m_box.GetMessageBoxRet();
  }
  QLabel* Text() { return m_box.findChild<QLabel*>("m_pTextLabel"); }

  CMessageBox m_box;
};

void ClickOn(QWidget* pBox, const char* pszButton) {
  Click(pBox->findChild<QPushButton*>(pszButton));
}

TEST_F(MessageBox, IsADialogOfFixedSizeWithTheSystemsFrame) {
  m_box.InitQuestionDialog(kQuestion);

  EXPECT_EQ("Orvandel", m_box.windowTitle());
  EXPECT_EQ("Dialog", m_box.objectName());
  EXPECT_EQ(QSize(400, 150), m_box.minimumSize());
  EXPECT_EQ(QSize(400, 150), m_box.maximumSize());
  EXPECT_FALSE(m_box.windowFlags() & Qt::FramelessWindowHint);
  EXPECT_EQ(nullptr, m_box.parentWidget());
  EXPECT_EQ(0, m_box.GetMessageBoxRet());
}

TEST_F(MessageBox, QuestionHasTextIconAndTwoButtons) {
  m_box.InitQuestionDialog(kQuestion);

  auto* pNo = m_box.findChild<QPushButton*>("NO");
  auto* pOk = m_box.findChild<QPushButton*>("OK");
  auto* pIcon = m_box.findChild<QLabel*>("iconLabel");

  EXPECT_EQ(2, m_box.findChildren<QPushButton*>().size());
  EXPECT_EQ("NO", pNo->text());
  EXPECT_EQ(QRect(100, 5, 80, 25), pNo->geometry());
  EXPECT_EQ("OK", pOk->text());
  EXPECT_EQ(QRect(200, 5, 80, 25), pOk->geometry());
  EXPECT_EQ(kQuestion, TextOf(Text()));
  EXPECT_FALSE(Text()->wordWrap());
  EXPECT_EQ(QPixmap(":/image/question.png").toImage(), pIcon->pixmap().toImage());
  EXPECT_FALSE(pIcon->pixmap().isNull());
  EXPECT_EQ(Qt::AlignCenter, pIcon->alignment());
}

TEST_F(MessageBox, InformationHasWrappedTextIconAndOneButton) {
  m_box.InitInfoDialog("Can not found the iTunes Backup file.");

  auto* pOk = m_box.findChild<QPushButton*>("OK");
  auto* pIcon = m_box.findChild<QLabel*>("iconLabel");

  EXPECT_EQ(1, m_box.findChildren<QPushButton*>().size());
  EXPECT_EQ("OK", pOk->text());
  EXPECT_EQ(QRect(133, 5, 80, 25), pOk->geometry());
  EXPECT_TRUE(Text()->wordWrap());
  EXPECT_EQ("Can not found the iTunes Backup file.", TextOf(Text()));
  EXPECT_EQ(QPixmap(":/image/information.png").toImage(), pIcon->pixmap().toImage());
  EXPECT_FALSE(pIcon->pixmap().isNull());
}

TEST_F(MessageBox, SharesItsLookBetweenBothForms) {
  CMessageBox information;
  information.InitInfoDialog("text");
  m_box.InitQuestionDialog("text");

  for (CMessageBox* pBox : {&information, &m_box}) {
    auto* pStrip = pBox->findChild<QLabel*>("buttonStrip");
    auto* pText = pBox->findChild<QLabel*>("m_pTextLabel");
    EXPECT_EQ(QSize(400, 40), pStrip->minimumSize());
    EXPECT_EQ("background-color: rgb(220, 220, 220);", pStrip->styleSheet());
    EXPECT_EQ(QSize(340, 80), pText->minimumSize());
    EXPECT_EQ("Calibri 12/50", FontOf(pText));
    EXPECT_EQ(QColor(Qt::black), TextColour(pText));
    EXPECT_EQ(std::vector<int>({0, 0, 0, 0}), MarginsOf(pBox->layout()));
    for (const QPushButton* pButton : pBox->findChildren<QPushButton*>()) {
      EXPECT_TRUE(pButton->isFlat());
      EXPECT_EQ("Calibri 12/50", FontOf(pButton));
      EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
      EXPECT_EQ(dialog_style::main_button_style, pButton->styleSheet());
      EXPECT_EQ(pStrip, pButton->parentWidget());
    }
  }
}

TEST_F(MessageBox, HasNoHeadingStripOnView) {
  m_box.InitQuestionDialog(kQuestion);

  for (const QLabel* pLabel : m_box.findChildren<QLabel*>()) EXPECT_NE("  Question", TextOf(pLabel));

  auto* pLayout = qobject_cast<QVBoxLayout*>(m_box.layout());
  ASSERT_NE(nullptr, pLayout);
  ASSERT_EQ(3, pLayout->count());
  EXPECT_EQ(0, pLayout->itemAt(0)->layout()->count());
  EXPECT_EQ(2, pLayout->stretch(1));
  EXPECT_EQ(5, MarginsOf(pLayout->itemAt(2)->layout()->itemAt(0)->layout())[0]);
}

TEST_F(MessageBox, OkOfAQuestionAnswersOne) {
  m_box.InitQuestionDialog(kQuestion);

  EXPECT_EQ(1, Answer([](QWidget* pBox) { ClickOn(pBox, "OK"); }));

  EXPECT_FALSE(m_box.isVisible());
}

TEST_F(MessageBox, NoAndRightClickAndCloseAndEscapeAnswerZero) {
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* pBox) { ClickOn(pBox, "NO"); },
      [](QWidget* pBox) {
        QTest::mouseClick(pBox, Qt::RightButton, Qt::NoModifier, {390, 30});
      },
      [](QWidget* pBox) { pBox->close(); },
      [](QWidget* pBox) { QTest::keyClick(pBox, Qt::Key_Escape); },
  };
  m_box.InitQuestionDialog(kQuestion);

  for (const auto& way : ways) EXPECT_EQ(0, Answer(way));

  EXPECT_FALSE(m_box.isVisible());
}

TEST_F(MessageBox, OkOfAnInformationAnswersOne) {
  m_box.InitInfoDialog("The password can't be empty, please try again.");

  EXPECT_EQ(1, Answer([](QWidget* pBox) { ClickOn(pBox, "OK"); }));

  EXPECT_FALSE(m_box.isVisible());
}

TEST_F(MessageBox, CanBeDraggedByItsTextAndStrip) {
  m_box.InitQuestionDialog(kQuestion);
  m_box.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_box));

  for (const char* pszPart : {"m_pTextLabel", "buttonStrip"}) {
    QWidget* pPart = m_box.findChild<QWidget*>(pszPart);
    const QPoint before = m_box.pos();
    const QPoint place(4, 4);
    const QPoint global = pPart->mapToGlobal(place);
    QMouseEvent press(QEvent::MouseButtonPress, place, global, Qt::LeftButton, Qt::LeftButton, {});

    QApplication::sendEvent(pPart, &press);
    QMouseEvent move(QEvent::MouseMove, place, global + QPoint(30, -7), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(pPart, &move);

    EXPECT_EQ(before + QPoint(30, -7), m_box.pos()) << pszPart;
    EXPECT_TRUE(press.isAccepted()) << pszPart;
    EXPECT_TRUE(move.isAccepted()) << pszPart;
  }
}

}  // namespace
