#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

using Layout = BackupBuilder::Layout;

/// A damaged backup, and the expected result of a scan.
struct Damage {
  const char* pszName;
  Layout layout;
  std::function<void(const std::string& strBackup, const SmallBackup& small)> inflict;
  std::vector<std::string> complaints;  ///< each on a line of standard error
  std::vector<std::string> counts;      ///< required lines of the counts, with losses and without
  const char* pszLostFile = nullptr;    ///< the file that a recovery of files must report as failed
  bool bLosesStore = false;             ///< a store can't be read, which doesn't affect a recovery of files
  int ScanStatus() const { return pszLostFile || bLosesStore ? 4 : 0; }
};

void PrintTo(const Damage& damage, std::ostream* pStream) {
  *pStream << damage.pszName;
}

class DamagedBackup : public testing::TestWithParam<Damage> {
 protected:
  void SetUp() override {
    m_small = WriteSmallBackup(Backup(), GetParam().layout);
    GetParam().inflict(Backup(), m_small);
  }

  std::string Backup() const { return m_folder.Path("backup"); }

  TemporaryFolder m_folder;
  SmallBackup m_small;
};

auto Text(const char* pszName, const char* pszText) {
  return [=](const std::string& strBackup, const SmallBackup&) {
    WriteFile(strBackup + "/" + pszName, pszText);
  };
}

/// Cuts bytes from the end of a file.
auto Cut(const char* pszName, uintmax_t nBytes) {
  return [=](const std::string& strBackup, const SmallBackup&) {
    const std::string strPath = strBackup + "/" + pszName;
    std::filesystem::resize_file(strPath, std::filesystem::file_size(strPath) - nBytes);
  };
}

using StorePlaceOf = StorePlace (*)();

auto StoreOfText(StorePlaceOf pfnPlace) {
  return [=](const std::string& strBackup, const SmallBackup&) {
    WriteFile(StorePathIn(strBackup, Layout::Db, pfnPlace()), "this is a text and no store at all\n");
  };
}

auto StoreWithoutTables(StorePlaceOf pfnPlace) {
  return [=](const std::string& strBackup, const SmallBackup&) {
    SampleStore store(QString::fromStdString(StorePathIn(strBackup, Layout::Db, pfnPlace())), false);
    store.run("CREATE TABLE Other (x)");
    store.close();
  };
}

void PutFolderAt(const std::string& strPath) {
  std::filesystem::remove(strPath);
  std::filesystem::create_directory(strPath);
}

void PutLoopAt(const std::string& strPath) {
  std::filesystem::remove(strPath);
  std::filesystem::create_symlink(std::filesystem::path(strPath).filename(), strPath);
}

auto StoreIsFolder(StorePlaceOf pfnPlace) {
  return [=](const std::string& strBackup, const SmallBackup&) {
    PutFolderAt(StorePathIn(strBackup, Layout::Db, pfnPlace()));
  };
}

void PhotoIsFolder(const std::string&, const SmallBackup& small) {
  PutFolderAt(small.files[0].strSource);
}

void PhotoIsLoop(const std::string&, const SmallBackup& small) {
  PutLoopAt(small.files[0].strSource);
}

void ManifestIsFolder(const std::string& strBackup, const SmallBackup&) {
  PutFolderAt(strBackup + "/Manifest.mbdb");
}

const char kContactsId[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442: ";
const char kMessagesId[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28: ";
const char kCallsId[] = "5a4935c78a5255723f707230a451d79c540d2741: ";
const char kNotesId[] = "4f98687d8ab0d6d1a371110e6b7300f6e465bef2: ";

const std::vector<Damage>& Damages() {
  static const std::vector<Damage> damages = {
      {"MbdbIsCut",
       Layout::Mbdb,
       Cut("Manifest.mbdb", 10),
       {"Manifest.mbdb: cut short"},
       {"Camera Roll(2)", "Messages Attachments(1)", "Contacts(1)"},
       "Manifest.mbdb"},
      {"MbdbIsCutEarly",
       Layout::Mbdb,
       [](const std::string& strBackup, const SmallBackup&) {
         std::filesystem::resize_file(strBackup + "/Manifest.mbdb", 300);
       },
       {"Manifest.mbdb: cut short"},
       {"Camera Roll(1)", "Photo Stream(0)", "Contacts(1)"},
       "Manifest.mbdb"},
      {"MbdbIsText",
       Layout::Mbdb,
       Text("Manifest.mbdb", "hello"),
       {"Manifest.mbdb: not a manifest"},
       {"Camera Roll(0)", "Contacts(1)", "Message(1)"},
       "Manifest.mbdb"},
      {"MbdbIsEmpty",
       Layout::Mbdb,
       Text("Manifest.mbdb", ""),
       {"Manifest.mbdb: not a manifest"},
       {"Camera Roll(0)", "Contacts(1)"},
       "Manifest.mbdb"},
      {"MbdbIsAFolder",
       Layout::Mbdb,
       ManifestIsFolder,
       {"Manifest.mbdb: Is a directory"},
       {"Camera Roll(0)", "Contacts(1)"},
       "Manifest.mbdb"},
      {"MbdbIsMissing",
       Layout::Mbdb,
       [](const std::string& strBackup, const SmallBackup&) {
         std::filesystem::remove(strBackup + "/Manifest.mbdb");
       },
       {"neither a \"Manifest.db\" nor a \"Manifest.mbdb\""},
       {"Camera Roll(0)", "Contacts(1)"}},
      {"DbIsText",
       Layout::Db,
       Text("Manifest.db", "this is a text and no store at all\n"),
       {"Manifest.db: file is not a database"},
       {"Camera Roll(0)", "Contacts(1)", "Message(1)"},
       "Manifest.db"},
      {"DbLacksItsTable",
       Layout::Db,
       [](const std::string& strBackup, const SmallBackup&) {
         SampleStore store(QString::fromStdString(strBackup + "/Manifest.db"), false);
         store.run("CREATE TABLE Other (x)");
         store.close();
       },
       {"Manifest.db: no such table: Files"},
       {"Camera Roll(0)", "Contacts(1)"}},
      {"DbIsCut",
       Layout::Db,
       Cut("Manifest.db", 8192),
       {"Manifest.db: "},
       {"Contacts(1)", "Message(1)"},
       "Manifest.db"},
      {"MessagesAreText",
       Layout::Db,
       StoreOfText(store_places::messages),
       {std::string(kMessagesId) + "file is not a database"},
       {"Message(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"CallsAreText",
       Layout::Db,
       StoreOfText(store_places::calls),
       {std::string(kCallsId) + "file is not a database"},
       {"Call History(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"NotesAreText",
       Layout::Db,
       StoreOfText(store_places::notesCloud),
       {std::string(kNotesId) + "file is not a database"},
       {"Notes(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"ContactsLackTheirTables",
       Layout::Db,
       StoreWithoutTables(store_places::contacts),
       {std::string(kContactsId) + "no such table"},
       {"Contacts(0)", "Message(1)", "Call History(1)"}},
      {"MessagesLackTheirTables",
       Layout::Db,
       StoreWithoutTables(store_places::messages),
       {std::string(kMessagesId) + "no such table"},
       {"Message(0)", "Contacts(1)", "Notes(1)"}},
      {"CallsLackTheirTables",
       Layout::Db,
       StoreWithoutTables(store_places::calls),
       {std::string(kCallsId) + "no such table"},
       {"Call History(0)", "Contacts(1)", "Notes(1)"}},
      {"NotesLackTheirTables",
       Layout::Db,
       StoreWithoutTables(store_places::notesCloud),
       {std::string(kNotesId) + "no such table"},
       {"Notes(0)", "Contacts(1)", "Message(1)"}},
      {"MessagesAreAFolder",
       Layout::Db,
       StoreIsFolder(store_places::messages),
       {kMessagesId},
       {"Message(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"CallsAreAFolder",
       Layout::Db,
       StoreIsFolder(store_places::calls),
       {kCallsId},
       {"Call History(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"NotesAreAFolder",
       Layout::Db,
       StoreIsFolder(store_places::notesCloud),
       {kNotesId},
       {"Notes(0)", "Contacts(1)", "Camera Roll(2)"},
       nullptr,
       true},
      {"PhotoIsAFolder",
       Layout::Db,
       PhotoIsFolder,
       {": Is a directory"},
       {"Camera Roll(1)", "Photo Stream(1)"},
       "CameraRollDomain-"},
      {"PhotoIsALoop",
       Layout::Db,
       PhotoIsLoop,
       {": is a symbolic link"},
       {"Camera Roll(1)", "Photo Stream(1)"},
       "CameraRollDomain-"},
      {"SeveralThingsAtOnce",
       Layout::Db,
       [](const std::string& strBackup, const SmallBackup& small) {
         PhotoIsLoop(strBackup, small);
         StoreOfText(store_places::messages)(strBackup, small);
         StoreWithoutTables(store_places::calls)(strBackup, small);
       },
       {": is a symbolic link", std::string(kMessagesId) + "file is not a database",
        std::string(kCallsId) + "no such table"},
       {"Camera Roll(1)", "Message(0)", "Call History(0)", "Contacts(1)", "Notes(1)", "App Photos(1)"},
       "CameraRollDomain-"},
  };
  return damages;
}

/// An object in place of a backup.
struct NoBackup {
  const char* pszName;
  std::function<void(const TemporaryFolder& folder)> make;  ///< creates "backup" in the folder
  const char* pszComplaint;
};

void PrintTo(const NoBackup& row, std::ostream* pStream) {
  *pStream << row.pszName;
}

class NotABackup : public testing::TestWithParam<NoBackup> {};

template <typename Row>
std::string NameOf(const testing::TestParamInfo<Row>& info) {
  return info.param.pszName;
}

}  // namespace

TEST_P(DamagedBackup, IsReportedAndTheRestIsRead) {
  const CommandResult result = RunCommand({"scan", Backup()});

  EXPECT_EQ(GetParam().ScanStatus(), result.nExitStatus);
  for (const std::string& strComplaint : GetParam().complaints) {
    EXPECT_THAT(result.strErr, HasSubstr(strComplaint));
    const size_t nHit = result.strErr.find(strComplaint);
    if (nHit == std::string::npos) continue;
    EXPECT_EQ(std::string::npos, result.strErr.find(strComplaint, nHit + 1))
        << "told twice: " << result.strErr;
  }
  EXPECT_THAT(result.strErr, HasSubstr("orvandel-cli: " + Backup()));
  for (const std::string& strCount : GetParam().counts) EXPECT_THAT(result.Lines(), Contains(strCount));
}

TEST_P(DamagedBackup, JsonIsComplete) {
  const CommandResult result = RunCommand({"scan", Backup(), "--json", "--manifest"});

  EXPECT_EQ(GetParam().ScanStatus(), result.nExitStatus);
  const QJsonObject counts = result.Object()["counts"].toObject();
  for (const std::string& strCount : GetParam().counts) {
    const size_t nBracket = strCount.find('(');
    EXPECT_EQ(std::stoi(strCount.substr(nBracket + 1)),
              counts[QString::fromStdString(strCount.substr(0, nBracket))].toInt(-1))
        << strCount;
  }
}

TEST_P(DamagedBackup, ListsWhatCouldNotBeReadInTheJson) {
  const CommandResult result = RunCommand({"scan", Backup(), "--json"});

  EXPECT_EQ(GetParam().ScanStatus() == 4, result.Object().contains("failed"));
}

TEST_P(DamagedBackup, IntactFilesAreRecovered) {
  const auto before = TreeOf(Backup());
  const bool bLoses = GetParam().pszLostFile != nullptr;

  const CommandResult result = RunCommand(RecoverFiles(Backup(), m_folder.Path("out")));

  EXPECT_EQ(bLoses ? 4 : 0, result.nExitStatus);
  EXPECT_THAT(result.LastLine(), HasSubstr(bLoses ? " recovered, 1 failed, " : " recovered, 0 failed, "));
  if (bLoses) {
    EXPECT_THAT(result.Lines(),
                Contains(testing::AllOf(StartsWith("Failed\t"), HasSubstr(GetParam().pszLostFile))));
  }
  for (const SmallBackup::File& file : m_small.files) {
    const std::string strCopy = m_folder.Path("out") + file.strTarget;
    if (Exists(strCopy)) {
      EXPECT_TRUE(file.strBytes == ReadFile(strCopy)) << file.strTarget;
    }
  }
  EXPECT_EQ(FilesBelow(m_folder.Path("out")).size() + (bLoses ? 2 : 1), result.Lines().size());
  EXPECT_TRUE(before == TreeOf(Backup()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedBackup, testing::ValuesIn(Damages()), NameOf<Damage>);

TEST_P(NotABackup, ExitsWithTwoAndNamesTheFolder) {
  TemporaryFolder folder;
  GetParam().make(folder);

  const CommandResult result = RunCommand({"scan", folder.Path("backup")});

  EXPECT_EQ(2, result.nExitStatus);
  EXPECT_THAT(result.strErr, HasSubstr("orvandel-cli: " + folder.Path("backup")));
  EXPECT_THAT(result.strErr, HasSubstr(GetParam().pszComplaint));
  EXPECT_THAT(result.strOut, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, NotABackup,
    testing::Values(
        NoBackup{"Missing", [](const TemporaryFolder&) {}, "no such folder"},
        NoBackup{"Empty", [](const TemporaryFolder& f) { f.MakeFolder("backup"); }, "not a backup"},
        NoBackup{"File", [](const TemporaryFolder& f) { f.Write("backup", "text"); }, "not a backup"},
        NoBackup{"InfoIsALoop",
                 [](const TemporaryFolder& f) {
                   f.MakeFolder("backup");
                   PutLoopAt(f.Path("backup/Info.plist"));
                 },
                 "is a symbolic link"},
        NoBackup{"InfoIsALink",
                 [](const TemporaryFolder& f) {
                   f.MakeFolder("backup");
                   std::filesystem::create_symlink(f.Write("elsewhere/Info.plist", "<plist/>"),
                                                   f.Path("backup/Info.plist"));
                 },
                 "not a backup"},
        NoBackup{"InfoIsAFolder", [](const TemporaryFolder& f) { f.MakeFolder("backup/Info.plist"); },
                 "not a backup"},
        NoBackup{"FolderOfBackups", [](const TemporaryFolder& f) { f.Write("backup/one/Info.plist", ""); },
                 "there are backups below it"}),
    NameOf<NoBackup>);

TEST(UnreadableFile, IsNamedAndTheRestIsRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root reads every file; the loop of links stands for it";
  TemporaryFolder folder;
  const SmallBackup small = WriteSmallBackup(folder.Path("backup"), Layout::Db);
  std::filesystem::permissions(small.files[0].strSource, std::filesystem::perms::none);

  const CommandResult result = RunCommand({"scan", folder.Path("backup")});

  EXPECT_THAT(result.strErr, HasSubstr(small.files[0].strSource + ": Permission denied"));
  EXPECT_THAT(result.Lines(), Contains("Camera Roll(1)"));
}

TEST(ContactsInPlaceOfAStore, ThatAreAFolderDontMakeTheBackupEncrypted) {
  TemporaryFolder folder;
  const std::string strBackup = folder.Path("backup");
  WriteSmallBackup(strBackup, Layout::Db);
  PutFolderAt(StorePathIn(strBackup, Layout::Db, store_places::contacts()));

  const CommandResult result = RunCommand({"scan", strBackup});

  EXPECT_EQ(4, result.nExitStatus) << "the contacts are lost";
  EXPECT_THAT(result.strErr, Not(HasSubstr("encrypted")));
  EXPECT_THAT(result.Lines(), Contains("Message(1)"));
}
