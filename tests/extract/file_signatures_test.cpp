#include <gmock/gmock.h>

#include "tests/extract/file_heads.h"

using namespace orvandel;
using testing::AnyOf;

namespace {

constexpr int kUnknown = CFileTypeJudge::kUnknown;

/// Heads of all signatures, whether the table uses them or not.
std::vector<FileHead> AllHeads() {
  std::vector<FileHead> heads = WiredHeads();
  heads.insert(heads.end(), UnwiredHeads().begin(), UnwiredHeads().end());
  return heads;
}

/// The result of a head's signature for the first bytes of another head, in a buffer of exactly that size.
int Judge(const FileHead& head, const std::string& strHead, uint32_t nLength) {
  const std::vector<char> bytes(strHead.begin(), strHead.begin() + nLength);
  return head.pfnTest(bytes.data(), nLength);
}

std::string Changed(const FileHead& head, ByteChange change) {
  std::string strHead = Whole(head);
  strHead[change.nOffset] = static_cast<char>(change.nByte);
  return strHead;
}

struct ProgramCase {
  const char* pszName;
  uint32_t nOffset;  // of "PE"
  uint16_t nFlags;
  int nType;
};

class ProgramType : public testing::Test {
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

const ProgramCase kPrograms[] = {{"Program", 128, 0x0002, 41},
                                 {"Library", 128, 0x2002, 42},
                                 {"Driver", 128, 0x1002, 43},
                                 {"DriverGoesFirst", 128, 0x3002, 43},
                                 {"AllFlags", 128, 0xFFFF, 43},
                                 {"NoFlags", 128, 0x0000, kUnknown},
                                 {"LowestBitIsNotEnough", 128, 0x0001, kUnknown},
                                 {"LibraryThatCannotRun", 128, 0x2000, kUnknown},
                                 {"HeaderAtTheLastPlace", 488, 0x0002, 41},
                                 {"HeaderBehindTheLastPlace", 489, 0x0002, kUnknown},
                                 {"HeaderFarBehind", 0x10000080, 0x0002, kUnknown},
                                 {"HeaderBeforeTheFile", 0xFFFFFF80, 0x0002, kUnknown}};

}  // namespace

TEST(TypeTest, AcceptsItsHead) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    const std::string strHead = Whole(head);

    const int nOf512 = Judge(head, strHead, 512);
    const int nOfShortest = Judge(head, strHead, head.nWholeSize);

    EXPECT_EQ(head.nType, nOf512);
    EXPECT_EQ(head.nType, nOfShortest) << "length " << head.nWholeSize;
  }
}

TEST(TypeTest, RefusesOneByteLessThanItsMinimumLength) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    const std::string strHead = Whole(head);

    const int nAnswer = head.pfnTest(strHead.data(), head.nFigure - 1);

    EXPECT_EQ(kUnknown, nAnswer) << "length " << head.nFigure - 1;
  }
}

TEST(TypeTest, RefusesNull) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    const int nAnswer = head.pfnTest(nullptr, 512);

    EXPECT_EQ(kUnknown, nAnswer);
  }
}

TEST(TypeTest, RefusesZeros) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    const int nAnswer = Judge(head, std::string(512, '\0'), 512);

    EXPECT_EQ(kUnknown, nAnswer);
  }
}

TEST(TypeTest, RefusesAnotherByteAnywhereInItsSignature) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    for (const auto& [nFirst, nSize] : head.signature) {
      for (size_t nOffset = nFirst; nOffset < nFirst + nSize; ++nOffset) {
        const uint8_t nByte = static_cast<uint8_t>(Whole(head)[nOffset]) ^ 0x80;

        const int nAnswer = Judge(head, Changed(head, {nOffset, nByte}), 512);

        EXPECT_EQ(kUnknown, nAnswer) << "byte " << nOffset << " is " << int{nByte};
      }
    }
  }
}

TEST(TypeTest, RefusesEachByteThatBreaksACondition) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    for (const ByteChange& change : head.failing) {
      const int nAnswer = Judge(head, Changed(head, change), 512);

      EXPECT_EQ(kUnknown, nAnswer) << "byte " << change.nOffset << " is " << int{change.nByte};
    }
  }
}

TEST(TypeTest, AcceptsEachByteThatKeepsTheConditions) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    for (const ByteChange& change : head.passing) {
      const int nAnswer = Judge(head, Changed(head, change), 512);

      EXPECT_EQ(head.nType, nAnswer) << "byte " << change.nOffset << " is " << int{change.nByte};
    }
  }
}

TEST(TypeTest, ReadsNothingBeyondAnyLength) {
  for (const FileHead& head : AllHeads()) {
    SCOPED_TRACE(head.strName);
    const std::string strHead = Whole(head);

    for (uint32_t nLength = 0; nLength <= 512; ++nLength) {
      const int nAnswer = Judge(head, strHead, nLength);

      if (nLength < head.nFigure) {
        EXPECT_EQ(kUnknown, nAnswer) << "length " << nLength;
      } else if (nLength < head.nWholeSize) {
        EXPECT_THAT(nAnswer, AnyOf(kUnknown, head.nType)) << "length " << nLength;
      } else {
        EXPECT_EQ(head.nType, nAnswer) << "length " << nLength;
      }
    }
  }
}

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

TEST_F(ProgramType, IsDeterminedByItsFlags) {
  for (const ProgramCase& row : kPrograms) {
    SCOPED_TRACE(row.pszName);
    const int nAnswer = JudgeProgram(Head(row.nOffset, row.nFlags));

    EXPECT_EQ(row.nType, nAnswer);
  }
}

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
