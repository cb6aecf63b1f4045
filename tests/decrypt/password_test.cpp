#include "decrypt/password.h"

#include <gmock/gmock.h>

using namespace orvandel;
using testing::ElementsAreArray;

namespace {

// "Grüße" in the forms in which it may be passed.
constexpr char kComposed[] =
    "Gr\xC3\xBC\xC3\x9F"
    "e";
constexpr char kDecomposed[] =
    "Gru\xCC\x88\xC3\x9F"
    "e";
constexpr char kLatin1[] =
    "Gr\xFC\xDF"
    "e";

struct Password {
  const char* pszName;
  std::string strGiven;
  const char* pszEncoding;
  std::vector<std::string> forms;
};

void PrintTo(const Password& password, std::ostream* pStream) {
  *pStream << password.pszName;
}

class PasswordForm : public testing::TestWithParam<Password> {};

}  // namespace

TEST_P(PasswordForm, IsTriedOnce) {
  const Secret given(GetParam().strGiven.data(), GetParam().strGiven.size());

  std::vector<std::string> forms;
  for (const Secret& form : PasswordForms(given, GetParam().pszEncoding))
    forms.emplace_back(reinterpret_cast<const char*>(form.Data()), form.Size());

  EXPECT_THAT(forms, ElementsAreArray(GetParam().forms));
}

INSTANTIATE_TEST_SUITE_P(
    Passwords, PasswordForm,
    testing::Values(Password{"Ascii", "geheim 1", "UTF-8", {"geheim 1"}},
                    Password{"AsciiInLatin1", "geheim 1", "ISO-8859-1", {"geheim 1"}},
                    Password{"Empty", "", "UTF-8", {}}, Password{"Composed", kComposed, "UTF-8", {kComposed}},
                    Password{"Decomposed", kDecomposed, "UTF-8", {kDecomposed, kComposed}},
                    Password{"Latin1", kLatin1, "ISO-8859-1", {kLatin1, kComposed}},
                    Password{"Latin1InUtf8", kLatin1, "UTF-8", {kLatin1}},
                    Password{"Latin1InALocaleWithoutAnEncoding", kLatin1, "ANSI_X3.4-1968", {kLatin1}},
                    // Bytes that are valid in both encodings: both are tried.
                    Password{"ComposedInLatin1", "\xC3\xBC", "ISO-8859-1", {"\xC3\xBC", "\xC3\x83\xC2\xBC"}},
                    Password{"UnknownEncoding", kComposed, "no such encoding", {kComposed}}),
    [](const auto& info) { return std::string(info.param.pszName); });
