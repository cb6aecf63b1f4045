// Links, FIFOs and odd names in a backup: no other file of the machine is exposed, nothing hangs, nothing is
// lost.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Layout = BackupBuilder::Layout;

namespace {

constexpr char kSecret[] = "SECRET of another user of this machine, longer than the head that is looked at";

enum class Target { Photo, Messages, Contacts, Calls, Notes };
enum class Kind { Link, LinkedFolder, Pipe };

struct HostilePlace {
  const char* pszName;
  Target target;
  Kind kind;
};

void PrintTo(const HostilePlace& place, std::ostream* pStream) {
  *pStream << place.pszName;
}

class HostileBackup : public testing::TestWithParam<HostilePlace> {
 protected:
  std::string Backup() const { return m_folder.Path("backup"); }
  std::string Out() const { return m_folder.Path("out"); }

  std::string TargetPath(const SmallBackup& small) const {
    switch (GetParam().target) {
      case Target::Photo:
        return small.files[0].strSource;
      case Target::Messages:
        return StorePathIn(Backup(), Layout::Db, store_places::messages());
      case Target::Contacts:
        return StorePathIn(Backup(), Layout::Db, store_places::contacts());
      case Target::Calls:
        return StorePathIn(Backup(), Layout::Db, store_places::calls());
      case Target::Notes:
        return StorePathIn(Backup(), Layout::Db, store_places::notesCloud());
    }
    return {};
  }

  /// Moves the file out of the backup and replaces it.
  void Plant(const std::string& strPath) const {
    const fs::path path(strPath);
    m_folder.MakeFolder("elsewhere");
    switch (GetParam().kind) {
      case Kind::Link:
        fs::rename(path, m_folder.Path("elsewhere") / path.filename());
        fs::create_symlink(m_folder.Path("elsewhere") / path.filename(), path);
        break;
      case Kind::LinkedFolder:
        fs::rename(path.parent_path(), m_folder.Path("elsewhere/shard"));
        fs::create_directory_symlink(m_folder.Path("elsewhere/shard"), path.parent_path());
        break;
      case Kind::Pipe:
        fs::remove(path);
        ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
        break;
    }
  }

  TemporaryFolder m_folder;
};

/// Writes a backup with one conversation with a person of a given name.
void WriteConversationWith(const std::string& strFolder, const std::string& strName,
                           const std::string& strNumber) {
  BackupBuilder backup(QString::fromStdString(strFolder), Layout::Db);
  backup.writeInfo({});
  const StorePlace people = store_places::contacts();
  ContactsStore contacts(backup.reserveFile(people.domain, people.relativePath), true);
  ContactsStore::Person person;
  person.first = QString::fromStdString(strName);
  person.phone = QString::fromStdString(strNumber);
  contacts.add(person);
  contacts.close();
  const StorePlace place = store_places::messages();
  MessageStore messages(backup.reserveFile(place.domain, place.relativePath));
  const qint64 nHandle = messages.addHandle(QString::fromStdString(strNumber));
  messages.addMessage(nHandle, "bring the ladder", 418262400, false,
                      {messages.addChat(QString::fromStdString(strNumber))});
  messages.close();
  backup.finish();
}

}  // namespace

TEST_P(HostileBackup, IsRecoveredWithoutWhatIsNoFileAndSaysSo) {
  const SmallBackup small = WriteSmallBackup(Backup(), Layout::Db);
  Plant(TargetPath(small));

  const CommandResult result = RunCommand({"recover", "--no-index", Backup(), Out()});

  EXPECT_EQ(4, result.nExitStatus);
  EXPECT_THAT(result.Lines(), Contains(AllOf(StartsWith("Failed\t"),
                                             EndsWith(GetParam().kind == Kind::Pipe
                                                          ? "is not a regular file"
                                                          : "is a symbolic link, which is not followed"))));
  EXPECT_THAT(result.LastLine(), Not(HasSubstr(" 0 failed")));
}

INSTANTIATE_TEST_SUITE_P(
    Places, HostileBackup,
    testing::Values(HostilePlace{"LinkInPlaceOfAPhoto", Target::Photo, Kind::Link},
                    HostilePlace{"LinkInPlaceOfThePhotosFolder", Target::Photo, Kind::LinkedFolder},
                    HostilePlace{"PipeInPlaceOfAPhoto", Target::Photo, Kind::Pipe},
                    HostilePlace{"LinkInPlaceOfTheMessages", Target::Messages, Kind::Link},
                    HostilePlace{"LinkInPlaceOfTheMessagesFolder", Target::Messages, Kind::LinkedFolder},
                    HostilePlace{"PipeInPlaceOfTheMessages", Target::Messages, Kind::Pipe},
                    HostilePlace{"LinkInPlaceOfTheContacts", Target::Contacts, Kind::Link},
                    HostilePlace{"PipeInPlaceOfTheContacts", Target::Contacts, Kind::Pipe},
                    HostilePlace{"LinkInPlaceOfTheCalls", Target::Calls, Kind::Link},
                    HostilePlace{"PipeInPlaceOfTheNotes", Target::Notes, Kind::Pipe}),
    [](const auto& info) { return std::string(info.param.pszName); });

TEST(LinkInABackup, NeverExposesAnotherFile) {
  TemporaryFolder folder;
  const SmallBackup small = WriteSmallBackup(folder.Path("backup"), Layout::Db);
  const std::string strSecret =
      folder.Write("secret", std::string("\x89PNG\r\n\x1A\n", 8) + std::string(600, ' ') + kSecret);
  for (const std::string& strPath :
       {small.files[0].strSource, StorePathIn(folder.Path("backup"), Layout::Db, store_places::messages())}) {
    fs::remove(strPath);
    fs::create_symlink(strSecret, strPath);
  }

  RunCommand({"recover", folder.Path("backup"), folder.Path("out")});

  for (const std::string& strFile : FilesBelow(folder.Path("out")))
    EXPECT_THAT(ReadFile(folder.Path("out/" + strFile)), Not(HasSubstr(kSecret))) << strFile;
}

TEST(LinkToABackup, IsFollowed) {
  TemporaryFolder folder;
  const SmallBackup small = WriteSmallBackup(folder.Path("disk/backup"), Layout::Db);
  fs::create_directory_symlink(folder.Path("disk"), folder.Path("linked"));
  // The last two names are the prefixes of files in it.
  for (const char* pszName : {"link", "I", "Man"}) {
    fs::create_directory_symlink(folder.Path("linked/backup"), folder.Path(pszName));
    const std::string strOut = folder.Path("out of ") + pszName;

    const CommandResult result = RunCommand(RecoverFiles(folder.Path(pszName), strOut));

    EXPECT_EQ(0, result.nExitStatus) << result.strErr;
    EXPECT_EQ(small.files.size(), FilesBelow(strOut).size());
  }
}

namespace {

struct OddName {
  const char* pszName;
  std::string strContact;
  std::string strStem;  ///< file name of the documents, up to the number
};

void PrintTo(const OddName& name, std::ostream* pStream) {
  *pStream << name.pszName;
}

class ConversationWith : public testing::TestWithParam<OddName> {};

}  // namespace

TEST_P(ConversationWith, ANameThatIsNoFileNameIsWrittenAllTheSame) {
  TemporaryFolder folder;
  WriteConversationWith(folder.Path("backup"), GetParam().strContact, "+49301");

  const CommandResult result = RunCommand(
      {"recover", "--no-index", folder.Path("backup"), folder.Path("out"), "--only", "Message", "--json"});

  EXPECT_EQ(0, result.nExitStatus) << result.strOut;
  std::vector<std::string> pages;
  for (const std::string& strFile : FilesBelow(folder.Path("out"))) {
    if (strFile.find(".html") != std::string::npos) pages.push_back(strFile);
  }
  ASSERT_EQ(1u, pages.size());
  EXPECT_THAT(pages[0], HasSubstr("/" + GetParam().strStem));
  EXPECT_THAT(ReadFile(folder.Path("out/" + pages[0])), HasSubstr("bring the ladder"));
  EXPECT_THAT(result.strErr, HasSubstr("in the backup it is called \""));
  EXPECT_THAT(result.strOut, HasSubstr("\"originalName\":\""));
}

INSTANTIATE_TEST_SUITE_P(Names, ConversationWith,
                         testing::Values(OddName{"ASlash", "Taxi 24/7", "Taxi 24_7(+49301)"},
                                         OddName{"AStepUp", "../../../x", ".._.._.._x(+49301)"},
                                         OddName{"MoreThanAFileNameHolds", std::string(300, 'x'),
                                                 std::string(236, 'x')},
                                         OddName{"MoreThanAFileNameHoldsBeyondAscii",
                                                 [] {
                                                   std::string strName;
                                                   for (int i = 0; i < 150; ++i) strName += "\xC3\xA4";
                                                   return strName;
                                                 }(),
                                                 "\xC3\xA4\xC3\xA4"}),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST(ConversationsWithNames, ThatBecomeTheSameAreKeptApart) {
  TemporaryFolder folder;
  BackupBuilder backup(QString::fromStdString(folder.Path("backup")), Layout::Db);
  backup.writeInfo({});
  const StorePlace place = store_places::messages();
  MessageStore messages(backup.reserveFile(place.domain, place.relativePath));
  for (const char* pszSender : {"a/b", "a_b", "a:b/"}) {
    const qint64 nHandle = messages.addHandle(pszSender);
    messages.addMessage(nHandle, QString("from ") + pszSender, 418262400, false,
                        {messages.addChat(pszSender)});
  }
  messages.close();
  backup.finish();

  const CommandResult result =
      RunCommand({"recover", "--no-index", folder.Path("backup"), folder.Path("out"), "--only", "Message"});

  EXPECT_EQ(0, result.nExitStatus);
  std::string strPages;
  for (const std::string& strFile : FilesBelow(folder.Path("out"))) {
    if (strFile.find(".html") != std::string::npos) strPages += ReadFile(folder.Path("out/" + strFile));
  }
  for (const char* pszText : {"from a/b", "from a_b", "from a:b/"}) EXPECT_THAT(strPages, HasSubstr(pszText));
}
