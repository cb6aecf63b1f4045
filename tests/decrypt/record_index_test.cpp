#include "decrypt/record_index.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

#include "tests/support.h"

using namespace orvandel;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// An identifier with the number in its last digits.
std::string IdOf(uint64_t nNumber, char chStart = '0') {
  char digits[17];
  snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(nNumber));
  return std::string(24, chStart) + digits;
}

/// An identifier as of a device: digits without an order.
std::string ScatteredId(uint64_t nNumber) {
  return Sha1Hex(std::to_string(nNumber));
}

Bytes KeyOf(uint64_t nNumber, size_t nSize = 44) {
  Bytes key(nSize);
  for (size_t i = 0; i < nSize; ++i) key[i] = static_cast<unsigned char>(nNumber * 7 + nNumber / 251 + i);
  return key;
}

ManifestEntry EntryOf(const std::string& strId, const Bytes& key, uint64_t nSize) {
  ManifestEntry entry;
  entry.strId = strId;
  entry.wrappedKey = key;
  entry.nSize = nSize;
  return entry;
}

class Index : public testing::Test {
 protected:
  TemporaryFolder m_folder;
  RecordIndex m_index{m_folder.Path()};
};

class IndexOf : public Index, public testing::WithParamInterface<size_t> {};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Files, IndexOf, testing::Values(0, 1, 1023, 1024, 1025, 2048, 5000),
                         testing::PrintToStringParamName());

TEST_P(IndexOf, FindsEachFileAndNoOther) {
  for (size_t i = 0; i < GetParam(); ++i) m_index.Add(EntryOf(ScatteredId(i), KeyOf(i), uint64_t{i} << 33));

  m_index.Finish();

  EXPECT_EQ(GetParam(), m_index.Size());
  for (size_t i = 0; i < GetParam(); ++i) {
    const auto entry = m_index.Find(ScatteredId(i));
    ASSERT_TRUE(entry) << i;
    ASSERT_EQ(ScatteredId(i), entry->strId);
    ASSERT_EQ(KeyOf(i), entry->wrappedKey) << i;
    ASSERT_EQ(uint64_t{i} << 33, entry->nSize);
    ASSERT_FALSE(entry->bDamaged);
    ASSERT_EQ(ManifestEntry::Kind::File, entry->kind);
  }
  for (size_t i = GetParam(); i < GetParam() + 1000; ++i)
    ASSERT_FALSE(m_index.Find(ScatteredId(i))) << ScatteredId(i);
}

TEST_F(Index, TellsFilesWithTheSameFirstDigitsApart) {
  constexpr uint64_t kFiles = 300;
  for (uint64_t i = kFiles; i-- > 0;) m_index.Add(EntryOf(IdOf(i, 'a'), KeyOf(i), i));
  m_index.Add(EntryOf(std::string(40, 'f'), KeyOf(1000), 1000));
  m_index.Add(EntryOf(std::string(40, '0'), KeyOf(2000), 2000));

  m_index.Finish();

  for (uint64_t i = 0; i < kFiles; ++i) {
    const auto entry = m_index.Find(IdOf(i, 'a'));
    ASSERT_TRUE(entry) << i;
    ASSERT_EQ(KeyOf(i), entry->wrappedKey);
  }
  EXPECT_FALSE(m_index.Find(IdOf(kFiles, 'a')));
  EXPECT_FALSE(m_index.Find(IdOf(1, 'b')));
  EXPECT_EQ(1000u, m_index.Find(std::string(40, 'f')).value().nSize);
  EXPECT_EQ(2000u, m_index.Find(std::string(40, '0')).value().nSize);
}

TEST_F(Index, LastOfEqualIdentifiersCounts) {
  // Enough between them that they are written at different times.
  m_index.Add(EntryOf(ScatteredId(7), KeyOf(1), 1));
  for (uint64_t i = 10'000; i < 13'000; ++i) m_index.Add(EntryOf(ScatteredId(i), KeyOf(i), i));
  m_index.Add(EntryOf(ScatteredId(7), {}, 2));
  m_index.Add(EntryOf(ScatteredId(7), KeyOf(3), 3));

  m_index.Finish();

  const auto entry = m_index.Find(ScatteredId(7));
  ASSERT_TRUE(entry);
  EXPECT_EQ(3u, entry->nSize);
  EXPECT_EQ(KeyOf(3), entry->wrappedKey);
}

TEST_F(Index, KeepsWhetherARecordIsDamaged) {
  ManifestEntry damaged = EntryOf(ScatteredId(1), KeyOf(1), 1);
  damaged.bDamaged = true;
  m_index.Add(damaged);
  damaged.strId = ScatteredId(2);
  damaged.wrappedKey.clear();
  m_index.Add(damaged);

  m_index.Finish();

  EXPECT_TRUE(m_index.Find(ScatteredId(1)).value().bDamaged);
  EXPECT_TRUE(m_index.Find(ScatteredId(2)).value().bDamaged);
}

TEST_F(Index, UnencryptedFileHasNoKey) {
  m_index.Add(EntryOf(ScatteredId(1), {}, UINT64_MAX));

  m_index.Finish();

  const auto entry = m_index.Find(ScatteredId(1));
  ASSERT_TRUE(entry);
  EXPECT_THAT(entry->wrappedKey, IsEmpty());
  EXPECT_EQ(UINT64_MAX, entry->nSize);
  EXPECT_FALSE(entry->bDamaged);
}

TEST_F(Index, KeyOfAnotherSizeIsNeverTakenForNone) {
  const size_t sizes[] = {1, 40, 43, 45, 100'000};
  for (const size_t nSize : sizes) m_index.Add(EntryOf(ScatteredId(nSize), KeyOf(nSize, nSize), 5));

  m_index.Finish();

  for (const size_t nSize : sizes) {
    const auto entry = m_index.Find(ScatteredId(nSize));
    ASSERT_TRUE(entry) << nSize;
    EXPECT_FALSE(entry->wrappedKey.empty()) << nSize;
    EXPECT_NE(44u, entry->wrappedKey.size()) << nSize;
  }
}

TEST_F(Index, FindsNothingByAnInvalidIdentifier) {
  m_index.Add(EntryOf(ScatteredId(1), {}, 1));
  m_index.Add(EntryOf("../../etc/passwd", {}, 1));

  m_index.Finish();

  EXPECT_EQ(1u, m_index.Size());
  const std::string strUpper = "ABCDEF" + std::string(34, '0');
  for (const std::string& strId : {std::string(), std::string("../../etc/passwd"), std::string(39, '0'),
                                   std::string(41, '0'), strUpper, ScatteredId(1) + "0"})
    EXPECT_FALSE(m_index.Find(strId)) << strId;
}

TEST_F(Index, HasNoNameInItsFolder) {
  for (uint64_t i = 0; i < 3000; ++i) m_index.Add(EntryOf(ScatteredId(i), KeyOf(i), i));
  m_index.Finish();

  EXPECT_THAT(NamesIn(m_folder.Path()), IsEmpty());
}

TEST_F(Index, MayBeSearchedByManyThreads) {
  constexpr uint64_t kFiles = 3000;
  for (uint64_t i = 0; i < kFiles; ++i) m_index.Add(EntryOf(ScatteredId(i), KeyOf(i), i));
  m_index.Finish();
  std::vector<std::thread> threads;
  std::vector<uint64_t> found(4);

  for (uint64_t& nFound : found)
    threads.emplace_back([&] {
      for (uint64_t i = 0; i < kFiles; ++i) {
        const auto entry = m_index.Find(ScatteredId(i));
        nFound += entry && entry->nSize == i && entry->wrappedKey == KeyOf(i) ? 1 : 0;
      }
    });
  for (std::thread& thread : threads) thread.join();

  for (const uint64_t nFound : found) EXPECT_EQ(kFiles, nFound);
}

TEST(IndexWithoutAFolder, ThrowsTheReason) {
  const TemporaryFolder folder;
  try {
    const RecordIndex index(folder.Path("nowhere"));
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("No such file or directory"));
  }
}
