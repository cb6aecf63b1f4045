#pragma once
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace orvandel {

/// Records the URLs that the program opens in the user's browser during the object's lifetime.
class UrlRecorder : public QObject {
  Q_OBJECT

 public:
  UrlRecorder();
  ~UrlRecorder() override;

  QStringList m_opened;

 public slots:
  void Open(const QUrl& url);
};

}  // namespace orvandel
