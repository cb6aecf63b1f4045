#pragma once
#include <QObject>
#include <QStringList>
#include <QUrl>

/// Takes what the program opens in the user's browser while the object lives.
class UrlRecorder : public QObject {
  Q_OBJECT

 public:
  UrlRecorder();
  ~UrlRecorder() override;

  QStringList m_opened;

 public slots:
  void Open(const QUrl& url);
};
