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

class WiredFileType : public FileType, public testing::WithParamInterface<FileHead> {};

class UnwiredFileType : public FileType, public testing::WithParamInterface<FileHead> {};

struct UnknownCase {
  const char* pszName;
  std::string strHead;
};

void PrintTo(const UnknownCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class UnknownFileType : public FileType, public testing::WithParamInterface<UnknownCase> {};

struct ExtensionCase {
  const char* pszExtension;
  int nType;
};

void PrintTo(const ExtensionCase& one, std::ostream* pStream) {
  *pStream << one.pszExtension;
}

class ExtensionType : public testing::TestWithParam<ExtensionCase> {};

const auto kHeadName = [](const testing::TestParamInfo<FileHead>& info) { return info.param.strName; };

}  // namespace

TEST_P(WiredFileType, NamesTheFileByTheFirstRowOfTheType) {
  const std::string strHead = Whole(GetParam());

  const int nType = CFileTypeJudge::GetDataBufType(strHead.data(), 512);
  const Answer answer = Judge(strHead);

  EXPECT_EQ(GetParam().nType, nType);
  EXPECT_EQ(Answer(0, "0."s + GetParam().pszExtension), answer);
}

INSTANTIATE_TEST_SUITE_P(Judge, WiredFileType, testing::ValuesIn(WiredHeads()), kHeadName);

TEST_P(UnwiredFileType, IsUnknown) {
  const std::string strHead = Whole(GetParam());

  const int nType = CFileTypeJudge::GetDataBufType(strHead.data(), 512);
  const Answer answer = Judge(strHead);

  EXPECT_EQ(kUnknown, nType);
  EXPECT_EQ(Answer(0, "old"), answer);
}

INSTANTIATE_TEST_SUITE_P(Judge, UnwiredFileType, testing::ValuesIn(UnwiredHeads()), kHeadName);

TEST_P(UnknownFileType, GivesNoName) {
  const Answer answer = Judge(Padded(GetParam().strHead));

  EXPECT_EQ(Answer(0, "old"), answer);
}

INSTANTIATE_TEST_SUITE_P(
    Judge, UnknownFileType,
    testing::Values(UnknownCase{"Zeros", ""}, UnknownCase{"PlainText", std::string(512, 'a')},
                    UnknownCase{"Mp4OfTheBrandM4V",
                                "\0\0\0\x20"
                                "ftypM4V \0\0\2\0isommp42"s},
                    UnknownCase{"HeifImage",
                                "\0\0\0\x18"
                                "ftypheic\0\0\0\0mif1heic"s},
                    UnknownCase{"QuickTimeThatBeginsWithMdat", "\0\0\1\0mdat"s},
                    UnknownCase{"QuickTimeThatBeginsWithWide", "\0\0\0\x08wide\0\0\1\0mdat"s},
                    UnknownCase{"QuickTimeWithTheMovieBehindItsSize", "\0\0\1\0moov"s},
                    UnknownCase{"JpegWithNeitherJfifNorExif", "\xFF\xD8\xFF\xDB\0\x43"s},
                    UnknownCase{"JpegWithAnAdobeSegment",
                                "\xFF\xD8\xFF\xEE\0\x0E"
                                "Adobe"s},
                    UnknownCase{"StandardMidi", "MThd\0\0\0\6\0\1\0\2\0\x60MTrk"s},
                    UnknownCase{"MpegPackWithoutASystemHeader", "\0\0\1\xBA\x44\0\4\0\4\1"s},
                    UnknownCase{"MpegPackWithALateSystemHeader",
                                "\0\0\1\xBA"s + std::string(25, '\0') + "\0\0\1\xBB"s},
                    UnknownCase{"Mp3WithoutATag", "\xFF\xFB\x90\x64"s},
                    UnknownCase{"WebPicture", "RIFF\0\1\0\0WEBPVP8 "s}),
    [](const testing::TestParamInfo<UnknownCase>& info) { return info.param.pszName; });

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

TEST_P(ExtensionType, IsThatOfItsRow) {
  const int nType = CFileTypeJudge::GetExtendNameType(GetParam().pszExtension);

  EXPECT_EQ(GetParam().nType, nType) << GetParam().pszExtension;
}

INSTANTIATE_TEST_SUITE_P(
    Judge, ExtensionType,
    testing::Values(ExtensionCase{"mpeg", 15}, ExtensionCase{"mpg", 15}, ExtensionCase{"vob", 15},
                    ExtensionCase{"mp4", 18}, ExtensionCase{"rmvb", 23}, ExtensionCase{"wmv", 24},
                    ExtensionCase{"wma", 24}, ExtensionCase{"avi", 22}, ExtensionCase{"3gp", 16},
                    ExtensionCase{"mp3", 12}, ExtensionCase{"mid", 13}, ExtensionCase{"wav", 21},
                    ExtensionCase{"mov", 17}, ExtensionCase{"gif", 31}, ExtensionCase{"bmp", 29},
                    ExtensionCase{"jpg", 10}, ExtensionCase{"jpeg", 10}, ExtensionCase{"jpe", 10},
                    ExtensionCase{"png", 30}, ExtensionCase{"ico", 46}, ExtensionCase{"JPE", 10},
                    ExtensionCase{"Mp4", 18}, ExtensionCase{"heic", kUnknown}, ExtensionCase{"", kUnknown},
                    ExtensionCase{"jp", kUnknown}, ExtensionCase{"jpgx", kUnknown},
                    ExtensionCase{".jpg", kUnknown}, ExtensionCase{"pdf", kUnknown}));
