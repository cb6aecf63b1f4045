// Damaged pictures, and paths that aren't regular files.

#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

const PictureCategory& Camera() {
  return kPictureCategories[0];
}

class PreviewDamage : public PreviewTest {
 protected:
  PreviewDamage() : m_strGood(WritePicture("good.png", {20, 30})) {}

  /// Shows a file, then a valid picture. @return the size shown for the file.
  QSize ShowThenGood(const std::string& strPath) {
    ShowFiles(Camera(), {strPath, m_strGood});
    const QSize shown = Shown(Camera());
    Table("m_pCameraTable")->selectRow(1);
    EXPECT_EQ(QSize(20, 30), Shown(Camera())) << "after " << strPath;
    return shown;
  }

  const std::string m_strGood;
};

TEST_F(PreviewDamage, SpecialFilesAreBlankAndNeverBlock) {
  const std::string strFolder = m_folder.MakeFolder("folder");
  const std::string strPipe = m_folder.Path("pipe.png");
  ASSERT_EQ(0, mkfifo(strPipe.c_str(), 0600));
  for (const char* pszTarget : {"/dev/zero", "/dev/random", "pipe.png", "folder", "nothing", "link.png"}) {
    const std::string strLink = m_folder.Path("link.png");
    unlink(strLink.c_str());
    ASSERT_EQ(0, symlink(pszTarget, strLink.c_str()));

    EXPECT_EQ(QSize(0, 0), ShowThenGood(strLink)) << pszTarget;
  }
  for (const std::string& strPath : {strFolder, strPipe, std::string("/dev/zero"), std::string("/"),
                                     std::string(":/image/photo.png/x"), m_folder.Path("missing")})
    EXPECT_EQ(QSize(0, 0), ShowThenGood(strPath)) << strPath;
}

TEST_F(PreviewDamage, ALinkToAPictureIsBlank) {
  const std::string strLink = m_folder.Path("link.png");
  ASSERT_EQ(0, symlink(WritePicture("target.png", {12, 34}).c_str(), strLink.c_str()));

  EXPECT_EQ(QSize(0, 0), ShowThenGood(strLink));
}

TEST_F(PreviewDamage, AFileWithoutRightsIsBlank) {
  if (geteuid() == 0) GTEST_SKIP() << "the administrator reads it all the same";
  const std::string strPath = WritePicture("locked.png", {12, 34});
  ASSERT_EQ(0, chmod(strPath.c_str(), 0));

  EXPECT_EQ(QSize(0, 0), ShowThenGood(strPath));
}

TEST_F(PreviewDamage, RandomBytesBehindTheHeadOfAPictureDoNoHarm) {
  ExpectQtWarning(".");  // the readers warn about damage
  std::minstd_rand random(11);
  const std::vector<std::string> heads = {
      std::string("\x89PNG\r\n\x1a\n", 8),
      std::string("\xff\xd8\xff\xe0\0\x10JFIF\0", 11),
      "GIF89a",
      "BM",
      "P6 ",
      "P3 10 10 255 ",
      std::string("\0\0\1\0\1\0", 6),
      "/* XPM */\n",
      "#define x_width 99\n#define x_height 99\nstatic char x_bits[] = {"};
  for (const std::string& strHead : heads) {
    for (int nTry = 0; nTry < 3; ++nTry) {
      std::string strBytes = strHead;
      for (int i = 0; i < 3000; ++i) strBytes += static_cast<char>(random());

      ShowThenGood(m_folder.Write("random", strBytes));
    }
  }
}

struct DamagedPicture {
  const char* pszName;
  const char* pszEnding;
  bool bWarns;  ///< whether its reader reports damage by a Qt warning
};

void PrintTo(const DamagedPicture& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class PreviewDamaged : public PreviewDamage, public testing::WithParamInterface<DamagedPicture> {
 protected:
  std::string Whole() {
    return ReadFile(WritePicture(std::string("whole") + GetParam().pszEnding, {90, 60}));
  }
  /// A picture that can't be decoded is blank; otherwise it has the size in its header.
  void ExpectBlankOrWhole(const std::string& strBytes, const std::string& strWhat) {
    const QSize shown = ShowThenGood(m_folder.Write(std::string("damaged") + GetParam().pszEnding, strBytes));
    EXPECT_TRUE(shown == QSize(0, 0) || shown == QSize(90, 60))
        << strWhat << ": " << shown.width() << " by " << shown.height();
  }
};

TEST_P(PreviewDamaged, CutShortAtAnyPlaceDoesNoHarm) {
  if (GetParam().bWarns) ExpectQtWarning(".");
  const std::string strWhole = Whole();
  for (const size_t nSize :
       {size_t(1), size_t(2), size_t(8), size_t(20), strWhole.size() / 4, strWhole.size() / 2,
        strWhole.size() - 40, strWhole.size() - 2, strWhole.size() - 1})
    ExpectBlankOrWhole(strWhole.substr(0, nSize), std::to_string(nSize) + " bytes");
}

TEST_P(PreviewDamaged, FlippedBytesInTheBodyDoNoHarm) {
  if (GetParam().bWarns) ExpectQtWarning(".");
  const std::string strWhole = Whole();
  std::minstd_rand random(5);
  for (int nTry = 0; nTry < 12; ++nTry) {
    std::string strBytes = strWhole;
    const size_t nBody = strWhole.size() / 3;
    for (int i = 0; i < 9; ++i) strBytes[nBody + random() % (strBytes.size() - nBody)] ^= '\x55';

    ExpectBlankOrWhole(strBytes, "try " + std::to_string(nTry));
  }
}

INSTANTIATE_TEST_SUITE_P(Of, PreviewDamaged,
                         testing::Values(DamagedPicture{"Png", ".png", false},
                                         DamagedPicture{"Jpeg", ".jpg", true},
                                         DamagedPicture{"Bmp", ".bmp", false}),
                         NameOf<DamagedPicture>);

}  // namespace
