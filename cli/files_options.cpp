#include "cli/files_options.h"

#include <QDateTime>

#include "cli/exit_status.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr char kDomain[] = "domain";
constexpr char kNewer[] = "newer";
constexpr char kLarger[] = "larger";
constexpr char kMissing[] = "missing";
constexpr char kNames[] = "names";
constexpr char kCount[] = "count";
constexpr char kTo[] = "to";
constexpr char kReplace[] = "replace";
constexpr char kResume[] = "resume";

/// An option that excludes others, or requires one.
int CheckCombination(const QCommandLineParser& parser) {
  const bool bTo = parser.isSet(kTo);
  for (const char* pszOption : {kNames, kCount, kMissing}) {
    if (bTo && parser.isSet(pszOption))
      return WrongUsage(QString("--%1 can't be combined with --to").arg(pszOption));
  }
  for (const char* pszOption : {kReplace, kResume}) {
    if (!bTo && parser.isSet(pszOption)) return WrongUsage(QString("--%1 requires --to").arg(pszOption));
  }
  return bTo && parser.value(kTo).isEmpty() ? WrongUsage("--to requires a folder") : kExitDone;
}

int ReadConditions(const QCommandLineParser& parser, EntryConditions& conditions) {
  for (const QString& qstrDomain : parser.values(kDomain)) conditions.domains.push_back(ToNarrow(qstrDomain));
  conditions.bMissing = parser.isSet(kMissing);
  if (parser.isSet(kNewer)) {
    conditions.nNewer = ParseTime(parser.value(kNewer));
    if (!conditions.nNewer)
      return WrongUsage(QString("--newer: '%1' is neither a date such as 2016-05-31 nor a date and time such "
                                "as 2016-05-31T09:12:33")
                            .arg(parser.value(kNewer)));
  }
  if (parser.isSet(kLarger)) {
    conditions.nLarger = ParseSize(parser.value(kLarger));
    if (!conditions.nLarger)
      return WrongUsage(QString("--larger: '%1' isn't a number of bytes, with K, M, G or T for units of 1024")
                            .arg(parser.value(kLarger)));
  }
  return kExitDone;
}

}  // namespace

void AddFilesOptions(QCommandLineParser& parser) {
  AddBackupOptions(parser);
  parser.addOption({kDomain, "Only entries of this domain; may be repeated.", "NAME"});
  parser.addOption(
      {kNewer, "Only entries modified at this date, or date and time, or later; in UTC.", "DATE"});
  parser.addOption({kLarger, "Only files of more bytes than SIZE, a number with K, M, G or T.", "SIZE"});
  parser.addOption({kMissing, "Only files that the backup doesn't contain."});
  parser.addOption({kNames, "Prints names only."});
  parser.addOption({kCount, "Prints only the number of entries."});
  parser.addOption({kTo, "Extracts the files into this folder, created if missing.", "DESTINATION"});
  parser.addOption({kReplace, "With --to: replaces files that exist."});
  parser.addOption({kResume, "With --to: completes an extraction that was interrupted."});
}

int ReadFilesOptions(const QCommandLineParser& parser, const QStringList& arguments, FilesOptions& options) {
  ReadBackupOptions(parser, arguments[0], options);
  for (const QString& qstrPattern : arguments.mid(1))
    options.conditions.patterns.push_back(ToNarrow(qstrPattern));
  if (const int nStatus = CheckCombination(parser)) return nStatus;
  options.bNames = parser.isSet(kNames);
  options.bCount = parser.isSet(kCount);
  options.bReplace = parser.isSet(kReplace);
  options.bResume = parser.isSet(kResume);
  if (parser.isSet(kTo)) options.qstrDestination = AbsolutePath(parser.value(kTo));
  return ReadConditions(parser, options.conditions);
}

std::optional<uint64_t> ParseSize(const QString& qstrSize) {
  static const QString kUnits = "KMGT";
  QString qstrDigits = qstrSize;
  const auto nUnit = qstrSize.isEmpty() ? -1 : kUnits.indexOf(qstrSize.back().toUpper());
  if (nUnit >= 0) qstrDigits.chop(1);
  const bool bDigits = !qstrDigits.isEmpty() && std::all_of(qstrDigits.begin(), qstrDigits.end(),
                                                            [](QChar c) { return c >= '0' && c <= '9'; });
  bool bFits = false;
  const quint64 nNumber = qstrDigits.toULongLong(&bFits);
  const auto nShift = static_cast<unsigned int>(10 * (nUnit + 1));
  if (!bDigits || !bFits || nNumber > UINT64_MAX >> nShift) return std::nullopt;
  return nNumber << nShift;
}

std::optional<int64_t> ParseTime(const QString& qstrTime) {
  const QDate date = QDate::fromString(qstrTime, Qt::ISODate);
  if (date.isValid() && !qstrTime.contains('T') && !qstrTime.contains(' '))
    return QDateTime(date, QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
  // Never as local time, in which some hours don't exist.
  const QDateTime utc = QDateTime::fromString(qstrTime + 'Z', Qt::ISODate);
  const QDateTime time = utc.isValid() ? utc : QDateTime::fromString(qstrTime, Qt::ISODate);
  if (!time.isValid()) return std::nullopt;
  return time.toSecsSinceEpoch();
}

}  // namespace orvandel
