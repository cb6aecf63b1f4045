#include "export/document_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>

#include "common/text.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

/// Limits the size of files that the process writes during the object's lifetime, like a full disk.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t nBytes) : m_pfnBefore(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{nBytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    signal(SIGXFSZ, m_pfnBefore);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  void (*m_pfnBefore)(int);
  rlimit m_before{};
};

constexpr rlim_t kLimit = 4096;
const std::string kHead(3 * kLimit, 'h'), kTail = "tail";

/// Whether a file of that name exists before.
class DocumentCutShort : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (GetParam()) m_folder.Write("page.html", "older");
  }

  TemporaryFolder m_folder;
  const std::string m_strPath = m_folder.Path("page.html");
};

}  // namespace

TEST_P(DocumentCutShort, IsNoPageAtAll) {
  int nStatus = 0;

  {
    const SizeLimit limit(kLimit);
    nStatus = WritePage(m_strPath, {&kHead, &kTail}).nCode;
  }

  EXPECT_EQ(EFBIG, nStatus);
  EXPECT_EQ(std::vector<std::string>(), NamesIn(m_folder.Path()));
}

TEST_P(DocumentCutShort, IsNoTextAtAll) {
  int nStatus = 0;

  {
    const SizeLimit limit(kLimit);
    TextFile file(Ansi2Unicode(m_strPath.c_str()).c_str());
    for (const std::string* pText : {&kHead, &kTail}) {
      file.Write(*pText);
      file.Flush();
    }
    nStatus = file.Close().nCode;
  }

  EXPECT_EQ(EFBIG, nStatus);
  EXPECT_EQ(std::vector<std::string>(), NamesIn(m_folder.Path()));
}

TEST_P(DocumentCutShort, IsWholeOnceThereIsRoom) {
  {
    const SizeLimit limit(kLimit);
    WritePage(m_strPath, {&kHead, &kTail});
  }

  EXPECT_EQ(0, WritePage(m_strPath, {&kHead, &kTail}).nCode);

  EXPECT_EQ(kHead + kTail, ReadFile(m_strPath));
}

INSTANTIATE_TEST_SUITE_P(Over, DocumentCutShort, testing::Bool(),
                         [](const auto& info) { return info.param ? "AnOlderFile" : "Nothing"; });
