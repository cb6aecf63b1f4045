#include "decrypt/password.h"

#include <iconv.h>
#include <openssl/crypto.h>

#include <QString>
#include <cstring>
#include <string>

namespace orvandel {

namespace {

constexpr size_t kLongestInUtf8 = 4;  // bytes of UTF-8 per byte of another encoding

/// Converts text between encodings; empty when it isn't valid in pszFrom.
Secret Converted(const Secret& text, const char* pszTo, const char* pszFrom) {
  const iconv_t handle = iconv_open(pszTo, pszFrom);
  if (handle == reinterpret_cast<iconv_t>(-1)) return Secret();
  Secret input(text.Data(), text.Size());
  Secret output(text.Size() * kLongestInUtf8);
  auto* pInput = reinterpret_cast<char*>(input.Data());
  auto* pOutput = reinterpret_cast<char*>(output.Data());
  size_t nInput = input.Size(), nOutput = output.Size();
  const bool bConverted = iconv(handle, &pInput, &nInput, &pOutput, &nOutput) != static_cast<size_t>(-1);
  iconv_close(handle);
  return bConverted ? Secret(output.Data(), output.Size() - nOutput) : Secret();
}

/// UTF-8 in composed form (NFC).
Secret Composed(const Secret& utf8) {
  QString qstrText =
      QString::fromUtf8(reinterpret_cast<const char*>(utf8.Data()), static_cast<int>(utf8.Size()));
  QString qstrComposed = qstrText.normalized(QString::NormalizationForm_C);
  QByteArray bytes = qstrComposed.toUtf8();
  Secret composed(bytes.constData(), static_cast<size_t>(bytes.size()));
  OPENSSL_cleanse(bytes.data(), static_cast<size_t>(bytes.size()));
  for (QString* pText : {&qstrComposed, &qstrText})
    OPENSSL_cleanse(pText->data(), static_cast<size_t>(pText->size()) * sizeof(QChar));
  return composed;
}

}  // namespace

std::vector<Secret> PasswordForms(const Secret& given, const char* pszLocaleEncoding) {
  std::vector<Secret> forms;
  const auto add = [&](Secret&& form) {
    for (const Secret& other : forms) {
      if (other.Size() == form.Size() && memcmp(other.Data(), form.Data(), form.Size()) == 0) return;
    }
    if (!form.IsEmpty()) forms.push_back(std::move(form));
  };
  add(Secret(given.Data(), given.Size()));
  if (given.IsEmpty()) return forms;
  for (const char* pszEncoding : {"UTF-8", pszLocaleEncoding}) {
    Secret utf8 = Converted(given, "UTF-8", pszEncoding);
    if (utf8.IsEmpty()) continue;
    Secret composed = Composed(utf8);
    add(std::move(utf8));
    add(std::move(composed));
  }
  return forms;
}

}  // namespace orvandel
