#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "benchmarks/data.h"
#include "common/text.h"
#include "export/recovery.h"

namespace orvandel {

namespace {

namespace fs = std::filesystem;

/// Folder for exports, on the same disk as the data.
std::string Folder(const char* pszName) {
  return ExportFolder() + pszName;
}

/// A new folder for each round, removed at exit: on a file system that has just deleted thousands of files,
/// creating files takes twice as long.
std::string FreshFolder() {
  struct Rounds {
    std::string strFolder = Folder("/rounds");
    int nCount = 0;
    Rounds() { fs::remove_all(strFolder); }
    ~Rounds() { fs::remove_all(strFolder); }
  };
  static Rounds rounds;
  const std::string strFolder = rounds.strFolder + "/" + std::to_string(++rounds.nCount);
  fs::create_directories(strFolder);
  return strFolder;
}

/// kMessageCount messages in kSenders conversations with named people.
const MessageMap& Messages() {
  static const MessageMap messages = [] {
    MessageMap map;
    for (int i = 0; i < kMessageCount; ++i) {
      const int nSender = static_cast<int>(i * 7919LL % kSenders);
      __MESSAGE_INFO__ message;
      message.nIsFromMe = i % 3 == 0;
      message.nHandleId = static_cast<uint32_t>(nSender + 1);
      message.strDate = "2016-05-01 09:12:33";
      message.strSender = "+4930" + std::to_string(1000000 + nSender * 37);
      message.strContactName = "First" + std::to_string(nSender) + "Last" + std::to_string(nSender);
      message.strText = "Message " + std::to_string(i) + ": see you at the usual place, half past six?";
      map[message.nHandleId].push_back(message);
    }
    return map;
  }();
  return messages;
}

/// A program folder with the five templates.
std::string Program() {
  const std::string strProgram = Folder("/program");
  fs::create_directories(strProgram + "/template");
  for (const char* pszName : {"CallHistory", "Notes", "contacts", "Sms", "WhatsApp"})
    std::ofstream(strProgram + "/template/" + pszName + ".html")
        << "<html><head><title>{|title|}</title></head><body><h1>{|person|}</h1>\n{|content|}</body></"
           "html>\n";
  return strProgram;
}

void Export(const std::string& strDestination) {
  static CIphoneBackupFile session;
  static const std::string strProgram = Program();
  CRecovery recovery(FromNarrow(strProgram));
  recovery.SetWrittenFileHandler([](const WrittenFile& file) {
    if (!file.Succeeded()) throw std::runtime_error(ToNarrow(file.qstrPath + ": " + file.Reason()));
  });
  recovery.Init(FromNarrow(strDestination), &session);
  for (const auto& [nKey, messages] : Messages()) recovery.RecoveryMsg(&messages.front(), Messages());
}

/// The content of one document, in the pieces in which it is written.
struct Document {
  std::string strPath;  ///< relative to the destination
  std::vector<std::string> pieces;
};

std::string Bytes(const fs::path& path) {
  std::string strBytes(fs::file_size(path), '\0');
  std::ifstream(path, std::ios::binary).read(strBytes.data(), static_cast<std::streamsize>(strBytes.size()));
  return strBytes;
}

/// Splits a text into pieces that end with strEnd.
std::vector<std::string> Split(const std::string& strText, const std::string& strEnd) {
  std::vector<std::string> pieces;
  size_t nStart = 0;
  for (size_t nHit; (nHit = strText.find(strEnd, nStart)) != std::string::npos; nStart = nHit + strEnd.size())
    pieces.push_back(strText.substr(nStart, nHit + strEnd.size() - nStart));
  return pieces;
}

/// The output of an export: each page in one piece, texts by message, each of which ends with an empty line.
const std::vector<Document>& Documents() {
  static const std::vector<Document> documents = [] {
    std::vector<Document> result;
    const std::string strFolder = FreshFolder();
    Export(strFolder);
    for (const auto& entry : fs::recursive_directory_iterator(strFolder)) {
      if (!entry.is_regular_file()) continue;
      Document document{entry.path().string().substr(strFolder.size()), {}};
      const std::string strBytes = Bytes(entry.path());
      document.pieces =
          entry.path().extension() == ".txt" ? Split(strBytes, "\n\n") : std::vector<std::string>{strBytes};
      result.push_back(std::move(document));
    }
    return result;
  }();
  return documents;
}

size_t SizeBelow(const std::string& strFolder) {
  size_t nSize = 0;
  for (const auto& entry : fs::recursive_directory_iterator(strFolder)) {
    if (entry.is_regular_file()) nSize += entry.file_size();
  }
  return nSize;
}

/// Ends one round: checks the size of its output.
void FinishRound(benchmark::State& state, const std::string& strFolder) {
  size_t nExpected = 0;
  for (const Document& document : Documents()) {
    for (const std::string& strPiece : document.pieces) nExpected += strPiece.size();
  }
  if (SizeBelow(strFolder) != nExpected) state.SkipWithError("bytes are missing");
}

void PlainExportWrites(benchmark::State& state) {
  const std::vector<Document>& documents = Documents();
  for (auto _ : state) {
    state.PauseTiming();
    const std::string strFolder = FreshFolder();
    state.ResumeTiming();
    for (const Document& document : documents) {
      const std::string strPath = strFolder + document.strPath;
      mkdir((strFolder + "/Message").c_str(), 0777);
      mkdir(strPath.substr(0, strPath.rfind('/')).c_str(), 0777);
      FILE* pFile = fopen(strPath.c_str(), "w");
      for (const std::string& strPiece : document.pieces) {
        fwrite(strPiece.data(), 1, strPiece.size(), pFile);
        fflush(pFile);
      }
      fclose(pFile);
    }
    state.PauseTiming();
    FinishRound(state, strFolder);
    state.ResumeTiming();
  }
}
BENCHMARK(PlainExportWrites)->Unit(benchmark::kMillisecond)->UseRealTime();

void ExportMessages(benchmark::State& state) {
  Documents();
  for (auto _ : state) {
    state.PauseTiming();
    const std::string strFolder = FreshFolder();
    state.ResumeTiming();
    Export(strFolder);
    state.PauseTiming();
    FinishRound(state, strFolder);
    state.ResumeTiming();
  }
}
BENCHMARK(ExportMessages)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace orvandel
