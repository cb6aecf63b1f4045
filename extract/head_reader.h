#pragma once
#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/catalogue.h"
#include "common/layout.h"
#include "extract/file_head.h"

namespace orvandel {

/// Reads the heads of the files that a walk over the catalogue looks at.
///
/// For a large catalogue a second thread reads up to 1024 entries ahead of the walk. Where the walk would
/// have to wait, it reads blocks ahead itself. Errors are kept in each head and are not reported here, so the
/// walk can report them in its own order. A small catalogue is read file by file. Lives on the stack of one
/// walk.
class HeadReader {
 public:
  /// True when a walk examines files with this name. Called from both threads.
  using IsWanted = bool (*)(const std::string& strName);

  struct File {
    size_t nEntry = 0;
    std::string strPath;  ///< narrow
    bool bPlain = false;  ///< the path is ASCII
    BackupFileHead head;
  };

  /// @param catalogue must outlive the reader and not change.
  HeadReader(const Catalogue& catalogue, const BackupLayout& layout, IsWanted pfnIsWanted);
  /// Stops the second thread; waits for the file that it is reading.
  ~HeadReader();
  HeadReader(const HeadReader&) = delete;
  HeadReader& operator=(const HeadReader&) = delete;

  /// The file of an entry, valid until the next call; null when it isn't wanted.
  /// @param nEntry 0 in the first call, then one more in each call.
  const File* FileOf(size_t nEntry);

 private:
  static constexpr size_t kBlockEntries = 64;
  static constexpr size_t kBlocksAhead = 16;

  /// The heads of the files of 64 consecutive entries.
  struct Block {
    std::vector<File> files;  // never shrinks, to reuse the memory of the paths
    size_t nFiles = 0;
    bool bRead = false;
    std::exception_ptr error;
  };

  Block& BlockOf(size_t nBlock) { return m_ring[nBlock % kBlocksAhead]; }
  void ReadFile(size_t nEntry, File& file) const;
  /// Reads the next unclaimed block. @param lock is released while reading.
  void ReadNextBlock(std::unique_lock<std::mutex>& lock);
  void ReadBlock(size_t nBlock);
  bool HasRoom() const { return m_nNextBlock < m_nBlocks && m_nNextBlock < m_nCurrentBlock + kBlocksAhead; }
  /// Releases the blocks before nBlock and waits until nBlock is read.
  void EnterBlock(size_t nBlock);
  void RunAhead();

  const Catalogue& m_catalogue;
  const FileLocator m_locator;
  const BackupFolder m_folder;
  const IsWanted m_pfnIsWanted;
  File m_file;            // used without a second thread
  size_t m_nInBlock = 0;  // files of the current block already returned

  const size_t m_nBlocks;
  std::array<Block, kBlocksAhead> m_ring;
  std::mutex m_mutex;  // guards the members below and bRead of all blocks
  std::condition_variable m_changed;
  size_t m_nCurrentBlock = 0;  // that of the walk
  size_t m_nNextBlock = 0;
  bool m_bEnded = false;
  std::thread m_thread;
};

}  // namespace orvandel
