#pragma once
#include <QString>
#include <QVariant>
#include <QtPlugin>
#include <functional>

class QWidget;

namespace orvandel {

/// A browser engine with one sandboxed page for a chat view: no network or file access, no pop-ups, no
/// dialogs, and no scripts except the program's own.
///
/// Main thread only. Owned by its widget, which is a child of the view.
class ChatEngine {
 public:
  virtual ~ChatEngine() = default;
  virtual QWidget* Widget() = 0;

  /// Loads a page. @param done called when loading has finished or failed.
  virtual void Load(const QString& qstrHtml, std::function<void()> done) = 0;
  /// Runs a script in the main frame, in the order of the calls. Errors in the script are ignored.
  /// @param done receives the script's result, an invalid variant on failure; may be empty.
  virtual void Run(const QString& qstrScript, std::function<void(const QVariant&)> done = {}) = 0;
};

/// Interface of the engine module, a plug-in that is loaded only when a chat is shown: the engine is large,
/// and its page shows untrusted content.
class ChatEngineFactory {
 public:
  virtual ~ChatEngineFactory() = default;
  /// @return the engine, owned by pParent through its widget; null if it can't run.
  virtual ChatEngine* Create(QWidget* pParent) = 0;
};

#define CHAT_ENGINE_FACTORY_IID "orvandel.ChatEngineFactory/1"

}  // namespace orvandel

Q_DECLARE_INTERFACE(orvandel::ChatEngineFactory, CHAT_ENGINE_FACTORY_IID)
