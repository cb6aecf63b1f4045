#include <gmock/gmock.h>

#include <filesystem>

#include "backup/categories.h"
#include "export/file_copy.h"
#include "sample/demo_backup.h"
#include "sample/stores.h"
#include "tests/backup/tree_state.h"
#include "tests/scan_support.h"

using namespace orvandel;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

class Unchanged : public testing::TestWithParam<Layout> {
 protected:
  Unchanged() : m_records(m_session.GetMessageMap()) {}

  std::string Backup() const { return m_folder.Path("backup"); }

  void MakeDemoBackup() {
    DemoOptions options;
    options.layout = GetParam();
    options.photos = 6;
    options.messages = 60;
    options.contacts = 20;
    writeDemoBackup(FromNarrow(Backup()), options);
    std::filesystem::create_symlink("Info.plist", Backup() + "/link");
    std::filesystem::create_symlink("nowhere", Backup() + "/dangling");
  }

  /// Path of a store in the backup.
  std::string PathOf(const StorePlace& place) const {
    const QString qstrId = BackupBuilder::fileId(place.domain, place.relativePath);
    return ToNarrow(BackupBuilder(FromNarrow(Backup()), GetParam()).filePath(qstrId));
  }

  int ScanAll() {
    const __BACK_FILE_INFO__ info = InfoOf(Backup());
    m_session.Init(&info);
    const std::unique_ptr<IPhoneRecoveryParse> pParser(
        CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session, RECOVERY_TYPE_LOCAL_BACKUP));
    const int nStatus = pParser->Scan(QString());
    WalkCategories(*pParser, m_records, nullptr);
    return nStatus;
  }

  TemporaryFolder m_folder;
  CIphoneBackupFile m_session;
  BackupRecords m_records;
};

}  // namespace

TEST_P(Unchanged, ByAScan) {
  MakeDemoBackup();
  const auto before = TreeState(Backup());

  const int nStatus = ScanAll();

  EXPECT_EQ(0, nStatus);
  EXPECT_FALSE(m_records.m_mapMessage.empty());
  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_P(Unchanged, ByAScanOfStoresInWalMode) {
  BackupBuilder backup(FromNarrow(Backup()), GetParam());
  {
    ContactsStore contacts(Reserve(backup, store_places::contacts()), GetParam() == Layout::Db, true);
    contacts.add({"Ann", {}, {}, "+49301", {}, {}, {}});
    MessageStore messages(Reserve(backup, store_places::messages()), true);
    messages.addMessage(messages.addHandle("+49301"), "hello", kNewYear2014, false,
                        {messages.addChat("+49301")});
    CallStore calls(Reserve(backup, store_places::calls()), true);
    calls.add(1, 60, "+49301", double(kNewYear2014));
    NotesStore notes(Reserve(backup, store_places::notes()), true);
    notes.add(kNewYear2014, "", "");
    NotesCloudStore cloudNotes(Reserve(backup, store_places::notesCloud()), true);
    cloudNotes.add(kNewYear2014, "note", "text");
  }
  backup.finish(true);
  ASSERT_EQ("\2\2", ReadFile(PathOf(store_places::messages())).substr(18, 2));
  const auto before = TreeState(Backup());

  ScanAll();

  EXPECT_THAT(m_records.m_vecContact, SizeIs(1));
  EXPECT_THAT(m_records.m_mapMessage, SizeIs(1));
  EXPECT_THAT(m_records.m_vecCall, SizeIs(1));
  EXPECT_THAT(m_records.m_vecNote, SizeIs(1));
  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_P(Unchanged, ByAScanWithStoresMissing) {
  MakeDemoBackup();
  for (const auto pfnPlace : {store_places::contacts, store_places::messages, store_places::notes,
                              store_places::notesCloud, store_places::calls, store_places::callsFallback})
    std::filesystem::remove(PathOf(pfnPlace()));
  const auto before = TreeState(Backup());

  ScanAll();

  EXPECT_TRUE(m_records.m_mapMessage.empty());
  EXPECT_FALSE(m_records.m_vecCamera.empty());
  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_P(Unchanged, ByAScanWithoutAManifest) {
  MakeDemoBackup();
  std::filesystem::remove(Backup() + (GetParam() == Layout::Db ? "/Manifest.db" : "/Manifest.mbdb"));
  const auto before = TreeState(Backup());

  const int nStatus = ScanAll();

  EXPECT_EQ(87, nStatus);
  EXPECT_EQ(before, TreeState(Backup()));
}

TEST_P(Unchanged, ByCopyingFilesAndStoresOut) {
  MakeDemoBackup();
  ScanAll();
  const auto before = TreeState(Backup());
  BackupFileCopier copier(FromNarrow(m_folder.Path("out")), QString());
  size_t nCopied = 0;

  for (const auto& file : m_records.m_vecCamera)
    nCopied += copier.Copy("/Camera Roll/", file.strFileName, file.wstrFilePath).Succeeded();
  for (const auto& file : m_records.m_vecAppFile)
    nCopied += copier.Copy("/App Photos/", file.strFileName, file.wstrFilePath).Succeeded();
  m_session.RecoverySMSMessage(m_folder.Path("out/sms.db").c_str());
  m_session.RecoveryPersonContacts(m_folder.Path("out/Contacts.db").c_str());

  EXPECT_EQ(m_records.m_vecCamera.size() + m_records.m_vecAppFile.size(), nCopied);
  EXPECT_TRUE(Exists(m_folder.Path("out/sms.db")));
  EXPECT_TRUE(Exists(m_folder.Path("out/Contacts.db")));
  EXPECT_EQ(before, TreeState(Backup()));
}

INSTANTIATE_TEST_SUITE_P(Layouts, Unchanged, testing::Values(Layout::Mbdb, Layout::Db),
                         [](const auto& info) { return info.param == Layout::Db ? "TwoLevel" : "Flat"; });

TEST(TreeStates, DifferByEveryKindOfChange) {
  namespace fs = std::filesystem;
  TemporaryFolder folder;
  const std::string strFile = folder.Write("tree/a", "abc");
  fs::create_symlink("a", folder.Path("tree/link"));
  const auto before = TreeState(folder.Path("tree"));
  const fs::file_time_type time = fs::last_write_time(strFile);
  const fs::file_time_type folderTime = fs::last_write_time(folder.Path("tree"));

  EXPECT_EQ(before, TreeState(folder.Path("tree")));
  fs::last_write_time(strFile, time + std::chrono::nanoseconds(1000));
  EXPECT_NE(before, TreeState(folder.Path("tree"))) << "time";
  WriteFile(strFile, "abd");
  fs::last_write_time(strFile, time);
  EXPECT_NE(before, TreeState(folder.Path("tree"))) << "bytes";
  WriteFile(strFile, "abc");
  fs::last_write_time(strFile, time);
  EXPECT_EQ(before, TreeState(folder.Path("tree")));
  fs::permissions(strFile, fs::perms::owner_read, fs::perm_options::replace);
  EXPECT_NE(before, TreeState(folder.Path("tree"))) << "mode";
  fs::permissions(strFile, fs::perms::owner_all);
  fs::remove(folder.Path("tree/link"));
  fs::create_symlink("b", folder.Path("tree/link"));
  fs::last_write_time(folder.Path("tree"), folderTime);
  EXPECT_NE(before.at("/link"), TreeState(folder.Path("tree")).at("/link")) << "target";
}
