#pragma once
#include <QString>
#include <QVariant>
#include <QtPlugin>
#include <functional>

class QWidget;

/// A browser engine with one sealed page, as a chat view uses it: it reaches no network and no file, opens
/// nothing, asks nothing, and runs the scripts of the program alone.
///
/// Lives on the main thread. The widget owns it and is a child of the view's.
class ChatEngine {
 public:
  virtual ~ChatEngine() = default;
  virtual QWidget* Widget() = 0;

  /// Loads a page. @param done called once it is there, or once its loading has failed.
  virtual void Load(const QString& qstrHtml, std::function<void()> done) = 0;
  /// Runs a script in the main frame, after all those before it. One that fails does so silently.
  /// @param done receives the script's value, an invalid one after a failure; may be empty.
  virtual void Run(const QString& qstrScript, std::function<void(const QVariant&)> done = {}) = 0;
};

/// What the module with the engine offers. It is a module of its own, so that a program which shows no chat
/// never loads the engine: it is large, and what its page shows is written by strangers.
class ChatEngineFactory {
 public:
  virtual ~ChatEngineFactory() = default;
  /// @return the engine, owned by pParent through its widget; null where it can't run.
  virtual ChatEngine* Create(QWidget* pParent) = 0;
};

#define CHAT_ENGINE_FACTORY_IID "orvandel.ChatEngineFactory/1"
Q_DECLARE_INTERFACE(ChatEngineFactory, CHAT_ENGINE_FACTORY_IID)
