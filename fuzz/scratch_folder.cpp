#include "fuzz/scratch_folder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace orvandel {

namespace {

[[noreturn]] void Fail(const std::string& strWhat) {
  fprintf(stderr, "fuzz: %s\n", strWhat.c_str());
  abort();
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::error_code error;
  const bool bInMemory = std::filesystem::is_directory("/dev/shm", error);
  m_strPath = (bInMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) + "/fuzz-XXXXXX";
  if (!mkdtemp(m_strPath.data())) Fail(m_strPath + ": the folder can't be created");
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  std::filesystem::remove_all(m_strPath, error);
}

std::string ScratchFolder::Write(const char* pszName, const uint8_t* pData, size_t nSize) const {
  std::string strPath = m_strPath + "/" + pszName;
  FILE* pFile = fopen(strPath.c_str(), "wb");
  if (!pFile) Fail(strPath + ": can't be written");
  const bool bWritten = fwrite(pData, 1, nSize, pFile) == nSize;
  if (fclose(pFile) != 0 || !bWritten) Fail(strPath + ": can't be written");
  return strPath;
}

void Require(bool bHolds, const char* pszWhat) {
  if (!bHolds) Fail(std::string("violated: ") + pszWhat);
}

}  // namespace orvandel
