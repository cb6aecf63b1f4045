#pragma once
#include <QByteArray>
#include <QCryptographicHash>
#include <string>

// Expected digests, computed with the library's SHA-1.

namespace orvandel {

inline std::string StandardSha1(const std::string& strText) {
  const QByteArray bytes(strText.data(), static_cast<int>(strText.size()));
  return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().toStdString();
}

/// A byte with its top bit set changes the bytes to its left in its 4-byte word to FF; the result is hashed
/// by standard SHA-1.
inline std::string DigestOf(std::string strText) {
  for (size_t i = 0; i < strText.size(); ++i) {
    if (static_cast<unsigned char>(strText[i]) < 0x80) continue;
    for (size_t nLeft = i - i % 4; nLeft < i; ++nLeft) strText[nLeft] = '\xFF';
  }
  return StandardSha1(strText);
}

}  // namespace orvandel
