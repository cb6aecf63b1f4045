#include "ui/chat_view.h"

#include <QCoreApplication>
#include <QFile>
#include <QPluginLoader>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>
#include <QVariant>

#include "ui/chat_engine.h"

namespace orvandel {

namespace {

constexpr char kClearScript[] = "document.body.innerHTML=''";
constexpr char kEnableScript[] = "document.getElementById(\"content\").removeAttribute(\"disabled\")";
constexpr char kReceivedScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-left left'>%1</p></div>\")";
constexpr char kSentScript[] =
    "document.getElementById(\"content\").insertAdjacentHTML(\"beforeEnd\",\"<div style='overflow:hidden;'>"
    "<p class='triangle-right right'>%1</p></div>\")";
// Named elements could shadow the properties that scripts look up (DOM clobbering), so the script takes its
// functions from prototypes. Colour inputs would open a native dialog.
constexpr char kRemoveNamesScript[] =
    "(function(){var take=Element.prototype.removeAttribute;"
    "function each(what,name){Document.prototype.querySelectorAll.call(document,what).forEach("
    "function(element){take.call(element,name)})}"
    "each('body [name]','name');each('body object[id],body applet[id],body embed[id],body img[id],"
    "body form[id],body iframe[id]','id');each('body input[type=color i]','type');"
    "each('body a,body area','href');each('body a','xlink:href');each('body form','action');"
    "each('body [formaction]','formaction')})()";

// A page with an instruction to refresh leaves for an empty one. Such an element acts when it is inserted, so
// that it is taken out before, in a document that does nothing.
constexpr char kGuardScript[] =
    "(function(){var insert=Element.prototype.insertAdjacentHTML;"
    "Element.prototype.insertAdjacentHTML=function(place,markup){if(/<meta/i.test(markup)){"
    "var page=document.implementation.createHTMLDocument('');insert.call(page.body,place,markup);"
    "page.querySelectorAll('meta').forEach(function(meta){meta.remove()});markup=page.body.innerHTML}"
    "insert.call(this,place,markup)}})()";

/// Returns true for text that may contain a named element or a colour input. An attribute in quotes may hold
/// the end of a tag, and a script's escape anything.
bool MayHoldNames(const QString& qstrText) {
  static const QRegularExpression name("<[^>]*((id|name)\\s*=|color|href|form|')",
                                       QRegularExpression::CaseInsensitiveOption);
  return qstrText.contains('\\') || qstrText.contains(name);
}

QString ReadPage(const QString& qstrStyleFile) {
  QFile style(qstrStyleFile);
  return style.open(QIODevice::ReadOnly) ? QString::fromUtf8(style.readAll()) : QString();
}

/// Loads the engine module from the program's folder on the first call. @return null if it is missing.
ChatEngineFactory* EngineFactory() {
  static ChatEngineFactory* const pFactory = [] {
    QPluginLoader loader(QCoreApplication::applicationDirPath() + "/" ORVANDEL_CHAT_MODULE);
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    return qobject_cast<ChatEngineFactory*>(loader.instance());
  }();
  return pFactory;
}

}  // namespace

ChatView::ChatView(const QString& qstrStyleFile, QWidget* pParent)
    : QWidget(pParent), m_qstrPage(ReadPage(qstrStyleFile)) {}

ChatView::~ChatView() {
  // While the members live: it answers the scripts that haven't run.
  if (m_pEngine) delete m_pEngine->Widget();
}

void ChatView::Clear() {
  m_nContent = 0;
  m_nSent = 0;
  m_scripts.clear();
  if (m_bEnabled) m_scripts.push_back({Step::Enable, QString()});
  Add(Step::Clear);
}

void ChatView::Enable() {
  m_bEnabled = true;
  Add(Step::Enable);
}

bool ChatView::AddBubble(bool bReceived, const QString& qstrText) {
  const bool bNames = MayHoldNames(qstrText);
  m_nContent += qstrText.size() + kBubbleCost + (bNames ? kNamesCost : 0);
  if (m_nContent > kMostContent) return false;
  if (!StaysInString(qstrText)) return true;
  Add(bReceived ? Step::Received : Step::Sent, qstrText);
  if (bNames) Add(Step::RemoveNames);
  return true;
}

void ChatView::Add(Step step, const QString& qstrText) {
  m_scripts.push_back({step, qstrText});
  if (m_bPageLoaded) ScheduleSending();
}

QString ChatView::TextOf(const Script& script) {
  static constexpr const char* kScripts[] = {kClearScript, kEnableScript, kReceivedScript, kSentScript,
                                             kRemoveNamesScript};
  const QString qstrScript = kScripts[static_cast<int>(script.step)];
  return script.step == Step::Received || script.step == Step::Sent ? qstrScript.arg(script.qstrText)
                                                                    : qstrScript;
}

/// True for a script that may be a syntax error: a backslash in its text may start an invalid escape.
bool ChatView::MayFail(const Script& script) {
  return script.qstrText.contains('\\');
}

void ChatView::ScheduleSending() {
  if (m_bSendingScheduled) return;
  m_bSendingScheduled = true;
  QTimer::singleShot(0, this, &ChatView::Send);
}

void ChatView::Send() {
  // A call costs as much as some hundred bubbles, so scripts share one, except those that may fail.
  constexpr qsizetype kMostOfACall = qsizetype{256} * 1024;
  m_bSendingScheduled = false;
  while (m_nSent < m_scripts.size()) {
    if (MayFail(m_scripts[m_nSent])) {
      Run(TextOf(m_scripts[m_nSent++]));
      continue;
    }
    QString qstrCall;
    while (m_nSent < m_scripts.size() && qstrCall.size() < kMostOfACall && !MayFail(m_scripts[m_nSent]))
      qstrCall += "try{" + TextOf(m_scripts[m_nSent++]) + "}catch(e){}\n";
    Run(qstrCall);
  }
}

void ChatView::Run(const QString& qstrScript) {
  ++m_nRunning;
  m_pEngine->Run(qstrScript, [pThis = QPointer<ChatView>(this)](const QVariant&) {
    if (pThis) --pThis->m_nRunning;
  });
}

void ChatView::StartEngine() {
  ChatEngineFactory* pFactory = EngineFactory();
  if (pFactory) m_pEngine = pFactory->Create(this);
  if (!m_pEngine) return;
  m_pEngine->Widget()->setGeometry(rect());
  m_pEngine->Widget()->show();
  m_pEngine->Load(m_qstrPage, [pThis = QPointer<ChatView>(this)] {
    if (!pThis) return;
    pThis->m_bPageLoaded = true;
    pThis->Run(kGuardScript);
    pThis->Send();
  });
}

bool ChatView::StaysInString(const QString& qstrText) {
  for (qsizetype i = 0; i < qstrText.size(); ++i) {
    switch (qstrText[i].unicode()) {
      case '\\':
        // Skip the escaped character; CR LF counts as one.
        i += QStringView(qstrText).mid(i + 1, 2) == QLatin1String("\r\n") ? 2 : 1;
        break;
      case '"':
      case '\n':
      case '\r':
      case 0x2028:  // line and paragraph separators also end a string
      case 0x2029:
        return false;
      default:
        break;
    }
  }
  return true;
}

void ChatView::showEvent(QShowEvent* pEvent) {
  QWidget::showEvent(pEvent);
  if (!m_pEngine) StartEngine();
}

void ChatView::resizeEvent(QResizeEvent* pEvent) {
  QWidget::resizeEvent(pEvent);
  if (m_pEngine) m_pEngine->Widget()->setGeometry(rect());
}

}  // namespace orvandel
