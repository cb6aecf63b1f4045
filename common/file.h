#pragma once
#include <cstdint>
#include <cstdio>

/// The attributes of an open file, as far as the system reads them.
struct STRUCT_RSB_FILE_ATTR {
  uint32_t nFileSizeHigh = 0;  ///< bits 32 to 63 of the size in bytes
  uint32_t nFileSizeLow = 0;   ///< bits 0 to 31
};

/// Opens a file by its UTF-16 path.
/// @param pMode one character for each wchar_t. Only its first letter counts: "rb" opens as "r", and
///              "w+,ccs=UTF-8" as "w", for plain writing, truncated, with no encoding layer and no byte-order
///              mark.
/// @return a stream as fopen gives it, or null with errno set.
FILE* _wfopen(const char16_t* pPath, const wchar_t* pMode);

/// Opens a file for reading, and nothing but a file: a pipe in its place would be waited for without end.
/// @param pszPath narrow. @return a descriptor, or -1 with errno set (EISDIR for a folder, ENXIO for what
/// else is none).
int OpenRegularFile(const char* pszPath);

/// Where the copying of a file failed, and why.
struct CopyError {
  enum Step { kNone, kOpen, kRead, kCreate, kWrite } step = kNone;
  int nError = 0;  ///< the system's number
};

/// Copies a file to a path at which nothing stands yet, with the access rights given whatever the process's
/// mask. A copy that fails leaves nothing behind. Nothing waits for the disk: the system writes in its own
/// time, as after any other copying.
/// @param pszSource, pszTarget narrow.
CopyError CopyRegularFile(const char* pszSource, const char* pszTarget, unsigned int nRights);

/// Size of a file in bytes.
/// The path is taken through Latin-1, so that one with characters beyond ASCII isn't found on a UTF-8 file
/// system. The low half of the size is widened with its sign; callers keep the low 32 bits.
/// @return 0, or the errno value, with nSize left alone.
int GetFileByteSize(const char16_t* pPath, long long& nSize);

/// Reads exactly nCount bytes into pBuffer, in chunks of at most 64 KiB.
/// @param nRead receives the bytes read, in every case.
/// @return 0 when all came, 30 when the file ended or failed before.
int ReadData(int nDescriptor, void* pBuffer, uint32_t nCount, uint32_t& nRead);

/// Attributes of an open file. @param pAttr may be null. @return 0, or -1 for a bad descriptor, with errno
/// set.
int rsb_statH(int nDescriptor, STRUCT_RSB_FILE_ATTR* pAttr);

/// Sleeps for so many milliseconds.
void rsb_msleep(unsigned int nMilliseconds);
