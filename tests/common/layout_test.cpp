#include "common/layout.h"

#include <gtest/gtest.h>

#include "sample/stores.h"

using namespace orvandel;

namespace {

constexpr char kId[] = "abcdef7890123456789012345678901234567890";

struct PlaceCase {
  bool bEncrypted;
  bool bHasManifestDb;
  const char* pszPath;
};

void PrintTo(const PlaceCase& one, std::ostream* pStream) {
  *pStream << (one.bEncrypted ? "encrypted, " : "plain, ") << (one.bHasManifestDb ? "two-level" : "flat");
}

class FilePlace : public testing::TestWithParam<PlaceCase> {};

struct StoreCase {
  const char* pszName;
  StorePlace (*pfnPlace)();
  const char* pszId;
  const char* pszExpected;
};

void PrintTo(const StoreCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class StoreIdentifier : public testing::TestWithParam<StoreCase> {};

}  // namespace

TEST_P(FilePlace, FollowsFromTheKindOfTheBackup) {
  const BackupLayout layout{"/root", GetParam().bEncrypted, GetParam().bHasManifestDb};

  const QString qstrPath = layout.PathOf(kId);

  EXPECT_EQ(GetParam().pszPath, qstrPath.toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, FilePlace,
    testing::Values(PlaceCase{false, false, "/root/abcdef7890123456789012345678901234567890"},
                    PlaceCase{false, true, "/root/ab/abcdef7890123456789012345678901234567890"},
                    PlaceCase{true, false, "/root/abcdef7890123456789012345678901234567890"},
                    PlaceCase{true, true, "/root/abcdef7890123456789012345678901234567890"}),
    [](const testing::TestParamInfo<PlaceCase>& info) {
      return std::string(info.param.bEncrypted ? "Encrypted" : "Plain") +
             (info.param.bHasManifestDb ? "WithManifestDb" : "WithoutManifestDb");
    });

TEST(FilePlaces, RootBeyondAsciiIsKept) {
  const BackupLayout layout{QString::fromUtf8("/T\xC3\xA9l\xC3\xA9phone \xE4\xBA\xAC"), false, true};

  const QString qstrPath = layout.PathOf("0123");

  EXPECT_EQ("/T\xC3\xA9l\xC3\xA9phone \xE4\xBA\xAC/01/0123", qstrPath.toStdString());
}

TEST_P(StoreIdentifier, IsTheDigestOfDomainAndPath) {
  const StorePlace place = GetParam().pfnPlace();

  const QString qstrId = BackupBuilder::fileId(place.domain, place.relativePath);

  EXPECT_STREQ(GetParam().pszExpected, GetParam().pszId);
  EXPECT_EQ(GetParam().pszExpected, qstrId.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreIdentifier,
                         testing::Values(StoreCase{"Contacts", store_places::contacts, kContactsStore,
                                                   "31bb7ba8914766d4ba40d6dfb6113c8b614be442"},
                                         StoreCase{"Messages", store_places::messages, kMessageStore,
                                                   "3d0d7e5fb2ce288813306e4d4636395e047a3d28"},
                                         StoreCase{"Notes", store_places::notes, kNotesStore,
                                                   "ca3bc056d4da0bbf88b5fb3be254f3b7147e639c"},
                                         StoreCase{"NotesCloud", store_places::notesCloud, kNotesCloudStore,
                                                   "4f98687d8ab0d6d1a371110e6b7300f6e465bef2"},
                                         StoreCase{"Calls", store_places::calls, kCallStore,
                                                   "5a4935c78a5255723f707230a451d79c540d2741"},
                                         StoreCase{"CallsFallback", store_places::callsFallback,
                                                   kCallStoreFallback,
                                                   "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca"}),
                         [](const testing::TestParamInfo<StoreCase>& info) { return info.param.pszName; });

TEST(Layout, IdentifierThatIsNotAFileNameHasNoPath) {
  const BackupLayout layout{"/backup", false, true};

  EXPECT_EQ(QString(), layout.PathOf("../secret/file"));
  EXPECT_EQ(QString(), layout.PathOf("..secret")) << "its first two characters are a folder";
  EXPECT_EQ(QString(), layout.PathOf("/etc/passwd"));
}
