#include "extract/unknown_media.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "common/text.h"
#include "extract/app_files.h"
#include "sample/pictures.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

const std::string kRoll = "CameraRollDomain-Media/DCIM/100APPLE/";
const std::string kStream = "MediaDomain-Media/PhotoStreamsData/1/";
const std::string kAttached = "MediaDomain-Library/SMS/Attachments/00/";
const std::string kApp = "AppDomain-com.example.Snap-Documents/";
const std::string kWhatsApp = "AppDomain-net.whatsapp.WhatsApp-Library/";

class UnknownMediaTest : public testing::Test {
 protected:
  UnknownMediaTest() { m_layout.qstrRoot = FromNarrow(m_folder.Path("backup")); }

  /// Adds an entry with a file. @return the path of the file.
  std::string Add(const std::string& strName, const std::string& strContent = std::string(600, 'x')) {
    const std::string strPath = AddEntry(strName);
    WriteFile(strPath, strContent);
    return strPath;
  }
  std::string AddEntry(const std::string& strName) {
    m_catalogue.push_back({strName, "aa" + std::to_string(m_catalogue.size())});
    return ToNarrow(m_layout.PathOf(m_catalogue.back().strFileId));
  }

  /// Makes all walks, with or without a collector.
  void Walk(UnknownMedia* pUnknown) {
    WalkCameraFiles(m_catalogue, m_layout, {}, m_camera, m_stream, pUnknown);
    WalkMsgAttachments(m_catalogue, m_layout, {}, m_attachments, pUnknown);
    WalkAppFiles(m_catalogue, m_layout, {}, m_files, m_whatsApp, pUnknown);
  }
  std::map<std::string, uint64_t> Counts(UnknownMedia::IsWanted isWanted = {}) {
    UnknownMedia unknown(std::move(isWanted));
    Walk(&unknown);
    return unknown.Counts();
  }

  TemporaryFolder m_folder;
  BackupLayout m_layout;
  Catalogue m_catalogue;
  std::vector<_IPHONE_CAMERA_INFO_> m_camera, m_stream;
  std::vector<_IPHONE_ATTACHMENTS_> m_attachments;
  std::vector<_IPHONE_APP_FILE_INFO_> m_files;
  std::vector<_WHATSAPP_ATTACHMENTS_> m_whatsApp;
};

struct NameCase {
  const char* pszTitle;
  std::string strName;
  const char* pszExtension;  ///< null when it isn't counted
};

void PrintTo(const NameCase& name, std::ostream* pStream) {
  *pStream << name.pszTitle;
}

class UnknownMediaNames : public UnknownMediaTest, public testing::WithParamInterface<NameCase> {};

}  // namespace

TEST_F(UnknownMediaTest, CountsFilesOfAllListsByExtension) {
  Add(kRoll + "IMG_1.HEIC");
  Add(kRoll + "IMG_2.heic");
  Add(kStream + "IMG_3.DNG");
  Add(kAttached + "a.webp");
  Add(kApp + "b.Webm");
  Add(kWhatsApp + "c.HEVC");

  EXPECT_THAT(Counts(), ElementsAre(Pair("DNG", 1), Pair("HEIC", 2), Pair("HEVC", 1), Pair("WEBM", 1),
                                    Pair("WEBP", 1)));
}

TEST_F(UnknownMediaTest, DoesNotCountAFileOfKnownType) {
  Add(kRoll + "IMG_1.HEIC", sample_media::jpeg(1, 64, 48).toStdString());

  EXPECT_THAT(Counts(), IsEmpty());
  EXPECT_EQ(1u, m_camera.size());
}

TEST_F(UnknownMediaTest, DoesNotCountWhatIsMissingOrCannotBeRead) {
  AddEntry(kRoll + "IMG_1.HEIC");
  const std::string strLink = AddEntry(kRoll + "IMG_2.HEIC");
  m_folder.MakeFolder("backup");
  ASSERT_EQ(0, symlink("/etc/hostname", strLink.c_str()));
  m_folder.MakeFolder("backup/aa2");
  AddEntry(kRoll + "IMG_3.HEIC");

  EXPECT_THAT(Counts(), IsEmpty());
}

TEST_F(UnknownMediaTest, CountsAShortFileOnlyIfItsTypeIsNeverDetected) {
  Add(kApp + "icon.png", sample_media::png(1, 2, 2).toStdString().substr(0, 100));
  Add(kRoll + "empty.JPG", "");
  Add(kRoll + "IMG_1.HEIC", "short");

  EXPECT_THAT(Counts(), ElementsAre(Pair("HEIC", 1)));
}

TEST_F(UnknownMediaTest, CountsAFileOnceThatTwoWalksExamine) {
  Add("AppDomain-com.example.Snap-Documents/Attachments/a.HEIC");
  Add("AppDomain-com.example.Snap-CameraRollDomain-Media/DCIM/Attachments/b.HEIC");

  EXPECT_THAT(Counts(), ElementsAre(Pair("HEIC", 2)));
}

TEST_F(UnknownMediaTest, CountsAFileInAListThatIsWantedThoughAnotherIsNot) {
  Add("AppDomain-com.example.Snap-Documents/Attachments/a.HEIC");

  EXPECT_THAT(Counts([](MediaList list, bool) { return list == MediaList::AppFiles; }),
              ElementsAre(Pair("HEIC", 1)));
  EXPECT_THAT(Counts([](MediaList list, bool) { return list == MediaList::CameraRoll; }), IsEmpty());
}

TEST_F(UnknownMediaTest, TellsPicturesFromVideos) {
  Add(kApp + "a.HEIC");
  Add(kApp + "b.WEBM");

  EXPECT_THAT(Counts([](MediaList, bool bVideo) { return bVideo; }), ElementsAre(Pair("WEBM", 1)));
  EXPECT_THAT(Counts([](MediaList, bool bVideo) { return !bVideo; }), ElementsAre(Pair("HEIC", 1)));
}

TEST_F(UnknownMediaTest, CountsFilesOfALargeCatalogue) {
  const std::string strContent(600, 'x');
  for (int i = 0; i < 1500; ++i) Add(kRoll + "IMG_" + std::to_string(i) + ".HEIC", strContent);

  EXPECT_THAT(Counts(), ElementsAre(Pair("HEIC", 1500)));
}

TEST_F(UnknownMediaTest, WalksWithoutACollectorFindTheSameFiles) {
  Add(kRoll + "IMG_1.HEIC");
  Add(kRoll + "IMG_2.JPG", sample_media::jpeg(1, 64, 48).toStdString());

  Walk(nullptr);

  EXPECT_EQ(1u, m_camera.size());
}

TEST_P(UnknownMediaNames, AreCountedByTheirExtension) {
  Add(kRoll + GetParam().strName);

  if (GetParam().pszExtension)
    EXPECT_THAT(Counts(), ElementsAre(Pair(GetParam().pszExtension, 1)));
  else
    EXPECT_THAT(Counts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Names, UnknownMediaNames,
    testing::Values(NameCase{"Mixed", "a.hEiC", "HEIC"}, NameCase{"LastDot", "a.txt.HEIC", "HEIC"},
                    NameCase{"NameIsExtension", ".HEIC", "HEIC"}, NameCase{"None", "HEIC", nullptr},
                    NameCase{"Empty", "a.", nullptr}, NameCase{"OfTheFolder", "a.HEIC/b", nullptr},
                    NameCase{"SideFile", "IMG_1.AAE", nullptr}, NameCase{"Thumbnail", "IMG_1.THM", nullptr},
                    NameCase{"List", "a.plist", nullptr}, NameCase{"Control", "a.HE\x1B[", nullptr},
                    NameCase{"TrailingControl", "a.HEIC\n", nullptr},
                    NameCase{"Long", "a." + std::string(300, 'H'), nullptr},
                    NameCase{"LongName", std::string(300, 'n') + ".HEIC", "HEIC"},
                    NameCase{"Zero", std::string("a.HEI\0C", 7), nullptr}),
    [](const auto& info) { return std::string(info.param.pszTitle); });
