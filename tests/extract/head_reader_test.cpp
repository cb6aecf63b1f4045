#include "extract/head_reader.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <thread>

#include "common/file.h"
#include "common/problem.h"
#include "common/stop.h"
#include "extract/app_files.h"
#include "extract/file_type.h"
#include "extract/media.h"
#include "sample/pictures.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const std::string kRoll = "CameraRollDomain-Media/DCIM/100APPLE/";
const std::string kStream = "MediaDomain-Media/PhotoStreamsData/1/";
const std::string kAttached = "MediaDomain-Library/SMS/Attachments/00/";
const std::string kSnap = "AppDomain-com.example.Snap-Documents/";

struct Reported {
  std::string strFile;
  std::string strReason;
  bool operator==(const Reported& other) const {
    return strFile == other.strFile && strReason == other.strReason;
  }
};

void PrintTo(const Reported& one, std::ostream* pStream) {
  *pStream << one.strFile << ": " << one.strReason;
}

/// A catalogue that is read ahead, with every kind of entry: photos, files without a type, short and missing
/// ones, links and folders in place of files, identifiers that aren't file names, and names that no walk
/// matches.
class ReadAhead : public testing::Test {
 protected:
  ReadAhead() {
    m_layout.qstrRoot = FromNarrow(m_folder.MakeFolder("backup"));
    m_layout.bHasManifestDb = true;
    const std::string strJpeg = sample_media::jpeg(1, 64, 48).toStdString();
    Write("photo", strJpeg);
    Write("movie", sample_media::mp4(1).toStdString());
    Write("unknown", sample_media::unknown(1).toStdString());
    Write("short", strJpeg.substr(0, 511));
    m_folder.MakeFolder("backup/fo/folder");
    Write("link", "");
    EXPECT_EQ(0, unlink(Path("link").c_str()));
    EXPECT_EQ(0, symlink(Path("photo").c_str(), Path("link").c_str()));
    Fill(3000);
  }
  ~ReadAhead() override {
    SetProblemHandler(nullptr);
    SetStopFlag(nullptr);
  }

  void Fill(int nEntries) {
    const std::vector<std::string> folders = {kRoll, kStream, kAttached, kSnap, "HomeDomain-"};
    const std::vector<std::string> ids = {"photo", "missing", "movie", "link",      "unknown", "photo",
                                          "short", "folder",  "photo", "../beside", "movie"};
    m_catalogue.clear();
    for (size_t i = 0; i < static_cast<size_t>(nEntries); ++i)
      m_catalogue.push_back({folders[i * 31 / 7 % folders.size()] + std::to_string(i * 7919 % 3001) + ".JPG",
                             ids[i * 17 / 5 % ids.size()]});
  }

  std::string Path(const std::string& strId) const { return ToNarrow(m_layout.PathOf(strId)); }
  void Write(const std::string& strId, const std::string& strBytes) { WriteFile(Path(strId), strBytes); }

  /// Starts recording reports with their threads.
  void Collect() {
    s_reported.clear();
    s_threads.clear();
    SetProblemHandler([](const std::string& strFile, const std::string& strReason) {
      s_reported.push_back({strFile, strReason});
      s_threads.push_back(std::this_thread::get_id());
    });
  }

  /// The result of a walk that opens the files sequentially.
  struct Expected {
    std::vector<std::string> names;  ///< catalogue names of the files of a known type
    std::vector<Reported> reported;
    std::vector<int> values;
  };
  Expected OneByOne(bool (*isWanted)(const std::string&), int nBase, int nStep, size_t nMostValues = -1) {
    Collect();
    Expected expected;
    CFileTypeJudge judge;
    int nCount = 0;
    for (const __MBDB_FILE__& entry : m_catalogue) {
      if (isWanted(entry.strFileName)) {
        std::string strJudged;
        const std::string strPath = Path(entry.strFileId);
        judge.ParseFileBuf(strPath.c_str(), strJudged);
        if (!strJudged.empty()) expected.names.push_back(DeviceFileName(entry.strFileName));
        if (!EntryExists(strPath)) continue;
      }
      expected.values.push_back(nBase + nStep * ++nCount / static_cast<int>(m_catalogue.size()));
      if (expected.values.size() == nMostValues) break;
    }
    expected.reported = s_reported;
    return expected;
  }

  static std::vector<Reported> s_reported;
  static std::vector<std::thread::id> s_threads;

  TemporaryFolder m_folder;
  BackupLayout m_layout;
  Catalogue m_catalogue;
  ProgressLog m_log;
  std::vector<_IPHONE_CAMERA_INFO_> m_camera, m_stream;
  std::vector<_IPHONE_ATTACHMENTS_> m_attachments;
};

std::vector<Reported> ReadAhead::s_reported;
std::vector<std::thread::id> ReadAhead::s_threads;

bool IsRoll(const std::string& strName) {
  return strName.find(kRoll) == 0;
}
bool IsStream(const std::string& strName) {
  return strName.find(kStream) == 0;
}
bool IsCamera(const std::string& strName) {
  return IsRoll(strName) || IsStream(strName);
}
bool IsAttachment(const std::string& strName) {
  return strName.find(kAttached) == 0;
}
bool IsAny(const std::string&) {
  return true;
}

class ReadAheadSize : public ReadAhead, public testing::WithParamInterface<int> {};
class ReadAheadCancel : public ReadAhead, public testing::WithParamInterface<size_t> {};

}  // namespace

TEST_F(ReadAhead, CameraWalkGivesTheSameAsSequentialReading) {
  Expected expected = OneByOne(IsCamera, 12, 2 * 11);
  const std::vector<std::string> streamNames = OneByOne(IsStream, 12, 2 * 11).names;
  Collect();

  const int nAnswer =
      WalkCameraFiles(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 12, 11}, m_camera, m_stream);

  EXPECT_EQ(0, nAnswer);
  EXPECT_EQ(expected.values, m_log.values);
  EXPECT_THAT(s_reported, Not(IsEmpty()));
  EXPECT_EQ(expected.reported, s_reported);
  EXPECT_THAT(s_threads, Each(std::this_thread::get_id()));
  EXPECT_THAT(m_stream, Not(IsEmpty()));
  EXPECT_EQ(streamNames, FileNames(m_stream));
  EXPECT_THAT(m_camera, SizeIs(expected.names.size() - streamNames.size()));
  EXPECT_TRUE(std::is_sorted(m_camera.begin(), m_camera.end(), CamVectorCmp));
  for (const _IPHONE_CAMERA_INFO_& file : m_stream)
    EXPECT_EQ(std::filesystem::file_size(Unicode2Ansi(file.wstrFilePath.c_str())), file.uFileSize);
}

TEST_F(ReadAhead, AttachmentWalkGivesTheSameAsSequentialReading) {
  Expected expected = OneByOne(IsAttachment, 40, 11);
  Collect();

  WalkMsgAttachments(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 40, 11}, m_attachments);

  EXPECT_EQ(expected.values, m_log.values);
  EXPECT_EQ(expected.reported, s_reported);
  EXPECT_THAT(m_attachments, SizeIs(expected.names.size()));
  EXPECT_THAT(m_attachments, Not(IsEmpty()));
}

TEST_F(ReadAhead, AppWalkReportsEachEntryAndTheSameProblems) {
  const auto isApp = [](const std::string& strName) { return strName.find(kSnap) == 0; };
  Expected expected = OneByOne(isApp, 0, 0);
  std::vector<_IPHONE_APP_FILE_INFO_> files;
  std::vector<_WHATSAPP_ATTACHMENTS_> whatsApp;
  Collect();

  WalkAppFiles(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 65, 11}, files, whatsApp);

  EXPECT_THAT(m_log.values, SizeIs(m_catalogue.size()));
  EXPECT_EQ(expected.reported, s_reported);
  EXPECT_THAT(files, SizeIs(expected.names.size()));
  EXPECT_THAT(files, Not(IsEmpty()));
}

TEST_P(ReadAheadCancel, KeepsWhatCameBeforeAndReportsNothingOfWhatWasReadAhead) {
  Expected expected = OneByOne(IsCamera, 12, 2 * 11, GetParam());
  Collect();
  m_log.answer = [](size_t nCall, int) { return nCall + 1 == GetParam() ? 5 : 0; };

  const int nAnswer =
      WalkCameraFiles(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 12, 11}, m_camera, m_stream);

  EXPECT_EQ(5, nAnswer);
  EXPECT_EQ(expected.values, m_log.values);
  EXPECT_EQ(expected.reported, s_reported);
  EXPECT_EQ(expected.names.size(), m_camera.size() + m_stream.size());
}

INSTANTIATE_TEST_SUITE_P(Calls, ReadAheadCancel, testing::Values(1, 2, 63, 64, 65, 1000, 1024, 2000));

TEST_P(ReadAheadSize, GivesEachFileOnceAndInOrder) {
  Fill(GetParam());
  const FileLocator locator(m_layout);

  HeadReader reader(m_catalogue, m_layout, IsCamera);

  for (size_t i = 0; i < m_catalogue.size(); ++i) {
    const HeadReader::File* pFile = reader.FileOf(i);
    ASSERT_EQ(IsCamera(m_catalogue[i].strFileName), pFile != nullptr) << i;
    if (!pFile) continue;
    std::string strPath;
    BackupFileHead head;
    locator.Locate(m_catalogue[i].strFileId, strPath);
    ReadFileHead(strPath.c_str(), head);
    ASSERT_EQ(i, pFile->nEntry);
    ASSERT_EQ(strPath, pFile->strPath);
    ASSERT_EQ(head.nOpenError, pFile->head.nOpenError) << strPath;
    ASSERT_EQ(head.bWhole, pFile->head.bWhole) << strPath;
    if (head.bWhole) {
      ASSERT_EQ(head.bytes, pFile->head.bytes) << strPath;
    }
  }
}

// Around the minimum size for a second thread, the size of a block of entries, and that of all blocks.
INSTANTIATE_TEST_SUITE_P(Entries, ReadAheadSize,
                         testing::Values(0, 1, 64, 1024, 1025, 1087, 1088, 1089, 2112, 2113, 20000));

TEST_F(ReadAhead, WalkMayEndAtAnyEntry) {
  for (const size_t nEntries : {0, 1, 63, 64, 65, 1500, 2999}) {
    HeadReader reader(m_catalogue, m_layout, IsAny);

    for (size_t i = 0; i < nEntries; ++i) ASSERT_NE(nullptr, reader.FileOf(i));
  }
}

TEST_F(ReadAhead, StopFlagDoesNotEndTheWalk) {
  const Expected expected = OneByOne(IsCamera, 12, 2 * 11);
  std::atomic<bool> bStop{false};
  SetStopFlag(&bStop);
  m_log.answer = [&](size_t nCall, int) {
    bStop = bStop || nCall == 500;
    return 0;
  };

  WalkCameraFiles(m_catalogue, m_layout, {ProgressLog::Receive, &m_log, 12, 11}, m_camera, m_stream);

  EXPECT_EQ(expected.values, m_log.values);
  EXPECT_EQ(expected.names.size(), m_camera.size() + m_stream.size());
}

TEST(FileLocator, FollowsTheRuleForEveryIdentifier) {
  for (const bool bSharded : {false, true}) {
    for (const char* pszRoot : {"/root", "/r\xC3\xB6\xC3\xB6t"}) {
      const BackupLayout layout{FromNarrow(pszRoot), false, bSharded};
      const FileLocator locator(layout);
      for (const std::string& strId : std::vector<std::string>{"", "a", "ab", "abc", ".", "..", "...", ".a",
                                                               "a/b", "\xC3\xA9tude", "0123456789abcdef"}) {
        std::string strPath = "earlier";

        locator.Locate(strId, strPath);

        EXPECT_EQ(ToNarrow(layout.PathOf(strId)), strPath) << pszRoot << " " << strId;
      }
    }
  }
}
