// Notes, calls and photos in samples of each version.
#include <gmock/gmock.h>

#include <QProcess>
#include <filesystem>

#include "tests/sample/written_sample.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// What gzip makes of a file.
std::string Unzipped(const std::string& strBytes) {
  QProcess process;
  process.start("gzip", {"-dc"});
  process.write(strBytes.data(), static_cast<qint64>(strBytes.size()));
  process.closeWriteChannel();
  EXPECT_TRUE(process.waitForFinished());
  EXPECT_EQ(0, process.exitCode()) << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput().toStdString();
}

uint64_t Varint(const std::string& strBytes, size_t& nPlace) {
  uint64_t nValue = 0;
  for (int nShift = 0; nPlace < strBytes.size(); nShift += 7) {
    const auto nByte = static_cast<unsigned char>(strBytes[nPlace++]);
    nValue |= static_cast<uint64_t>(nByte & 0x7F) << nShift;
    if (nByte < 0x80) return nValue;
  }
  ADD_FAILURE() << "a number without end";
  return 0;
}

/// The bytes of the first field with a number in a protocol buffer.
std::string Field(const std::string& strBytes, uint64_t nField) {
  for (size_t nPlace = 0; nPlace < strBytes.size();) {
    const uint64_t nKey = Varint(strBytes, nPlace), nValue = Varint(strBytes, nPlace);
    if ((nKey & 7) != 2) continue;
    if (nKey >> 3 == nField) return strBytes.substr(nPlace, nValue);
    nPlace += nValue;
  }
  ADD_FAILURE() << "no field " << nField;
  return {};
}

Rows Notes(const WrittenSample& sample, const std::string& strStatement) {
  return RowsOf(sample.StoreOf(store_places::notesCloud()), strStatement);
}

/// Names of the photos in HEIC, and their files.
std::map<std::string, std::string> HeicOf(const WrittenSample& sample) {
  std::map<std::string, std::string> files;
  for (int i = 2010; i < 2020; ++i) {
    const std::string strPath = "Media/DCIM/102APPLE/IMG_" + std::to_string(i) + ".HEIC";
    const std::string strFile = sample.FileOf("CameraRollDomain", strPath);
    if (Exists(strFile)) files[strPath] = ReadFile(strFile);
  }
  return files;
}

}  // namespace

TEST(NotesSample, HasCompressedBodies) {
  for (const int nIos : {9, 12, 15, 18}) {
    const WrittenSample sample(nIos);
    const Rows notes =
        Notes(sample,
              "select ZTITLE1, ZSNIPPET, ZDATA from ZICCLOUDSYNCINGOBJECT n join ZICNOTEDATA d on "
              "d.Z_PK = n.ZNOTEDATA and d.ZNOTE = n.Z_PK");

    EXPECT_THAT(notes, SizeIs(sample.Summary().notes));
    for (const auto& row : notes) {
      const std::string strText = Field(Field(Field(Unzipped(row[2]), 2), 3), 2);
      const std::string strTitle = row[0] == "(null)" ? "" : row[0],
                        strSnippet = row[1] == "(null)" ? "" : row[1];
      EXPECT_EQ(0u, strText.find(strTitle + "\n" + strSnippet)) << strText;
    }
  }
}

TEST(NotesSample, DatesAreInTheColumnsOfTheVersion) {
  const std::string strColumns = "select name from pragma_table_info('ZICCLOUDSYNCINGOBJECT') where name = ";
  const WrittenSample old(14), current(15);

  EXPECT_THAT(Notes(old, strColumns + "'ZCREATIONDATE3'"), IsEmpty());
  EXPECT_THAT(Notes(old, "select 1 from ZICCLOUDSYNCINGOBJECT where ZCREATIONDATE1 > 0"), SizeIs(14));
  EXPECT_THAT(Notes(current, strColumns + "'ZCREATIONDATE1'"), SizeIs(1));
  EXPECT_THAT(Notes(current, "select 1 from ZICCLOUDSYNCINGOBJECT where ZCREATIONDATE3 > 0"), SizeIs(14));
}

TEST(NotesSample, EarlyVersionsHaveTheEarlyStore) {
  const WrittenSample sample(8);

  EXPECT_FALSE(Exists(sample.StoreOf(store_places::notesCloud())));
  EXPECT_THAT(RowsOf(sample.StoreOf(store_places::notes()), "select ZTITLE from ZNOTE"), SizeIs(15));
}

TEST(CallSample, IsInThePlaceAndTableOfItsVersion) {
  const std::string strCount = "select count(*) from ";
  const WrittenSample early(7), current(8);

  EXPECT_THAT(RowsOf(early.StoreOf(store_places::callsFallback()), strCount + "call where date > 1388000000"),
              ElementsAre(ElementsAre("60")));
  EXPECT_FALSE(Exists(early.StoreOf(store_places::calls())));
  EXPECT_THAT(RowsOf(current.StoreOf(store_places::calls()), strCount + "ZCALLRECORD"),
              ElementsAre(ElementsAre("60")));
  EXPECT_FALSE(Exists(current.StoreOf(store_places::callsFallback())));
}

TEST(PhotoSample, HasHeicFromItsFirstVersionOn) {
  EXPECT_THAT(HeicOf(WrittenSample(10)), IsEmpty());
  EXPECT_THAT(HeicOf(WrittenSample(0)), IsEmpty());
  for (const int nIos : {11, 18}) {
    const auto files = HeicOf(WrittenSample(nIos));
    std::set<std::string> contents;
    EXPECT_THAT(files, SizeIs(4));
    for (const auto& [strPath, strBytes] : files) {
      EXPECT_EQ("ftypheic", strBytes.substr(4, 8)) << strPath;
      EXPECT_GE(strBytes.size(), 512u);
      contents.insert(strBytes);
      // Boxes up to the end.
      size_t nPlace = 0;
      while (nPlace + 8 <= strBytes.size()) {
        uint32_t nSize = 0;
        for (size_t i = 0; i < 4; ++i) nSize = nSize << 8 | static_cast<unsigned char>(strBytes[nPlace + i]);
        ASSERT_GE(nSize, 8u);
        nPlace += nSize;
      }
      EXPECT_EQ(strBytes.size(), nPlace);
    }
    EXPECT_THAT(contents, SizeIs(4));
  }
}

TEST(OmittedFiles, LeaveNoEntryWithoutItsFile) {
  for (const int nIos : {0, 9, 17}) {
    DemoOptions options = OptionsOf(nIos);
    options.omitFiles = true;
    options.entries = 600;
    const WrittenSample sample(options);
    size_t nFiles = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sample.Path()))
      nFiles += entry.is_regular_file();

    EXPECT_EQ(600, sample.Summary().entries);
    if (options.layout == BackupBuilder::Layout::Mbdb) {
      // Info, manifests and status; 14 folders and links are entries without a file.
      EXPECT_EQ(600u - 15 + 4, nFiles);
      continue;
    }
    for (const auto& row :
         RowsOf(sample.Path("Manifest.db"), "select fileID, relativePath from Files where flags = 1"))
      EXPECT_TRUE(Exists(sample.Path(row[0].substr(0, 2) + "/" + row[0]))) << row[1];
    EXPECT_THAT(RowsOf(sample.Path("Manifest.db"), "select 1 from Files where flags = 1"),
                SizeIs(nFiles - 4));
  }
}

TEST(OmittedFiles, AreEntriesWithoutTheOption) {
  const WrittenSample sample(17);
  size_t nMissing = 0;

  for (const auto& row : RowsOf(sample.Path("Manifest.db"), "select fileID from Files where flags = 1"))
    nMissing += !Exists(sample.Path(row[0].substr(0, 2) + "/" + row[0]));

  EXPECT_EQ(7u, nMissing);
}
