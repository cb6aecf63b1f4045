#include "ui/chat_view.h"

#include <QFile>

#include "ui/sealed_page.h"

namespace {

constexpr char kReceivedScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-left left'>%1</p></div>\")";
constexpr char kSentScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-right right'>%1</p></div>\")";

}  // namespace

ChatView::ChatView(const char* pszStyleFile, QWidget* pParent)
    : QWebView(pParent), m_pPage(new SealedPage(this)) {
  setPage(m_pPage);
  QFile style(pszStyleFile);
  style.open(QIODevice::ReadOnly);
  m_pPage->SetContent(QString::fromUtf8(style.readAll()));
}

void ChatView::Clear() {
  m_pPage->Run("document.body.innerHTML=''");
  m_nContent = 0;
}

void ChatView::Enable() {
  m_pPage->Run("document.getElementById(\"content\").removeAttribute(\"disabled\")");
}

bool ChatView::AddBubble(bool bReceived, const QString& qstrText) {
  m_nContent += qstrText.size() + kBubbleCost;
  if (m_nContent > kMostContent) return false;
  if (SealedPage::StaysInString(qstrText))
    m_pPage->Run(QString(bReceived ? kReceivedScript : kSentScript).arg(qstrText));
  return true;
}
