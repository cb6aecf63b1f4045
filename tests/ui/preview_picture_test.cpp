// The previews above the tables of the six file categories.
#include <unistd.h>

#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

class PreviewPicture : public PreviewTest, public testing::WithParamInterface<PictureCategory> {
 protected:
  bool HasLargeArea() const { return GetParam().area == QSize(750, 300); }
  QTableWidget* Rows() { return Table(GetParam().pszTable); }
};

TEST_P(PreviewPicture, UpTo700WideIsUnscaled) {
  for (const QSize& size :
       {QSize(700, 1000), QSize(700, 20), QSize(500, 2000), QSize(699, 301), QSize(1, 1)}) {
    const std::string strPath = WritePicture("picture.png", size);

    EXPECT_EQ(size, ShowFile(GetParam(), strPath));

    EXPECT_EQ(QImage(QString::fromStdString(strPath)).convertToFormat(QImage::Format_RGB32),
              Picture(GetParam()));
  }
}

TEST_P(PreviewPicture, WiderIsScaledIntoTheArea) {
  struct Case {
    QSize size, large, small;
  };
  const std::vector<Case> cases = {
      {{701, 1000}, {210, 300}, {140, 200}}, {{1500, 600}, {750, 300}, {500, 200}},
      {{3000, 300}, {750, 75}, {700, 70}},   {{1400, 400}, {750, 214}, {700, 200}},
      {{701, 10}, {750, 10}, {700, 9}},  // the area is wider, so the picture may be enlarged
      {{800, 8000}, {30, 300}, {20, 200}},
  };
  for (const Case& one : cases) {
    const QSize& expected = HasLargeArea() ? one.large : one.small;

    EXPECT_EQ(expected, ShowFile(GetParam(), WritePicture("picture.png", one.size)))
        << one.size.width() << " by " << one.size.height();
  }
}

TEST_P(PreviewPicture, ScalingTakesSinglePixelsAndMixesNone) {
  for (const char* pszName : {"picture.png", "picture.jpg"}) {
    for (const QSize& size : {QSize(701, 701), QSize(1999, 640)}) {
      const std::string strPath = WritePicture(pszName, size);
      const QImage expected = QImage(QString::fromStdString(strPath))
                                  .scaled(GetParam().area, Qt::KeepAspectRatio, Qt::FastTransformation);

      ShowFile(GetParam(), strPath);

      EXPECT_EQ(expected.convertToFormat(QImage::Format_RGB32), Picture(GetParam()))
          << pszName << " " << size.width();
    }
  }
}

TEST_P(PreviewPicture, LabelKeepsItsSizeAndCentresWhatItShows) {
  const std::vector<std::string> paths = {
      WritePicture("small.png", {10, 10}), WritePicture("tall.png", {500, 2000}),
      WritePicture("wide.png", {3000, 300}), m_folder.Path("missing.png")};
  ShowFiles(GetParam(), paths);
  QLabel* pLabel = Preview(GetParam());
  for (int nRow = 0; nRow < 4; ++nRow) {
    Rows()->selectRow(nRow == 0 ? 3 : 0);
    pLabel->setAlignment(Qt::AlignLeft);
    Rows()->selectRow(nRow);
    QCoreApplication::processEvents();

    EXPECT_EQ(GetParam().labelSize, pLabel->size()) << paths[static_cast<size_t>(nRow)];
    EXPECT_EQ(GetParam().labelSize, pLabel->minimumSize());
    EXPECT_EQ(GetParam().labelSize, pLabel->maximumSize());
    if (nRow != 2) {  // the alignment isn't set for a scaled one
      EXPECT_EQ(Qt::AlignCenter, pLabel->alignment()) << paths[static_cast<size_t>(nRow)];
    }
  }
}

TEST_P(PreviewPicture, AFileThatIsNotAPictureBlanksTheLabel) {
  const std::string strPicture = WritePicture("picture.png", {20, 30});
  const std::string strLink = m_folder.Path("link.png");
  ASSERT_EQ(0, symlink(strPicture.c_str(), strLink.c_str()));
  const std::vector<std::string> others = {
      strLink,
      m_folder.Write("text.txt", "only a text"),
      m_folder.Write("video.mov", std::string("\0\0\0\x14"
                                              "ftypqt  \0\0\0\0qt  \0\0\0\x08mdat",
                                              28)),
      m_folder.Write("text.png", "a text by a picture's name"),
      m_folder.Write("empty.jpg", ""),
      m_folder.MakeFolder("folder.png"),
      m_folder.Path("missing.png"),
      "",
      m_folder.Write("drawing.svg",
                     "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect "
                     "width='9' height='9'/></svg>"),
  };
  std::vector<std::string> paths = {strPicture};
  paths.insert(paths.end(), others.begin(), others.end());
  ShowFiles(GetParam(), paths);
  for (int nRow = 1; nRow < static_cast<int>(paths.size()); ++nRow) {
    Rows()->selectRow(0);
    ASSERT_EQ(QSize(20, 30), Shown(GetParam()));

    Rows()->selectRow(nRow);

    EXPECT_EQ(QSize(0, 0), Shown(GetParam())) << paths[static_cast<size_t>(nRow)];
    EXPECT_EQ("", TextOf(Preview(GetParam())));
  }
}

TEST_P(PreviewPicture, TheFormatIsDetectedByContentRatherThanName) {
  const std::vector<std::string> paths = {
      m_folder.Write("png.mov", ReadFile(WritePicture("a.png", {10, 11}))),
      m_folder.Write("jpeg.png", ReadFile(WritePicture("b.jpg", {12, 13}))),
      m_folder.Write("bmp", ReadFile(WritePicture("c.bmp", {14, 15}))),
      m_folder.Write("K\xc3\xb6nig \xe2\x82\xac.jpg", ReadFile(WritePicture("d.png", {16, 17}))),
  };
  ShowFiles(GetParam(), paths);

  std::vector<QSize> sizes;
  for (int nRow = 0; nRow < 4; ++nRow) {
    Rows()->selectRow(nRow);
    sizes.push_back(Shown(GetParam()));
  }

  EXPECT_EQ(std::vector<QSize>({{10, 11}, {12, 13}, {14, 15}, {16, 17}}), sizes);
}

TEST_P(PreviewPicture, TheFirstRowIsPreviewedWhenThePageIsShown) {
  ShowFiles(GetParam(), {WritePicture("a.png", {10, 11}), WritePicture("b.png", {20, 21})});

  EXPECT_EQ(QSize(10, 11), Shown(GetParam()));

  EXPECT_TRUE(Rows()->selectedItems().isEmpty());
  EXPECT_TRUE(Preview(GetParam())->isVisible());
}

TEST_P(PreviewPicture, FollowsTheSelectionByMouseAndByKeys) {
  ShowFiles(GetParam(), {WritePicture("a.png", {10, 11}), WritePicture("b.png", {20, 21}),
                         WritePicture("c.png", {30, 31})});

  ClickRow(Rows(), 2);
  EXPECT_EQ(QSize(30, 31), Shown(GetParam()));
  ClickRow(Rows(), 1, 1);
  EXPECT_EQ(QSize(20, 21), Shown(GetParam()));
  PressKey(Rows(), Qt::Key_Up);
  EXPECT_EQ(QSize(10, 11), Shown(GetParam()));
  PressKey(Rows(), Qt::Key_Down);
  PressKey(Rows(), Qt::Key_Down);
  EXPECT_EQ(QSize(30, 31), Shown(GetParam()));
}

TEST_P(PreviewPicture, WithoutASelectedRowKeepsWhatItShows) {
  ShowFiles(GetParam(), {WritePicture("a.png", {10, 11}), WritePicture("b.png", {20, 21})});
  ClickRow(Rows(), 1);

  Rows()->clearSelection();

  EXPECT_EQ(QSize(20, 21), Shown(GetParam()));
}

TEST_P(PreviewPicture, FilledWithoutBeingShownPreviewsNothing) {
  OpenDataScreen();
  PutFiles(GetParam(), {WritePicture("a.png", {10, 11})});

  SetNode(GetParam().nNumber, kTicked);

  EXPECT_EQ(QSize(0, 0), Shown(GetParam()));
}

TEST_P(PreviewPicture, AnEmptyCategoryKeepsTheLabelBlank) {
  OpenDataScreen();

  ClickNode(GetParam().nNumber);

  EXPECT_EQ(QSize(0, 0), Shown(GetParam()));
}

TEST_P(PreviewPicture, NoOtherLabelChanges) {
  ShowFiles(GetParam(), {WritePicture("a.png", {10, 11})});

  for (const PictureCategory& other : kPictureCategories) {
    if (std::string(other.pszLabel) == GetParam().pszLabel) continue;
    EXPECT_EQ(QSize(0, 0), Shown(other)) << other.pszName;
  }
}

// Pictures of up to eight million pixels are decoded at full size in every format.
class PreviewLargestWhole : public PreviewTest, public testing::WithParamInterface<const char*> {};

TEST_P(PreviewLargestWhole, IsScaledBySinglePixelsToo) {
  const std::string strPath = WritePicture(GetParam(), {4000, 2000});
  const QImage expected = QImage(QString::fromStdString(strPath))
                              .scaled(750, 300, Qt::KeepAspectRatio, Qt::FastTransformation)
                              .convertToFormat(QImage::Format_RGB32);

  EXPECT_EQ(QSize(600, 300), ShowFile(kPictureCategories[0], strPath));

  EXPECT_EQ(expected, Picture(kPictureCategories[0]));
}

INSTANTIATE_TEST_SUITE_P(Of, PreviewLargestWhole,
                         testing::Values("picture.png", "picture.jpg", "picture.bmp"));

INSTANTIATE_TEST_SUITE_P(Of, PreviewPicture, testing::ValuesIn(kPictureCategories), NameOf<PictureCategory>);

}  // namespace
