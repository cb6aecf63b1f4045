// "orvandel-cli recover": the modification times of what it copies.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <ctime>

#include "sample/pictures.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/cli/any_backup.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Layout = BackupBuilder::Layout;

constexpr time_t kFirstTime = 1388577600;  // of the entries of a BackupBuilder
constexpr time_t kTimeStep = 7919;         // from each to the next

struct Media {
  const char* pszDomain;
  const char* pszPath;
  const char* pszTarget;
};

constexpr Media kMedia[] = {
    {"CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", "/Camera Roll/IMG_0001.JPG"},
    {"MediaDomain", "Media/PhotoStreamsData/1/100APPLE/IMG_0003.JPG", "/Photo Stream/IMG_0003.JPG"},
    {"AppDomain-com.example.Snap", "Documents/cat.jpg", "/App Photos/example.Snap/cat.JPG"},
    {"AppDomain-net.whatsapp.WhatsApp", "Library/Media/a/b.jpg", "/WhatsApp Attachments/b.JPG"},
    {"MediaDomain", "Library/SMS/Attachments/0a/10/laugh.jpg", "/Message Attachments/laugh.JPG"},
};

class RecoverTimes : public testing::Test {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  /// Writes one file of each list; the first entry of the manifest is a folder.
  void Write(const AnyAge& any) const {
    BackupBuilder backup(QString::fromStdString(Backup()), any.age.layout);
    if (any.bEncrypted) backup.encrypt({kPassword, any.age.age, 20, 1});
    backup.writeInfo({});
    backup.addEntry("CameraRollDomain", "Media/DCIM", BackupBuilder::kDirectory);
    for (const Media& media : kMedia)
      backup.addFile(media.pszDomain, media.pszPath, sample_media::jpeg(1, 64, 48));
    backup.finish();
  }

  CommandResult Recover(const std::vector<std::string>& more = {}) const {
    return RunWithPassword(m_folder.Path(), RecoverFiles(Backup(), Out(), more));
  }

  time_t TimeOf(const std::string& strTarget) const {
    struct stat info = {};
    EXPECT_EQ(0, stat((Out() + strTarget).c_str(), &info)) << strTarget;
    return info.st_mtime;
  }

  TemporaryFolder m_folder;
  const time_t m_nStart = time(nullptr) - 5;  // clocks of file systems lag a little
};

class RecoverTimesOfAnyAge : public RecoverTimes, public testing::WithParamInterface<AnyAge> {};

/// A record of "Manifest.db", and the time that it gives, -1 for none.
struct RecordCase {
  const char* pszName;
  std::string strRecord;
  time_t nTime = -1;
};

void PrintTo(const RecordCase& record, std::ostream* pStream) {
  *pStream << record.pszName;
}

std::string Record(const std::string& strTime) {
  return "<plist version=\"1.0\"><dict><key>$top</key><dict><key>root</key><dict><key>CF$UID</key>"
         "<integer>1</integer></dict></dict><key>$objects</key><array><string>$null</string><dict>"
         "<key>Mode</key><integer>33188</integer><key>LastModified</key>" +
         strTime + "</dict></array></dict></plist>";
}

std::string Integer(const std::string& strValue) {
  return Record("<integer>" + strValue + "</integer>");
}

class RecoverTimesOfRecords : public RecoverTimes, public testing::WithParamInterface<RecordCase> {};

AnyAge PlainDb() {
  return {kBackupAges[1], false};
}

}  // namespace

TEST_P(RecoverTimesOfAnyAge, AreThoseOfTheManifest) {
  Write(GetParam());

  const CommandResult result = Recover();

  EXPECT_EQ(0, result.nExitStatus) << result.strOut;
  EXPECT_THAT(result.strErr, IsEmpty());
  time_t nExpected = kFirstTime;
  for (const Media& media : kMedia)
    EXPECT_EQ(nExpected += kTimeStep, TimeOf(media.pszTarget)) << media.pszTarget;
}

TEST_P(RecoverTimesOfAnyAge, AreThoseOfCopyingWithNoTimes) {
  Write(GetParam());

  const CommandResult result = Recover({"--no-times"});

  EXPECT_EQ(0, result.nExitStatus) << result.strOut;
  for (const Media& media : kMedia) EXPECT_LE(m_nStart, TimeOf(media.pszTarget)) << media.pszTarget;
}

INSTANTIATE_TEST_SUITE_P(Ages, RecoverTimesOfAnyAge, testing::ValuesIn(AllAges()), NameOfAnyAge);

TEST_F(RecoverTimes, DocumentsAndStoresHaveTheTimeOfTheRecovery) {
  WriteSmallBackup(Backup(), Layout::Db);

  const CommandResult result = RunCommand({"recover", Backup(), Out(), "--only", "Message,Contacts,Notes"});

  const std::vector<std::string> files = FilesBelow(Out());
  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_LE(5u, files.size());
  for (const std::string& strFile : files) EXPECT_LE(m_nStart, TimeOf("/" + strFile)) << strFile;
}

TEST_F(RecoverTimes, CopyUnderANumberedNameHasItsOwnTime) {
  Write(PlainDb());
  Recover({"--no-times"});

  Recover();

  EXPECT_LE(m_nStart, TimeOf("/Camera Roll/IMG_0001.JPG"));
  EXPECT_EQ(kFirstTime + kTimeStep, TimeOf("/Camera Roll/IMG_0001(1).JPG"));
}

TEST_F(RecoverTimes, CopyUnderASafeNameHasItsTime) {
  BackupBuilder backup(QString::fromStdString(Backup()), Layout::Db);
  backup.writeInfo({});
  backup.addFile("CameraRollDomain", "Media/DCIM/100APPLE/" + QString(300, 'x') + ".JPG",
                 sample_media::jpeg(1, 64, 48));
  backup.finish();

  const CommandResult result = Recover();

  const std::vector<std::string> files = FilesBelow(Out());
  EXPECT_EQ(0, result.nExitStatus);
  ASSERT_EQ(1u, files.size());
  EXPECT_EQ(kFirstTime, TimeOf("/" + files[0]));
}

TEST_P(RecoverTimesOfRecords, OfOddRecordsAreLeftOutAndTheOthersAreSet) {
  Write(PlainDb());
  RunSql(Backup() + "/Manifest.db", "update Files set file = ? where relativePath like '%IMG_0001.JPG'",
         QByteArray::fromStdString(GetParam().strRecord));

  const CommandResult result = Recover();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strErr, IsEmpty());
  if (GetParam().nTime == -1)
    EXPECT_LE(m_nStart, TimeOf("/Camera Roll/IMG_0001.JPG"));
  else
    EXPECT_EQ(GetParam().nTime, TimeOf("/Camera Roll/IMG_0001.JPG"));
  EXPECT_GE(time(nullptr) + 5, TimeOf("/Camera Roll/IMG_0001.JPG"));
  EXPECT_EQ(kFirstTime + 2 * kTimeStep, TimeOf("/Photo Stream/IMG_0003.JPG"));
}

INSTANTIATE_TEST_SUITE_P(Records, RecoverTimesOfRecords,
                         testing::Values(RecordCase{"Sound", Integer("1462093953"), 1462093953},
                                         RecordCase{"TheEpoch", Integer("0"), 0},
                                         RecordCase{"Negative", Integer("-1")},
                                         RecordCase{"Lowest", Integer("-9223372036854775808")},
                                         RecordCase{"Highest", Integer("9223372036854775807")},
                                         RecordCase{"BeyondSigned", Integer("9223372036854775808")},
                                         RecordCase{"AllBits", Integer("18446744073709551615")},
                                         RecordCase{"Year10000", Integer("253402300800")},
                                         RecordCase{"Text", Record("<string>1462093953</string>")},
                                         RecordCase{"CutShort", Integer("1462093953").substr(0, 150)},
                                         RecordCase{"CutShortBinary", "bplist00\xd1"},
                                         RecordCase{"Garbage", "garbage"}, RecordCase{"Empty", ""}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST_F(RecoverTimes, ManifestWithoutRecordsIsReportedAndTheFilesAreCopied) {
  Write(PlainDb());
  RunSql(Backup() + "/Manifest.db", "alter table Files rename column file to other");

  const CommandResult result = Recover();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(ErrorLines(result), ElementsAre("orvandel-cli: " + Backup() +
                                              "/Manifest.db: no such column: file; some copies have the time "
                                              "of copying"));
  for (const Media& media : kMedia) EXPECT_LE(m_nStart, TimeOf(media.pszTarget)) << media.pszTarget;
}

TEST_F(RecoverTimes, ManifestWithoutRecordsIsNotReadForDocumentsOrWithNoTimes) {
  WriteSmallBackup(Backup(), Layout::Db);
  RunSql(Backup() + "/Manifest.db", "alter table Files rename column file to other");

  EXPECT_THAT(RunCommand({"recover", Backup(), Out(), "--only", "Contacts"}).strErr, IsEmpty());
  EXPECT_THAT(Recover({"--no-times"}).strErr, IsEmpty());
}

TEST_F(RecoverTimes, FirstEntryOfAnIdentifierCounts) {
  const std::string strName = "Media/DCIM/100APPLE/IMG_0001.JPG";
  const auto entry = [&](uint64_t nTime) {
    std::string strBytes = manifest_bytes::Bytes({"CameraRollDomain", strName});
    return strBytes.replace(strBytes.size() - 22, 4, manifest_bytes::Number(nTime, 4));
  };
  Write({kBackupAges[0], false});
  WriteFile(Backup() + "/Manifest.mbdb", manifest_bytes::kHeader + entry(0xFFFFFFFF) + entry(1000000000));

  const CommandResult result = Recover();

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_EQ(time_t{0xFFFFFFFF}, TimeOf("/Camera Roll/IMG_0001.JPG"));
}

TEST_F(RecoverTimes, BackupWithoutAManifestStillRecovers) {
  WriteSmallBackup(Backup(), Layout::Mbdb);
  ASSERT_EQ(0, unlink((Backup() + "/Manifest.mbdb").c_str()));

  const CommandResult result = RunCommand({"recover", Backup(), Out(), "--no-index"});

  EXPECT_EQ(0, result.nExitStatus);
  EXPECT_THAT(result.strOut, HasSubstr("/Contacts/"));
  EXPECT_THAT(result.strErr, HasSubstr("neither"));
  EXPECT_EQ(1u, ErrorLines(result).size());
}
