#include "decrypt/written_content.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/decrypt/cryptography.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr size_t kPiece = 256 * 1024;

std::string SomeText(size_t nSize) {
  std::string strText(nSize, '\0');
  for (size_t i = 0; i < nSize; ++i) strText[i] = static_cast<char>(i * 31 + i / 251);
  return strText;
}

void WriteDecrypted(const std::string& strSource, const std::string& strTarget, const Secret& key,
                    uint64_t nSize) {
  ContentStream content(OpenBackupFile(strSource), key, nSize);
  WriteContent(content, strTarget);
}

class WrittenFile : public testing::Test {
 protected:
  Secret Key() const { return SecretOf(m_key); }
  std::string Source(const std::string& strBytes) const { return m_folder.Write("source", strBytes); }
  std::string Target() const { return m_folder.Path("out/target"); }
  void SetUp() override { m_folder.MakeFolder("out"); }

  /// The error for a source; expects that no target exists.
  std::string RefusalOf(const std::string& strSource, uint64_t nSize) const {
    try {
      WriteDecrypted(strSource, Target(), Key(), nSize);
    } catch (const std::runtime_error& error) {
      EXPECT_THAT(NamesIn(m_folder.Path("out")), IsEmpty());
      return error.what();
    }
    return "nothing was thrown";
  }

  TemporaryFolder m_folder;
  Bytes m_key = SomeKey(5);
};

class WrittenFileOfSize : public WrittenFile, public testing::WithParamInterface<size_t> {};

}  // namespace

TEST_P(WrittenFileOfSize, IsThePlainOneByItsSize) {
  const std::string strPlain = SomeText(GetParam());

  WriteDecrypted(Source(Encrypt(m_key, strPlain)), Target(), Key(), strPlain.size());

  EXPECT_TRUE(strPlain == ReadFile(Target()));
  EXPECT_THAT(NamesIn(m_folder.Path("out")), ElementsAre("target"));
}

TEST_P(WrittenFileOfSize, IsThePlainOneByItsPadding) {
  const std::string strPlain = SomeText(GetParam());

  WriteDecrypted(Source(Encrypt(m_key, strPlain)), Target(), Key(), UINT64_MAX);

  EXPECT_TRUE(strPlain == ReadFile(Target()));
}

TEST_P(WrittenFileOfSize, IsACopyWithoutAKey) {
  const std::string strPlain = SomeText(GetParam());

  WriteDecrypted(Source(strPlain), Target(), Secret(), 1);  // the size of an unencrypted file is ignored

  EXPECT_TRUE(strPlain == ReadFile(Target()));
}

INSTANTIATE_TEST_SUITE_P(Bytes, WrittenFileOfSize,
                         testing::Values(0, 1, 15, 16, 17, 4096, kPiece - 17, kPiece - 16, kPiece - 15,
                                         kPiece - 1, kPiece, kPiece + 1, 2 * kPiece, 3 * kPiece + 5,
                                         5 * 1024 * 1024 + 3),
                         testing::PrintToStringParamName());

TEST_F(WrittenFile, IsCutToItsSize) {
  const std::string strPlain = SomeText(kPiece + 100);
  const std::string strSource = Source(Encrypt(m_key, strPlain));
  for (const size_t nSize : {size_t{0}, size_t{1}, size_t{16}, kPiece, kPiece + 99}) {
    WriteDecrypted(strSource, Target(), Key(), nSize);

    EXPECT_TRUE(strPlain.substr(0, nSize) == ReadFile(Target())) << nSize;
  }
}

TEST_F(WrittenFile, NeedsNoPaddingWhenItsSizeIsKnown) {
  const std::string strPlain = SomeText(4096);

  WriteDecrypted(Source(Encrypt(m_key, strPlain, false)), Target(), Key(), strPlain.size());

  EXPECT_TRUE(strPlain == ReadFile(Target()));
}

TEST_F(WrittenFile, BelongsToItsOwnerAlone) {
  const mode_t nOld = umask(0);
  WriteDecrypted(Source(Encrypt(m_key, "text")), Target(), Key(), 4);
  umask(nOld);

  struct stat attributes;
  ASSERT_EQ(0, stat(Target().c_str(), &attributes));

  EXPECT_EQ(0600u, attributes.st_mode & 07777);
}

TEST_F(WrittenFile, TakesThePlaceOfAnOlderOne) {
  WriteFile(Target(), "an older and longer one");

  WriteDecrypted(Source(Encrypt(m_key, "text")), Target(), Key(), 4);

  EXPECT_EQ("text", ReadFile(Target()));
}

TEST_F(WrittenFile, LeavesWhatAnotherRunLeftBehind) {
  m_folder.Write("out/target.part", "half of it");

  WriteDecrypted(Source(Encrypt(m_key, "text")), Target(), Key(), 4);

  EXPECT_EQ("text", ReadFile(Target()));
  EXPECT_EQ("half of it", ReadFile(Target() + ".part"));
}

TEST_F(WrittenFile, FollowsNoLinkInItsWay) {
  const std::string strVictim = m_folder.Write("victim", "untouched");
  ASSERT_EQ(0, symlink(strVictim.c_str(), (Target() + ".part").c_str()));
  ASSERT_EQ(0, symlink(strVictim.c_str(), Target().c_str()));

  WriteDecrypted(Source(Encrypt(m_key, "text")), Target(), Key(), 4);

  EXPECT_EQ("untouched", ReadFile(strVictim));
  EXPECT_EQ("text", ReadFile(Target()));
}

TEST_F(WrittenFile, MayBeWrittenByTwoAtATime) {
  const std::string strPlain = SomeText(kPiece);
  const std::string strSource = Source(Encrypt(m_key, strPlain));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 25; ++j) WriteDecrypted(strSource, Target(), Key(), strPlain.size());
    });

  for (std::thread& thread : threads) thread.join();

  EXPECT_TRUE(strPlain == ReadFile(Target()));
  EXPECT_THAT(NamesIn(m_folder.Path("out")), ElementsAre("target"));
}

TEST_F(WrittenFile, IsRefusedWithDamagedPadding) {
  for (const std::string& strEnd : {std::string(1, '\0'), std::string(1, '\x11'), std::string(1, '\xFF')}) {
    const std::string strSource = Source(Encrypt(m_key, std::string(31, 'x') + strEnd, false));

    EXPECT_EQ("is damaged: its padding is invalid", RefusalOf(strSource, UINT64_MAX));
  }
}

TEST_F(WrittenFile, IsRefusedWithPaddingOfDifferentBytes) {
  const std::string strSource = Source(Encrypt(m_key, std::string(31, 'x') + '\x04', false));

  EXPECT_EQ("is damaged: its padding is invalid", RefusalOf(strSource, UINT64_MAX));
}

TEST_F(WrittenFile, IsRefusedWhenCutWithinABlock) {
  const std::string strBytes = Encrypt(m_key, SomeText(1000));
  for (const size_t nCut : {1, 15, 17, 999})
    EXPECT_THAT(RefusalOf(Source(strBytes.substr(0, strBytes.size() - nCut)), 1000),
                HasSubstr("is cut short: it doesn't end on a whole block"))
        << nCut;
}

TEST_F(WrittenFile, IsRefusedWhenCutBetweenBlocks) {
  const std::string strBytes = Encrypt(m_key, SomeText(1000));

  EXPECT_EQ("is cut short: 992 of 1000 bytes", RefusalOf(Source(strBytes.substr(0, 992)), 1000));
  EXPECT_EQ("is cut short: 0 of 1000 bytes", RefusalOf(Source(""), 1000));
  EXPECT_EQ("is cut short: it is empty", RefusalOf(Source(""), UINT64_MAX));
}

TEST_F(WrittenFile, IsRefusedWithoutASource) {
  EXPECT_EQ("can't be opened: No such file or directory", RefusalOf(m_folder.Path("missing"), 4));
}

TEST_F(WrittenFile, IsRefusedWhenTheSourceIsAFolder) {
  EXPECT_EQ("can't be opened: Is a directory", RefusalOf(m_folder.MakeFolder("folder"), 4));
}

TEST_F(WrittenFile, IsRefusedWhenTheSourceIsAPipe) {
  const std::string strPipe = m_folder.Path("pipe");
  ASSERT_EQ(0, mkfifo(strPipe.c_str(), 0600));

  EXPECT_EQ("can't be opened: is not a regular file", RefusalOf(strPipe, 4));
}

TEST_F(WrittenFile, IsRefusedWhenTheSourceIsALink) {
  const std::string strLink = m_folder.Path("link");
  ASSERT_EQ(0, symlink(m_folder.Write("elsewhere", "text").c_str(), strLink.c_str()));

  EXPECT_EQ("can't be opened: is a symbolic link, which is not followed", RefusalOf(strLink, 4));
}

TEST_F(WrittenFile, IsRefusedWithoutItsFolder) {
  ASSERT_EQ(0, rmdir(m_folder.Path("out").c_str()));

  EXPECT_EQ(Target() + ".part can't be created: No such file or directory",
            RefusalOf(Source(Encrypt(m_key, "text")), 4));
}

TEST_F(WrittenFile, IsRefusedInPlaceOfAFolder) {
  m_folder.MakeFolder("out/target/below");
  try {
    WriteDecrypted(Source(Encrypt(m_key, "text")), Target(), Key(), 4);
    ADD_FAILURE() << "a folder was replaced";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("can't be renamed into place"));
  }
  EXPECT_THAT(NamesIn(m_folder.Path("out")), ElementsAre("target"));
}
