#include "extract/store_copy.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/problem.h"
#include "common/text.h"

void CopyStore(const std::string& strSource, const std::string& strDestination) {
  QFile source(FromNarrow(strSource));
  const QString qstrDestination = FromNarrow(strDestination);
  if (!source.copy(qstrDestination) && source.exists() && QFileInfo(qstrDestination).dir().exists())
    ReportProblem(strDestination, ToNarrow(source.errorString()));
  chmod(strDestination.c_str(), 0777);
}
