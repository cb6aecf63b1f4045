#include "ui/chat_view.h"

#include <QFile>
#include <QRegularExpression>

#include "ui/sealed_page.h"

namespace {

constexpr char kReceivedScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-left left'>%1</p></div>\")";
constexpr char kSentScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-right right'>%1</p></div>\")";

/// True for a text with an element that has a name, or with an escape of the script that may hide one.
bool MayHoldNames(const QString& qstrText) {
  static const QRegularExpression name("<[^>]*(id|name)\\s*=", QRegularExpression::CaseInsensitiveOption);
  return qstrText.contains('\\') || qstrText.contains(name);
}

}  // namespace

ChatView::ChatView(const char* pszStyleFile, QWidget* pParent)
    : QWebView(pParent), m_pPage(new SealedPage(this)) {
  setPage(m_pPage);
  m_pPage->SetLaidOut(false);
  QFile style(pszStyleFile);
  m_pPage->SetContent(style.open(QIODevice::ReadOnly) ? QString::fromUtf8(style.readAll()) : QString());
}

// Out of sight nothing is laid out: markup can be made to take minutes for it.
void ChatView::showEvent(QShowEvent* pEvent) {
  m_pPage->SetLaidOut(true);
  QWebView::showEvent(pEvent);
}

void ChatView::hideEvent(QHideEvent* pEvent) {
  QWebView::hideEvent(pEvent);
  m_pPage->SetLaidOut(false);
}

void ChatView::Clear() {
  m_pPage->Run("document.body.innerHTML=''");
  m_nContent = 0;
}

void ChatView::Enable() {
  m_pPage->Run("document.getElementById(\"content\").removeAttribute(\"disabled\")");
}

bool ChatView::AddBubble(bool bReceived, const QString& qstrText) {
  const bool bNames = MayHoldNames(qstrText);
  m_nContent += qstrText.size() + kBubbleCost + (bNames ? kNamesCost : 0);
  if (m_nContent > kMostContent) return false;
  if (!SealedPage::StaysInString(qstrText)) return true;
  m_pPage->Run(QString(bReceived ? kReceivedScript : kSentScript).arg(qstrText));
  if (bNames) m_pPage->RemoveNames();
  return true;
}
