#include <QCheckBox>
#include <QTest>

#include "tests/ui/window_fixture.h"
#include "ui/styles.h"

using namespace orvandel;

namespace {

/// The window with a set of check boxes, connected as a screen would.
class CheckBoxSet : public WindowTest {
 protected:
  CheckBoxSet() {
    Open();
    m_all.setTristate(true);
    for (size_t i = 0; i < m_six.size(); ++i) {
      WindowAccess::CheckBoxes(Window())[i] = &m_six[i];
      QObject::connect(&m_six[i], &QCheckBox::stateChanged, &Window(), &DRUI::CheckBoxStatChange);
    }
    WindowAccess::CheckBoxAll(Window()) = &m_all;
    WindowAccess::CheckBoxButton(Window()) = &m_button;
    QObject::connect(&m_all, &QCheckBox::stateChanged, &Window(), &DRUI::CheckBoxAllStatChange);
    m_button.setEnabled(false);
  }
  ~CheckBoxSet() override { CloseWindow(); }

  void ExpectButton(bool bEnabled) {
    EXPECT_EQ(bEnabled, m_button.isEnabled());
    EXPECT_EQ(bEnabled ? Layout2_main_button_style : main_button_style_no_file, m_button.styleSheet());
  }

  std::array<QCheckBox, 6> m_six;
  QCheckBox m_all;
  QPushButton m_button;
};

TEST_F(CheckBoxSet, AllSixTickedTickTheBoxForAll) {
  for (QCheckBox& box : m_six) {
    EXPECT_NE(Qt::Checked, m_all.checkState());
    box.setChecked(true);
  }

  EXPECT_EQ(Qt::Checked, m_all.checkState());
  ExpectButton(true);
}

TEST_F(CheckBoxSet, OneOfThemMakesItPartlyTickedAndAllowsTheButton) {
  m_six[3].setChecked(true);

  EXPECT_EQ(Qt::PartiallyChecked, m_all.checkState());
  ExpectButton(true);
}

TEST_F(CheckBoxSet, TheLastOneUntickedUnticksItAndForbidsTheButton) {
  m_six[0].setChecked(true);

  m_six[0].setChecked(false);

  EXPECT_EQ(Qt::Unchecked, m_all.checkState());
  ExpectButton(false);
}

TEST_F(CheckBoxSet, PartlyTickedOnesMakeTheBoxForAllPartlyTicked) {
  for (QCheckBox& box : m_six) box.setTristate(true);

  for (QCheckBox& box : m_six) box.setCheckState(Qt::PartiallyChecked);

  EXPECT_EQ(Qt::PartiallyChecked, m_all.checkState());
}

TEST_F(CheckBoxSet, AClickThatLeadsToPartlyTickedTicksTheBoxForAll) {
  m_all.click();  // from unticked to partly ticked, on a tri-state box

  EXPECT_EQ(Qt::Checked, m_all.checkState());
  ExpectButton(true);
}

TEST_F(CheckBoxSet, AClickIsAClickAgainAfterTheSixHaveMadeAPart) {
  m_six[1].setChecked(true);
  m_six[2].setChecked(true);  // already partly ticked, so there is no signal
  ASSERT_EQ(Qt::PartiallyChecked, m_all.checkState());
  m_all.click();
  ASSERT_EQ(Qt::Checked, m_all.checkState());
  m_all.click();
  ASSERT_EQ(Qt::Unchecked, m_all.checkState());

  m_all.click();

  EXPECT_EQ(Qt::Checked, m_all.checkState());
  ExpectButton(true);
}

TEST_F(CheckBoxSet, ThePartOfTheSixIsOneChangeOfTheBoxForAll) {
  m_all.disconnect(&Window());
  m_six[1].setChecked(true);

  Window().CheckBoxAllStatChange(Qt::PartiallyChecked);
  const int nAfterSix = m_all.checkState();
  Window().CheckBoxAllStatChange(Qt::PartiallyChecked);

  EXPECT_EQ(Qt::PartiallyChecked, nAfterSix);
  EXPECT_EQ(Qt::Checked, m_all.checkState());
}

TEST_F(CheckBoxSet, ThePartOfTheSixStaysAPart) {
  for (QCheckBox& box : m_six) box.setChecked(true);

  m_six[5].setChecked(false);

  EXPECT_EQ(Qt::PartiallyChecked, m_all.checkState());
  ExpectButton(true);
}

TEST_F(CheckBoxSet, WithoutAnyBoxNothingHappens) {
  WindowAccess::CheckBoxes(Window()).fill(nullptr);
  WindowAccess::CheckBoxAll(Window()) = nullptr;
  WindowAccess::CheckBoxButton(Window()) = nullptr;

  Window().CheckBoxStatChange(Qt::Checked);
  Window().CheckBoxAllStatChange(Qt::PartiallyChecked);
  Window().CheckBoxAllStatChange(Qt::Checked);

  EXPECT_FALSE(m_button.isEnabled());
  EXPECT_EQ("", m_button.styleSheet());
}

}  // namespace
