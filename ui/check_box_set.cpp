// Six check boxes, one for all of them, and a button that wants one of the six. No screen builds the set yet.

#include <QCheckBox>
#include <algorithm>
#include <utility>

#include "ui/window.h"

void DRUI::CheckBoxStatChange(int) {
  const auto allAre = [this](Qt::CheckState state) {
    return std::all_of(m_checkBoxes.begin(), m_checkBoxes.end(),
                       [state](const QCheckBox* pBox) { return pBox && pBox->checkState() == state; });
  };
  if (!m_pCheckBoxAll) return;
  if (allAre(Qt::Checked)) return m_pCheckBoxAll->setCheckState(Qt::Checked);
  if (allAre(Qt::Unchecked)) return m_pCheckBoxAll->setCheckState(Qt::Unchecked);
  m_bPartFromSix = true;
  m_pCheckBoxAll->setCheckState(Qt::PartiallyChecked);
}

void DRUI::CheckBoxAllStatChange(int nState) {
  // The flag holds for one change only: the next may be a click again.
  const bool bFromSix = std::exchange(m_bPartFromSix, false);
  if (nState == Qt::PartiallyChecked && !bFromSix) {
    // A click has led from unticked to partly ticked: it means all.
    if (m_pCheckBoxAll) m_pCheckBoxAll->setCheckState(Qt::Checked);
    return;
  }
  SetMainButtonEnabled(m_pCheckBoxButton, nState != Qt::Unchecked);
}
