// Failures reported by a recovery of some categories if a store can't be read.
#include <gmock/gmock.h>

#include "tests/cli/command.h"
#include "tests/cli/small_backup.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Layout = BackupBuilder::Layout;

struct LostStoreCase {
  const char* pszName;
  StorePlace (*pfnStore)();
  const char* pszOnly;
  bool bFails;
};

void PrintTo(const LostStoreCase& one, std::ostream* pStream) {
  *pStream << one.pszName << ", --only " << one.pszOnly;
}

class LostStore : public testing::TestWithParam<LostStoreCase> {
 protected:
  /// Runs "recover --only". @return its "Failed" lines.
  std::vector<std::string> Failures() {
    m_result =
        RunCommand({"recover", m_folder.Path("backup"), m_folder.Path("out"), "--only", GetParam().pszOnly});
    std::vector<std::string> failures;
    for (const std::string& strLine : m_result.Lines()) {
      if (strLine.compare(0, 7, "Failed\t") == 0) failures.push_back(strLine);
    }
    return failures;
  }

  TemporaryFolder m_folder;
  CommandResult m_result;
};

}  // namespace

TEST_P(LostStore, FailsTheCategoriesThatAreReadFromItAlone) {
  WriteSmallBackup(m_folder.Path("backup"), Layout::Db);
  const std::string strStore = StorePathIn(m_folder.Path("backup"), Layout::Db, GetParam().pfnStore());
  // With the header of a store, the backup doesn't count as encrypted.
  WriteFile(strStore, std::string("SQLite format 3\0", 16) + std::string(8192, '\0'));

  const std::vector<std::string> failures = Failures();

  if (GetParam().bFails)
    EXPECT_THAT(failures, ElementsAre(HasSubstr("file is not a database")));
  else
    EXPECT_THAT(failures, IsEmpty());
  EXPECT_EQ(GetParam().bFails ? 4 : 0, m_result.nExitStatus) << m_result.strErr;
}

// Names of senders and callers come from the contacts.
INSTANTIATE_TEST_SUITE_P(
    Stores, LostStore,
    testing::Values(LostStoreCase{"ContactsForContacts", store_places::contacts, "Contacts", true},
                    LostStoreCase{"ContactsForMessages", store_places::contacts, "Message", true},
                    LostStoreCase{"ContactsForCalls", store_places::contacts, "Call History", true},
                    LostStoreCase{"ContactsForNotes", store_places::contacts, "Notes", false},
                    LostStoreCase{"ContactsForPhotos", store_places::contacts, "Camera Roll", false},
                    LostStoreCase{"ContactsAmongOthers", store_places::contacts, "Notes,Message", true},
                    LostStoreCase{"MessagesForMessages", store_places::messages, "Message", true},
                    LostStoreCase{"MessagesForContacts", store_places::messages, "Contacts", false},
                    LostStoreCase{"CallsForCalls", store_places::calls, "Call History", true},
                    LostStoreCase{"CallsForMessages", store_places::calls, "Message", false},
                    LostStoreCase{"NotesForNotes", store_places::notesCloud, "Notes", true},
                    LostStoreCase{"NotesForCalls", store_places::notesCloud, "Call History", false}),
    [](const auto& info) { return std::string(info.param.pszName); });
