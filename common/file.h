#pragma once
#include <cstdint>
#include <cstdio>
#include <string>

#include "common/descriptor.h"
#include "common/result.h"

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

/// Declares that the files of a backup lie in folders of its own folder, so that these may not be links
/// either. The rule that locates files does that. For the whole process. @param strRoot narrow, without a
/// trailing "/".
void DeclareSharded(const std::string& strRoot);

/// A file of a backup, open for reading.
struct OpenedFile {
  Descriptor descriptor;
  int64_t nSize;  ///< in bytes
};

/// Opens a file of a backup for reading. It is the only way in which the system opens one: what is not a
/// regular file is refused, since opening a FIFO could block forever, and so is a symbolic link, since it
/// could lead to any file of the machine. In a backup that is declared as sharded the folder that the file
/// lies in counts too. The backup's own folder and its parents may be links.
/// @param strPath narrow. @return a problem of the step Open with the code EISDIR for a folder, ELOOP for a
///                        link, ENXIO for anything else that is not a regular file.
Result<OpenedFile> OpenBackupFile(const std::string& strPath);

/// The absolute path of a file of a backup, with the links that lead to the backup's folder resolved and none
/// inside it. @param strPath narrow. @return the path itself when its folder can't be resolved.
std::string ResolvedBackupPath(const std::string& strPath);

/// True when there is an entry under a path, of any kind: a link without a target too.
bool EntryExists(const std::string& strPath);

/// The access rights of what a recovery copies: everybody may read and change it.
constexpr unsigned int kRecoveredFileRights = 0777;

/// Copies a file of a backup to a path that doesn't exist yet, with the access rights given, whatever the
/// process's mask. A copy that fails leaves nothing behind, and what is in the way of a copy stays untouched.
/// Doesn't sync: the system writes the data back when it likes to.
/// @param strSource, strTarget narrow. @return a problem with the source (Open, Read) or the target (Create,
/// Write).
Problem CopyBackupFile(const std::string& strSource, const std::string& strTarget, unsigned int nRights);

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
