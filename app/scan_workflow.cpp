// The scan: the main thread sits in the progress dialog while the worker reads the backup. The worker decides
// what happens and in which order; each step on a widget is handed over to the main thread.

#include <new>
#include <optional>

#include "app/progress_dialog.h"
#include "app/thread.h"
#include "backup/scan.h"
#include "common/places.h"
#include "common/status.h"
#include "common/stop.h"
#include "common/text.h"
#include "ui/message_box.h"
#include "ui/window.h"

using namespace orvandel;

namespace {
constexpr int kComplete = 100;
}

void DRUI::btnSlotScan() {
  m_records.m_vecCamera.clear();
  m_records.m_vecPhotoStream.clear();
  m_records.m_vecAppFile.clear();
  m_records.m_vecMessageAttachment.clear();
  m_records.m_mapWhatsApp.clear();
  m_records.m_mapMessage.clear();
  m_records.m_vecContact.clear();
  m_records.m_vecCall.clear();
  m_records.m_vecNote.clear();
  m_records.m_vecWhatsAppAttachment.clear();
  m_records.m_nAppPhotoCount = 0;
  m_records.m_nAppVideoCount = 0;
  // The maps of app files stay: a second scan adds to them.
  InitLayout3Widget();
  m_pScreenStack->addWidget(m_pDataScreen);
  m_pScreenStack->setCurrentWidget(m_pDataScreen);

  CMyThread thread;
  thread.SetFunc(&DRUI::_ScanProcess, this);
  thread.setStackSize(m_nWorkerStackSize);
  // It returns once the flags of the scan before are cleared, so that a cancel meets those of this scan.
  if (!m_task.Start(thread)) {
    m_pScreenStack->setCurrentWidget(m_pHomeScreen);
    return ShowInformation(kNoWorker);
  }
  SCANUI dialog;
  dialog.InitSlot(this, SCANUI::kScan);
  dialog.move(x() + width() / 4, y() + height() / 4);
  dialog.resize(500, 250);
  dialog.exec();
  thread.exit(0);
  // The worker's last act was the signal that closed the dialog; it ends in a moment.
  m_task.End();
  RefreshSelectFileInfo();
}

void DRUI::_ScanProcess(void* pWindow, int& nResult) {
  auto* pSelf = static_cast<DRUI*>(pWindow);
  pSelf->Scan(ToWide(pSelf->m_strScanDir).c_str(), nResult);
}

int DRUI::ScanCallBack(void* pWindow, int nProgress) {
  return static_cast<DRUI*>(pWindow)->ScanCallBack(nProgress);
}

int DRUI::ScanCallBack(int nProgress) {
  if (m_bCancelScan.load(std::memory_order_relaxed)) return kStatusStopped;
  // A walk reports for each of a million entries; the dialog gets each value once.
  if (m_task.IsNewProgress(nProgress)) emit ScanProcessCallBack(nProgress);
  return kStatusOk;
}

int DRUI::Scan(const char16_t*, int&) {
  m_bCancelScan = false;
  m_bScanFinished = false;
  m_task.Begun();
  int nStatus = kStatusStopWalk;
  SetStopFlag(&m_bCancelScan);  // so that a cancel ends the reading of a store too
  try {
    nStatus = RunScan();
  } catch (const std::bad_alloc&) {
    // A store made to have no end, say: what was read so far is shown.
  }
  SetStopFlag(nullptr);
  // The dialog may not be there yet when a scan ends at once; a step on the main thread is served by it
  // alone.
  m_task.CatchUp();
  m_task.Raise(m_bScanFinished);
  if (!m_bCancelScan) emit ScanProcessCallBack(kComplete);
  return nStatus;
}

std::unique_ptr<IPhoneRecoveryParse> DRUI::MakeParser(CIphoneBackupFile& backupFile) {
  return MakeLocalParser(backupFile);
}

int DRUI::RunScan() {
  ScanSteps steps;
  steps.makeParser = m_makeParser;
  steps.pfnProgress = &DRUI::ScanCallBack;
  steps.pProgressContext = this;
  steps.decrypt = [this]() -> std::optional<QString> {
    const QString qstrFolder = DecryptBackup();
    if (m_nDecryptStatus != kStatusOk) return std::nullopt;
    return qstrFolder;
  };
  steps.afterCategory = [this](const Category& category) {
    m_task.RunOnMainThread([&] { ShowCategory(category); });
  };
  return ScanBackup(m_curBackupInfo, m_backupFile, m_pRecoveryParse, m_records, steps);
}

void DRUI::ShowCategory(const Category& category) {
  const QString qstrZeroLabel = FromNarrow(CategoryLabel(category, 0));
  const QList<QTreeWidgetItem*> found = m_pCategoryTree->findItems(qstrZeroLabel, Qt::MatchExactly, 0);
  if (found.isEmpty()) return;
  QTreeWidgetItem* pItem = found.first();
  const size_t nCount = category.pfnCount(m_records);
  if (nCount > 0) pItem->setCheckState(0, Qt::Checked);
  UpdateTreeInfo(pItem, 0, true);
  pItem->setText(0, FromNarrow(CategoryLabel(category, nCount)));
}

void DRUI::btnSlotBack() {
  CMessageBox box;
  box.InitQuestionDialog(
      "Are you sure want to go back to Home?\nIf back,the scanning results will not be saved.");
  box.setGeometry(x() + width() / 3, y() + height() / 3, 400, 200);
  box.exec();
  if (box.GetMessageBoxRet() == 1) m_pScreenStack->setCurrentWidget(m_pHomeScreen);
}
