// CFileTypeJudge: the input is the head of a file; reading beyond its end is detected.
#include <algorithm>
#include <memory>

#include "extract/file_type.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

namespace {

using Judge = CFileTypeJudge;

constexpr int (*kTests[])(const void*, uint32_t) = {
    Judge::IsMpgType,        Judge::IsMp4Type, Judge::IsRmvbType,     Judge::IsAsfType,
    Judge::IsAviType,        Judge::Is3pgType, Judge::IsMp3Type,      Judge::IsMidType,
    Judge::IsWavType,        Judge::IsMovType, Judge::IsGifType,      Judge::IsBmpType,
    Judge::IsJpgType,        Judge::IsPngType, Judge::IsIcoType,      Judge::IsOffice2003Type,
    Judge::IsOffice2007Type, Judge::IsPdfType, Judge::IsGhoType,      Judge::IsMp2Type,
    Judge::IsMmfType,        Judge::IsMkvType, Judge::IsApeType,      Judge::IsSwfType,
    Judge::IsFlvType,        Judge::IsPsdType, Judge::IsTifType,      Judge::IsCabType,
    Judge::Is7zType,         Judge::IsZipType, Judge::IsGzipType,     Judge::IsRarType,
    Judge::IsPstEmailType,   Judge::IsSqlType, Judge::IsDbxEmailType, Judge::IsPeType,
    Judge::IsFlaType,        Judge::IsTtfType, Judge::IsMtsType,
};

int TypeOf(const std::string& strJudged) {
  const size_t nDot = strJudged.find('.');
  return nDot == std::string::npos ? Judge::kUnknown : Judge::GetExtendNameType(strJudged.c_str() + nDot + 1);
}

void JudgeMemory(const uint8_t* pHead, uint32_t nLength) {
  for (const auto pfnTest : kTests) {
    const int nType = pfnTest(pHead, nLength);
    Require(nType > 0 && nType <= Judge::kUnknown, "a test returns a type");
    Require(pfnTest(nullptr, nLength) == Judge::kUnknown, "null has no type");
  }
  std::wstring wstrJudged;
  Require(Judge().ParseFileBuf(pHead, nLength, wstrJudged) == 0, "a head in memory is always judged");
  const std::string strJudged(wstrJudged.begin(), wstrJudged.end());
  Require(TypeOf(strJudged) == Judge::GetDataBufType(pHead, nLength),
          "the extension has the type of the head");
}

void JudgeFile(const uint8_t* pHead, uint32_t nLength) {
  static const ScratchFolder folder;
  const std::string strPath = folder.Write("head", pHead, nLength);
  std::string strJudged;

  const int nStatus = Judge().ParseFileBuf(strPath.c_str(), strJudged);

  if (nLength < Judge::kHeadSize) {
    Require(nStatus == 30 && strJudged.empty(), "a file of less than 512 bytes isn't judged");
    return;
  }
  Require(nStatus == 0, "a file of 512 bytes is judged");
  Require(TypeOf(strJudged) == Judge::GetDataBufType(pHead, Judge::kHeadSize),
          "a file has the type of its first 512 bytes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const auto pExact = std::make_unique<uint8_t[]>(nSize);
  std::copy_n(pData, nSize, pExact.get());
  const auto nLength = static_cast<uint32_t>(nSize);
  JudgeMemory(pExact.get(), nLength);
  JudgeFile(pExact.get(), nLength);
  return 0;
}
