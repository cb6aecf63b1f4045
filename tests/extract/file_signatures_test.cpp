#include <gmock/gmock.h>

#include "tests/extract/file_heads.h"

using namespace orvandel;
using testing::AnyOf;

namespace {

constexpr int kUnknown = CFileTypeJudge::kUnknown;

class TypeTest : public testing::TestWithParam<FileHead> {
 protected:
  /// The result for the first bytes of a head, in a buffer of exactly that size.
  static int Judge(const std::string& strHead, uint32_t nLength) {
    const std::vector<char> bytes(strHead.begin(), strHead.begin() + nLength);
    return GetParam().pfnTest(bytes.data(), nLength);
  }

  static std::string Changed(ByteChange change) {
    std::string strHead = Whole(GetParam());
    strHead[change.nOffset] = static_cast<char>(change.nByte);
    return strHead;
  }
};

struct ProgramCase {
  const char* pszName;
  uint32_t nOffset;  // of "PE"
  uint16_t nFlags;
  int nType;
};

void PrintTo(const ProgramCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ProgramType : public testing::TestWithParam<ProgramCase> {
 protected:
  static std::string Head(uint32_t nOffset, uint16_t nFlags) {
    std::string strHead(512, '\0');
    strHead.replace(0, 2, "MZ");
    for (int i = 0; i < 4; ++i) strHead[60 + i] = static_cast<char>(nOffset >> (8 * i));
    if (nOffset + 24 <= 512) {
      strHead.replace(nOffset, 2, "PE");
      strHead[nOffset + 22] = static_cast<char>(nFlags);
      strHead[nOffset + 23] = static_cast<char>(nFlags >> 8);
    }
    return strHead;
  }
};

int JudgeProgram(const std::string& strHead) {
  return CFileTypeJudge::IsPeType(strHead.data(), static_cast<uint32_t>(strHead.size()));
}

}  // namespace

TEST_P(TypeTest, AcceptsItsHead) {
  const std::string strHead = Whole(GetParam());

  const int nOf512 = Judge(strHead, 512);
  const int nOfShortest = Judge(strHead, GetParam().nWholeSize);

  EXPECT_EQ(GetParam().nType, nOf512);
  EXPECT_EQ(GetParam().nType, nOfShortest) << "length " << GetParam().nWholeSize;
}

TEST_P(TypeTest, RefusesOneByteLessThanItsMinimumLength) {
  const std::string strHead = Whole(GetParam());

  const int nAnswer = GetParam().pfnTest(strHead.data(), GetParam().nFigure - 1);

  EXPECT_EQ(kUnknown, nAnswer) << "length " << GetParam().nFigure - 1;
}

TEST_P(TypeTest, RefusesNull) {
  const int nAnswer = GetParam().pfnTest(nullptr, 512);

  EXPECT_EQ(kUnknown, nAnswer);
}

TEST_P(TypeTest, RefusesZeros) {
  const int nAnswer = Judge(std::string(512, '\0'), 512);

  EXPECT_EQ(kUnknown, nAnswer);
}

TEST_P(TypeTest, RefusesAnotherByteAnywhereInItsSignature) {
  for (const auto& [nFirst, nSize] : GetParam().signature) {
    for (size_t nOffset = nFirst; nOffset < nFirst + nSize; ++nOffset) {
      const uint8_t nByte = static_cast<uint8_t>(Whole(GetParam())[nOffset]) ^ 0x80;

      const int nAnswer = Judge(Changed({nOffset, nByte}), 512);

      EXPECT_EQ(kUnknown, nAnswer) << "byte " << nOffset << " is " << int{nByte};
    }
  }
}

TEST_P(TypeTest, RefusesEachByteThatBreaksACondition) {
  for (const ByteChange& change : GetParam().failing) {
    const int nAnswer = Judge(Changed(change), 512);

    EXPECT_EQ(kUnknown, nAnswer) << "byte " << change.nOffset << " is " << int{change.nByte};
  }
}

TEST_P(TypeTest, AcceptsEachByteThatKeepsTheConditions) {
  for (const ByteChange& change : GetParam().passing) {
    const int nAnswer = Judge(Changed(change), 512);

    EXPECT_EQ(GetParam().nType, nAnswer) << "byte " << change.nOffset << " is " << int{change.nByte};
  }
}

TEST_P(TypeTest, ReadsNothingBeyondAnyLength) {
  const std::string strHead = Whole(GetParam());

  for (uint32_t nLength = 0; nLength <= 512; ++nLength) {
    const int nAnswer = Judge(strHead, nLength);

    if (nLength < GetParam().nFigure) {
      EXPECT_EQ(kUnknown, nAnswer) << "length " << nLength;
    } else if (nLength < GetParam().nWholeSize) {
      EXPECT_THAT(nAnswer, AnyOf(kUnknown, GetParam().nType)) << "length " << nLength;
    } else {
      EXPECT_EQ(GetParam().nType, nAnswer) << "length " << nLength;
    }
  }
}

const auto kHeadName = [](const testing::TestParamInfo<FileHead>& info) { return info.param.strName; };
INSTANTIATE_TEST_SUITE_P(Wired, TypeTest, testing::ValuesIn(WiredHeads()), kHeadName);
INSTANTIATE_TEST_SUITE_P(Unwired, TypeTest, testing::ValuesIn(UnwiredHeads()), kHeadName);

TEST(MpegType, SecondMarkMustEndWithinTheFirst32Bytes) {
  for (const auto& [nFirst, nSecond] : {std::pair{'\xB3', '\xB8'}, std::pair{'\xBA', '\xBB'}}) {
    std::string strHead(512, '\0');
    strHead.replace(0, 4, std::string("\0\0\1", 3) + nFirst);
    strHead.replace(29, 4, std::string("\0\0\1", 3) + nSecond);

    const int nAnswer = CFileTypeJudge::IsMpgType(strHead.data(), 512);

    EXPECT_EQ(kUnknown, nAnswer);
  }
}

TEST(MpegType, MarksOfTheTwoKindsAreNotCombined) {
  const std::string strSequence("\0\0\1\xB3\0\0\1\xBB\0\0\0\0\0\0\0\0", 16);
  const std::string strPack("\0\0\1\xBA\0\0\1\xB8\0\0\0\0\0\0\0\0", 16);

  EXPECT_EQ(kUnknown, CFileTypeJudge::IsMpgType(strSequence.data(), 16));
  EXPECT_EQ(kUnknown, CFileTypeJudge::IsMpgType(strPack.data(), 16));
}

TEST(IconType, DirectoryMustFitIntoTheHead) {
  std::string strHead = std::string("\0\0\1\0\x1F\0", 6) + std::string(506, '\0');
  for (int i = 0; i < 31; ++i) {
    const int nOffset = 502 + i;  // contiguous images of one byte
    strHead[6 + 16 * i + 8] = 1;
    strHead[6 + 16 * i + 12] = static_cast<char>(nOffset);
    strHead[6 + 16 * i + 13] = static_cast<char>(nOffset >> 8);
  }

  const int nFull = CFileTypeJudge::IsIcoType(strHead.data(), 512);
  const int nJustFits = CFileTypeJudge::IsIcoType(strHead.data(), 502);
  const int nCut = CFileTypeJudge::IsIcoType(strHead.data(), 501);

  EXPECT_EQ(46, nFull);
  EXPECT_EQ(46, nJustFits);
  EXPECT_EQ(kUnknown, nCut);
}

TEST(IconType, CountsTooLargeForTheHeadAreRefused) {
  for (const int nCount : {32, 255, 256, 4096, 65535}) {
    std::string strHead = std::string("\0\0\1\0", 4) + std::string(508, '\0');
    strHead[4] = static_cast<char>(nCount);
    strHead[5] = static_cast<char>(nCount >> 8);

    const int nAnswer = CFileTypeJudge::IsIcoType(strHead.data(), 512);

    EXPECT_EQ(kUnknown, nAnswer) << nCount << " images";
  }
}

TEST_P(ProgramType, IsDeterminedByItsFlags) {
  const int nAnswer = JudgeProgram(Head(GetParam().nOffset, GetParam().nFlags));

  EXPECT_EQ(GetParam().nType, nAnswer);
}

INSTANTIATE_TEST_SUITE_P(
    Unwired, ProgramType,
    testing::Values(ProgramCase{"Program", 128, 0x0002, 41}, ProgramCase{"Library", 128, 0x2002, 42},
                    ProgramCase{"Driver", 128, 0x1002, 43}, ProgramCase{"DriverGoesFirst", 128, 0x3002, 43},
                    ProgramCase{"AllFlags", 128, 0xFFFF, 43}, ProgramCase{"NoFlags", 128, 0x0000, kUnknown},
                    ProgramCase{"LowestBitIsNotEnough", 128, 0x0001, kUnknown},
                    ProgramCase{"LibraryThatCannotRun", 128, 0x2000, kUnknown},
                    ProgramCase{"HeaderAtTheLastPlace", 488, 0x0002, 41},
                    ProgramCase{"HeaderBehindTheLastPlace", 489, 0x0002, kUnknown},
                    ProgramCase{"HeaderFarBehind", 0x10000080, 0x0002, kUnknown},
                    ProgramCase{"HeaderBeforeTheFile", 0xFFFFFF80, 0x0002, kUnknown}),
    [](const testing::TestParamInfo<ProgramCase>& info) { return info.param.pszName; });

TEST_F(ProgramType, NeedsBothOfItsMarks) {
  for (const size_t nOffset : {0, 1, 128, 129, 130, 131}) {
    std::string strHead = Head(128, 0x0002);
    strHead[nOffset] ^= 0x01;

    const int nAnswer = JudgeProgram(strHead);

    EXPECT_EQ(kUnknown, nAnswer) << "byte " << nOffset;
  }
}

TEST_F(ProgramType, Needs512Bytes) {
  const std::string strHead = Head(128, 0x0002);

  EXPECT_EQ(kUnknown, CFileTypeJudge::IsPeType(strHead.data(), 511));
  EXPECT_EQ(kUnknown, CFileTypeJudge::IsPeType(nullptr, 512));
}
