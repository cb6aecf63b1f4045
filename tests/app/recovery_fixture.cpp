#include "tests/app/recovery_fixture.h"

#include <QLineEdit>
#include <QTest>
#include <QThread>
#include <algorithm>

#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"

namespace orvandel {

const std::vector<RecoveryStep> kRecoverySteps = {
    {0, "CameraRoll", "/Camera Roll/", 0, 2000, 2000},
    {1, "PhotoStream", "/Photo Stream/", 20, 2000, 4000},
    {2, "AppPhotos", "/App Photos/", 40, 1000, 5000},
    {3, "AppVideos", "/App Video/", 50, 2000, 7000},
    {10, "WhatsAppAttachments", "/WhatsApp Attachments/", 70, 1000, 8000},
    {5, "MessageAttachments", "/Message Attachments/", 80, 1000, 9000},
};

bool Report::operator==(const Report& other) const {
  return nProgress == other.nProgress && nPercent == other.nPercent && nErrorCode == other.nErrorCode &&
         strName == other.strName;
}

void PrintTo(const Report& report, std::ostream* pStream) {
  *pStream << '(' << report.nProgress << ", " << report.nPercent << ", " << report.nErrorCode << ", \""
           << report.strName << "\")";
}

ReportRecorder::ReportRecorder(DRUI& window, size_t nWaitAt)
    : m_connection(QObject::connect(
          &window, qOverload<int, int, int, QString>(&DRUI::RecoveryCallBack), &window,
          [this, &window, nWaitAt](int nProgress, int nPercent, int nErrorCode, const QString& qstrName) {
            size_t nCount = 0;
            {
              std::lock_guard<std::mutex> lock(m_mutex);
              m_reports.push_back({nProgress, nPercent, nErrorCode, qstrName.toStdString()});
              nCount = m_reports.size();
            }
            if (nCount != nWaitAt) return;
            m_bWaiting = true;
            for (int i = 0; i < kLimit && !m_bGoOn && !window.m_bCancelRecovery; ++i) QThread::msleep(1);
          },
          Qt::DirectConnection)) {}

ReportRecorder::~ReportRecorder() {
  QObject::disconnect(m_connection);
}

Reports ReportRecorder::All() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_reports;
}

Reports ReportRecorder::Named() const {
  Reports named = All();
  named.erase(std::remove_if(named.begin(), named.end(), [](const Report& r) { return r.strName.empty(); }),
              named.end());
  return named;
}

bool ReportRecorder::HasEnd() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return !m_reports.empty() && m_reports.back().nPercent == 1000;
}

void TypeFolder(ModalSteps& steps, const std::string& strFolder) {
  steps.Then("QFileDialog", [strFolder](QWidget* pDialog) {
    auto* pName = pDialog->findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(nullptr, pName);
    // At once: completions that come up between two keys take the focus, and with it the rest of the name.
    pName->setText(QString::fromStdString(strFolder));
    QTest::keyClick(pName, Qt::Key_Return);
  });
}

bool IsFinished(const QWidget* pDialog) {
  return pDialog->findChild<QPushButton*>("Cancel")->text() == "Finished";
}

DetailList DetailOf(QWidget* pDialog) {
  DetailList list;
  ModalSteps steps;
  steps.Then("CDetail", [&](QWidget* pDetail) {
    const auto* pTable = pDetail->findChild<QTableWidget*>("m_pTable");
    for (int i = 0; i < pTable->rowCount(); ++i)
      list.rows.push_back(
          {pTable->item(i, 0)->text().toStdString(), pTable->item(i, 1)->text().toStdString()});
    list.strSummary = TextOf(pDetail->findChild<QLabel*>("m_pTextLabel"));
    Click(pDetail->findChild<QPushButton*>("OK"));
  });
  Click(pDialog->findChild<QPushButton*>("Detail"));
  return list;
}

RecoveryTest::RecoveryTest() : m_strOut(m_folder.MakeFolder("out")) {
  OpenDataScreen();
}

std::u16string RecoveryTest::Source(const std::string& strBytes) {
  const std::string strPath = m_folder.Path("source/" + std::to_string(++m_nSources));
  if (!strBytes.empty()) WriteFile(strPath, strBytes);
  return QString::fromStdString(strPath).toStdU16String();
}

void RecoveryTest::AddFile(int nCategory, const std::string& strName, const std::string& strBytes) {
  BackupRecords& records = Records();
  const std::u16string wstrSource = Source(strBytes);
  size_t nRows = 0;
  const auto add = [&](auto& files) {
    auto& file = files.emplace_back();
    file.strFileName = strName;
    file.wstrFilePath = wstrSource;
    nRows = files.size();
  };
  if (nCategory == 0) add(records.m_vecCamera);
  if (nCategory == 1) add(records.m_vecPhotoStream);
  if (nCategory == 5) add(records.m_vecMessageAttachment);
  if (nCategory == 10) add(records.m_vecWhatsAppAttachment);
  Selection(nCategory)[static_cast<U32>(nRows - 1)] = 1;
}

void RecoveryTest::AddAppFile(int nCategory, const std::string& strApp, const std::string& strName,
                              const std::string& strBytes, const char* pszAppOfRecord) {
  auto& apps = nCategory == 2 ? Records().m_mapAppPhotoFiles : Records().m_mapAppVideoFiles;
  auto& files = apps[strApp];
  files.push_back({1, pszAppOfRecord ? pszAppOfRecord : strApp, strName, Source(strBytes)});
  AppSelection(nCategory)[QString::fromStdString(strApp)][static_cast<U32>(files.size() - 1)] = 1;
}

void RecoveryTest::AddConversation(unsigned int nKey, const std::string& strName) {
  __MESSAGE_INFO__ message;
  message.nHandleId = static_cast<decltype(message.nHandleId)>(nKey);
  message.strContactName = strName;
  message.strSender = std::to_string(nKey);
  message.strText = "text of " + strName;
  Records().m_mapMessage[nKey] = {message};
}

void RecoveryTest::AddChat(unsigned int nKey, const std::string& strName) {
  __WHATSAPP_MESSAGE__ message;
  message.nChatId = static_cast<decltype(message.nChatId)>(nKey);
  message.strChatName = strName;
  message.strChatPhone = std::to_string(nKey);
  message.strContent = "text of " + strName;
  Records().m_mapWhatsApp[nKey] = {message};
}

void RecoveryTest::AddDocuments() {
  BackupRecords& records = Records();
  for (const char* pszName : {"Ann", "Bob"}) {
    records.m_vecContact.emplace_back().strName = pszName;
    records.m_vecCall.emplace_back().strName = pszName;
    records.m_vecNote.emplace_back().strTitle = pszName;
  }
  AddConversation(3, "Ann");
  AddConversation(8, "Bob");
  AddChat(4, "Chris");
  AddChat(6, "Dora");
  for (const int nCategory : {4, 6, 7, 8, 9}) TickNode(nCategory);
}

std::vector<std::string> RecoveryTest::Written() const {
  std::vector<std::string> files;
  for (const std::string& strFile : FilesBelow(m_strOut)) files.push_back(WithoutStamps("/" + strFile));
  std::sort(files.begin(), files.end());
  return files;
}

std::string RecoveryTest::PageIn(const std::string& strFolder) const {
  const std::string strEnd = ".html";
  std::string strPage;
  for (const std::string& strFile : FilesBelow(m_strOut + strFolder)) {
    if (strFile.size() < strEnd.size() || strFile.substr(strFile.size() - strEnd.size()) != strEnd) continue;
    EXPECT_EQ("", strPage) << "more than one page in " << strFolder;
    strPage = ReadFile(m_strOut + strFolder + strFile);
  }
  return strPage;
}

std::pair<std::map<int, SelectionMap>, std::map<int, AppSelectionMap>> RecoveryTest::Ticks() {
  std::pair<std::map<int, SelectionMap>, std::map<int, AppSelectionMap>> ticks;
  for (const int nCategory : {0, 1, 4, 5, 6, 7, 8, 9, 10}) ticks.first[nCategory] = Selection(nCategory);
  for (const int nCategory : {2, 3}) ticks.second[nCategory] = AppSelection(nCategory);
  return ticks;
}

void RecoveryTest::Recover(const std::function<void(QWidget*)>& atEnd) {
  ModalSteps steps;
  TypeFolder(steps, m_strOut);
  steps.Then(
      "SCANUI",
      [atEnd](QWidget* pDialog) {
        if (atEnd) atEnd(pDialog);
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);
  Window().btnRecovery();
}

Reports WholeRecovery(const std::map<int, Reports>& named, const Reports& documents) {
  Reports reports;
  for (const RecoveryStep& step : kRecoverySteps) {
    const auto it = named.find(step.nCategory);
    if (it != named.end()) reports.insert(reports.end(), it->second.begin(), it->second.end());
    reports.push_back({step.nEndMark, 1, 0, ""});
  }
  reports.insert(reports.end(), documents.begin(), documents.end());
  reports.push_back({10000, 1000, 0, ""});
  return reports;
}

}  // namespace orvandel
