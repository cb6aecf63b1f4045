#include "decrypt/keybag.h"

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include "tests/backup/manifest_bytes.h"
#include "tests/decrypt/cryptography.h"

using namespace orvandel;
using manifest_bytes::Number;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kSalt(20, 's');
const std::string kUuid(16, 'u');
constexpr uint32_t kRounds = 3;
constexpr uint32_t kUnderPassword = 2;

// Published test vectors with the password "hashcat".
constexpr char kOldWrapped[] =
    "b8e3f3a970239b22ac199b622293fe4237b9d16e74bad2c3c3568cd1bd3c471615a6c4f867265642";
constexpr char kOldSalt[] = "4542263740587424862267232255853830404566";
constexpr char kOldClassKey[] = "ef6350dc7dd100005d63c19758080000d16b7de7ab7300000f6187b152020000";
constexpr char kNewWrapped[] =
    "8b715f516ff8e64442c478c2d9abb046fc6979ab079007d3dbcef3ddd84217f4c3db01362d88fa68";
constexpr char kNewSalt[] = "2353363784073608264337337723324886300850";
constexpr char kNewStrongSalt[] = "425b4bb4e200b5fd4c66979c9caca31716052063";
constexpr char kNewClassKey[] = "5b6e248287b50000633fe25c661c000073d8cee4a1f70000463e0290e0360000";

std::string FromHexText(const char* pszHex) {
  const Bytes bytes = FromHex(pszHex);
  return std::string(bytes.begin(), bytes.end());
}

std::string Head(const std::string& strSalt = kSalt, uint32_t nRounds = kRounds) {
  return Item("VERS", 4) + Item("TYPE", 1) + Item("UUID", kUuid) + Item("HMCK", std::string(40, 'h')) +
         Item("WRAP", 1) + Item("SALT", strSalt) + Item("ITER", nRounds);
}

std::string ClassOf(uint32_t nClass, const std::string& strWrapped, uint32_t nWrap = kUnderPassword) {
  return Item("UUID", kUuid) + Item("CLAS", nClass) + Item("WRAP", nWrap) + Item("KTYP", 0u) +
         Item("WPKY", strWrapped);
}

/// A class key wrapped under the password "secret", for a keybag with Head().
std::string WrappedUnderSecret(const Bytes& classKey) {
  const Secret key = DeriveKey(SecretOf("secret"), ToBytes(kSalt), kRounds, Digest::Sha1);
  const Bytes wrapped = WrapKey(Bytes(key.Data(), key.Data() + key.Size()), classKey);
  return std::string(wrapped.begin(), wrapped.end());
}

std::string WholeKeybag() {
  return Head() + ClassOf(1, WrappedUnderSecret(SomeKey(1))) + ClassOf(3, WrappedUnderSecret(SomeKey(3)), 3) +
         ClassOf(12, WrappedUnderSecret(SomeKey(12)), 1);
}

std::string ReasonOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing was thrown";
}

/// Unwraps a file key that is wrapped under a class key, which proves the class key.
std::string FileKeyOf(const Keybag& keybag, uint32_t nClass, const Bytes& classKey) {
  return TextOf(keybag.FileKey(KeyOfClass(nClass, WrapKey(classKey, SomeKey(99)))));
}

std::string TextOfBytes(const Bytes& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

struct DamageCase {
  const char* pszName;
  std::function<std::string()> bytes;
  const char* pszReason;
};

void PrintTo(const DamageCase& damage, std::ostream* pStream) {
  *pStream << damage.pszName;
}

class DamagedKeybag : public testing::TestWithParam<DamageCase> {};
class KeybagWithoutUsableClass : public testing::TestWithParam<DamageCase> {};

std::string NameOf(const testing::TestParamInfo<DamageCase>& info) {
  return info.param.pszName;
}

}  // namespace

TEST(PasswordKey, UnwrapsThePublishedKeyOfOldBackups) {
  const Secret key = DeriveKey(SecretOf("hashcat"), FromHex(kOldSalt), 10000, Digest::Sha1);
  const Bytes wrapped = FromHex(kOldWrapped);
  Secret classKey;

  ASSERT_TRUE(UnwrapKey(key, wrapped.data(), wrapped.size(), classKey));

  EXPECT_EQ(FromHexText(kOldClassKey), TextOf(classKey));
}

TEST(PasswordKey, OfAnotherPasswordUnwrapsNothing) {
  const Secret key = DeriveKey(SecretOf("Hashcat"), FromHex(kOldSalt), 10000, Digest::Sha1);
  const Bytes wrapped = FromHex(kOldWrapped);
  Secret classKey;

  EXPECT_FALSE(UnwrapKey(key, wrapped.data(), wrapped.size(), classKey));
  EXPECT_TRUE(classKey.IsEmpty());
}

TEST(PasswordKey, UnwrapsNothingOfAnotherSize) {
  const Bytes key = SomeKey(1);
  for (const size_t nSize : {0, 8, 16, 24, 32, 39, 41, 48}) {
    const Bytes wrapped(nSize, 'x');
    Secret unwrapped;

    EXPECT_FALSE(UnwrapKey(SecretOf(key), wrapped.data(), wrapped.size(), unwrapped)) << nSize;
  }
}

TEST(KeybagOfPublishedValues, OpensForOldBackups) {
  Keybag keybag(ToBytes(Head(FromHexText(kOldSalt), 10000) + ClassOf(4, FromHexText(kOldWrapped))));

  ASSERT_FALSE(keybag.Unlock(SecretOf("Hashcat")));
  ASSERT_TRUE(keybag.Unlock(SecretOf("hashcat")));

  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 4, FromHex(kOldClassKey)));
}

// Ten million rounds, as on a device; takes seconds.
TEST(KeybagOfPublishedValues, OpensForNewBackups) {
  Keybag keybag(ToBytes(Head(FromHexText(kNewSalt), 10000) + Item("DPWT", 1) + Item("DPIC", 10000000) +
                        Item("DPSL", FromHexText(kNewStrongSalt)) + ClassOf(4, FromHexText(kNewWrapped))));

  ASSERT_TRUE(keybag.Unlock(SecretOf("hashcat")));

  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 4, FromHex(kNewClassKey)));
}

TEST(Keybag, ThatAsksForMoreRoundsThanAnyDeviceIsDamaged) {
  const std::string strClass = ClassOf(4, FromHexText(kNewWrapped));
  const std::string strStrong = Item("DPSL", FromHexText(kNewStrongSalt));
  for (const std::string& strData :
       {Head(FromHexText(kNewSalt), 100000001) + strClass, Head(FromHexText(kNewSalt), 0x80000000) + strClass,
        Head(FromHexText(kNewSalt), 10000) + Item("DPIC", 100000001) + strStrong + strClass,
        Head(FromHexText(kNewSalt), 10000) + Item("DPIC", 0xFFFFFFFF) + strStrong + strClass})
    EXPECT_THROW(Keybag{ToBytes(strData)}, std::runtime_error);
  EXPECT_NO_THROW(Keybag{ToBytes(Head(FromHexText(kNewSalt), 100000000) + strClass)});
}

TEST(Keybag, UnwrapsKeysOfEachClassUnderThePassword) {
  Keybag keybag(ToBytes(WholeKeybag()));

  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));

  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 1, SomeKey(1)));
  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 3, SomeKey(3)));
}

TEST(Keybag, RejectsAWrongPassword) {
  Keybag keybag(ToBytes(WholeKeybag()));

  for (const char* pszPassword : {"Secret", "secret ", "secre", "x"})
    EXPECT_FALSE(keybag.Unlock(SecretOf(pszPassword))) << pszPassword;
}

TEST(Keybag, SkipsUnknownTags) {
  Keybag keybag(ToBytes(Item("NEW1", "value") + Head() + Item("SIGN", std::string(64, 'x')) +
                        ClassOf(1, WrappedUnderSecret(SomeKey(1))) + Item("PBKY", std::string(32, 'p'))));

  EXPECT_TRUE(keybag.Unlock(SecretOf("secret")));
}

TEST(Keybag, OpensThoughOneClassIsDamaged) {
  std::string strDamaged = WrappedUnderSecret(SomeKey(1));
  strDamaged[7] = static_cast<char>(strDamaged[7] ^ 1);
  Keybag keybag(ToBytes(Head() + ClassOf(1, strDamaged) + ClassOf(2, "short") +
                        ClassOf(3, WrappedUnderSecret(SomeKey(3)))));

  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));

  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 3, SomeKey(3)));
  EXPECT_EQ("no key for its class 1", ReasonOf([&] { FileKeyOf(keybag, 1, SomeKey(1)); }));
  EXPECT_EQ("no key for its class 2", ReasonOf([&] { FileKeyOf(keybag, 2, SomeKey(2)); }));
}

TEST(Keybag, OpensThoughItsLastClassIsDamaged) {
  std::string strDamaged = WrappedUnderSecret(SomeKey(3));
  strDamaged[7] = static_cast<char>(strDamaged[7] ^ 1);
  Keybag keybag(ToBytes(Head() + ClassOf(1, WrappedUnderSecret(SomeKey(1))) + ClassOf(3, strDamaged)));

  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));

  EXPECT_EQ(TextOfBytes(SomeKey(99)), FileKeyOf(keybag, 1, SomeKey(1)));
  EXPECT_EQ("no key for its class 3", ReasonOf([&] { FileKeyOf(keybag, 3, SomeKey(3)); }));
}

TEST(FileKey, IsRefusedForAClassThatNoPasswordOpens) {
  Keybag keybag(ToBytes(WholeKeybag()));
  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));

  for (const uint32_t nClass : {0u, 2u, 12u, 0x01000000u, 0xFFFFFFFFu})
    EXPECT_EQ("no key for its class " + std::to_string(nClass),
              ReasonOf([&] { FileKeyOf(keybag, nClass, SomeKey(1)); }));
}

TEST(FileKey, IsRefusedWhileTheKeybagIsLocked) {
  const Keybag keybag(ToBytes(WholeKeybag()));

  EXPECT_EQ("no key for its class 1", ReasonOf([&] { FileKeyOf(keybag, 1, SomeKey(1)); }));
}

TEST(FileKey, IsRefusedForAnotherSize) {
  Keybag keybag(ToBytes(WholeKeybag()));
  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));

  for (const size_t nSize : {0, 3, 4, 40, 43, 45, 84})
    EXPECT_EQ("its key has " + std::to_string(nSize) + " bytes instead of 44",
              ReasonOf([&] { keybag.FileKey(Bytes(nSize, '\1')); }));
}

TEST(FileKey, IsRefusedWhenAnyByteOfItIsDamaged) {
  Keybag keybag(ToBytes(WholeKeybag()));
  ASSERT_TRUE(keybag.Unlock(SecretOf("secret")));
  const Bytes wrapped = KeyOfClass(1, WrapKey(SomeKey(1), SomeKey(99)));
  for (size_t i = 4; i < wrapped.size(); ++i) {
    Bytes damaged = wrapped;
    damaged[i] ^= 0x10;

    EXPECT_EQ("its key is damaged", ReasonOf([&] { keybag.FileKey(damaged); })) << "byte " << i;
  }
}

TEST_P(DamagedKeybag, IsReportedWithTheReason) {
  const std::string strReason = ReasonOf([] { Keybag(ToBytes(GetParam().bytes())); });

  EXPECT_THAT(strReason, StartsWith("the keybag is damaged: "));
  EXPECT_THAT(strReason, HasSubstr(GetParam().pszReason));
}

INSTANTIATE_TEST_SUITE_P(
    Of, DamagedKeybag,
    testing::Values(
        DamageCase{"Nothing", [] { return std::string(); }, "parameters of the key derivation"},
        DamageCase{"SevenBytes", [] { return std::string("VERS\0\0\0", 7); }, "ends within an item"},
        DamageCase{"BytesBehindTheEnd", [] { return WholeKeybag() + "UU"; }, "ends within an item"},
        DamageCase{"ValueCutShort", [] { return WholeKeybag().substr(0, WholeKeybag().size() - 1); },
                   "runs beyond its end"},
        DamageCase{"EndlessItem", [] { return WholeKeybag() + "UUID\xFF\xFF\xFF\xFF"; },
                   "runs beyond its end"},
        DamageCase{"ItemOfHalfTheNumbers", [] { return Head() + "UUID" + Number(0x80000000, 4) + kUuid; },
                   "runs beyond its end"},
        DamageCase{"RoundsOfThreeBytes",
                   [] { return Item("SALT", kSalt) + Item("ITER", std::string("\0\0\1", 3)); },
                   "doesn't have 4 bytes"},
        DamageCase{"RoundsOfEightBytes", [] { return Item("SALT", kSalt) + Item("ITER", Number(1, 8)); },
                   "doesn't have 4 bytes"},
        DamageCase{"ClassWithoutNumber", [] { return Head() + Item("UUID", kUuid) + Item("CLAS", ""); },
                   "doesn't have 4 bytes"},
        DamageCase{"WrapOfOneByte",
                   [] { return Head() + Item("UUID", kUuid) + Item("WRAP", std::string("\2")); },
                   "doesn't have 4 bytes"},
        DamageCase{"NoSalt", [] { return Item("ITER", 1000); }, "parameters of the key derivation"},
        DamageCase{"EmptySalt", [] { return Head(""); }, "parameters of the key derivation"},
        DamageCase{"NoRounds", [] { return Item("SALT", kSalt); }, "parameters of the key derivation"},
        DamageCase{"ZeroRounds", [] { return Head(kSalt, 0); }, "parameters of the key derivation"},
        DamageCase{"TooManyRounds", [] { return Head(kSalt, 0x80000000); }, "more than any device"},
        DamageCase{"TooManyFirstRounds",
                   [] { return Head() + Item("DPSL", kSalt) + Item("DPIC", 0xFFFFFFFF); },
                   "more than any device"},
        DamageCase{"Text", [] { return std::string("<?xml version=\"1.0\"?>"); }, "runs beyond its end"}),
    NameOf);

TEST_P(KeybagWithoutUsableClass, IsDamagedNotLockedByAnotherPassword) {
  Keybag keybag(ToBytes(GetParam().bytes()));

  const std::string strReason = ReasonOf([&] { keybag.Unlock(SecretOf("secret")); });

  EXPECT_THAT(strReason, StartsWith("the keybag is damaged: "));
  EXPECT_THAT(strReason, HasSubstr(GetParam().pszReason));
}

INSTANTIATE_TEST_SUITE_P(
    Of, KeybagWithoutUsableClass,
    testing::Values(
        DamageCase{"HeadAlone", [] { return Head(); }, "no class has a key"},
        DamageCase{"ClassWithoutNumber",
                   [] {
                     return Head() + Item("UUID", kUuid) + Item("WRAP", 2) +
                            Item("WPKY", WrappedUnderSecret(SomeKey(1)));
                   },
                   "no class has a key"},
        DamageCase{"ClassWithoutKey",
                   [] { return Head() + Item("UUID", kUuid) + Item("CLAS", 1) + Item("WRAP", 2); },
                   "no class has a key"},
        DamageCase{"KeyTooShort",
                   [] { return Head() + ClassOf(1, WrappedUnderSecret(SomeKey(1)).substr(1)); },
                   "no class has a key"},
        DamageCase{"KeyTooLong", [] { return Head() + ClassOf(1, WrappedUnderSecret(SomeKey(1)) + "x"); },
                   "no class has a key"},
        DamageCase{"KeyUnderTheDevice", [] { return Head() + ClassOf(1, WrappedUnderSecret(SomeKey(1)), 1); },
                   "no class has a key"},
        DamageCase{"ClassInFrontOfTheFirstUuid",
                   [] { return Item("CLAS", 1) + Item("WPKY", WrappedUnderSecret(SomeKey(1))) + Head(); },
                   "no class has a key"}),
    NameOf);

TEST(KeybagCutAnywhere, IsNeverAWrongPassword) {
  const std::string strWhole = WholeKeybag();
  for (size_t nSize = 0; nSize < strWhole.size(); ++nSize) {
    const std::string strReason = ReasonOf([&] {
      Keybag keybag(ToBytes(strWhole.substr(0, nSize)));
      // A keybag cut between two classes opens with the remaining ones.
      if (keybag.Unlock(SecretOf("secret"))) throw std::runtime_error("the keybag is damaged: no");
    });

    EXPECT_THAT(strReason, StartsWith("the keybag is damaged: ")) << "cut to " << nSize << " bytes";
  }
}
