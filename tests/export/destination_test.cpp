#include "export/destination.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "common/text.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

class Destinations : public testing::Test {
 protected:
  Destinations() {
    m_folder.MakeFolder("backup/sub");
    m_destination = Destination(FromNarrow(m_folder.Path("out")), FromNarrow(m_folder.Path("backup")));
  }

  /// Whether a folder below the destination may be written to.
  bool MakeFolder(const std::string& strFolder) {
    m_problem = m_destination.MakeFolder(FromNarrow(strFolder));
    return !m_problem;
  }
  const std::string& Reason() const { return m_problem.strReason; }
  void Link(const std::string& strTarget, const std::string& strName) const {
    fs::create_directories(fs::path(m_folder.Path(strName)).parent_path());
    fs::create_directory_symlink(strTarget, m_folder.Path(strName));
  }

  TemporaryFolder m_folder;
  Destination m_destination{"", ""};
  Problem m_problem;
};

class DestinationStep : public Destinations, public testing::WithParamInterface<const char*> {};
class DestinationName : public Destinations, public testing::WithParamInterface<const char*> {};

struct LinkCase {
  const char* pszName;
  const char* pszTarget;  ///< of "out/Link"; "%" is replaced by the test's folder
  const char* pszFolder;
};

void PrintTo(const LinkCase& link, std::ostream* pStream) {
  *pStream << link.pszTarget << ", " << link.pszFolder;
}

class DestinationLink : public Destinations, public testing::WithParamInterface<LinkCase> {
 protected:
  void MakeLink() const {
    std::string strTarget = GetParam().pszTarget;
    if (strTarget[0] == '%') strTarget.replace(0, 1, m_folder.Path());
    Link(strTarget, "out/Link");
  }
};

class LinkIntoBackup : public DestinationLink {};
class LinkElsewhere : public DestinationLink {};

std::string NameOfLink(const testing::TestParamInfo<LinkCase>& info) {
  return info.param.pszName;
}

}  // namespace

TEST_F(Destinations, FolderIsMadeWithItsParents) {
  const bool bAllowed = MakeFolder("/a/b/c/");

  EXPECT_TRUE(bAllowed);
  EXPECT_EQ("", Reason());
  EXPECT_TRUE(fs::is_directory(m_folder.Path("out/a/b/c")));
}

TEST_F(Destinations, RootIsCreatedOnlyWithItsFirstFolder) {
  EXPECT_FALSE(Exists(m_folder.Path("out")));
  EXPECT_EQ(m_folder.Path("out"), ToNarrow(m_destination.Root()));

  MakeFolder("/");

  EXPECT_THAT(NamesIn(m_folder.Path("out")), IsEmpty());
}

TEST_F(Destinations, FolderThatIsThereKeepsItsContent) {
  const std::string strFile = m_folder.Write("out/a/file", "mine");

  const bool bAllowed = MakeFolder("/a/");

  EXPECT_TRUE(bAllowed);
  EXPECT_EQ("mine", ReadFile(strFile));
}

TEST_F(Destinations, RemovedFolderIsRecreated) {
  MakeFolder("/a/");
  fs::remove_all(m_folder.Path("out"));

  const bool bAllowed = MakeFolder("/a/");

  EXPECT_TRUE(bAllowed);
  EXPECT_TRUE(Exists(m_folder.Path("out/a")));
}

TEST_F(Destinations, FolderThatCanNotBeMadeSaysWhy) {
  m_folder.Write("out/a", "a file");

  const bool bAllowed = MakeFolder("/a/b/");

  EXPECT_FALSE(bAllowed);
  EXPECT_THAT(Reason(), HasSubstr("Not a directory"));
  EXPECT_EQ("a file", ReadFile(m_folder.Path("out/a")));
}

TEST_F(Destinations, FolderThatCouldNotBeMadeMayBeMadeLater) {
  const std::string strInTheWay = m_folder.Write("out/a", "a file");
  MakeFolder("/a/");
  fs::remove(strInTheWay);

  const bool bAllowed = MakeFolder("/a/");

  EXPECT_TRUE(bAllowed);
  EXPECT_EQ("", Reason());
}

TEST_P(DestinationStep, ThatLeadsUpIsRefusedEachTimeAndNothingIsCreated) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(MakeFolder(GetParam()));
    EXPECT_THAT(Reason(), HasSubstr("out of the destination"));
  }

  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("backup"));
}

INSTANTIATE_TEST_SUITE_P(Paths, DestinationStep,
                         testing::Values("/..", "/../", "/../x/", "/a/../", "/a/../../x/", "/a/..",
                                         "/a/./../", "/a//../", "/../out/"),
                         [](const auto& info) { return "Path" + std::to_string(info.index); });

TEST_P(DestinationName, WithDotsIsNotAParentStep) {
  const bool bAllowed = MakeFolder(GetParam());

  EXPECT_TRUE(bAllowed);
  EXPECT_TRUE(Exists(m_folder.Path("out") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Names, DestinationName,
                         testing::Values("/.../", "/..a/", "/a../", "/..-20140101000000/", "/.hidden/",
                                         "/a..b/", "/. ./", "/.. /"),
                         [](const auto& info) { return "Name" + std::to_string(info.index); });

TEST_P(LinkIntoBackup, IsRefusedAndTheBackupStays) {
  MakeLink();

  const bool bAllowed = MakeFolder(GetParam().pszFolder);

  EXPECT_FALSE(bAllowed);
  EXPECT_THAT(Reason(), HasSubstr("inside the backup"));
  EXPECT_THAT(NamesIn(m_folder.Path("backup")), ElementsAre("sub"));
  EXPECT_THAT(NamesIn(m_folder.Path("backup/sub")), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Links, LinkIntoBackup,
                         testing::Values(LinkCase{"Itself", "%/backup", "/Link/"},
                                         LinkCase{"BelowIt", "%/backup/sub", "/Link/"},
                                         LinkCase{"NewFolderInIt", "%/backup", "/Link/new/"},
                                         LinkCase{"DeepInIt", "%/backup", "/Link/sub/a/b/"},
                                         LinkCase{"Relative", "../backup", "/Link/"},
                                         LinkCase{"ByWayOfAnother", "%/out/../backup/sub/..", "/Link/"},
                                         LinkCase{"ByItsParent", "%", "/Link/backup/new/"},
                                         LinkCase{"WithoutSlashAtTheEnd", "%/backup", "/Link"}),
                         NameOfLink);

TEST_P(LinkElsewhere, IsFollowed) {
  m_folder.MakeFolder("backup2");
  m_folder.MakeFolder("other");
  MakeLink();

  const bool bAllowed = MakeFolder(GetParam().pszFolder);

  EXPECT_TRUE(bAllowed);
  EXPECT_TRUE(Exists(m_folder.Path("out") + GetParam().pszFolder));
  EXPECT_THAT(NamesIn(m_folder.Path("backup")), ElementsAre("sub"));
}

INSTANTIATE_TEST_SUITE_P(Links, LinkElsewhere,
                         testing::Values(LinkCase{"Another", "%/other", "/Link/new/"},
                                         LinkCase{"NameThatBeginsLikeTheBackup", "%/backup2", "/Link/new/"},
                                         LinkCase{"BesideTheBackup", "%", "/Link/backup3/"}),
                         NameOfLink);

TEST_F(Destinations, LinkToALinkIntoTheBackupIsRefused) {
  Link(m_folder.Path("backup"), "first");
  Link(m_folder.Path("first"), "out/Link");

  EXPECT_FALSE(MakeFolder("/Link/new/"));
}

TEST_F(Destinations, DanglingLinkIntoTheBackupCreatesNothingThere) {
  Link(m_folder.Path("backup/new"), "out/Link");

  MakeFolder("/Link/a/");

  EXPECT_THAT(NamesIn(m_folder.Path("backup")), ElementsAre("sub"));
}

TEST_F(Destinations, BackupThatIsNamedByALinkIsProtectedToo) {
  Link(m_folder.Path("backup"), "named");
  Link(m_folder.Path("backup/sub"), "out/Link");
  m_destination = Destination(FromNarrow(m_folder.Path("out")), FromNarrow(m_folder.Path("named/")));

  EXPECT_FALSE(MakeFolder("/Link/"));
  EXPECT_TRUE(MakeFolder("/a/"));
}

TEST_F(Destinations, RootWithinTheBackupIsRefusedWhollyAndNotCreated) {
  m_destination = Destination(FromNarrow(m_folder.Path("backup/out")), FromNarrow(m_folder.Path("backup")));

  EXPECT_FALSE(MakeFolder("/a/"));
  EXPECT_FALSE(MakeFolder("/"));
  EXPECT_FALSE(Exists(m_folder.Path("backup/out")));
}

TEST_F(Destinations, RootWithParentStepsOutOfTheBackupIsAccepted) {
  m_destination =
      Destination(FromNarrow(m_folder.Path("backup/../out")), FromNarrow(m_folder.Path("backup")));

  EXPECT_TRUE(MakeFolder("/a/"));
  EXPECT_TRUE(Exists(m_folder.Path("out/a")));
}

// The system resolves ".." after following the link.
TEST_F(Destinations, RootWithAStepBehindALinkIntoTheBackupIsRefused) {
  Link(m_folder.Path("backup/sub"), "link");
  m_destination = Destination(FromNarrow(m_folder.Path("link/..")), FromNarrow(m_folder.Path("backup")));

  EXPECT_FALSE(MakeFolder("/a/"));
  EXPECT_THAT(NamesIn(m_folder.Path("backup")), ElementsAre("sub"));
}

TEST_F(Destinations, WithoutABackupOnlyParentStepsAreRefused) {
  for (const char* pszBackup : {"", "/nonexistent/backup"}) {
    m_destination = Destination(FromNarrow(m_folder.Path("out")), pszBackup);

    EXPECT_TRUE(MakeFolder("/a/"));
    EXPECT_FALSE(MakeFolder("/../"));
  }
}

TEST_F(Destinations, NamesBeyondAsciiAreKept) {
  const bool bAllowed = MakeFolder("/Änne 🌷/");

  EXPECT_TRUE(bAllowed);
  EXPECT_THAT(NamesIn(m_folder.Path("out")), ElementsAre("Änne 🌷"));
}
