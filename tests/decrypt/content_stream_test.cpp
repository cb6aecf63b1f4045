#include "decrypt/content_stream.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <optional>

#include "decrypt/protocol.h"
#include "tests/decrypt/cryptography.h"
#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;

namespace {

constexpr size_t kBlock = 16;
constexpr size_t kPiece = 256 * 1024;
constexpr uint64_t kUnknown = ContentStream::kUnknownSize;

std::string SomeText(size_t nSize) {
  std::string strText(nSize, '\0');
  for (size_t i = 0; i < nSize; ++i) strText[i] = static_cast<char>(i * 31 + i / 251);
  return strText;
}

/// Reads the rest of a stream in pieces of nPiece bytes.
std::string ReadAll(ContentStream& content, size_t nPiece) {
  std::string strAll, strPiece(nPiece, '\0');
  while (const size_t nRead = content.Read(reinterpret_cast<unsigned char*>(strPiece.data()), nPiece))
    strAll.append(strPiece, 0, nRead);
  return strAll;
}

std::optional<ContentError> ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const ContentError& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return std::nullopt;
}

std::string ReasonOf(const std::function<void()>& action) {
  const auto error = ErrorOf(action);
  if (!error) return {};
  EXPECT_EQ(EIO, error->Code());
  EXPECT_EQ(Problem::Step::Read, error->Step());
  return error->what();
}

class Content : public testing::Test {
 protected:
  ContentStream Open(const std::string& strBytes, uint64_t nSize) const {
    return ContentStream(OpenBackupFile(m_folder.Write("source", strBytes)), SecretOf(m_key), nSize);
  }
  ContentStream OpenPath(const std::string& strPath) const {
    return ContentStream(OpenBackupFile(strPath), SecretOf(m_key), 4);
  }

  TemporaryFolder m_folder;
  Bytes m_key = SomeKey(7), m_otherKey = SomeKey(8);
};

class ContentOfSize : public Content, public testing::WithParamInterface<size_t> {};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Bytes, ContentOfSize,
                         testing::Values(0, 1, 15, 16, 17, 31, 32, 33, 1023, 1024, 1025, kPiece - 17,
                                         kPiece - 16, kPiece - 15, kPiece - 1, kPiece, kPiece + 1,
                                         kPiece + 15, kPiece + 16, kPiece + 17, 2 * kPiece),
                         testing::PrintToStringParamName());

TEST_P(ContentOfSize, IsReadInPiecesOfAnySize) {
  const std::string strPlain = SomeText(GetParam());
  const std::string strBytes = Encrypt(m_key, strPlain);
  for (const uint64_t nSize : {static_cast<uint64_t>(GetParam()), kUnknown}) {
    for (const size_t nPiece : {kBlock, 2 * kBlock, size_t{1024}, kPiece, 2 * kPiece + kBlock}) {
      ContentStream content = Open(strBytes, nSize);

      EXPECT_EQ(GetParam(), content.Size());
      EXPECT_TRUE(strPlain == ReadAll(content, nPiece)) << nSize << " in pieces of " << nPiece;
      EXPECT_EQ("", ReadAll(content, nPiece)) << "there is something after the end";
    }
  }
}

TEST_P(ContentOfSize, GivesItsHeadInOneRead) {
  const std::string strPlain = SomeText(GetParam());
  const std::string strBytes = Encrypt(m_key, strPlain);
  for (const size_t nHead : {size_t{16}, size_t{32}, size_t{1024}}) {
    ContentStream content = Open(strBytes, GetParam());
    std::string strHead(nHead, '\0');

    const size_t nRead = content.Read(reinterpret_cast<unsigned char*>(strHead.data()), nHead);

    EXPECT_EQ(std::min(nHead, GetParam()), nRead);
    EXPECT_TRUE(strPlain.substr(0, nHead) == strHead.substr(0, nRead)) << nHead;
  }
}

TEST_P(ContentOfSize, WithThePaddingOfItsKeyPassesTheCheckWhereverItIsRead) {
  const std::string strPlain = SomeText(GetParam());
  ContentStream content = Open(Encrypt(m_key, strPlain), GetParam());

  EXPECT_NO_THROW(content.CheckPadding());
  std::string strStart(kBlock, '\0');
  const size_t nRead = content.Read(reinterpret_cast<unsigned char*>(strStart.data()), kBlock);
  EXPECT_NO_THROW(content.CheckPadding());

  EXPECT_TRUE(strPlain == strStart.substr(0, nRead) + ReadAll(content, 1024));
}

TEST_P(ContentOfSize, OfAnotherKeyFailsAtItsEndAndByTheCheck) {
  const std::string strBytes = Encrypt(m_otherKey, SomeText(GetParam()));
  ContentStream content = Open(strBytes, GetParam());

  EXPECT_THAT(ReasonOf([&] { content.CheckPadding(); }), HasSubstr("its key is that of another file"));
  EXPECT_THAT(ReasonOf([&] { ReadAll(content, 1024); }), HasSubstr("its key is that of another file"));
}

TEST_P(ContentOfSize, FilledUpWithZerosIsAccepted) {
  const std::string strPlain = SomeText(GetParam());
  const size_t nZeros = kBlock - GetParam() % kBlock;
  ContentStream content = Open(Encrypt(m_key, strPlain + std::string(nZeros, '\0'), false), GetParam());

  EXPECT_NO_THROW(content.CheckPadding());
  EXPECT_TRUE(strPlain == ReadAll(content, 1024));
}

TEST_P(ContentOfSize, WithMoreBlocksThanItTakesIsCutToItsSize) {
  const std::string strPlain = SomeText(GetParam());
  const size_t nMore = 3 * kBlock - GetParam() % kBlock;
  ContentStream content = Open(Encrypt(m_key, strPlain + SomeText(nMore), false), GetParam());

  EXPECT_EQ(GetParam(), content.Size());
  EXPECT_NO_THROW(content.CheckPadding());
  EXPECT_TRUE(strPlain == ReadAll(content, kPiece));
}

TEST_F(Content, ThatHasGrownWithinItsLastBlockIsCutToItsSize) {
  const std::string strPlain = SomeText(48);
  for (size_t nGrown = 33; nGrown < 47; ++nGrown) {
    const std::string strBytes = Encrypt(m_key, strPlain.substr(0, nGrown));
    for (size_t nSize = 32; nSize <= nGrown; ++nSize) {
      ContentStream content = Open(strBytes, nSize);

      EXPECT_NO_THROW(content.CheckPadding());
      EXPECT_EQ(strPlain.substr(0, nSize), ReadAll(content, 1024)) << nSize << " of " << nGrown;
    }
  }
}

TEST_F(Content, ThatEndsBeforeItsSizeWithinItsLastBlockIsRefused) {
  const std::string strBytes = Encrypt(m_key, SomeText(36));
  for (size_t nSize = 37; nSize < 48; ++nSize) {
    ContentStream content = Open(strBytes, nSize);

    EXPECT_THAT(ReasonOf([&] { ReadAll(content, 1024); }), HasSubstr("its padding is invalid")) << nSize;
  }
}

TEST_P(ContentOfSize, OfWholeBlocksNeedsNoPadding) {
  if (GetParam() % kBlock != 0) GTEST_SKIP() << "doesn't end on a whole block";
  const std::string strPlain = SomeText(GetParam());
  ContentStream content = Open(Encrypt(m_key, strPlain, false), GetParam());

  EXPECT_NO_THROW(content.CheckPadding());
  EXPECT_TRUE(strPlain == ReadAll(content, 1024));
}

TEST_P(ContentOfSize, WithoutAKeyIsTheFileItself) {
  const std::string strPlain = SomeText(GetParam());
  const std::string strPath = m_folder.Write("plain", strPlain);
  for (const uint64_t nIgnored : {uint64_t{0}, uint64_t{5}, uint64_t{1} << 40, kUnknown}) {
    ContentStream content(OpenBackupFile(strPath), Secret(), nIgnored);

    EXPECT_EQ(GetParam(), content.Size());
    EXPECT_NO_THROW(content.CheckPadding());
    EXPECT_TRUE(strPlain == ReadAll(content, 1024)) << nIgnored;
  }
}

TEST_P(ContentOfSize, CutWithinABlockIsRefused) {
  const std::string strBytes = Encrypt(m_key, SomeText(GetParam()));
  for (const size_t nCut : {1, 7, 15}) {
    for (const uint64_t nSize : {static_cast<uint64_t>(GetParam()), kUnknown})
      EXPECT_EQ("is cut short: it doesn't end on a whole block",
                ReasonOf([&] { Open(strBytes.substr(0, strBytes.size() - nCut), nSize); }));
  }
}

TEST_P(ContentOfSize, CutBetweenBlocksIsRefusedByItsSize) {
  if (GetParam() == 0) GTEST_SKIP() << "is shorter than a block";
  const size_t nLeft = (GetParam() - 1) / kBlock * kBlock;
  const std::string strBytes = Encrypt(m_key, SomeText(GetParam())).substr(0, nLeft);

  EXPECT_EQ("is cut short: " + std::to_string(nLeft) + " of " + std::to_string(GetParam()) + " bytes",
            ReasonOf([&] { Open(strBytes, GetParam()); }));
}

TEST_F(Content, ThatIsEmptyIsRefusedIfItsSizeIsUnknown) {
  EXPECT_EQ("is cut short: it is empty", ReasonOf([&] { Open("", kUnknown); }));
  EXPECT_EQ(0u, Open("", 0).Size());
}

TEST_F(Content, OfAnotherKeyIsRefusedIfItsSizeIsUnknown) {
  EXPECT_EQ("is damaged: its padding is invalid",
            ReasonOf([&] { Open(Encrypt(m_otherKey, SomeText(1000)), kUnknown); }));
}

TEST_F(Content, OfAnAbsurdSizeIsRefused) {
  for (const uint64_t nSize : {uint64_t{33}, uint64_t{1} << 63, UINT64_MAX - 1})
    EXPECT_THAT(ReasonOf([&] { Open(Encrypt(m_key, SomeText(31)), nSize); }),
                HasSubstr("is cut short: 32 of "));
}

TEST_F(Content, ThatBecomesShorterIsRefused) {
  const std::string strPlain = SomeText(4096);
  for (const bool bEncrypted : {true, false}) {
    const std::string strPath = m_folder.Write("shrinks", bEncrypted ? Encrypt(m_key, strPlain) : strPlain);
    ContentStream content(OpenBackupFile(strPath), bEncrypted ? SecretOf(m_key) : Secret(), 4096);
    ASSERT_EQ(0, truncate(strPath.c_str(), 1024));

    EXPECT_EQ("became shorter while it was read", ReasonOf([&] { ReadAll(content, 512); }));
  }
}

TEST_F(Content, OfAMissingFileIsMissing) {
  const auto error = ErrorOf([&] { OpenPath(m_folder.Path("nowhere")); });

  ASSERT_TRUE(error);
  EXPECT_EQ(ENOENT, error->Code());
  EXPECT_EQ(Problem::Step::Open, error->Step());
  EXPECT_STREQ(kMissingSource, error->what());
}

TEST_F(Content, OfAnythingButAFileIsRefused) {
  const std::string strPipe = m_folder.Path("pipe"), strLink = m_folder.Path("link");
  ASSERT_EQ(0, mkfifo(strPipe.c_str(), 0600));
  ASSERT_EQ(0, symlink(m_folder.Write("text", "text").c_str(), strLink.c_str()));
  const std::pair<std::string, int> cases[] = {
      {strPipe, ENXIO}, {strLink, ELOOP}, {m_folder.MakeFolder("folder"), EISDIR}};
  for (const auto& [strPath, nCode] : cases) {
    const auto error = ErrorOf([&, strFile = strPath] { OpenPath(strFile); });

    ASSERT_TRUE(error) << strPath;
    EXPECT_EQ(nCode, error->Code()) << strPath;
    EXPECT_EQ(Problem::Step::Open, error->Step()) << strPath;
    EXPECT_THAT(error->what(), HasSubstr("can't be opened: ")) << strPath;
  }
}
