#include "extract/file_type.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "tests/extract/file_heads.h"
#include "tests/support.h"

using namespace orvandel;

using namespace std::string_literals;

namespace {

constexpr int kUnknown = CFileTypeJudge::kUnknown;
const std::string kPng = "\x89PNG\r\n\x1A\n"s;

std::string Padded(std::string strHead, size_t nSize = 512) {
  strHead.resize(nSize, '\0');
  return strHead;
}

class FileType : public testing::Test {
 protected:
  /// Detects the type of a file with these bytes; the output is "old" before.
  std::pair<int, std::string> Judge(const std::string& strBytes) {
    std::string strOutput = "old";
    const int nStatus = m_judge.ParseFileBuf(m_folder.Write("hashed", strBytes).c_str(), strOutput);
    return {nStatus, strOutput};
  }

  TemporaryFolder m_folder;
  CFileTypeJudge m_judge;
};

using Answer = std::pair<int, std::string>;

using WiredFileType = FileType;
using UnwiredFileType = FileType;
struct UnknownCase {
  const char* pszName;
  std::string strHead;
};

using UnknownFileType = FileType;

struct ExtensionCase {
  const char* pszExtension;
  int nType;
};

const ExtensionCase kExtensions[] = {
    {"mpeg", 15},       {"mpg", 15},        {"vob", 15},        {"mp4", 18},    {"rmvb", 23},
    {"wmv", 24},        {"wma", 24},        {"avi", 22},        {"3gp", 16},    {"mp3", 12},
    {"mid", 13},        {"wav", 21},        {"mov", 17},        {"gif", 31},    {"bmp", 29},
    {"jpg", 10},        {"jpeg", 10},       {"jpe", 10},        {"png", 30},    {"ico", 46},
    {"JPE", 10},        {"Mp4", 18},        {"heic", kUnknown}, {"", kUnknown}, {"jp", kUnknown},
    {"jpgx", kUnknown}, {".jpg", kUnknown}, {"pdf", kUnknown}};

const UnknownCase kUnknownHeads[] = {
    {"Zeros", ""},
    {"PlainText", std::string(512, 'a')},
    {"Mp4OfTheBrandM4V",
     "\0\0\0\x20"
     "ftypM4V \0\0\2\0isommp42"s},
    {"HeifImage",
     "\0\0\0\x18"
     "ftypheic\0\0\0\0mif1heic"s},
    {"QuickTimeThatBeginsWithMdat", "\0\0\1\0mdat"s},
    {"QuickTimeThatBeginsWithWide", "\0\0\0\x08wide\0\0\1\0mdat"s},
    {"QuickTimeWithTheMovieBehindItsSize", "\0\0\1\0moov"s},
    {"JpegWithNeitherJfifNorExif", "\xFF\xD8\xFF\xDB\0\x43"s},
    {"JpegWithAnAdobeSegment",
     "\xFF\xD8\xFF\xEE\0\x0E"
     "Adobe"s},
    {"StandardMidi", "MThd\0\0\0\6\0\1\0\2\0\x60MTrk"s},
    {"MpegPackWithoutASystemHeader", "\0\0\1\xBA\x44\0\4\0\4\1"s},
    {"MpegPackWithALateSystemHeader", "\0\0\1\xBA"s + std::string(25, '\0') + "\0\0\1\xBB"s},
    {"Mp3WithoutATag", "\xFF\xFB\x90\x64"s},
    {"WebPicture", "RIFF\0\1\0\0WEBPVP8 "s}};

}  // namespace

TEST_F(WiredFileType, NamesTheFileByTheFirstRowOfTheType) {
  for (const FileHead& row : WiredHeads()) {
    SCOPED_TRACE(row.strName);
    m_judge = {};
    const std::string strHead = Whole(row);

    const int nType = CFileTypeJudge::GetDataBufType(strHead.data(), 512);
    const Answer answer = Judge(strHead);

    EXPECT_EQ(row.nType, nType);
    EXPECT_EQ(Answer(0, "0."s + row.pszExtension), answer);
  }
}

TEST_F(UnwiredFileType, IsUnknown) {
  for (const FileHead& row : UnwiredHeads()) {
    SCOPED_TRACE(row.strName);
    const std::string strHead = Whole(row);

    const int nType = CFileTypeJudge::GetDataBufType(strHead.data(), 512);
    const Answer answer = Judge(strHead);

    EXPECT_EQ(kUnknown, nType);
    EXPECT_EQ(Answer(0, "old"), answer);
  }
}

TEST_F(UnknownFileType, GivesNoName) {
  for (const UnknownCase& row : kUnknownHeads) {
    SCOPED_TRACE(row.pszName);
    const Answer answer = Judge(Padded(row.strHead));

    EXPECT_EQ(Answer(0, "old"), answer);
  }
}

TEST_F(FileType, MidiWithItsHeaderLengthTurnedRoundIsKnown) {
  const Answer answer = Judge(Padded("MThd\6\0\0\0\0\1\0\2\0\x60MTrk"s));

  EXPECT_EQ(Answer(0, "0.mid"), answer);
}

TEST_F(FileType, FileOf511BytesIsTooShortWhateverItHolds) {
  const Answer answer = Judge(Padded(kPng, 511));

  EXPECT_EQ(Answer(30, "old"), answer);
}

TEST_F(FileType, FileOf512BytesIsJudged) {
  const Answer answer = Judge(Padded(kPng, 512));

  EXPECT_EQ(Answer(0, "0.png"), answer);
}

TEST_F(FileType, LongFileIsJudgedByItsHead) {
  const Answer answer = Judge(Padded(kPng, 200000));

  EXPECT_EQ(Answer(0, "0.png"), answer);
}

TEST_F(FileType, EmptyFileIsTooShort) {
  const Answer answer = Judge("");

  EXPECT_EQ(Answer(30, "old"), answer);
}

TEST_F(FileType, MissingFileGivesTheReason) {
  std::string strOutput = "old";

  const int nStatus = m_judge.ParseFileBuf(m_folder.Path("missing").c_str(), strOutput);

  EXPECT_EQ(ENOENT, nStatus);
  EXPECT_EQ("old", strOutput);
}

TEST_F(FileType, FileBelowAFileGivesItsOwnReason) {
  m_folder.Write("file", "");
  std::string strOutput = "old";

  const int nStatus = m_judge.ParseFileBuf(m_folder.Path("file/below").c_str(), strOutput);

  EXPECT_EQ(ENOTDIR, nStatus);
  EXPECT_EQ("old", strOutput);
}

TEST_F(FileType, NumberRisesWithEachNamedFileOnly) {
  const Answer first = Judge(Padded(kPng));
  const Answer unknown = Judge(Padded("text"));
  const Answer tooShort = Judge(kPng);
  const Answer second = Judge(Padded("moov"));
  const Answer third = Judge(Padded(kPng));

  EXPECT_EQ(Answer(0, "0.png"), first);
  EXPECT_EQ(Answer(0, "old"), unknown);
  EXPECT_EQ(Answer(30, "old"), tooShort);
  EXPECT_EQ(Answer(0, "1.mov"), second);
  EXPECT_EQ(Answer(0, "2.png"), third);
}

TEST_F(FileType, EachObjectCountsFromZero) {
  Judge(Padded(kPng));
  CFileTypeJudge other;
  std::string strOutput;

  other.ParseFileBuf(m_folder.Path("hashed").c_str(), strOutput);

  EXPECT_EQ("0.png", strOutput);
}

TEST_F(FileType, HeadInMemoryIsNamedInWideTextWithTheSameNumbers) {
  Judge(Padded(kPng));
  std::wstring wstrOutput;

  const int nStatus = m_judge.ParseFileBuf(kPng.data(), static_cast<uint32_t>(kPng.size()), wstrOutput);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(L"1.png", wstrOutput);
  EXPECT_EQ(Answer(0, "2.png"), Judge(Padded(kPng)));
}

TEST_F(FileType, UnknownHeadInMemoryLeavesTheTextAlone) {
  const std::string strHead = Padded("text");
  std::wstring wstrOutput = L"old";

  const int nStatus = m_judge.ParseFileBuf(strHead.data(), 512, wstrOutput);
  const int nStatusOfNull = m_judge.ParseFileBuf(nullptr, 512, wstrOutput);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0, nStatusOfNull);
  EXPECT_EQ(L"old", wstrOutput);
  EXPECT_EQ(kUnknown, CFileTypeJudge::GetDataBufType(nullptr, 512));
}

TEST(ExtensionType, IsThatOfItsRow) {
  for (const ExtensionCase& row : kExtensions) {
    SCOPED_TRACE(row.pszExtension);
    const int nType = CFileTypeJudge::GetExtendNameType(row.pszExtension);

    EXPECT_EQ(row.nType, nType) << row.pszExtension;
  }
}
