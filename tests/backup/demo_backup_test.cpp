// A complete backup like that of a well-used device, read through the parser.

#include "sample/demo_backup.h"

#include <gmock/gmock.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <algorithm>
#include <set>

#include "backup/categories.h"
#include "sample/texts.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::SizeIs;
using Layout = BackupBuilder::Layout;

namespace {

// The binary manifest's digest isn't SHA-1 for non-ASCII names, so these files aren't found in a flat backup.
class DemoBackup : public testing::TestWithParam<Layout> {
 protected:
  DemoBackup() : m_records(m_session.GetMessageMap()) {}

  /// Writes the backup and scans it.
  void Scan() {
    m_options.layout = GetParam();
    m_options.photos = 25;
    m_summary = writeDemoBackup(FromNarrow(m_folder.Path("backup")), m_options);
    const __BACK_FILE_INFO__ info = InfoOf(m_folder.Path("backup"));
    m_session.Init(&info);
    const std::unique_ptr<IPhoneRecoveryParse> pParser(
        CIphoneRecoveryFactory::getInstance()->CreateRecoveryParse(&m_session, RECOVERY_TYPE_LOCAL_BACKUP));
    ASSERT_EQ(0, pParser->Scan(QString()));
    ASSERT_EQ(0, WalkCategories(*pParser, m_records, nullptr));
  }

  bool IsNew() const { return GetParam() == Layout::Db; }

  /// All rows of a statement over a copy of a store, independent of the readers.
  std::vector<std::vector<std::string>> Rows(const StorePlace& place, const QString& qstrStatement) {
    const QString qstrId = BackupBuilder::fileId(place.domain, place.relativePath);
    const QString qstrPath = BackupBuilder(FromNarrow(m_folder.Path("backup")), GetParam()).filePath(qstrId);
    m_folder.Write("copy.db", ReadFile(ToNarrow(qstrPath)));
    std::vector<std::vector<std::string>> rows;
    {
      QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "plain statements");
      database.setDatabaseName(FromNarrow(m_folder.Path("copy.db")));
      EXPECT_TRUE(database.open());
      QSqlQuery query(qstrStatement, database);
      while (query.next()) {
        rows.emplace_back();
        for (int i = 0; i < query.record().count(); ++i)
          rows.back().push_back(query.value(i).toString().toStdString());
      }
    }
    QSqlDatabase::removeDatabase("plain statements");
    return rows;
  }

  TemporaryFolder m_folder;
  DemoOptions m_options;
  DemoSummary m_summary;
  CIphoneBackupFile m_session;
  BackupRecords m_records;
};

}  // namespace

TEST_P(DemoBackup, MediaAreThoseThatWereWritten) {
  Scan();

  // The roll has two more of a known type, with non-ASCII names.
  EXPECT_EQ(static_cast<size_t>(m_options.photos) + (IsNew() ? 2 : 0), m_records.m_vecCamera.size());
  EXPECT_THAT(FileNames(m_records.m_vecPhotoStream),
              ElementsAre("IMG_0012.JPG", "IMG_0003.JPG", "IMG_0008.JPG", "IMG_0001.JPG", "IMG_0027.JPG",
                          "IMG_0005.JPG", "IMG_0019.JPG", "IMG_0002.JPG"));
  EXPECT_TRUE(std::is_sorted(m_records.m_vecCamera.begin(), m_records.m_vecCamera.end(), CamVectorCmp));
}

TEST_P(DemoBackup, AttachmentsAreNamedByTheirContent) {
  Scan();

  // Ten files, one of an unknown type.
  std::vector<std::string> expected = {"Audio.3GP",    "clip.MP4",     "IMG_0007.JPG", "IMG_0007.JPG",
                                       "IMG_0012.JPG", "IMG_0031.PNG", "IMG_0044.MOV", "laugh.GIF"};
  if (IsNew())
    expected.push_back(
        "Gr\xC3\xBC\xC3\x9F"
        "e aus K\xC3\xB6ln.JPG");
  EXPECT_THAT(FileNames(m_records.m_vecMessageAttachment), testing::UnorderedElementsAreArray(expected));
}

TEST_P(DemoBackup, AppFilesAreGroupedByAppAndKind) {
  Scan();

  EXPECT_THAT(m_records.m_mapAppPhotoFiles["example.Snap"], SizeIs(3));
  EXPECT_THAT(m_records.m_mapAppVideoFiles["example.Snap"], SizeIs(2));
  EXPECT_EQ(IsNew() ? 4u : 1u, m_records.m_mapAppPhotoFiles["example.Sketch"].size());
  EXPECT_THAT(m_records.m_mapAppPhotoFiles["example.Radio"], SizeIs(1));
  EXPECT_THAT(m_records.m_mapAppVideoFiles["example.Radio"], SizeIs(4));
  EXPECT_EQ(IsNew() ? 8 : 5, m_records.m_nAppPhotoCount);
  EXPECT_EQ(6, m_records.m_nAppVideoCount);
  // 0704.thumb is unknown and 9e06.jpg empty; "c1" and "0704" keep their names.
  EXPECT_THAT(FileNames(m_records.m_vecWhatsAppAttachment),
              ElementsAre("0704.JPG", "9d05.MOV", "ab01.JPG", "ac02.JPG", "c103.MP4", "Photo.JPG"));
}

TEST_P(DemoBackup, StoresAreThoseThatWereWritten) {
  Scan();
  const auto withPhone = Rows(store_places::contacts(),
                              QString("select docid from ABPersonFullTextSearch_content where %1 <> ''")
                                  .arg(IsNew() ? "c16Phone" : "c15Phone"));
  const auto withNumber = Rows(IsNew() ? store_places::calls() : store_places::callsFallback(),
                               "select Z_PK from ZCALLRECORD where ZADDRESS <> ''");

  EXPECT_THAT(m_records.m_mapMessage, SizeIs(static_cast<size_t>(m_summary.conversations)));
  // Two of the people have no number.
  EXPECT_THAT(m_records.m_vecContact, SizeIs(static_cast<size_t>(m_options.contacts) - 2));
  EXPECT_EQ(withPhone.size(), m_records.m_vecContact.size());
  EXPECT_EQ(static_cast<uint64_t>(m_options.contacts), m_session.GetMaxContactId());
  // Every eleventh call, from the fourth on, has a withheld number: 6 of 60.
  EXPECT_THAT(m_records.m_vecCall, SizeIs(static_cast<size_t>(m_summary.calls) - 6));
  EXPECT_EQ(withNumber.size(), m_records.m_vecCall.size());
  // Each note has a title, a body or both.
  EXPECT_THAT(m_records.m_vecNote, SizeIs(sampleNotes().size()));
  EXPECT_EQ(static_cast<uint64_t>(m_options.messages), m_session.GetMaxMessageId());
}

TEST_P(DemoBackup, ProgressEndsAtTheLastShare) {
  Scan();

  EXPECT_EQ(98, m_session.GetProgress());
}

TEST_P(DemoBackup, MessagesAndTheirNamesEqualAPlainDoubleLoop) {
  Scan();
  const auto messages =
      Rows(store_places::messages(),
           "select message.rowid, handle.id, message.text, message.handle_id from message, handle, "
           "chat_message_join where handle.rowid = message.handle_id "
           "and chat_message_join.message_id = message.rowid and message.text <> ''");
  const auto people =
      Rows(store_places::contacts(), QString("select ifnull(c0First, ''), ifnull(c1Last, ''), %1, docid from "
                                             "ABPersonFullTextSearch_content where %1 <> '' order by docid")
                                         .arg(IsNew() ? "c16Phone" : "c15Phone"));
  std::multiset<std::vector<std::string>> expected, found;
  size_t nNamed = 0;

  for (const auto& message : messages) {
    std::string strName;
    for (const auto& person : people) {
      if (message[1].empty() || person[2].find(message[1]) == std::string::npos) continue;
      strName = person[0] + person[1];
      break;
    }
    nNamed += !strName.empty();
    expected.insert({message[0], message[1], message[2], message[3], strName});
  }
  for (const auto& [nHandle, conversation] : m_records.m_mapMessage) {
    EXPECT_TRUE(std::is_sorted(conversation.begin(), conversation.end(),
                               [](const auto& a, const auto& b) { return VectorCmp(a, b); }));
    for (const __MESSAGE_INFO__& message : conversation) {
      found.insert({std::to_string(message.nRowId), message.strSender, message.strText,
                    std::to_string(nHandle), message.strContactName});
    }
  }

  EXPECT_GT(nNamed, 0u);
  EXPECT_LT(nNamed, messages.size());
  EXPECT_TRUE(expected == found);
}

INSTANTIATE_TEST_SUITE_P(Layouts, DemoBackup, testing::Values(Layout::Mbdb, Layout::Db),
                         [](const auto& info) { return info.param == Layout::Db ? "TwoLevel" : "Flat"; });
