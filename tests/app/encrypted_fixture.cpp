#include "tests/app/encrypted_fixture.h"

#include <signal.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QThread>
#include <filesystem>
#include <sstream>

#include "sample/pictures.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

constexpr char kToolName[] = "/Velmora Orvandel";
constexpr char kCalls[] = "/calls";
constexpr char kEndOfCall[] = "(end)";
constexpr int kTopFiles = 4;  // in the encrypted backup
constexpr char kDomain[] = "CameraRollDomain";

std::string PhotoPath(int nPhoto) {
  return "Media/DCIM/100APPLE/IMG_000" + std::to_string(nPhoto) + ".JPG";
}

std::string PhotoId(int nPhoto) {
  return BackupBuilder::fileId(kDomain, QString::fromStdString(PhotoPath(nPhoto))).toStdString();
}

/// Process ids of this process's children.
std::string Children() {
  std::string strChildren;
  for (const QString& qstrThread : QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile file("/proc/self/task/" + qstrThread + "/children");
    if (file.open(QIODevice::ReadOnly)) strChildren += file.readAll().toStdString();
  }
  return strChildren;
}

}  // namespace

EncryptedTest::~EncryptedTest() {
  EXPECT_EQ("", Children()) << "left running";
}

void EncryptedTest::WriteTool(const std::string& strCheck, const std::string& strDecrypt) {
  const std::string strTool = m_folder.Write("program folder" + std::string(kToolName),
                                             "#!/bin/sh\n"
                                             "dir=${0%/*}\n"
                                             "{ printf '%s\\n' \"$@\"; echo '" +
                                                 std::string(kEndOfCall) + "'; } >>\"$dir\"" + kCalls +
                                                 "\n"
                                                 "echo $$ >\"$dir/pid\"\n"
                                                 "for last; do :; done\n"
                                                 "if [ \"$last\" = CheckPasswd ]; then\n:\n" +
                                                 strCheck + "\nelse\n:\n" + strDecrypt + "\nfi\n");
  ASSERT_EQ(0, chmod(strTool.c_str(), 0755));
  SetProgramFolder(ToolFolder());
}

void EncryptedTest::RemoveTool() {
  std::filesystem::remove(ToolFolder() + kToolName);
  SetProgramFolder(ToolFolder());
}

std::vector<std::vector<std::string>> EncryptedTest::Calls() const {
  std::vector<std::vector<std::string>> calls;
  if (!Exists(ToolFolder() + kCalls)) return calls;
  std::istringstream lines(Told(kCalls));
  std::vector<std::string> call;
  for (std::string strLine; std::getline(lines, strLine);) {
    if (strLine != kEndOfCall) {
      call.push_back(strLine);
      continue;
    }
    calls.push_back(call);
    call.clear();
  }
  return calls;
}

bool EncryptedTest::ToolHasEnded() const {
  return kill(std::stoi(Told("pid")), 0) == -1;
}

std::string EncryptedTest::WriteSealedBackup(const std::string& strName, int nFiles) const {
  BackupBuilder backup(QString::fromStdString(BackupPath(strName)), BackupBuilder::Layout::Mbdb);
  backup.writeInfo({});
  const StorePlace contacts = store_places::contacts();
  backup.addFile(contacts.domain, contacts.relativePath, "nothing that a reader could read");
  backup.addFile(kDomain, QString::fromStdString(PhotoPath(1)), "sealed as well");
  backup.addEntry(kDomain, QString::fromStdString(PhotoPath(2)));
  backup.finish();
  EXPECT_EQ(static_cast<size_t>(kTopFiles), NamesIn(BackupPath(strName)).size());
  for (int i = kTopFiles; i < nFiles; ++i)
    WriteFile(BackupPath(strName) + "/more/" + std::to_string(i), "one more");
  return BackupPath(strName);
}

std::string EncryptedTest::WritePhoto(int nPhoto) const {
  const std::string strName = "photo" + std::to_string(nPhoto);
  WriteFile(ToolFolder() + "/" + strName, sample_media::jpeg(nPhoto).toStdString());
  return "cp \"$dir/" + strName + "\" \"$2/" + PhotoId(nPhoto) + "\"\n";
}

void EncryptedTest::ChooseFolder(ModalSteps& steps, const std::string& strFolder) {
  steps.Then("QFileDialog", [strFolder](QWidget* pDialog) {
    auto* pName = pDialog->findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(nullptr, pName);
    pName->setText(QString::fromStdString(strFolder));
    for (QPushButton* pButton : pDialog->findChildren<QPushButton*>()) {
      if (pButton->text().contains("Choose")) return Click(pButton);
    }
    FAIL() << "there is nothing to choose with";
  });
}

void EncryptedTest::CancelFolder(ModalSteps& steps) {
  steps.Then("QFileDialog", [](QWidget* pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); });
}

void EncryptedTest::GivePassword(ModalSteps& steps, const std::string& strPassword, const char* pszButton) {
  steps.Then("CPasswordUI", [strPassword, pszButton](QWidget* pDialog) {
    auto* pEdit = pDialog->findChild<QLineEdit*>("m_pLineEdit");
    ASSERT_NE(nullptr, pEdit);
    EXPECT_EQ("", pEdit->text());
    pEdit->insert(QString::fromStdString(strPassword));  // key events can't enter umlauts
    Click(pDialog->findChild<QPushButton*>(pszButton));
  });
}

void EncryptedTest::CloseBox(ModalSteps& steps, ShownBox& box) {
  steps.Then("CMessageBox", [&box](QWidget* pBox) {
    box = {TextOf(pBox->findChild<QLabel*>("m_pTextLabel")), pBox->geometry()};
    EXPECT_EQ(1, pBox->findChildren<QPushButton*>().size());
    Click(pBox->findChild<QPushButton*>("OK"));
  });
}

void EncryptedTest::SelectBackup(const std::string& strFolder, const std::string& strPassword) {
  ModalSteps steps;
  ChooseFolder(steps, strFolder);
  GivePassword(steps, strPassword);
  Select();
}

void EncryptedTest::ExpectHomeScreen() {
  EXPECT_EQ(WindowAccess::HomeScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  EXPECT_EQ(nullptr, WindowAccess::DataScreen(Window()));
}

void EncryptedTest::ExpectDataScreen() {
  EXPECT_EQ(WindowAccess::DataScreen(Window()), WindowAccess::ScreenStack(Window())->currentWidget());
  EXPECT_TRUE(Window().m_bScanFinished);
}

ToolProgress::ToolProgress(DRUI& window)
    : m_connection(QObject::connect(
          &window, &DRUI::ScanProcessCallBack, &window,
          [this, pThread = window.thread()](int nProgress) {
            if (QThread::currentThread() == pThread) values.push_back(nProgress);
          },
          Qt::DirectConnection)) {}

}  // namespace orvandel
