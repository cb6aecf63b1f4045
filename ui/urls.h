#pragma once
#include <QUrl>
#include <array>

/// URLs of the web pages that the program opens.
class CURLConfig {
 public:
  enum Slot { kProduct, kOnlineHelp, kAbout, kSupport, kFurther, kSlotCount };

  /// The singleton, created on first use.
  static CURLConfig* GetInstance();

  /// URL as null-terminated ASCII.
  const char* GetUrl(Slot slot) const { return m_urls[slot]; }

 private:
  CURLConfig();
  std::array<const char*, kSlotCount> m_urls;
};

namespace orvandel {

/// The page that the Help button opens.
///
/// @param online      URL of the online help; a placeholder if its domain is reserved for documentation.
/// @param qstrFolder  the folder with the user guide, "guide.html".
/// @return the guide in place of a placeholder, if it is there; otherwise `online`.
QUrl HelpPage(const QUrl& online, const QString& qstrFolder);

}  // namespace orvandel
