#include "ui/urls.h"

// All below a domain that is reserved for documentation, until the pages have a home.
CURLConfig::CURLConfig()
    : m_urls{"https://orvandel.example/", "https://orvandel.example/help.html",
             "https://orvandel.example/about.html", "https://orvandel.example/support.html",
             "https://orvandel.example/more.html"} {}

CURLConfig* CURLConfig::GetInstance() {
  static CURLConfig config;
  return &config;
}
