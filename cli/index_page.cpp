#include "cli/index_page.h"

#include <unistd.h>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>

#include "cli/index_content.h"
#include "common/file.h"
#include "common/path.h"
#include "common/text.h"
#include "export/document_file.h"

namespace orvandel {

namespace {

constexpr char kTemplate[] = "/template/index.html";
constexpr char kGenerator[] = "<meta name=\"generator\" content=\"orvandel-cli\">";
constexpr qint64 kHeadSize = 4096;  // bytes in which the generator is searched for

/// What replaces a token of the template.
struct Token {
  const char* pszName;
  void (*pfnWrite)(TextFile& file, const IndexContent& content);
};

constexpr Token kTokens[] = {
    {"{|title|}", WriteTitle},
    {"{|title|}", WriteTitle},
    {"{|facts|}", WriteFacts},
    {"{|counts|}", WriteCounts},
    {"{|conversations|}", WriteConversations},
    {"{|data|}", WriteMedia},
};

Problem Unusable(const QString& qstrPath, const QString& qstrReason) {
  return {Problem::Step::Open, EINVAL, ToNarrow(qstrPath), ToNarrow(qstrReason)};
}

bool IsFrontPage(const std::string& strPath) {
  const QString qstrPath = FromNarrow(strPath);
  const QFileInfo info(qstrPath);
  QFile file(qstrPath);
  if (info.isSymLink() || !info.isFile() || !file.open(QIODevice::ReadOnly)) return false;
  return file.read(kHeadSize).contains(kGenerator);
}

}  // namespace

Result<IndexPage> IndexPage::Load(const QString& qstrProgramFolder) {
  const QString qstrPath = qstrProgramFolder + kTemplate;
  QFile file(qstrPath);
  const QFileInfo info(qstrPath);
  if (info.exists() && !info.isFile()) return Unusable(qstrPath, "is not a regular file");
  if (!file.open(QIODevice::ReadOnly)) return Unusable(qstrPath, file.errorString());
  const std::string strText = file.readAll().toStdString();
  std::vector<std::string> parts;
  size_t nStart = 0;
  for (const Token& token : kTokens) {
    const size_t nToken = strText.find(token.pszName, nStart);
    if (nToken == std::string::npos)
      return Unusable(qstrPath, QString("the template lacks ") + token.pszName);
    parts.push_back(strText.substr(nStart, nToken - nStart));
    nStart = nToken + std::string(token.pszName).size();
  }
  parts.push_back(strText.substr(nStart));
  return IndexPage(std::move(parts));
}

WrittenFile IndexPage::Write(const RecoverOptions& options, const IndexFacts& facts,
                             const BackupRecords& records, const RecoveryIndex& index) const {
  const std::string strPath = IndexPath(ToNarrow(options.qstrDestination));
  // Renamed when it is complete, which replaces an earlier page at once and follows no link.
  const std::string strPart = FreeNames().Take(strPath + ".part");
  WrittenFile written{FromNarrow(strPath), {}, {}};
  const IndexContent content{options, facts, records, index};
  TextFile file(Ansi2Unicode(strPart.c_str()).c_str());
  for (size_t i = 0; i < std::size(kTokens); ++i) {
    file.Write(m_parts[i]);
    kTokens[i].pfnWrite(file, content);
  }
  file.Write(m_parts.back());
  written.problem = file.Close();
  if (!written.problem && rename(strPart.c_str(), strPath.c_str()) != 0) {
    written.problem = SystemProblem(Problem::Step::Create, strPath, errno);
    unlink(strPart.c_str());
  }
  return written;
}

std::string IndexPath(const std::string& strFolder) {
  std::string strPath = strFolder + "/index.html";
  for (int nNumber = 1; EntryExists(strPath) && !IsFrontPage(strPath); ++nNumber)
    strPath = strFolder + "/index(" + std::to_string(nNumber) + ").html";
  return strPath;
}

}  // namespace orvandel
