#pragma once
#include <cstdint>
#include <cstdio>
#include <string>

#include "common/descriptor.h"
#include "common/result.h"

/// The attributes of an open file that the program uses.
struct STRUCT_RSB_FILE_ATTR {
  uint32_t nFileSizeHigh = 0;  ///< bits 32 to 63 of the size in bytes
  uint32_t nFileSizeLow = 0;   ///< bits 0 to 31
};

/// Opens a file by its UTF-16 path.
/// @param pMode one character per wchar_t. Only the first one is used: "rb" opens as "r", and "w+,ccs=UTF-8"
/// as "w", which truncates and writes plain bytes, with no encoding layer and no byte-order mark.
/// @return the stream from fopen, or null with errno set.
FILE* _wfopen(const char16_t* pPath, const wchar_t* pMode);

namespace orvandel {

/// Marks a backup as sharded: its files are in sub-folders, which then must not be links either. Applies to
/// the whole process. @param strRoot narrow, without a trailing "/".
void DeclareSharded(const std::string& strRoot);

/// A file of a backup, open for reading.
struct OpenedFile {
  Descriptor descriptor;
  int64_t nSize = 0;  ///< in bytes
};

/// Opens a file of a backup for reading. All files of backups are opened by this function. It refuses
/// anything that is not a regular file, since opening a FIFO could block forever, and symbolic links, since
/// they could point to any file on the machine. In a sharded backup the sub-folder must not be a link either.
/// The backup's own folder and its parents may be links.
/// @param strPath narrow. @return on failure a problem of the step Open, with the code EISDIR for a folder,
/// ELOOP for a link, ENXIO for anything else that is not a regular file.
Result<OpenedFile> OpenBackupFile(const std::string& strPath);

/// Returns the absolute path of a file of a backup. Links on the way to the backup's folder are resolved,
/// links inside it are not. @param strPath narrow. @return strPath when its folder can't be resolved.
std::string ResolvedBackupPath(const std::string& strPath);

/// True when the path exists, whatever its type; a dangling link counts.
bool EntryExists(const std::string& strPath);

/// Mode of files that a recovery copies: readable and writable by everybody.
constexpr unsigned int kRecoveredFileRights = 0777;

/// Copies a file of a backup, or of its folder's source (common/file_source.h), to a new path and sets its
/// mode, ignoring the umask. Removes the copy on failure. Fails when the target exists, and leaves it
/// untouched. Doesn't sync.
/// @param strSource, strTarget narrow. @param nModified see SetModificationTime.
/// @return a problem with the source (Open, Read) or the target (Create, Write).
Problem CopyBackupFile(const std::string& strSource, const std::string& strTarget, unsigned int nRights,
                       int64_t nModified = -1);

/// Sets the modification time of an open file. It stays as it is if the file system can't store that time.
/// @param nModified seconds since 1970; a negative one sets nothing.
void SetModificationTime(int nDescriptor, int64_t nModified);

}  // namespace orvandel

/// Gets the size of a file in bytes. The path is converted to Latin-1, so paths with non-ASCII characters
/// aren't found on a UTF-8 file system. The low half of the size is sign-extended; only the low 32 bits are
/// valid.
/// @return 0, or an errno value, with nSize unchanged.
int GetFileByteSize(const char16_t* pPath, long long& nSize);

/// Reads exactly nCount bytes into pBuffer, in chunks of at most 64 KiB.
/// @param nRead receives the number of bytes read, also on failure.
/// @return 0, or 30 on end of file or a read error before nCount bytes.
int ReadData(int nDescriptor, void* pBuffer, uint32_t nCount, uint32_t& nRead);

/// Gets the attributes of an open file. @param pAttr may be null. @return 0, or -1 with errno set for a bad
/// descriptor.
int rsb_statH(int nDescriptor, STRUCT_RSB_FILE_ATTR* pAttr);

/// Sleeps; the time is in milliseconds.
void rsb_msleep(unsigned int nMilliseconds);
