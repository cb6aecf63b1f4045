#include "common/file_source.h"

#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace orvandel {

namespace {

std::shared_mutex g_mutex;
std::unordered_map<std::string, std::shared_ptr<const FileSource>> g_sources;
std::atomic<bool> g_bAny{false};  // spares plain backups the lookup

}  // namespace

void InstallFileSource(const std::string& strFolder, std::shared_ptr<const FileSource> pSource) {
  const std::unique_lock<std::shared_mutex> lock(g_mutex);
  if (pSource)
    g_sources[strFolder] = std::move(pSource);
  else
    g_sources.erase(strFolder);
  g_bAny = !g_sources.empty();
}

std::shared_ptr<const FileSource> FileSourceOfFolder(const std::string& strFolder) {
  if (!g_bAny) return nullptr;
  const std::shared_lock<std::shared_mutex> lock(g_mutex);
  const auto it = g_sources.find(strFolder);
  return it == g_sources.end() ? nullptr : it->second;
}

std::shared_ptr<const FileSource> FileSourceOf(const std::string& strPath, std::string& strName) {
  const size_t nSlash = strPath.rfind('/');
  if (!g_bAny || nSlash == std::string::npos) return nullptr;
  strName = strPath.substr(nSlash + 1);
  return FileSourceOfFolder(strPath.substr(0, nSlash));
}

}  // namespace orvandel
