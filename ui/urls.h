#pragma once
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
