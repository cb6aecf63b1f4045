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

/// Reads the heads of the files that a walk over the catalogue looks at.
///
/// Over a large catalogue a second thread reads ahead of the walk, by some hundred entries at most, and the
/// walk reads further ahead itself where it would have to wait. The walk sees none of this: it gets each head
/// on its own thread when it asks for it, and reports what is wrong with it when it likes to. A small
/// catalogue is read file by file. Lives on the stack of one walk.
class HeadReader {
 public:
  /// Whether a walk looks at files of a name. Called from both threads.
  using IsWanted = bool (*)(const std::string& strName);

  struct File {
    size_t nEntry = 0;
    std::string strPath;  ///< narrow
    bool bPlain = false;  ///< the path is ASCII
    BackupFileHead head;
  };

  /// @param catalogue outlives the reader and doesn't change.
  HeadReader(const Catalogue& catalogue, const BackupLayout& layout, IsWanted pfnIsWanted);
  /// Ends the second thread; waits for the file that it is reading.
  ~HeadReader();
  HeadReader(const HeadReader&) = delete;
  HeadReader& operator=(const HeadReader&) = delete;

  /// The file of an entry, valid until the next call; null when it isn't wanted.
  /// @param nEntry 0 first, then one more with each call.
  const File* FileOf(size_t nEntry);

 private:
  static constexpr size_t kBlockEntries = 64;
  static constexpr size_t kBlocksAhead = 16;

  /// What the files of 64 entries in a row came to.
  struct Block {
    std::vector<File> files;  // stays as large as it was, so that paths keep their memory
    size_t nFiles = 0;
    bool bRead = false;
    std::exception_ptr error;
  };

  Block& BlockOf(size_t nBlock) { return m_ring[nBlock % kBlocksAhead]; }
  void ReadFile(size_t nEntry, File& file) const;
  /// Reads the next block that nobody reads yet. @param lock is open meanwhile.
  void ReadNextBlock(std::unique_lock<std::mutex>& lock);
  void ReadBlock(size_t nBlock);
  bool HasRoom() const { return m_nNextBlock < m_nBlocks && m_nNextBlock < m_nCurrentBlock + kBlocksAhead; }
  /// Gives the blocks before one back and waits until that one is read.
  void EnterBlock(size_t nBlock);
  void RunAhead();

  const Catalogue& m_catalogue;
  const FileLocator m_locator;
  const BackupFolder m_folder;
  const IsWanted m_pfnIsWanted;
  File m_file;            // of a reader without a second thread
  size_t m_nInBlock = 0;  // files of the current block that have been handed out

  const size_t m_nBlocks;
  std::array<Block, kBlocksAhead> m_ring;
  std::mutex m_mutex;  // for what follows, and for bRead of all blocks
  std::condition_variable m_changed;
  size_t m_nCurrentBlock = 0;  // that of the walk
  size_t m_nNextBlock = 0;
  bool m_bEnded = false;
  std::thread m_thread;
};
