#include "sample/store_guid.h"
#include "sample/stores.h"

namespace orvandel {

namespace {

constexpr double kAppleEpoch = 978307200;    // seconds from 1970-01-01 to 2001-01-01
constexpr int kIncoming = 4, kOutgoing = 5;  // flags of an early call

}  // namespace

CallStore::CallStore(const QString& path, bool wal, bool early) : SampleStore(path, wal), m_early(early) {
  if (early) {
    create(
        {"CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key))",
         "CREATE TABLE call (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER, duration "
         "INTEGER, flags INTEGER, id INTEGER, name TEXT, country_code TEXT, network_code TEXT, read INTEGER, "
         "assisted INTEGER, face_time_data BLOB, originalAddress TEXT, answered INTEGER)"});
  }
  create(
      {"CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZANSWERED INTEGER, "
       "ZCALLTYPE INTEGER, ZDISCONNECTED_CAUSE INTEGER, ZFACE_TIME_DATA INTEGER, ZNUMBER_AVAILABILITY "
       "INTEGER, "
       "ZORIGINATED INTEGER, ZREAD INTEGER, ZDATE TIMESTAMP, ZDURATION FLOAT, ZADDRESS VARCHAR, "
       "ZDEVICE_ID VARCHAR, ZISO_COUNTRY_CODE VARCHAR, ZLOCATION VARCHAR, ZNAME VARCHAR, "
       "ZSERVICE_PROVIDER VARCHAR, ZUNIQUE_ID VARCHAR)",
       "CREATE TABLE ZCALLDBPROPERTIES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
       "ZTIMER_ALL FLOAT, ZTIMER_INCOMING FLOAT, ZTIMER_LAST FLOAT, ZTIMER_LAST_RESET FLOAT, "
       "ZTIMER_LIFETIME FLOAT, ZTIMER_OUTGOING FLOAT)",
       "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB)",
       "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX "
       "INTEGER)",
       "CREATE INDEX ZCALLRECORD_ZDATE_INDEX ON ZCALLRECORD (ZDATE)",
       "INSERT INTO Z_PRIMARYKEY VALUES (1, 'CallDBProperties', 0, 1)",
       "INSERT INTO Z_PRIMARYKEY VALUES (2, 'CallRecord', 0, 0)",
       "INSERT INTO ZCALLDBPROPERTIES VALUES (1, 1, 1, 0, 0, 0, 0, 0, 0)"});
  run("INSERT INTO Z_METADATA (Z_VERSION, Z_UUID) VALUES (1, ?)", {storeGuid("calls")});
}

void CallStore::add(int answered, double duration, const QString& address, double date, int originated) {
  static const QString kInsert =
      "INSERT INTO ZCALLRECORD (Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, ZDISCONNECTED_CAUSE, "
      "ZNUMBER_AVAILABILITY, "
      "ZORIGINATED, ZREAD, ZDATE, ZDURATION, ZADDRESS, ZISO_COUNTRY_CODE, ZSERVICE_PROVIDER) "
      "VALUES (2, 1, ?, 1, 0, ?, ?, 1, ?, ?, ?, 'de', 'com.apple.Telephony')";
  const qint64 row =
      insert(kInsert, {answered, address.isNull() ? 1 : 0, originated, date, duration, address});
  run("UPDATE ZCALLRECORD SET ZUNIQUE_ID = ? WHERE Z_PK = ?", {storeGuid(QString("call %1").arg(row)), row});
  run("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_ENT = 2", {row});
  if (!m_early) return;
  insert(
      "INSERT INTO call (address, date, duration, flags, id, country_code, read, answered) "
      "VALUES (?, ?, ?, ?, -1, '262', 1, ?)",
      {address, qint64(date + kAppleEpoch), qint64(duration), originated ? kOutgoing : kIncoming, answered});
}

}  // namespace orvandel
