#pragma once
#include <QWebEngineView>

#include "ui/chat_engine.h"

namespace orvandel {

class SealedPage;

/// The engine of a chat view: a web view with a sealed page and its own off-the-record profile.
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

/// The plugin's root object.
class SealedViewFactory : public QObject, public ChatEngineFactory {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID CHAT_ENGINE_FACTORY_IID)
  Q_INTERFACES(orvandel::ChatEngineFactory)

 public:
  SealedViewFactory();
  ChatEngine* Create(QWidget* pParent) override;
};

}  // namespace orvandel
