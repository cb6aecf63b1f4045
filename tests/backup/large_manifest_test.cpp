// The binary manifest is read in chunks, so neither its size nor that of an entry matters.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "backup/discovery.h"
#include "backup/manifest.h"
#include "common/status.h"
#include "common/text.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

constexpr off_t kHuge = 6LL << 30;  // bytes, sparse
constexpr long kMostMegabytes = 100;

int Read(const std::string& strPath, Catalogue& entries) {
  return process_mbdb_file(Ansi2Unicode(strPath.c_str()).c_str(), entries);
}

/// Peak memory of the process so far, in megabytes.
long PeakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string strLine;
  while (std::getline(status, strLine)) {
    if (strLine.rfind("VmHWM:", 0) == 0) return std::stol(strLine.substr(6)) / 1024;
  }
  ADD_FAILURE() << "no peak in /proc/self/status";
  return 0;
}

/// An entry of several megabytes, with the maximum number and length of properties.
manifest_bytes::Entry LongEntry(const std::string& strPath) {
  manifest_bytes::Entry entry{"AppDomain-example", strPath};
  for (int i = 0; i < 255; ++i) entry.properties.emplace_back("name", std::string(60000, 'x'));
  return entry;
}

}  // namespace

TEST(LargeManifest, WithoutTheMagicIsRefusedBeforeItIsRead) {
  TemporaryFolder folder;
  const std::string strPath = folder.Write("Manifest.mbdb", "");
  ASSERT_EQ(0, truncate(strPath.c_str(), kHuge));
  const long nBefore = PeakMegabytes();
  Catalogue entries;
  ProblemRecorder recorder;

  const int nStatus = Read(strPath, entries);

  EXPECT_EQ(kStatusMissing, nStatus);
  EXPECT_LT(PeakMegabytes() - nBefore, kMostMegabytes);
}

TEST(LargeInfo, EndsTheReadingOfItsFacts) {
  TemporaryFolder folder;
  const std::string strPath =
      folder.Write("backup/Info.plist", "<key>Display Name</key>\n<string>Phone</string>\n");
  ASSERT_EQ(0, truncate(strPath.c_str(), kHuge * 100));
  __BACK_FILE_INFO__ info;
  ProblemRecorder recorder;

  const Problem problem = ReadBackupInfo(folder.Path("backup"), info);

  EXPECT_FALSE(problem);
  EXPECT_EQ("Phone", info.strDisplayName);
  EXPECT_EQ(1u, recorder.Problems().size());
}

TEST(LargeManifest, IsReadInPieces) {
  TemporaryFolder folder;
  const manifest_bytes::Entry entry{"CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG"};
  const std::string strPath =
      folder.Write("Manifest.mbdb", manifest_bytes::kHeader + manifest_bytes::Bytes(entry));
  // Entries of 50 zero bytes, which are dropped.
  constexpr off_t kZeros = 50LL * 8 * 1000 * 1000;
  ASSERT_EQ(0, truncate(strPath.c_str(), static_cast<off_t>(manifest_bytes::kHeader.size() +
                                                            manifest_bytes::Bytes(entry).size()) +
                                             kZeros));
  const long nBefore = PeakMegabytes();
  Catalogue entries;
  ProblemRecorder recorder;

  const int nStatus = Read(strPath, entries);

  EXPECT_EQ(kStatusOk, nStatus);
  EXPECT_EQ(1u, entries.size());
  EXPECT_TRUE(recorder.Problems().empty());
  EXPECT_LT(PeakMegabytes() - nBefore, kMostMegabytes);
}

TEST(LargeManifest, MayHaveEntriesLongerThanAPiece) {
  TemporaryFolder folder;
  std::string strBytes = manifest_bytes::kHeader;
  for (const char* pszPath : {"a", "b", "c"})
    strBytes += manifest_bytes::Bytes(LongEntry(pszPath)) + manifest_bytes::Bytes({"HomeDomain", pszPath});
  Catalogue entries;
  ProblemRecorder recorder;

  const int nStatus = Read(folder.Write("Manifest.mbdb", strBytes), entries);

  EXPECT_EQ(kStatusOk, nStatus);
  ASSERT_EQ(6u, entries.size());
  EXPECT_EQ("AppDomain-example-c", entries[4].strFileName);
  EXPECT_EQ("HomeDomain-c", entries[5].strFileName);
  EXPECT_TRUE(recorder.Problems().empty());
}

TEST(LargeManifest, CutInALaterPieceKeepsWhatComesBefore) {
  TemporaryFolder folder;
  const std::string strBytes = manifest_bytes::kHeader + manifest_bytes::Bytes(LongEntry("a")) +
                               manifest_bytes::Bytes({"HomeDomain", "b"}) +
                               manifest_bytes::Bytes(LongEntry("c"));
  Catalogue entries;
  ProblemRecorder recorder;

  const int nStatus = Read(folder.Write("Manifest.mbdb", strBytes.substr(0, strBytes.size() - 1)), entries);

  EXPECT_EQ(kStatusOk, nStatus);
  EXPECT_EQ(2u, entries.size());
  ASSERT_EQ(1u, recorder.Problems().size());
  EXPECT_EQ(0u, recorder.Problems()[0].strReason.find("cut short"));
}
