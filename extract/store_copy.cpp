#include "extract/store_copy.h"

#include <sys/stat.h>

#include <QFile>

#include "common/text.h"

void CopyStore(const std::string& strSource, const std::string& strDestination) {
  QFile::copy(FromNarrow(strSource), FromNarrow(strDestination));
  chmod(strDestination.c_str(), 0777);
}
