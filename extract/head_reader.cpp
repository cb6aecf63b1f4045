#include "extract/head_reader.h"

#include <algorithm>
#include <system_error>

#include "common/stop.h"
#include "common/text.h"

namespace orvandel {

namespace {
// Starting a thread costs as much as reading some ten files.
constexpr size_t kSmallCatalogue = 1024;
}  // namespace

HeadReader::HeadReader(const Catalogue& catalogue, const BackupLayout& layout, IsWanted pfnIsWanted)
    : m_catalogue(catalogue),
      m_locator(layout),
      m_folder(ToNarrow(layout.qstrRoot)),
      m_pfnIsWanted(pfnIsWanted),
      m_nBlocks((catalogue.size() + kBlockEntries - 1) / kBlockEntries) {
  if (catalogue.size() <= kSmallCatalogue) return;
  try {
    m_thread = std::thread([this] { RunAhead(); });
  } catch (const std::system_error&) {
    // No thread available: the walk reads the files itself.
  }
}

HeadReader::~HeadReader() {
  if (!m_thread.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bEnded = true;
  }
  m_changed.notify_all();
  m_thread.join();
}

const HeadReader::File* HeadReader::FileOf(size_t nEntry) {
  if (!m_thread.joinable()) {
    if (!m_pfnIsWanted(m_catalogue[nEntry].strFileName)) return nullptr;
    ReadFile(nEntry, m_file);
    return &m_file;
  }
  if (nEntry % kBlockEntries == 0) EnterBlock(nEntry / kBlockEntries);
  const Block& block = BlockOf(nEntry / kBlockEntries);
  if (m_nInBlock == block.nFiles || block.files[m_nInBlock].nEntry != nEntry) return nullptr;
  return &block.files[m_nInBlock++];
}

void HeadReader::EnterBlock(size_t nBlock) {
  m_nInBlock = 0;
  std::unique_lock<std::mutex> lock(m_mutex);
  if (nBlock > 0) BlockOf(nBlock - 1).bRead = false;
  m_nCurrentBlock = nBlock;
  m_changed.notify_one();
  while (!BlockOf(nBlock).bRead) {
    if (HasRoom())
      ReadNextBlock(lock);
    else
      m_changed.wait(lock);
  }
  if (BlockOf(nBlock).error) std::rethrow_exception(BlockOf(nBlock).error);
}

void HeadReader::RunAhead() {
  std::unique_lock<std::mutex> lock(m_mutex);
  // After a stop request the walk reads the remaining files itself.
  while (!m_bEnded && m_nNextBlock < m_nBlocks && !IsStopRequested()) {
    if (HasRoom())
      ReadNextBlock(lock);
    else
      m_changed.wait(lock);
  }
}

void HeadReader::ReadNextBlock(std::unique_lock<std::mutex>& lock) {
  const size_t nBlock = m_nNextBlock++;
  lock.unlock();
  Block& block = BlockOf(nBlock);
  try {
    ReadBlock(nBlock);
  } catch (...) {
    block.error = std::current_exception();  // rethrown when the walk enters the block
  }
  lock.lock();
  block.bRead = true;
  m_changed.notify_one();
}

void HeadReader::ReadBlock(size_t nBlock) {
  Block& block = BlockOf(nBlock);
  block.nFiles = 0;
  const size_t nFirst = nBlock * kBlockEntries;
  const size_t nEnd = std::min(nFirst + kBlockEntries, m_catalogue.size());
  for (size_t i = nFirst; i < nEnd; ++i) {
    if (!m_pfnIsWanted(m_catalogue[i].strFileName)) continue;
    if (block.nFiles == block.files.size()) block.files.emplace_back();
    ReadFile(i, block.files[block.nFiles++]);
  }
}

void HeadReader::ReadFile(size_t nEntry, File& file) const {
  file.nEntry = nEntry;
  file.bPlain = m_locator.Locate(m_catalogue[nEntry].strFileId, file.strPath);
  ReadFileHead(m_folder, file.strPath, file.head);
}

}  // namespace orvandel
