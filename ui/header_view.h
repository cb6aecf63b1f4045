#pragma once
#include <QHeaderView>

/// A header with a check box in one of its sections. Not yet used by any table.
class CCheckBoxHeaderView : public QHeaderView {
  Q_OBJECT

 public:
  /// @param nCheckSection logical index of the section with the box.
  CCheckBoxHeaderView(int nCheckSection, Qt::Orientation orientation, QWidget* pParent = nullptr);

 signals:
  void checkStausChange(bool bChecked);

 protected:
  void paintSection(QPainter* pPainter, const QRect& rect, int nLogicalIndex) const override;
  void mousePressEvent(QMouseEvent* pEvent) override;

 private:
  bool m_bChecked = false;
  int m_nCheckSection;
};
