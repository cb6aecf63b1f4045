#include "common/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>

#include "tests/support.h"

using namespace orvandel;

namespace {

constexpr long long kGiB = 1LL << 30;

struct CloseStream {
  void operator()(FILE* pStream) const { fclose(pStream); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

Stream Open(const std::string& strPath, const wchar_t* pMode) {
  return Stream(_wfopen(QString::fromUtf8(strPath.c_str()).toStdU16String().c_str(), pMode));
}

/// A descriptor that is closed by the destructor.
class TestFile {
 public:
  explicit TestFile(int nDescriptor) : m_nDescriptor(nDescriptor) { EXPECT_GE(nDescriptor, 0); }
  ~TestFile() { close(m_nDescriptor); }
  TestFile(const TestFile&) = delete;
  TestFile& operator=(const TestFile&) = delete;
  operator int() const { return m_nDescriptor; }

 private:
  int m_nDescriptor;
};

/// Writes a file under the exact bytes of its name, independent of the locale.
void WriteRawName(const std::string& strPath, const std::string& strBytes) {
  TestFile file(open(strPath.c_str(), O_CREAT | O_WRONLY, 0600));
  ASSERT_EQ(static_cast<ssize_t>(strBytes.size()), write(file, strBytes.data(), strBytes.size())) << strPath;
}

/// Creates a sparse file of a size, without blocks.
void MakeSparse(const std::string& strPath, long long nSize) {
  WriteFile(strPath, "");
  ASSERT_EQ(0, truncate(strPath.c_str(), nSize)) << nSize;
}

int SizeOf(const std::string& strPath, long long& nSize) {
  return GetFileByteSize(QString::fromUtf8(strPath.c_str()).toStdU16String().c_str(), nSize);
}

struct SizeCase {
  const char* pszName;
  long long nOnDisk;
  long long nReported;
};

void PrintTo(const SizeCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class FileByteSize : public testing::TestWithParam<SizeCase> {};

}  // namespace

TEST(OpenByWidePath, ModeWithAnEncodingMakesAnEmptyFileForPlainWriting) {
  TemporaryFolder folder;
  folder.Write("page.html", "old content");

  Stream stream = Open(folder.Path("page.html"), L"w+,ccs=UTF-8");

  ASSERT_NE(nullptr, stream);
  EXPECT_EQ("", ReadFile(folder.Path("page.html")));
}

TEST(OpenByWidePath, StreamOpenedForWritingCannotBeReadBack) {
  TemporaryFolder folder;
  Stream stream = Open(folder.Path("page.html"), L"w+,ccs=UTF-8");
  ASSERT_NE(nullptr, stream);
  fputs("text", stream.get());
  rewind(stream.get());

  const int nCharacter = fgetc(stream.get());

  EXPECT_EQ(EOF, nCharacter);
  EXPECT_NE(0, ferror(stream.get()));
}

TEST(OpenByWidePath, WrittenBytesArriveWithoutAByteOrderMark) {
  TemporaryFolder folder;
  Stream stream = Open(folder.Path("page.html"), L"w+,ccs=UTF-8");
  ASSERT_NE(nullptr, stream);

  fputs("caf\xC3\xA9\n", stream.get());
  stream.reset();

  EXPECT_EQ("caf\xC3\xA9\n", ReadFile(folder.Path("page.html")));
}

TEST(OpenByWidePath, BinaryReadingReadsTheFile) {
  TemporaryFolder folder;
  folder.Write("a.bin", "abc");

  Stream stream = Open(folder.Path("a.bin"), L"rb");

  ASSERT_NE(nullptr, stream);
  std::array<char, 8> bytes{};
  EXPECT_EQ(3u, fread(bytes.data(), 1, bytes.size(), stream.get()));
  EXPECT_STREQ("abc", bytes.data());
}

TEST(OpenByWidePath, ReadingAndWritingOpensForReadingOnly) {
  TemporaryFolder folder;
  folder.Write("a.txt", "abc");

  Stream stream = Open(folder.Path("a.txt"), L"r+");
  ASSERT_NE(nullptr, stream);
  const int nResult = fputc('x', stream.get());

  EXPECT_EQ(EOF, nResult);
  stream.reset();
  EXPECT_EQ("abc", ReadFile(folder.Path("a.txt")));
}

TEST(OpenByWidePath, AppendingKeepsWhatIsThere) {
  TemporaryFolder folder;
  folder.Write("a.txt", "abc");

  Stream stream = Open(folder.Path("a.txt"), L"ab+");
  ASSERT_NE(nullptr, stream);
  fputs("def", stream.get());
  stream.reset();

  EXPECT_EQ("abcdef", ReadFile(folder.Path("a.txt")));
}

TEST(OpenByWidePath, ExclusiveWritingIsPlainWriting) {
  TemporaryFolder folder;
  folder.Write("a.txt", "abc");

  Stream stream = Open(folder.Path("a.txt"), L"wx");

  EXPECT_NE(nullptr, stream);
}

TEST(OpenByWidePath, MissingFileGivesNullAndTheReason) {
  TemporaryFolder folder;

  errno = 0;
  Stream stream = Open(folder.Path("missing"), L"rb");
  const int nReason = errno;

  EXPECT_EQ(nullptr, stream);
  EXPECT_EQ(ENOENT, nReason);
}

TEST(OpenByWidePath, PathGoesThroughTheLocale) {
  TemporaryFolder folder;
  WriteRawName(folder.Path("\xE9.txt"), "Latin-1 name");
  WriteRawName(folder.Path("\xC3\xA9.txt"), "UTF-8 name");
  const std::u16string wstrPath = QString::fromUtf8(folder.Path("\xC3\xA9.txt").c_str()).toStdU16String();

  Stream utf8(_wfopen(wstrPath.c_str(), L"r"));
  LocaleCodec codec("ISO-8859-1");
  Stream latin1(_wfopen(wstrPath.c_str(), L"r"));

  ASSERT_NE(nullptr, utf8);
  ASSERT_NE(nullptr, latin1);
  EXPECT_EQ('U', fgetc(utf8.get()));
  EXPECT_EQ('L', fgetc(latin1.get()));
}

TEST(OpenByWidePath, PathEndsAtItsTerminator) {
  TemporaryFolder folder;
  folder.Write("a.txt", "abc");
  const std::u16string wstrPath = QString::fromUtf8(folder.Path("a.txt").c_str()).toStdU16String();

  Stream stream(_wfopen((wstrPath + u'\0' + u".bak").c_str(), L"r"));

  EXPECT_NE(nullptr, stream);
}

TEST_P(FileByteSize, IsComposedOfItsTwoHalves) {
  TemporaryFolder folder;
  MakeSparse(folder.Path("sparse"), GetParam().nOnDisk);
  long long nSize = -12345;

  const int nStatus = SizeOf(folder.Path("sparse"), nSize);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(GetParam().nReported, nSize) << GetParam().nOnDisk << " bytes on disk";
  EXPECT_EQ(static_cast<uint32_t>(GetParam().nOnDisk), static_cast<uint32_t>(nSize));
}

// The low half is sign-extended, so a size with bit 31 set is returned with all higher bits set.
INSTANTIATE_TEST_SUITE_P(File, FileByteSize,
                         testing::Values(SizeCase{"Empty", 0, 0}, SizeCase{"OneByte", 1, 1},
                                         SizeCase{"LastBeforeTheSign", 2 * kGiB - 1, 2147483647},
                                         SizeCase{"FirstWithTheSign", 2 * kGiB, -2147483648LL},
                                         SizeCase{"ThreeGigabytes", 3 * kGiB, -1073741824},
                                         SizeCase{"FourGigabytes", 4 * kGiB, 4294967296},
                                         SizeCase{"FiveGigabytes", 5 * kGiB, 5368709120},
                                         SizeCase{"SevenGigabytes", 7 * kGiB, -1073741824}),
                         [](const testing::TestParamInfo<SizeCase>& info) { return info.param.pszName; });

TEST(FileByteSize, MissingFileGivesTheReasonAndNoSize) {
  TemporaryFolder folder;
  long long nSize = 77;

  const int nStatus = SizeOf(folder.Path("missing"), nSize);

  EXPECT_EQ(ENOENT, nStatus);
  EXPECT_EQ(77, nSize);
}

TEST(FileByteSize, Utf8NameBeyondAsciiIsNotFound) {
  TemporaryFolder folder;
  folder.Write("caf\xC3\xA9.jpg", "abc");
  long long nSize = 77;

  const int nStatus = SizeOf(folder.Path("caf\xC3\xA9.jpg"), nSize);

  EXPECT_EQ(ENOENT, nStatus);
  EXPECT_EQ(77, nSize);
}

TEST(FileByteSize, LatinOneNameIsFoundInAUtf8Locale) {
  TemporaryFolder folder;
  WriteRawName(folder.Path("caf\xE9.jpg"), "abc");
  long long nSize = 0;

  const int nStatus = SizeOf(folder.Path("caf\xC3\xA9.jpg"), nSize);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(3, nSize);
}

TEST(ReadWhole, CountOfZeroSucceedsAndReadsNothing) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abc").c_str(), O_RDONLY));
  char chByte = '#';
  uint32_t nRead = 99;

  const int nStatus = ReadData(file, &chByte, 0, nRead);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0u, nRead);
  EXPECT_EQ('#', chByte);
  EXPECT_EQ(0, lseek(file, 0, SEEK_CUR));
}

TEST(ReadWhole, CountWithinTheFileIsReadAndNoMore) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abcdef").c_str(), O_RDONLY));
  std::string strBytes = "######";
  uint32_t nRead = 0;

  const int nStatus = ReadData(file, strBytes.data(), 4, nRead);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(4u, nRead);
  EXPECT_EQ("abcd##", strBytes);
  EXPECT_EQ(4, lseek(file, 0, SEEK_CUR));
}

TEST(ReadWhole, WholeFileSucceeds) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abcdef").c_str(), O_RDONLY));
  std::string strBytes(6, '#');
  uint32_t nRead = 0;

  const int nStatus = ReadData(file, strBytes.data(), 6, nRead);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(6u, nRead);
  EXPECT_EQ("abcdef", strBytes);
}

TEST(ReadWhole, FileThatEndsEarlyFailsAndGivesWhatCame) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abc").c_str(), O_RDONLY));
  std::string strBytes(4, '#');
  uint32_t nRead = 0;

  const int nStatus = ReadData(file, strBytes.data(), 4, nRead);

  EXPECT_EQ(30, nStatus);
  EXPECT_EQ(3u, nRead);
  EXPECT_EQ("abc#", strBytes);
}

TEST(ReadWhole, EmptyFileFails) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "").c_str(), O_RDONLY));
  char chByte = '#';
  uint32_t nRead = 99;

  const int nStatus = ReadData(file, &chByte, 1, nRead);

  EXPECT_EQ(30, nStatus);
  EXPECT_EQ(0u, nRead);
}

TEST(ReadWhole, BadDescriptorFails) {
  char chByte = '#';
  uint32_t nRead = 99;

  const int nStatus = ReadData(-1, &chByte, 1, nRead);

  EXPECT_EQ(30, nStatus);
  EXPECT_EQ(0u, nRead);
}

TEST(ReadWhole, CountBeyondOneChunkComesWhole) {
  TemporaryFolder folder;
  std::string strContent(150001, '\0');
  for (size_t i = 0; i < strContent.size(); ++i) strContent[i] = static_cast<char>(i * 31 / 7);
  TestFile file(open(folder.Write("a", strContent).c_str(), O_RDONLY));
  std::string strBytes(strContent.size(), '#');
  uint32_t nRead = 0;

  const int nStatus = ReadData(file, strBytes.data(), static_cast<uint32_t>(strBytes.size()), nRead);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(150001u, nRead);
  EXPECT_TRUE(strContent == strBytes);
}

TEST(ReadWhole, PiecesAreReadUntilTheCountIsReached) {
  int sockets[2];
  ASSERT_EQ(0, socketpair(AF_UNIX, SOCK_SEQPACKET, 0, sockets));  // one read returns one packet
  TestFile reader(sockets[0]);
  TestFile writer(sockets[1]);
  ASSERT_EQ(3, write(writer, "abc", 3));
  ASSERT_EQ(2, write(writer, "de", 2));
  std::string strBytes(5, '#');
  uint32_t nRead = 0;

  const int nStatus = ReadData(reader, strBytes.data(), 5, nRead);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(5u, nRead);
  EXPECT_EQ("abcde", strBytes);
}

TEST(FileAttributes, SizeComesInTwoHalves) {
  TemporaryFolder folder;
  MakeSparse(folder.Path("sparse"), 7 * kGiB + 5);
  TestFile file(open(folder.Path("sparse").c_str(), O_RDONLY));
  STRUCT_RSB_FILE_ATTR attributes;

  const int nStatus = rsb_statH(file, &attributes);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(1u, attributes.nFileSizeHigh);
  EXPECT_EQ(0xC0000005u, attributes.nFileSizeLow);
}

TEST(FileAttributes, RecordOfAnotherFileIsOverwritten) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abc").c_str(), O_RDONLY));
  STRUCT_RSB_FILE_ATTR attributes;
  attributes.nFileSizeHigh = 8;
  attributes.nFileSizeLow = 9;

  const int nStatus = rsb_statH(file, &attributes);

  EXPECT_EQ(0, nStatus);
  EXPECT_EQ(0u, attributes.nFileSizeHigh);
  EXPECT_EQ(3u, attributes.nFileSizeLow);
}

TEST(FileAttributes, NullRecordIsFine) {
  TemporaryFolder folder;
  TestFile file(open(folder.Write("a", "abc").c_str(), O_RDONLY));

  const int nStatus = rsb_statH(file, nullptr);

  EXPECT_EQ(0, nStatus);
}

TEST(FileAttributes, BadDescriptorFails) {
  STRUCT_RSB_FILE_ATTR attributes;
  int pipes[2];
  ASSERT_EQ(0, pipe(pipes));
  close(pipes[0]);
  close(pipes[1]);

  const int nStatusOfNone = rsb_statH(-1, &attributes);
  const int nStatusOfClosed = rsb_statH(pipes[0], &attributes);

  EXPECT_EQ(-1, nStatusOfNone);
  EXPECT_EQ(-1, nStatusOfClosed);
}

TEST(Pause, LastsAtLeastAsLongAsAsked) {
  const auto start = std::chrono::steady_clock::now();

  rsb_msleep(12);

  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(12));
}
