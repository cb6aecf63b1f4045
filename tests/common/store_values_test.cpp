// Conversion of each storage class of SQLite by each accessor. The expectations are those of the SQL module
// of Qt 5.15, required for output compatibility.
#include <gtest/gtest.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include "common/store.h"
#include "common/text.h"
#include "sample/stores.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

struct Value {
  const char* pszName;
  const char* pszSql;  ///< an expression
  std::string strText;
  int nInteger;
  bool bOtherInQt6 =
      false;  ///< the module of Qt 6 rounds halves away from zero, and reads blobs to their end
};

const std::string kReplacement = "\xEF\xBF\xBD";

const Value kValues[] = {
    {"Null", "NULL", "", 0},
    {"Zero", "0", "0", 0},
    {"Integer", "41", "41", 41},
    {"NegativeInteger", "-41", "-41", -41},
    {"LargestInteger32", "2147483647", "2147483647", 2147483647},
    {"BeyondInteger32", "2147483648", "2147483648", -2147483647 - 1},
    {"LowBitsOfALargeInteger", "4294967297", "4294967297", 1},
    {"LargestInteger64", "9223372036854775807", "9223372036854775807", -1},
    {"SmallestInteger64", "-9223372036854775807 - 1", "-9223372036854775808", 0},
    {"Real", "2.5", "2.5", 3},
    {"NegativeReal", "-2.5", "-2.5", -2, true},
    {"RealBelowAHalf", "0.49", "0.49", 0},
    {"WholeReal", "3.0", "3", 3},
    {"LongReal", "0.1 + 0.2", "0.30000000000000004", 0},
    {"LargeReal", "1e20", "1e+20", 0},
    {"LargeNegativeReal", "-1e20", "-1e+20", 0},
    {"SecondsAsReal", "514209600.25", "514209600.25", 514209600},
    {"SmallReal", "1e-7", "1e-07", 0},
    {"Infinity", "9e999", "inf", 0},
    {"Text", "'words'", "words", 0},
    {"EmptyText", "''", "", 0},
    {"NumberInText", "'41'", "41", 41},
    {"NumberWithBlanks", "' 41 '", " 41 ", 41},
    {"NumberWithAPlus", "'+41'", "+41", 41},
    {"NumberWithAPoint", "'41.5'", "41.5", 0},
    {"NumberWithLetters", "'41st'", "41st", 0},
    {"NumberInHexadecimal", "'0x29'", "0x29", 0},
    {"LargeNumberInText", "'4294967297'", "4294967297", 1},
    {"NumberBeyond64Bits", "'99999999999999999999'", "99999999999999999999", 0},
    {"TextBeyondAscii", "'J' || char(252) || 'rgen'", "J\xC3\xBCrgen", 0},
    {"TextBeyondTheBasicPlane", "char(127873)", "\xF0\x9F\x8E\x81", 0},
    {"TextWithAZero", "'a' || char(0) || 'b'", std::string("a\0b", 3), 0},
    {"TextWithAByteOrderMark", "char(65279) || 'a'",
     "\xEF\xBB\xBF"
     "a",
     0},
    {"TextWithNoncharacters", "char(65534) || char(65535)", kReplacement + kReplacement, 0},
    {"TextCutInACharacter", "cast(x'61C3' as text)", "a" + kReplacement, 0},
    {"TextThatIsNotUtf8", "cast(x'FF61' as text)", kReplacement + "a", 0},
    {"TextInALongForm", "cast(x'C0AF' as text)", kReplacement, 0},
    {"TextWithASurrogate", "cast(x'EDA08061' as text)", kReplacement + "a", 0},
    {"Blob", "x'414243'", "ABC", 0},
    {"NumberInABlob", "x'3431'", "41", 41},
    {"EmptyBlob", "x''", "", 0},
    {"BlobWithAZero", "x'410042'", "A", 0, true},
    {"NumberInABlobWithAZero", "x'34310032'", "41", 41, true},
    {"BlobBeyondAscii", "x'C3BC'", "\xC3\xBC", 0},
    {"BlobThatIsNotUtf8", "x'41FF42'", "A" + kReplacement + "B", 0},
};

class StoreValue : public testing::Test {
 protected:
  /// Writes a store with one value, in place of the last.
  std::string MakeStore(const Value& value, const char* pszEncoding = "UTF-8") {
    SampleStore store(FromNarrow(m_folder.Path("a.db")), false);
    store.run(QString("PRAGMA encoding = '%1'").arg(pszEncoding));
    store.run("create table t (x)");
    store.run(QString("insert into t values (%1)").arg(value.pszSql));
    store.close();
    return m_folder.Path("a.db");
  }

  /// The value of a store as Qt's own module reads it.
  static QVariant ReadByQt(const std::string& strPath) {
    QVariant value;
    {
      QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "reference");
      database.setDatabaseName(FromNarrow(strPath));
      EXPECT_TRUE(database.open());
      QSqlQuery reference("select x from t", database);
      EXPECT_TRUE(reference.next());
      value = reference.value(0);
    }
    QSqlDatabase::removeDatabase("reference");
    return value;
  }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_F(StoreValue, IsReadAsTextAndAsNumber) {
  for (const Value& value : kValues) {
    SCOPED_TRACE(value.pszName);
    StoreQuery query(MakeStore(value), "select x from t");

    const bool bRow = query.Next();

    EXPECT_TRUE(bRow);
    EXPECT_EQ(value.strText, query.Narrow(0));
    EXPECT_EQ(value.strText, ToNarrow(query.Text(0)));
    EXPECT_EQ(value.nInteger, query.Integer(0));
  }
}

TEST_F(StoreValue, IsConvertedTheSameWayInAnotherLocale) {
  for (const Value& value : kValues) {
    SCOPED_TRACE(value.pszName);
    const std::string strPath = MakeStore(value);
    LocaleCodec codec("ISO-8859-1");
    StoreQuery query(strPath, "select x from t");

    const bool bRow = query.Next();

    EXPECT_TRUE(bRow);
    EXPECT_EQ(ToNarrow(query.Text(0)), query.Narrow(0));
  }
}

TEST_F(StoreValue, IsWhatTheToolkitsModuleGives) {
  for (const Value& value : kValues) {
    SCOPED_TRACE(value.pszName);
    for (const char* pszEncoding : {"UTF-8", "UTF-16le", "UTF-16be"}) {
      const std::string strPath = MakeStore(value, pszEncoding);
      const QVariant reference = ReadByQt(strPath);
      const QString qstrText = value.bOtherInQt6 ? FromNarrow(value.strText) : reference.toString();
      const int nInteger = value.bOtherInQt6 ? value.nInteger : reference.toInt();
      StoreQuery query(strPath, "select x from t");

      const bool bRow = query.Next();

      EXPECT_TRUE(bRow) << pszEncoding;
      EXPECT_EQ(ToNarrow(qstrText), query.Narrow(0)) << pszEncoding;  // before SQLite has converted anything
      EXPECT_EQ(qstrText, query.Text(0)) << pszEncoding;
      EXPECT_EQ(ToNarrow(qstrText), query.Narrow(0)) << pszEncoding;
      EXPECT_EQ(nInteger, query.Integer(0)) << pszEncoding;
    }
  }
}
