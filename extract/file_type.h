#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "extract/file_head.h"

/// Detects the type of a file from its first 512 bytes. Not thread-safe: an object counts the files that it
/// has named.
class CFileTypeJudge {
 public:
  static constexpr int kUnknown = 48;  ///< the type number of a file that no test accepts
  static constexpr uint32_t kHeadSize = orvandel::BackupFileHead::kSize;

  /// @param strPath   narrow path.
  /// @param strOutput receives a running number, "." and the extension, starting with "0.jpg"; unchanged when
  /// the type is unknown.
  /// @return 0 when the head was read; an errno value when the file can't be opened; 30 when it has fewer
  /// than 512 bytes.
  int ParseFileBuf(const char* pszPath, std::string& strOutput);

  /// Same as above for a file whose head has been read. Reports the error when reading it failed.
  int JudgeHead(const char* pszPath, const orvandel::BackupFileHead& head, std::string& strOutput);

  /// Same as above for a head in memory, with one character per wchar_t in the result. @return 0.
  int ParseFileBuf(const void* pData, uint32_t nLength, std::wstring& wstrOutput);

  /// The type of a head: that of the first matching row of the table, or 48.
  static int GetDataBufType(const void* pData, uint32_t nLength);

  /// The type of an extension, ignoring case, or 48.
  static int GetExtendNameType(const char* pszExtension);

  // The tests. Each returns its type number, or 48 for null, for too few bytes or when the head doesn't
  // match.
  static int IsMpgType(const void* pData, uint32_t nLength);
  static int IsMp4Type(const void* pData, uint32_t nLength);
  static int IsRmvbType(const void* pData, uint32_t nLength);
  static int IsAsfType(const void* pData, uint32_t nLength);
  static int IsAviType(const void* pData, uint32_t nLength);
  static int Is3pgType(const void* pData, uint32_t nLength);
  static int IsMp3Type(const void* pData, uint32_t nLength);
  static int IsMidType(const void* pData, uint32_t nLength);
  static int IsWavType(const void* pData, uint32_t nLength);
  static int IsMovType(const void* pData, uint32_t nLength);
  static int IsGifType(const void* pData, uint32_t nLength);
  static int IsBmpType(const void* pData, uint32_t nLength);
  static int IsJpgType(const void* pData, uint32_t nLength);
  static int IsPngType(const void* pData, uint32_t nLength);
  static int IsIcoType(const void* pData, uint32_t nLength);

  // Tests that no row of the table uses.
  static int IsOffice2003Type(const void* pData, uint32_t nLength);
  static int IsOffice2007Type(const void* pData, uint32_t nLength);
  static int IsPdfType(const void* pData, uint32_t nLength);
  static int IsGhoType(const void* pData, uint32_t nLength);
  static int IsMp2Type(const void* pData, uint32_t nLength);
  static int IsMmfType(const void* pData, uint32_t nLength);
  static int IsMkvType(const void* pData, uint32_t nLength);
  static int IsApeType(const void* pData, uint32_t nLength);
  static int IsSwfType(const void* pData, uint32_t nLength);
  static int IsFlvType(const void* pData, uint32_t nLength);
  static int IsPsdType(const void* pData, uint32_t nLength);
  static int IsTifType(const void* pData, uint32_t nLength);
  static int IsCabType(const void* pData, uint32_t nLength);
  static int Is7zType(const void* pData, uint32_t nLength);
  static int IsZipType(const void* pData, uint32_t nLength);
  static int IsGzipType(const void* pData, uint32_t nLength);
  static int IsRarType(const void* pData, uint32_t nLength);
  static int IsPstEmailType(const void* pData, uint32_t nLength);
  static int IsSqlType(const void* pData, uint32_t nLength);
  static int IsDbxEmailType(const void* pData, uint32_t nLength);
  static int IsPeType(const void* pData, uint32_t nLength);  ///< 41, 42 or 43
  static int IsFlaType(const void* pData, uint32_t nLength);
  static int IsTtfType(const void* pData, uint32_t nLength);
  static int IsMtsType(const void* pData, uint32_t nLength);

  // Trailers of files and object identifiers, for a search from the end. Not used yet.
  static constexpr unsigned char szJpgTail[] = {0xFF, 0xD9};
  static constexpr unsigned char szGifTail[] = {0x00, 0x3B};
  static constexpr unsigned char szPngTail[] = {'I', 'E', 'N', 'D', 0xAE, 0x42, 0x60, 0x82};
  static constexpr char szMp4Tail[] = "freeIsoMedia File Produced";
  static constexpr unsigned char szWinrarTail[] = {0xC4, 0x3D, 0x7B, 0x00, 0x40, 0x07, 0x00};
  static constexpr unsigned char sm_ucWinrarTail[] = {0xC4, 0x3D, 0x7B, 0x00, 0x40, 0x07, 0x00};
  static constexpr char sm_ucMp3Tail[] = "TAG";
  static constexpr char Mp3Tail[] = "TAG";
  static constexpr unsigned char sz_ApeTail[] = {'A', 'P', 'E', 'T', 'A', 'G', 'E', 'X', 0xD0, 0x07};
  static constexpr char sm_ucPdfEof[] = "%%EOF";
  static constexpr char sm_ucPdfTrailer[] = "trailer";

  // The published identifiers of ASF objects, in file byte order.
  static constexpr unsigned char sm_Asf_file_head_guid[] = {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                                            0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
  static constexpr unsigned char sm_Asf_file_properties_guid[] = {
      0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11, 0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
  static constexpr unsigned char sm_Asf_stream_properties_guid[] = {
      0x91, 0x07, 0xDC, 0xB7, 0xB7, 0xA9, 0xCF, 0x11, 0x8E, 0xE6, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
  static constexpr unsigned char sm_Asf_audio_guid[] = {0x40, 0x9E, 0x69, 0xF8, 0x4D, 0x5B, 0xCF, 0x11,
                                                        0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};
  static constexpr unsigned char sm_Asf_video_guid[] = {0xC0, 0xEF, 0x19, 0xBC, 0x4D, 0x5B, 0xCF, 0x11,
                                                        0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};

 private:
  struct Row {
    const char* pszExtension;
    int nType;
    int (*pfnTest)(const void*, uint32_t);
  };
  static const Row szExtendNameAndType[];

  static const Row* FindRow(const void* pData, uint32_t nLength);

  int64_t m_nFileCounter = 0;
};

namespace orvandel {

// Searches in memory. They differ from the C library's in the result for an empty pattern.
namespace memory_search {

/// First match, or null. Null for a null pointer, an empty pattern or one longer than the data.
const void* memmem(const void* pData, size_t nLength, const void* pPattern, size_t nPatternLength);

/// Last match, or null. An empty pattern matches at the end of the data.
const void* memrmem(const void* pData, size_t nLength, const void* pPattern, size_t nPatternLength);

}  // namespace memory_search

}  // namespace orvandel
