// Every text of a label or button fits its box, also in a wider font than Calibri.
#include <QProgressBar>

#include "app/detail_dialog.h"
#include "app/password_dialog.h"
#include "app/progress_dialog.h"
#include "tests/ui/window_fixture.h"
#include "ui/message_box.h"

using namespace orvandel;

namespace {

/// Labels and buttons whose text needs more room than they have, with what they need.
std::vector<std::string> CutTexts(const QWidget* pParent) {
  std::vector<std::string> cut;
  const auto check = [&](const QWidget* pWidget, const QString& qstrText, int nFlags, int nBorder) {
    if (qstrText.isEmpty()) return;
    const QRect room(0, 0, pWidget->width() - 2 * nBorder, pWidget->height() - 2 * nBorder);
    const QSize needed = QFontMetrics(pWidget->font()).boundingRect(room, nFlags, qstrText.trimmed()).size();
    if (needed.width() > room.width() || needed.height() > room.height())
      cut.push_back(QString("%1 in %2x%3 needs %4x%5")
                        .arg(qstrText)
                        .arg(room.width())
                        .arg(room.height())
                        .arg(needed.width())
                        .arg(needed.height())
                        .toStdString());
  };
  for (const QLabel* pLabel : pParent->findChildren<QLabel*>())
    check(pLabel, pLabel->text(), pLabel->wordWrap() ? Qt::TextWordWrap : 0, 0);
  constexpr int kButtonBorder = 2;
  for (const QPushButton* pButton : pParent->findChildren<QPushButton*>())
    check(pButton, pButton->text(), Qt::TextShowMnemonic, kButtonBorder);
  return cut;
}

/// The substitute for Calibri.
class TextFit : public WindowTest, public testing::WithParamInterface<const char*> {
 protected:
  TextFit() { QFont::insertSubstitution("Calibri", GetParam()); }
  ~TextFit() override { QFont::removeSubstitutions("Calibri"); }
};

TEST_P(TextFit, OnTheHomeScreen) {
  Open();
  EXPECT_EQ(std::vector<std::string>(), CutTexts(WindowAccess::HomeScreen(Window())));
}

TEST_P(TextFit, OnTheDataScreen) {
  OpenDataScreen();
  Find<QLabel>("m_pSelectInfoLabel")->setText("Select 1023.99 GB in 1000000 files");
  EXPECT_EQ(std::vector<std::string>(), CutTexts(WindowAccess::DataScreen(Window())));
}

TEST_P(TextFit, InTheMessageBox) {
  CMessageBox question;
  question.InitQuestionDialog(
      "Are you sure want to go back to Home?\nIf back,the scanning results will not be saved.");
  question.show();
  EXPECT_EQ(std::vector<std::string>(), CutTexts(&question));
  CMessageBox information;
  information.InitInfoDialog("Your password is not correct! Please try again.");
  information.show();
  EXPECT_EQ(std::vector<std::string>(), CutTexts(&information));
}

TEST_P(TextFit, InThePasswordDialog) {
  CPasswordUI dialog;
  dialog.show();
  EXPECT_EQ(std::vector<std::string>(), CutTexts(&dialog));
}

TEST_P(TextFit, InTheProgressDialog) {
  OpenDataScreen();
  for (const int nKind : {SCANUI::kScan, SCANUI::kRecovery}) {
    SCANUI dialog;
    dialog.InitSlot(&Window(), nKind);
    dialog.show();
    EXPECT_EQ(std::vector<std::string>(), CutTexts(&dialog));
  }
}

TEST_P(TextFit, InTheDetailList) {
  CDetail dialog;
  dialog.AddTableItem("/home/somebody/Camera Roll/IMG_0001.JPG", 0);
  dialog.show();
  EXPECT_EQ(std::vector<std::string>(), CutTexts(&dialog));
}

INSTANTIATE_TEST_SUITE_P(Fonts, TextFit, testing::Values("Carlito", "DejaVu Sans"),
                         [](const auto& info) { return QString(info.param).remove(' ').toStdString(); });

TEST(TextFitCheck, NoticesATextThatIsCut) {
  QWidget window;
  QLabel label("recover your data", &window);
  label.setGeometry(0, 0, 40, 20);

  EXPECT_EQ(1u, CutTexts(&window).size());
}

}  // namespace
