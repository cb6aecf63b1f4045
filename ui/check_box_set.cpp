// Six check boxes, a check box for all of them, and a button that requires at least one. Not yet used by any
// screen.

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
  // The flag applies to a single change.
  const bool bFromSix = std::exchange(m_bPartFromSix, false);
  if (nState == Qt::PartiallyChecked && !bFromSix) {
    // A click on the unticked tri-state box makes it partly ticked; it means "all".
    if (m_pCheckBoxAll) m_pCheckBoxAll->setCheckState(Qt::Checked);
    return;
  }
  SetMainButtonEnabled(m_pCheckBoxButton, nState != Qt::Unchecked);
}
