#pragma once
#include <QLabel>
#include <QMainWindow>
#include <QProcess>
#include <QPushButton>
#include <QStackedLayout>
#include <QTableWidget>
#include <QTreeWidget>
#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <memory>

#include "backup/categories.h"
#include "backup/parser.h"
#include "backup/records.h"
#include "backup/session.h"
#include "ui/background_task.h"
#include "ui_drui.h"

class QAction;
class QBoxLayout;
class QCheckBox;
class CRecovery;

using U32 = quint32;

namespace orvandel {

class ChatView;
struct TablePreview;
struct TableSpec;
class WindowAccess;

/// Ticked rows of a table: the row, and the bytes that it stands for, or the row again where it has no size.
using SelectionMap = std::map<U32, U32>;
/// Ticked files of apps: by the app's name, the file's place in the app's list and its bytes.
using AppSelectionMap = std::map<QString, SelectionMap>;

}  // namespace orvandel

/// The main window, and with it the state of the whole run: session, records, ticks and screens.
///
/// Lives on the stack of main. Widgets belong to the main thread; the workers of a scan and of a recovery
/// hand their steps on widgets over to it. While a worker runs, the main thread sits in a modal dialog, so
/// that the records belong to the worker alone.
class DRUI : public QMainWindow {
  Q_OBJECT

 public:
  explicit DRUI(QWidget* pParent = nullptr, Qt::WindowFlags flags = {});
  ~DRUI() override;

  /// Builds the home screen and makes the work folders.
  void Init();

  // Called by the progress dialog and by tests.

  /// Moves the window to the middle of a screen. @param desktop the screen's place among all screens; the
  /// primary one needn't begin at (0, 0).
  void MoveToMiddleOf(const QRect& desktop);

  /// The worker of a scan or of a recovery.
  orvandel::BackgroundTask& GetTask() { return m_task; }

  std::atomic<bool> m_bCancelScan{false};    ///< the user has confirmed a cancel; read by the worker
  std::atomic<bool> m_bScanFinished{false};  ///< set by the worker at its end
  std::atomic<bool> m_bCancelSearch{
      false};  ///< the same pairs for kinds of operation that nothing starts yet
  std::atomic<bool> m_bSearchFinished{false};
  std::atomic<bool> m_bCancelRecovery{false};    ///< also set by the worker at the end of a recovery
  std::atomic<bool> m_bRecoveryFinished{false};  ///< nothing sets it
  std::atomic<bool> m_bCancelPreview{false};
  std::atomic<bool> m_bPreviewFinished{false};

  // Steps of the screens; each is documented in its source file.

  QWidget* InitLayout1Widget();
  void InitLayout2Widget();  ///< there is no further screen
  void InitLayout3Widget();
  QPushButton* CreateButton(int nKind, int nX, QWidget* pParent);
  void InitMenu(QWidget* pParent);
  QTableWidget* CreateiTunesTable();
  QTreeWidget* CreateTree();
  QTableWidget* CreateCameraTable();
  QTableWidget* CreatePhotoStreamTable();
  QTableWidget* CreateAppPhotosTable();
  QTableWidget* CreateAppVideosTable();
  QTableWidget* CreateAppsTable();
  QTableWidget* CreateMessageTable();
  QTableWidget* CreateMessAttachTable();
  QTableWidget* CreateContactsTable();
  QTableWidget* CreateCallHistoryTable();
  QTableWidget* CreateNotesTable();
  QTableWidget* CreateWhatsappTable();
  QTableWidget* CreateWhatsappMessAttachTable();

  /// Brings the table of a node up to date and its rows in line with the node's tick.
  /// @param nColumn not read. @param bNoShow false also brings the table's page up.
  void UpdateTreeInfo(QTreeWidgetItem* pItem, int nColumn, bool bNoShow);

  // The scan.

  static void _ScanProcess(void* pWindow, int& nResult);
  int Scan(const char16_t* pFolder, int& nResult);
  static int ScanCallBack(void* pWindow, int nProgress);
  int ScanCallBack(int nProgress);

  // The decrypt tool's lines. Each @return true when the tool is to be killed.

  bool CheckPasswordRecieve(const QByteArray& line);
  bool DecryptDataRecieve(const QByteArray& line);

  // The recovery.

  int RecoveryCallBack(int nProgress, int nPercent, int nErrorCode, const char16_t* pRecoveryFileName);
  static int RecoveryCallBack(void* pWindow, int nProgress, int nPercent, int nErrorCode,
                              const char16_t* pRecoveryFileName);

  // The ticks.

  void tableItemPress(int nRow, int nColumn, QTableWidget* pTable, orvandel::SelectionMap& tableMap);
  void tableAppsItemPress(int nRow, int nColumn, QTableWidget* pTable, orvandel::SelectionMap& tableMap,
                          QTableWidget* pAppParentTable);
  void SetTreeChildCheckState(QTreeWidgetItem* pItem, int nState);
  void SetTreeParentCheckState(QTreeWidgetItem* pItem);
  void SetTreeParentCheckState(QTreeWidgetItem* pItem, int nState, int& nCount);
  void RefreshSelectFileInfo();

  /// Shows the record of a row beside its table. @param pItem the cell of column 0.
  void tableItemClick(QTableWidgetItem* pItem);

 signals:
  void ScanProcessCallBack(int nProgress);
  void RecoveryCallBack(int nProgress, int nPercent, int nErrorCode, QString qstrRecoveryFileName);

 public slots:
  void btnSlotScan();
  void btnSlotSelect();
  void btnSlotBack();
  void btnRecovery();
  void btnHelpSlot();
  void btnSupportSlot();
  void btnAboutSlot();
  void btnOpenUrl(QString qstrUrl);
  void btnCloseSlot();
  void btnMinSlot();
  void SetMenuStatus(QAction* pAction);
  void iTunesTableItemPress(int nRow, int nColumn);
  void iTunesTableItemDoublePress(int nRow, int nColumn);
  void treeItemClick(QTreeWidgetItem* pItem, int nColumn);
  void treeItemSelectChanged();
  void diskItemClick(QTreeWidgetItem* pItem, int nColumn);
  void diskItemDoubleClick(QTreeWidgetItem* pItem, int nColumn);
  void RefreshAppFileNode();

  void cameraTableItemPress(int nRow, int nColumn);
  void photoStreamTableItemPress(int nRow, int nColumn);
  void appPhotosTableItemPress(int nRow, int nColumn);
  void appVideosTableItemPress(int nRow, int nColumn);
  void appsTableItemPress(int nRow, int nColumn);
  void messageTableItemPress(int nRow, int nColumn);
  void messageAttachTableItemPress(int nRow, int nColumn);
  void contactsTableItemPress(int nRow, int nColumn);
  void callHistoryTableItemPress(int nRow, int nColumn);
  void notesTableItemPress(int nRow, int nColumn);
  void whatsappTableItemPress(int nRow, int nColumn);
  void whatsappAttachTableItemPress(int nRow, int nColumn);

  void cameraTableItemSelectChanged();
  void photoStreamTableItemSelectChanged();
  void appPhotosTableItemSelectChanged();
  void appVideosTableItemSelectChanged();
  void appsTableItemSelectChanged();
  void messageTableItemSelectChanged();
  void messAttachTableItemSelectChanged();
  void contactsTableItemSelectChanged();
  void callHistoryTableItemSelectChanged();
  void notesTableItemSelectChanged();
  void whatsappMessageTableItemSelectChanged();
  void whatsappMessAttachTableItemSelectChanged();

  void appPhotosTableItemSelectDoubleClick(int nRow, int nColumn);
  void appVideosTableItemSelectDoubleClick(int nRow, int nColumn);

  // Of a set of six check boxes with one for all of them and a button, which no screen builds.

  /// One of the six has changed: the box for all follows. @param nState not read.
  void CheckBoxStatChange(int nState);
  /// The box for all has changed: the button follows.
  void CheckBoxAllStatChange(int nState);

 protected:
  void keyPressEvent(QKeyEvent* pEvent) override;
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
  void closeEvent(QCloseEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
  void mouseMoveEvent(QMouseEvent* pEvent) override;
  void mousePressEvent(QMouseEvent* pEvent) override;

 private:
  friend struct orvandel::TableSpec;    // the table of tables names the members below
  friend class orvandel::WindowAccess;  // tests look at the state

  // Frame (ui/window_frame.cpp).
  QWidget* CreateTopBar();
  QWidget* CreateGap();
  QWidget* CreateFoot(int nVersionRight);
  QPushButton* CreateActionButton(const QString& qstrText, const QRect& rect, int nWeight, QWidget* pParent);
  void SetMainButtonEnabled(QPushButton* pButton, bool bEnabled);

  // Tables (ui/category_tables.cpp, ui/table_fill.cpp).
  QTableWidget* CreateTable(const orvandel::TableSpec& spec);
  void FillTable(const orvandel::TableSpec& spec);
  QWidget* CreatePage(const orvandel::TableSpec& spec);
  bool ChooseBackup(int nRow, int nColumn);

  // Ticks (ui/selection.cpp).
  void ApplyNodeState(const orvandel::TableSpec& spec, QTreeWidgetItem* pItem);
  void ApplyAppNodeState(const orvandel::TableSpec& spec, int nState);
  void ApplyAppRowState(const orvandel::TableSpec& spec, int nState);
  void PressPlainTable(orvandel::CategoryNumber nNumber, int nRow, int nColumn);
  void PressAppTable(orvandel::CategoryNumber nNumber, int nRow, int nColumn);
  void SelectApp(const orvandel::TableSpec& spec, const QString& qstrApp,
                 orvandel::SelectionMap& selection) const;
  void SetNodeState(int nState);

  // Preview (ui/preview.cpp).
  void AddPreview(const orvandel::TablePreview& preview, QBoxLayout* pLayout, QTableWidget* pTable);
  void ShowSelected(const QTableWidget* pTable);
  void ShowPicture(const orvandel::TablePreview& preview, const QVariant& hidden);
  void ShowText(const orvandel::TablePreview& preview, const QVariant& hidden);
  void ShowMessages(const orvandel::TablePreview& preview, const QVariant& hidden);
  void ShowChat(const orvandel::TablePreview& preview, const QVariant& hidden);
  /// By keyboard: leaves the file list of an app as a click on its node does.
  void LeaveAppFiles();
  void OpenAppFiles(orvandel::CategoryNumber nNumber, orvandel::CategoryNumber nPreviewNumber, int nRow);

  // The scan (app/scan_workflow.cpp), its decrypt tool (app/encrypted_backup.cpp) and the recovery
  // (app/recovery_workflow.cpp), on their workers.
  static std::unique_ptr<IPhoneRecoveryParse> MakeParser(CIphoneBackupFile& backupFile);
  int RunScan();
  void ShowCategory(const orvandel::Category& category);
  QString DecryptBackup();
  bool AskForPassword();
  void DropDecryptProcess();
  void ShowInformation(const QString& qstrText);
  void RunRecovery();
  static void _RecoveryProcess(void* pWindow, int& nResult);
  void RecoveryProcess();
  void RecoverFiles();
  void RecoverDocuments(CRecovery& recovery);
  /// The hidden data of rows, an invalid value for a row without a cell.
  std::vector<QVariant> HiddenData(const QTableWidget* pTable, const orvandel::SelectionMap& rows);

  Ui_DRUIClass m_ui;
  orvandel::BackgroundTask m_task;
  std::unique_ptr<QProcess> m_pDecryptProcess;  // of the check; that of a scan belongs to the worker
  QString m_strScanDir;
  QString m_strSelectDir;
  CIphoneBackupFile m_backupFile;
  __BACK_FILE_INFO__ m_curBackupInfo;
  std::unique_ptr<IPhoneRecoveryParse> m_pRecoveryParse;
  /// Makes the parser of a scan, null where there is none. Tests put one of their own in its place.
  std::function<std::unique_ptr<IPhoneRecoveryParse>(CIphoneBackupFile&)> m_makeParser = &DRUI::MakeParser;
  orvandel::BackupRecords m_records;
  uint m_nWorkerStackSize = 0;           // bytes, 0 for the system's default; tests ask for what it refuses
  std::atomic<int> m_nDecryptStatus{0};  // 0, or -110 once the tool has refused the password
  qint64 m_nTotalFileCount = 0;  // entries of the backup's folder; 0 for one that was picked from the list
  QString m_strBackupPassword;

  // Selection.
  orvandel::SelectionMap m_mapSelCamera;
  orvandel::SelectionMap m_mapSelPhotoStream;
  orvandel::AppSelectionMap m_mapSelAppPhotos;
  orvandel::AppSelectionMap m_mapSelAppVideos;
  orvandel::SelectionMap m_mapSelMessage;
  orvandel::SelectionMap m_mapSelMessAttach;
  orvandel::SelectionMap m_mapSelContacts;
  orvandel::SelectionMap m_mapSelCallHistory;
  orvandel::SelectionMap m_mapSelNotes;
  orvandel::SelectionMap m_mapSelWhatsapp;
  orvandel::SelectionMap m_mapSelWhatsappAttach;
  int m_nPressedCategory = 0;
  int m_nCurrentCategory = 0;
  QString m_strPressedApp;
  QTableWidgetItem* m_pCurrentAppItem = nullptr;  // of the data screen, null after it is built anew
  QTreeWidgetItem* m_pCurrentTreeItem = nullptr;  // the same

  // The set of check boxes (ui/check_box_set.cpp). Null as long as no screen builds it.
  std::array<QCheckBox*, 6> m_checkBoxes{};
  QCheckBox* m_pCheckBoxAll = nullptr;
  QPushButton* m_pCheckBoxButton = nullptr;
  bool m_bPartFromSix = false;  // the six have made the box for all partly ticked, and not a click on it

  // Widgets. Their Qt parents own them.
  QPoint m_ptDrag;
  QStackedLayout* m_pScreenStack = nullptr;
  QWidget* m_pHomeScreen = nullptr;
  QWidget* m_pDataScreen = nullptr;
  QStackedLayout* m_pPageStack = nullptr;
  QPushButton* m_pMenuButton = nullptr;
  QPushButton* m_pScanButton = nullptr;
  QPushButton* m_pRecoveryButton = nullptr;
  QLabel* m_pSelectInfoLabel = nullptr;
  QTableWidget* m_pBackupTable = nullptr;
  QTreeWidget* m_pCategoryTree = nullptr;
  QTableWidget* m_pCameraTable = nullptr;
  QTableWidget* m_pPhotoStreamTable = nullptr;
  QTableWidget* m_pAppPhotosTable = nullptr;
  QTableWidget* m_pAppVideosTable = nullptr;
  QTableWidget* m_pAppsTable = nullptr;
  QTableWidget* m_pMessageTable = nullptr;
  QTableWidget* m_pMessAttachTable = nullptr;
  QTableWidget* m_pContactsTable = nullptr;
  QTableWidget* m_pCallHistoryTable = nullptr;
  QTableWidget* m_pNotesTable = nullptr;
  QTableWidget* m_pWhatsappTable = nullptr;
  QTableWidget* m_pWhatsappAttachTable = nullptr;
  QLabel* m_pCameraPreview = nullptr;
  QLabel* m_pPhotoStreamPreview = nullptr;
  QLabel* m_pAppFileCaption = nullptr;
  QLabel* m_pAppFilePreview = nullptr;
  QLabel* m_pMessAttachPreview = nullptr;
  QLabel* m_pWhatsappAttachPreview = nullptr;
  QLabel* m_pContactText = nullptr;
  QLabel* m_pNoteText = nullptr;
  orvandel::ChatView* m_pMessageWebView = nullptr;
  orvandel::ChatView* m_pWhatsappWebView = nullptr;
};
