#include "extract/app_files.h"

#include <gmock/gmock.h>

#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kSnap = "AppDomain-com.example.Snap-Documents/";
const std::string kWhatsApp = "AppDomain-net.whatsapp.WhatsApp-Library/";

class AppFiles : public testing::Test {
 protected:
  explicit AppFiles(const std::string& strRoot = "backup") {
    m_layout.qstrRoot = FromNarrow(m_folder.Path(strRoot));
  }

  void Add(const std::string& strName, const QByteArray& content) {
    AddEntry(strName);
    WriteFile(ToNarrow(m_layout.PathOf(m_catalogue.back().strFileId)), content.toStdString());
  }
  void AddEntry(const std::string& strName) {
    m_catalogue.push_back({strName, "ab0" + std::to_string(m_catalogue.size())});
  }

  int Walk() {
    return WalkAppFiles(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 65, 11}, m_files, m_whatsApp);
  }

  const QByteArray m_jpeg = sample_media::jpeg(1, 64, 48);
  TemporaryFolder m_folder;
  BackupLayout m_layout;
  Catalogue m_catalogue;
  ProgressLog m_log;
  std::vector<_IPHONE_APP_FILE_INFO_> m_files;
  std::vector<_WHATSAPP_ATTACHMENTS_> m_whatsApp;
};

class AppFilesBeyondAscii : public AppFiles {
 protected:
  AppFilesBeyondAscii() : AppFiles("T\xC3\xA9l\xC3\xA9phone") {}
};

struct GroupCase {
  const char* pszCatalogue;
  const char* pszApp;
};

void PrintTo(const GroupCase& one, std::ostream* pStream) {
  *pStream << one.pszCatalogue;
}

class AppGroup : public AppFiles, public testing::WithParamInterface<GroupCase> {};

struct KindCase {
  const char* pszName;
  bool bVideo;
};

const KindCase kKinds[] = {
    // The search also finds endings of longer items, and doesn't find the last sound.
    {"a.JPG", false},    {"a.GIF", false}, {"a.BMP", false}, {"a.PNG", false}, {"a.ICO", false},
    {"a.MPEG", true},    {"a.MP4", true},  {"a.RMVB", true}, {"a.WMV", true},  {"a.AVI", true},
    {"a.3GP", true},     {"a.MOV", true},  {"a.MP3", true},  {"a.MID", true},  {"a.WAV", true},
    {"a.jpg.mov", true}, {"a.pg", false},  {"a.ov", true},   {"a.snd", false}, {"a.txt", false},
    {"a", false},        {"a.", false},    {"", false},      {"a.lrv", true},  {"a.icns", false}};

}  // namespace

TEST_F(AppFiles, FileHasAppNameSizeAndPath) {
  m_layout.bHasManifestDb = true;
  Add(kSnap + "a.b.jpeg", m_jpeg);

  const int nAnswer = Walk();

  EXPECT_EQ(0, nAnswer);
  ASSERT_THAT(m_files, SizeIs(1));
  EXPECT_EQ("example.Snap", m_files[0].strAppName);
  EXPECT_EQ("a.b.JPG", m_files[0].strFileName);
  EXPECT_EQ(static_cast<uint32_t>(m_jpeg.size()), m_files[0].uFileSize);
  EXPECT_EQ(ToWide(m_layout.qstrRoot + "/ab/ab00"), m_files[0].wstrFilePath);
}

TEST_F(AppFiles, OtherDomainsAreNoAppFiles) {
  Add("AppDomainGroup-group.com.example-a.jpg", m_jpeg);
  Add("AppDomainPlugin-com.example-a.jpg", m_jpeg);
  Add("HomeDomain-Library/a.jpg", m_jpeg);
  Add("HomeDomain-AppDomain-com.example.Odd-b.jpg", m_jpeg);

  Walk();

  EXPECT_THAT(Column(m_files, &_IPHONE_APP_FILE_INFO_::strAppName), ElementsAre("example.Odd"));
}

TEST_F(AppFiles, UnknownShortAndMissingFilesAreSkippedButCounted) {
  Add(kSnap + "unknown.jpg", sample_media::unknown(1));
  Add(kSnap + "short.jpg", m_jpeg.left(511));
  AddEntry(kSnap + "missing.jpg");
  Add(kSnap + "a.jpg", m_jpeg);

  Walk();

  EXPECT_THAT(FileNames(m_files), ElementsAre("a.JPG"));
  EXPECT_THAT(m_log.values, ElementsAre(70, 76, 81, 87));
}

TEST_F(AppFiles, FirstReportCountsTwo) {
  for (int i = 0; i < 11; ++i) AddEntry("HomeDomain-" + std::to_string(i));

  Walk();

  ASSERT_THAT(m_log.values, SizeIs(11));
  EXPECT_EQ(65 + 2, m_log.values.front());
  EXPECT_EQ(65 + 22, m_log.values.back());
}

TEST_F(AppFiles, FilesAreSortedByName) {
  for (const char* pszName : {"Z.jpg", "b.jpg", "A.jpg"}) Add(kSnap + pszName, m_jpeg);
  for (const char* pszName : {"Z.jpg", "b.jpg", "A.jpg"}) Add(kWhatsApp + pszName, m_jpeg);
  m_files.push_back({1, "x", "M.JPG", u""});

  Walk();

  EXPECT_THAT(FileNames(m_files), ElementsAre("A.JPG", "b.JPG", "M.JPG", "Z.JPG"));
  EXPECT_THAT(FileNames(m_whatsApp), ElementsAre("A.JPG", "b.JPG", "Z.JPG"));
}

TEST_F(AppFiles, WhatsAppFilesAreListedSeparately) {
  Add(kWhatsApp + "a.jpeg", m_jpeg);
  Add("AppDomain-com.example.Snap-net.whatsapp.WhatsApp/b.jpg", m_jpeg);

  Walk();

  EXPECT_THAT(m_files, IsEmpty());
  ASSERT_THAT(FileNames(m_whatsApp), ElementsAre("a.JPG", "b.JPG"));
  EXPECT_EQ(static_cast<uint32_t>(m_jpeg.size()), m_whatsApp[0].uFileSize);
  EXPECT_EQ(ToWide(m_layout.qstrRoot + "/ab00"), m_whatsApp[0].wstrFilePath);
}

// The size is read from a path in Latin-1, which isn't that of the file.
TEST_F(AppFilesBeyondAscii, FileShowsNoSizeAndWhatsAppsIsDropped) {
  Add(kSnap + "a.jpg", m_jpeg);
  Add(kWhatsApp + "b.jpg", m_jpeg);

  Walk();

  EXPECT_THAT(FileNames(m_files), ElementsAre("a.JPG"));
  EXPECT_THAT(Column(m_files, &_IPHONE_APP_FILE_INFO_::uFileSize), ElementsAre(0u));
  EXPECT_THAT(m_whatsApp, IsEmpty());
}

TEST_F(AppFiles, CancelKeepsTheFilesFoundSoFarSorted) {
  for (const char* pszName : {"Z.jpg", "A.jpg", "M.jpg"}) Add(kSnap + pszName, m_jpeg);
  m_log.answer = [](size_t nCall, int) { return nCall == 1 ? 6 : 0; };

  const int nAnswer = Walk();

  EXPECT_EQ(6, nAnswer);
  EXPECT_THAT(FileNames(m_files), ElementsAre("A.JPG", "Z.JPG"));
  EXPECT_THAT(m_log.values, SizeIs(2));
}

TEST_F(AppFiles, EmptyCatalogueGivesEmptyListsAndNoReport) {
  const int nAnswer = Walk();

  EXPECT_EQ(0, nAnswer);
  EXPECT_THAT(m_files, IsEmpty());
  EXPECT_THAT(m_log.values, IsEmpty());
}

TEST_P(AppGroup, IsTheTextBehindTheFirstComOrNetUpToADash) {
  Add(GetParam().pszCatalogue, m_jpeg);

  Walk();

  EXPECT_THAT(Column(m_files, &_IPHONE_APP_FILE_INFO_::strAppName), ElementsAre(GetParam().pszApp));
}

INSTANTIATE_TEST_SUITE_P(Names, AppGroup,
                         testing::Values(GroupCase{"AppDomain-com.example.Snap-a/b.jpg", "example.Snap"},
                                         GroupCase{"AppDomain-net.example.Radio-a/b.jpg", "example.Radio"},
                                         GroupCase{"AppDomain-org.example.Draw-a/b.jpg", "other"},
                                         GroupCase{"AppDomain-com.example.Two-Parts-a.jpg", "example.Two"},
                                         GroupCase{"AppDomain-net.example.com.Odd-a.jpg", "Odd"},
                                         GroupCase{"AppDomain-net.a.B-x/com.c.D-e.jpg", "c.D"},
                                         GroupCase{"AppDomain-net.a.B-x/com.c.D.jpg", "other"},
                                         GroupCase{"AppDomain-telecom.Plan-a.jpg", "Plan"},
                                         GroupCase{"AppDomain-org.x-y/planet.jpg", "other"},
                                         GroupCase{"AppDomain-com.-a.jpg", ""}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST(AppFileKind, FollowsFromTheExtension) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.pszName);
    EXPECT_EQ(row.bVideo, IsAppVideo(row.pszName)) << row.pszName;
  }
}

TEST(AppFileGroups, AreAddedToTheMapsAndOnlyThisCallIsCounted) {
  const std::vector<_IPHONE_APP_FILE_INFO_> files = {{1, "Snap", "b.JPG", u""},
                                                     {2, "Radio", "c.WAV", u""},
                                                     {3, "Snap", "a.MOV", u""},
                                                     {4, "Snap", "a.JPG", u""}};
  AppFileMap photos, videos;
  photos["Snap"].push_back({0, "Snap", "earlier.JPG", u""});
  int nPhotos = 70, nVideos = 80;

  GroupAppFiles(files, photos, videos, nPhotos, nVideos);

  EXPECT_EQ(2, nPhotos);
  EXPECT_EQ(2, nVideos);
  EXPECT_THAT(photos, SizeIs(1));
  EXPECT_THAT(FileNames(photos["Snap"]), ElementsAre("earlier.JPG", "b.JPG", "a.JPG"));
  EXPECT_THAT(videos, SizeIs(2));
  EXPECT_THAT(FileNames(videos["Radio"]), ElementsAre("c.WAV"));
  EXPECT_THAT(FileNames(videos["Snap"]), ElementsAre("a.MOV"));
}

TEST(AppFileOrder, IsAscendingAndIgnoresCase) {
  EXPECT_TRUE(AppVectorCmp({0, "", "A", u""}, {0, "", "b", u""}));
  EXPECT_FALSE(AppVectorCmp({0, "", "b", u""}, {0, "", "A", u""}));
  EXPECT_FALSE(AppVectorCmp({0, "", "a", u""}, {0, "", "A", u""}));
}
