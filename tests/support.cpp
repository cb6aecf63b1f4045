#include "tests/support.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <filesystem>
#include <memory>
#include <mutex>

#include "common/places.h"
#include "common/problem.h"
#include "common/text.h"

namespace orvandel {

namespace {

struct Places {
  std::string strBackupRoot;
  std::string strWorkFolder;
  std::string strProgramFolder;
};

Places g_places;
std::unique_ptr<TemporaryFolder> g_pProcessFolder;

std::mutex g_problemMutex;
std::vector<ProblemRecorder::Problem> g_problems;

struct AnnouncedWarning {
  QRegularExpression pattern;
  bool bSeen = false;
};

std::mutex g_warningMutex;
std::vector<AnnouncedWarning> g_announced;
QtMessageHandler g_pfnQtHandler = nullptr;

std::string WithSlash(const std::string& strFolder) {
  return strFolder.empty() || strFolder.back() != '/' ? strFolder + "/" : strFolder;
}

QString ToPath(const std::string& strPath) {
  return QFile::decodeName(strPath.c_str());
}

void RecordProblem(const std::string& strFile, const std::string& strReason) {
  std::lock_guard<std::mutex> lock(g_problemMutex);
  g_problems.push_back({strFile, strReason});
}

bool WasAnnounced(const QString& qstrMessage) {
  std::lock_guard<std::mutex> lock(g_warningMutex);
  for (AnnouncedWarning& warning : g_announced) {
    if (warning.pattern.match(qstrMessage).hasMatch()) return warning.bSeen = true;
  }
  return false;
}

void HandleQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& qstrMessage) {
  const bool bWarning = type == QtWarningMsg || type == QtCriticalMsg;
  if (bWarning && WasAnnounced(qstrMessage)) return;
  if (bWarning) ADD_FAILURE() << "Qt warns: " << qstrMessage.toUtf8().constData();
  g_pfnQtHandler(type, context, qstrMessage);
}

class TestWatcher : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    g_places = {g_pProcessFolder->Path("backups/"), g_pProcessFolder->Path("work/"),
                WithSlash(QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString())};
    std::lock_guard<std::mutex> lock(g_warningMutex);
    g_announced.clear();
  }

  void OnTestEnd(const testing::TestInfo&) override {
    std::lock_guard<std::mutex> lock(g_warningMutex);
    for (const AnnouncedWarning& warning : g_announced) {
      EXPECT_TRUE(warning.bSeen) << "Qt never warned: " << warning.pattern.pattern().toUtf8().constData();
    }
    g_announced.clear();
  }

  void OnTestProgramEnd(const testing::UnitTest&) override { g_pProcessFolder.reset(); }
};

}  // namespace

std::string BackupRoot() {
  return g_places.strBackupRoot;
}

std::string WorkFolder() {
  return g_places.strWorkFolder;
}

std::string ProgramFolder() {
  return g_places.strProgramFolder;
}

TemporaryFolder::TemporaryFolder() : m_strPath(QFile::encodeName(m_folder.path()).toStdString()) {
  EXPECT_TRUE(m_folder.isValid()) << m_folder.errorString().toUtf8().constData();
  m_folder.setAutoRemove(
      false);  // Qt can't remove names that aren't text in the locale, which some tests make
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(m_strPath, error);
  EXPECT_FALSE(error) << m_strPath << ": " << error.message();
}

std::string TemporaryFolder::MakeFolder(const std::string& strName) const {
  EXPECT_TRUE(QDir().mkpath(ToPath(Path(strName)))) << Path(strName);
  return Path(strName);
}

std::string TemporaryFolder::Write(const std::string& strName, const std::string& strBytes) const {
  WriteFile(Path(strName), strBytes);
  return Path(strName);
}

void WriteFile(const std::string& strPath, const std::string& strBytes) {
  const QString qstrPath = ToPath(strPath);
  ASSERT_TRUE(QDir().mkpath(QFileInfo(qstrPath).path())) << strPath;
  QFile file(qstrPath);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << strPath;
  ASSERT_EQ(static_cast<qint64>(strBytes.size()), file.write(strBytes.data(), strBytes.size())) << strPath;
}

std::string ReadFile(const std::string& strPath) {
  QFile file(ToPath(strPath));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << strPath;
  return file.readAll().toStdString();
}

bool Exists(const std::string& strPath) {
  return QFileInfo::exists(ToPath(strPath));
}

std::vector<std::string> NamesIn(const std::string& strFolder) {
  std::vector<std::string> names;
  const QDir::Filters filters = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  for (const QString& qstrName : QDir(ToPath(strFolder)).entryList(filters, QDir::Name)) {
    names.push_back(QFile::encodeName(qstrName).toStdString());
  }
  return names;
}

void SetPlaces(const std::string& strBackupRoot, const std::string& strWorkFolder) {
  g_places.strBackupRoot = WithSlash(strBackupRoot);
  g_places.strWorkFolder = WithSlash(strWorkFolder);
}

void SetProgramFolder(const std::string& strFolder) {
  g_places.strProgramFolder = WithSlash(strFolder);
}

ProblemRecorder::ProblemRecorder() {
  std::lock_guard<std::mutex> lock(g_problemMutex);
  g_problems.clear();
  SetProblemHandler(RecordProblem);
}

ProblemRecorder::~ProblemRecorder() {
  SetProblemHandler(nullptr);
}

std::vector<ProblemRecorder::Problem> ProblemRecorder::Problems() const {
  std::lock_guard<std::mutex> lock(g_problemMutex);
  return g_problems;
}

LocaleCodec::LocaleCodec(const char* pszEncoding) : m_old(NarrowEncoding()) {
  const std::optional<QStringConverter::Encoding> encoding = QStringConverter::encodingForName(pszEncoding);
  EXPECT_TRUE(encoding) << pszEncoding;
  SetNarrowEncoding(encoding.value_or(m_old));
}

LocaleCodec::~LocaleCodec() {
  SetNarrowEncoding(m_old);
}

void ExpectQtWarning(const char* pszPattern) {
  std::lock_guard<std::mutex> lock(g_warningMutex);
  g_announced.push_back({QRegularExpression(QString::fromUtf8(pszPattern))});
}

void InstallTestEnvironment() {
  g_pProcessFolder = std::make_unique<TemporaryFolder>();
  // File dialogs remember their last folder.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                     QFile::decodeName(g_pProcessFolder->Path("settings").c_str()));
  g_pfnQtHandler = qInstallMessageHandler(HandleQtMessage);
  testing::UnitTest::GetInstance()->listeners().Append(new TestWatcher);
}

}  // namespace orvandel
