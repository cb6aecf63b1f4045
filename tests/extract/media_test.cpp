#include "extract/media.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kRoll = "CameraRollDomain-Media/DCIM/100APPLE/";
const std::string kStream = "MediaDomain-Media/PhotoStreamsData/1/";
const std::string kAttached = "MediaDomain-Library/SMS/Attachments/00/";

class Media : public testing::Test {
 protected:
  explicit Media(const std::string& strRoot = "backup") {
    m_layout.qstrRoot = FromNarrow(m_folder.Path(strRoot));
  }

  /// Adds an entry with a file. Identifiers count from "aa00".
  void Add(const std::string& strName, const QByteArray& content) {
    const std::string strId = AddEntry(strName);
    WriteFile(ToNarrow(m_layout.PathOf(strId)), content.toStdString());
  }

  std::string AddEntry(const std::string& strName) {
    m_catalogue.push_back({strName, "aa0" + std::to_string(m_catalogue.size())});
    return m_catalogue.back().strFileId;
  }

  WalkProgress Reporting() { return {ProgressLog::Receive, &m_log, 12, 11}; }
  int WalkCamera() { return WalkCameraFiles(m_catalogue, m_layout, Reporting(), m_camera, m_stream); }
  int WalkAttachments() { return WalkMsgAttachments(m_catalogue, m_layout, Reporting(), m_attachments); }

  const QByteArray m_jpeg = sample_media::jpeg(1, 64, 48);
  TemporaryFolder m_folder;
  BackupLayout m_layout;
  Catalogue m_catalogue;
  ProgressLog m_log;
  std::vector<_IPHONE_CAMERA_INFO_> m_camera, m_stream;
  std::vector<_IPHONE_ATTACHMENTS_> m_attachments;
};

class MediaBeyondAscii : public Media {
 protected:
  MediaBeyondAscii() : Media("T\xC3\xA9l\xC3\xA9phone") {}
};

struct NameCase {
  const char* pszCatalogue;
  const char* pszJudged;
  const char* pszExpected;
};

void PrintTo(const NameCase& one, std::ostream* pStream) {
  *pStream << one.pszCatalogue;
}

class MediaName : public testing::TestWithParam<NameCase> {};

}  // namespace

TEST_F(Media, CameraFileHasNameSizeAndPath) {
  Add(kRoll + "IMG_0001.JPG", m_jpeg);

  const int nAnswer = WalkCamera();

  EXPECT_EQ(0, nAnswer);
  ASSERT_THAT(m_camera, SizeIs(1));
  EXPECT_EQ("IMG_0001.JPG", m_camera[0].strFileName);
  EXPECT_EQ(static_cast<uint32_t>(m_jpeg.size()), m_camera[0].uFileSize);
  EXPECT_EQ(ToWide(m_layout.qstrRoot + "/aa00"), m_camera[0].wstrFilePath);
  EXPECT_THAT(m_stream, IsEmpty());
}

TEST_F(Media, TwoLevelBackupHasItsFilesInFoldersOfTwoCharacters) {
  m_layout.bHasManifestDb = true;
  Add(kRoll + "a.JPG", m_jpeg);
  Add(kAttached + "b.JPG", m_jpeg);

  WalkCamera();
  WalkAttachments();

  ASSERT_THAT(m_camera, SizeIs(1));
  ASSERT_THAT(m_attachments, SizeIs(1));
  EXPECT_EQ(ToWide(m_layout.qstrRoot + "/aa/aa00"), m_camera[0].wstrFilePath);
  EXPECT_EQ(ToWide(m_layout.qstrRoot + "/aa/aa01"), m_attachments[0].wstrFilePath);
}

TEST_F(Media, CameraRollIsSortedAndPhotoStreamIsNot) {
  for (const char* pszName : {"Z.JPG", "b.JPG", "A.JPG"}) Add(kRoll + pszName, m_jpeg);
  for (const char* pszName : {"Z.JPG", "A.JPG", "M.JPG"}) Add(kStream + pszName, m_jpeg);

  WalkCamera();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("A.JPG", "b.JPG", "Z.JPG"));
  EXPECT_THAT(FileNames(m_stream), ElementsAre("Z.JPG", "A.JPG", "M.JPG"));
}

TEST_F(Media, CameraNameIsUnchanged) {
  Add(kRoll + "a.JPG", sample_media::png(1, 64, 48));
  Add(kRoll + "b", m_jpeg);

  WalkCamera();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("a.JPG", "b"));
}

TEST_F(Media, NameTestFindsItsTextAnywhere) {
  Add("Other" + kRoll + "a.JPG", m_jpeg);
  Add("MediaDomain-Media/DCIM/b.JPG", m_jpeg);
  Add("AppDomain-com.example.Snap-Documents/Attachments/c.JPG", m_jpeg);
  Add("AppDomain-com.example.Snap-Attachments", m_jpeg);

  WalkCamera();
  WalkAttachments();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("a.JPG"));
  EXPECT_THAT(FileNames(m_attachments), ElementsAre("c.JPG"));
}

TEST_F(Media, NameThatMatchesBothIsACameraFile) {
  Add(kStream + kRoll + "a.JPG", m_jpeg);

  WalkCamera();

  EXPECT_THAT(m_camera, SizeIs(1));
  EXPECT_THAT(m_stream, IsEmpty());
}

TEST_F(Media, UnknownShortEmptyAndMissingFilesAreSkipped) {
  for (const std::string& strFolder : {kRoll, kStream, kAttached}) {
    Add(strFolder + "unknown.JPG", sample_media::unknown(1));
    Add(strFolder + "short.JPG", m_jpeg.left(511));
    Add(strFolder + "empty.JPG", QByteArray());
    AddEntry(strFolder + "missing.JPG");
    Add(strFolder + "just.JPG", m_jpeg.left(512));
  }

  WalkCamera();
  WalkAttachments();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("just.JPG"));
  EXPECT_THAT(FileNames(m_stream), ElementsAre("just.JPG"));
  EXPECT_THAT(FileNames(m_attachments), ElementsAre("just.JPG"));
}

TEST_F(Media, ListsAreAddedToAndSortedWhole) {
  Add(kRoll + "M.JPG", m_jpeg);
  Add(kAttached + "M.JPG", m_jpeg);
  m_camera.push_back({1, "Z", u""});
  m_attachments.push_back({0, 1, "Z", u""});

  WalkCamera();
  WalkAttachments();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("M.JPG", "Z"));
  EXPECT_THAT(FileNames(m_attachments), ElementsAre("M.JPG", "Z"));
}

TEST_F(Media, EntriesOfOneNameAreBothKept) {
  Add(kRoll + "a.JPG", m_jpeg);
  m_catalogue.push_back(m_catalogue[0]);

  WalkCamera();

  EXPECT_THAT(m_camera, SizeIs(2));
}

TEST_F(Media, AttachmentTakesItsExtensionFromTheContent) {
  Add(kAttached + "IMG_0007.jpeg", m_jpeg);
  Add(kAttached + "a.b.mov", sample_media::mp4(1));
  Add(kAttached + "plain", sample_media::png(1, 64, 48));

  WalkAttachments();

  EXPECT_THAT(FileNames(m_attachments), ElementsAre("a.b.MP4", "IMG_0007.JPG", "plain.PNG"));
  EXPECT_THAT(Column(m_attachments, &_IPHONE_ATTACHMENTS_::uReserved), testing::Each(0u));
}

TEST_F(Media, MissingCameraFileIsNotCounted) {
  AddEntry(kRoll + "missing.JPG");
  Add(kRoll + "a.JPG", m_jpeg);
  Add(kRoll + "unknown.JPG", sample_media::unknown(1));
  AddEntry("HomeDomain-other");

  WalkCamera();

  // 12 + 11 * i * 2 / 4 for the three entries that count.
  EXPECT_THAT(m_log.values, ElementsAre(17, 23, 28));
}

TEST_F(Media, MissingAttachmentIsNotCounted) {
  AddEntry(kAttached + "missing.JPG");
  Add(kAttached + "a.JPG", m_jpeg);

  WalkAttachments();

  EXPECT_THAT(m_log.values, ElementsAre(17));
}

TEST_F(Media, CancelKeepsTheFilesFoundSoFarSorted) {
  for (const char* pszName : {"Z.JPG", "A.JPG", "M.JPG"}) Add(kRoll + pszName, m_jpeg);
  for (const char* pszName : {"Z.JPG", "A.JPG", "M.JPG"}) Add(kAttached + pszName, m_jpeg);
  m_log.answer = [](size_t, int nValue) { return nValue >= 15 ? 4 : 0; };

  const int nCamera = WalkCamera();
  const int nAttachments = WalkAttachments();

  // Camera: 12 + 3, and the walk ends. Attachments: 13, 15 with the fourth and fifth entry.
  EXPECT_EQ(4, nCamera);
  EXPECT_THAT(FileNames(m_camera), ElementsAre("Z.JPG"));
  EXPECT_EQ(4, nAttachments);
  EXPECT_THAT(m_attachments, IsEmpty());
}

TEST_F(Media, CancelKeepsTheAttachmentsSoFarSorted) {
  for (const char* pszName : {"Z.JPG", "A.JPG", "M.JPG"}) Add(kAttached + pszName, m_jpeg);
  m_log.CancelFrom(1);

  const int nAnswer = WalkAttachments();

  EXPECT_EQ(1, nAnswer);
  EXPECT_THAT(FileNames(m_attachments), ElementsAre("A.JPG", "Z.JPG"));
}

TEST_F(Media, FifoInPlaceOfAFileIsSkippedWithoutBlocking) {
  Add(kRoll + "A.JPG", m_jpeg);
  const std::string strPath = ToNarrow(m_layout.PathOf(m_catalogue.back().strFileId));
  ASSERT_EQ(0, unlink(strPath.c_str()));
  ASSERT_EQ(0, mkfifo(strPath.c_str(), 0600));

  WalkCamera();

  EXPECT_THAT(m_camera, IsEmpty());
}

TEST_F(Media, CancelAtTheSecondEntryKeepsTwo) {
  for (const char* pszName : {"Z.JPG", "A.JPG", "M.JPG"}) Add(kRoll + pszName, m_jpeg);
  m_log.CancelFrom(1);

  const int nAnswer = WalkCamera();

  EXPECT_EQ(1, nAnswer);
  EXPECT_THAT(FileNames(m_camera), ElementsAre("A.JPG", "Z.JPG"));
}

TEST_F(Media, EmptyCatalogueGivesEmptyListsAndNoReport) {
  const int nCamera = WalkCamera();
  const int nAttachments = WalkAttachments();

  EXPECT_EQ(0, nCamera);
  EXPECT_EQ(0, nAttachments);
  EXPECT_THAT(m_camera, IsEmpty());
  EXPECT_THAT(m_log.values, IsEmpty());
}

TEST_F(Media, SizeIsCutToItsLow32Bits) {
  Add(kRoll + "3gib.JPG", m_jpeg);
  Add(kRoll + "5gib.JPG", m_jpeg);
  std::filesystem::resize_file(ToNarrow(m_layout.PathOf("aa00")), 3ull << 30);
  std::filesystem::resize_file(ToNarrow(m_layout.PathOf("aa01")), 5ull << 30);

  WalkCamera();

  EXPECT_THAT(Column(m_camera, &_IPHONE_CAMERA_INFO_::uFileSize), ElementsAre(3u << 30, 1u << 30));
}

// The size is read from a path in Latin-1, which isn't that of the file.
TEST_F(MediaBeyondAscii, CameraFileShowsNoSizeAndAttachmentIsDropped) {
  Add(kRoll + "a.JPG", m_jpeg);
  Add(kAttached + "b.JPG", m_jpeg);

  WalkCamera();
  WalkAttachments();

  EXPECT_THAT(FileNames(m_camera), ElementsAre("a.JPG"));
  EXPECT_THAT(Column(m_camera, &_IPHONE_CAMERA_INFO_::uFileSize), ElementsAre(0u));
  EXPECT_THAT(m_attachments, IsEmpty());
}

TEST_P(MediaName, EndsWithTheExtensionOfTheContent) {
  const std::string strName = DisplayName(GetParam().pszCatalogue, GetParam().pszJudged);

  EXPECT_EQ(GetParam().pszExpected, strName);
}

INSTANTIATE_TEST_SUITE_P(
    Names, MediaName,
    testing::Values(NameCase{"d-p/IMG_0007.jpeg", "0.jpg", "IMG_0007.JPG"},
                    NameCase{"d-p/a.b.mov", "1.mp4", "a.b.MP4"}, NameCase{"d-p/a", ".png", "a.PNG"},
                    NameCase{"d-p.x/a", ".png", "a.PNG"}, NameCase{"noslash.gif", ".gif", "noslash.GIF"},
                    NameCase{"d-p/.hidden", ".gif", ".GIF"}, NameCase{"d-p/", ".gif", ".GIF"},
                    NameCase{"d-p/a.mov", "12.tar.gz", "a.TAR.GZ"}, NameCase{"d-p/a.mov", "none", "a.JPG"}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST(MediaOrder, IsAscendingAndIgnoresCase) {
  EXPECT_TRUE(CamVectorCmp({0, "A", u""}, {0, "b", u""}));
  EXPECT_FALSE(CamVectorCmp({0, "a", u""}, {0, "A", u""}));
  EXPECT_TRUE(AttVectorCmp({0, 0, "A", u""}, {0, 0, "b", u""}));
  EXPECT_FALSE(AttVectorCmp({0, 0, "a", u""}, {0, 0, "A", u""}));
  EXPECT_TRUE(WhatsAppAttVectorCmp({0, "A", u""}, {0, "b", u""}));
  EXPECT_FALSE(WhatsAppAttVectorCmp({0, "a", u""}, {0, "A", u""}));
}
