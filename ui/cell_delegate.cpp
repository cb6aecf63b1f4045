#include "ui/cell_delegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace orvandel {

namespace {

constexpr QChar kEllipsis(0x2026);

/// The first nUnits UTF-16 units of a text, without splitting a surrogate pair.
QString Beginning(const QString& qstrText, int nUnits) {
  return qstrText.left(qstrText[nUnits - 1].isHighSurrogate() ? nUnits - 1 : nUnits);
}

/// The last nUnits UTF-16 units of a text, without splitting a surrogate pair.
QString End(const QString& qstrText, int nUnits) {
  return qstrText.right(qstrText[qstrText.size() - nUnits].isLowSurrogate() ? nUnits - 1 : nUnits);
}

}  // namespace

CellDelegate::CellDelegate(QAbstractItemView* pView) : QStyledItemDelegate(pView), m_pView(pView) {}

void CellDelegate::Install(QAbstractItemView* pView) {
  pView->setItemDelegate(new CellDelegate(pView));
}

QString CellDelegate::Painted(const QString& qstrText) const {
  if (qstrText.size() <= kMostPainted) return qstrText;
  if (m_pView->textElideMode() == Qt::ElideMiddle)
    return Beginning(qstrText, kMostPainted / 2) + kEllipsis + End(qstrText, kMostPainted / 2);
  return Beginning(qstrText, kMostPainted) + kEllipsis;
}

QString CellDelegate::displayText(const QVariant& value, const QLocale& locale) const {
  const bool bText = value.userType() == QMetaType::QString;
  return QStyledItemDelegate::displayText(bText ? Painted(value.toString()) : value, locale);
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(pOption, index);
  if (!(pOption->state & QStyle::State_Selected) || pOption->icon.isNull()) return;
  // Styles blend the icon of a selected row with the highlight, which makes it fade.
  const QPixmap pixmap = pOption->icon.pixmap(pOption->decorationSize, m_pView->devicePixelRatioF());
  pOption->icon.addPixmap(pixmap, QIcon::Selected);
}

bool CellDelegate::helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
  if (pEvent->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(pEvent, pView, option, index);
  // Escaped, because QToolTip would interpret markup in untrusted text.
  const QString qstrText = Painted(index.data(Qt::ToolTipRole).toString());
  const QString qstrPage = qstrText.isEmpty() ? QString() : "<span>" + qstrText.toHtmlEscaped() + "</span>";
  QToolTip::showText(pEvent->globalPos(), qstrPage, pView, pView->visualRect(index));
  return !qstrText.isEmpty();
}

}  // namespace orvandel
