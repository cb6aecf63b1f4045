#include "export/replace.h"

namespace orvandel {

void ReplaceEvery(std::string& strText, const std::string& strFrom, const std::string& strTo) {
  for (size_t nHit = strText.find(strFrom); nHit != std::string::npos; nHit = strText.find(strFrom, nHit)) {
    strText.replace(nHit, strFrom.size(), strTo);
    nHit += strTo.size();
  }
}

}  // namespace orvandel
