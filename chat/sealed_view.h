#pragma once
#include <QWebEngineView>

#include "ui/chat_engine.h"

class SealedPage;

/// The engine of a chat view: a browser view with a sealed page, on a profile of its own that is never
/// written.
class SealedView : public QWebEngineView, public ChatEngine {
  Q_OBJECT

 public:
  explicit SealedView(QWidget* pParent);
  ~SealedView() override;
  QWidget* Widget() override { return this; }
  void Load(const QString& qstrHtml, std::function<void()> done) override;
  void Run(const QString& qstrScript, std::function<void(const QVariant&)> done) override;

 private:
  SealedPage* m_pPage;
};

/// What the module offers.
class SealedViewFactory : public QObject, public ChatEngineFactory {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID CHAT_ENGINE_FACTORY_IID)
  Q_INTERFACES(ChatEngineFactory)

 public:
  SealedViewFactory();
  ChatEngine* Create(QWidget* pParent) override;
};
