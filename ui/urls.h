#pragma once
#include <array>

/// The addresses of the web pages that the program opens.
class CURLConfig {
 public:
  enum Slot { kProduct, kOnlineHelp, kAbout, kSupport, kFurther, kSlotCount };

  /// The one instance, made at first use.
  static CURLConfig* GetInstance();

  /// An address as terminated ASCII.
  const char* GetUrl(Slot slot) const { return m_urls[slot]; }

 private:
  CURLConfig();
  std::array<const char*, kSlotCount> m_urls;
};
