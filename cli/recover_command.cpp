#include <QCoreApplication>
#include <QDateTime>
#include <algorithm>
#include <optional>

#include "backup/discovery.h"
#include "cli/check_destination.h"
#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/index_page.h"
#include "cli/output.h"
#include "cli/recover_options.h"
#include "cli/recover_steps.h"
#include "cli/stop_signal.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr char kOnly[] = "only";
constexpr char kNoIndex[] = "no-index";
constexpr char kNoTimes[] = "no-times";

QString JoinedLabels() {
  QStringList labels;
  for (const Category& category : Categories()) labels << category.pszLabel;
  return labels.join(", ");
}

void AddRecoverOptions(QCommandLineParser& parser) {
  AddBackupOptions(parser);
  parser.addOption({kNoIndex, "Writes no \"index.html\", the front page of the recovery."});
  parser.addOption({kNoTimes, "Leaves copied files with the time of copying, not that of the device."});
  parser.addOption(
      {kOnly, "Recovers only these categories, separated by commas: " + JoinedLabels() + ".", "LABELS"});
}

/// Parses a list of labels. @return 0, or the exit status for an unknown label.
int ReadOnly(const QString& qstrList, std::vector<CategoryNumber>& only) {
  for (const QString& qstrPart : qstrList.split(',')) {
    const QString qstrLabel = qstrPart.trimmed();
    const auto itFound =
        std::find_if(Categories().begin(), Categories().end(), [&](const Category& category) {
          return qstrLabel.compare(QLatin1String(category.pszLabel), Qt::CaseInsensitive) == 0;
        });
    if (itFound == Categories().end())
      return WrongUsage(QString("--only: no category '%1'; there are: %2").arg(qstrLabel, JoinedLabels()));
    only.push_back(itFound->nNumber);
  }
  return kExitDone;
}

int ReadRecoverOptions(const QCommandLineParser& parser, const QStringList& arguments,
                       RecoverOptions& options) {
  ReadBackupOptions(parser, arguments[0], options);
  options.qstrDestination = AbsolutePath(arguments[1]);
  options.bIndex = !parser.isSet(kNoIndex);
  options.bTimes = !parser.isSet(kNoTimes);
  if (parser.isSet(kOnly)) return ReadOnly(parser.value(kOnly), options.only);
  for (const Category& category : Categories()) options.only.push_back(category.nNumber);
  return kExitDone;
}

/// Checks the templates, if pages are wanted: without them scripts in recovered texts could run.
bool HasTemplates(const RecoverOptions& options, const CRecovery& recovery) {
  const QString qstrUnusable = WantsDocuments(options) ? recovery.FindUnusableTemplate() : QString();
  if (!qstrUnusable.isEmpty()) PrintError(qstrUnusable);
  return qstrUnusable.isEmpty();
}

/// Loads the template of the front page, if it is wanted. @return false on failure.
bool LoadIndexPage(const RecoverOptions& options, std::optional<IndexPage>& page) {
  if (!options.bIndex) return true;
  const Result<IndexPage> loaded = IndexPage::Load(QCoreApplication::applicationDirPath());
  if (!loaded) {
    PrintError(FromNarrow(loaded.Error().strFile + ": " + loaded.Error().strReason));
    return false;
  }
  page = *loaded;
  return true;
}

IndexFacts FactsOf(OpenBackup& backup, const RecoveryReport& report) {
  const __BACK_FILE_INFO__& info = *backup.session.GetSelectBackUpFileInfo();
  const DeviceModel model = ReadDeviceModel(ToNarrow(backup.qstrPath));
  return {FromNarrow(info.strDisplayName),
          FromNarrow(model.strProductType),
          FromNarrow(model.strProductVersion),
          FromNarrow(info.strLastBackupDate),
          QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm t"),
          report.Failed()};
}

/// Recovers files and documents. @return false when a template can't be used.
bool RecoverAll(const RecoverOptions& options, OpenBackup& backup, RecoveryReport& report,
                RecoveryIndex& index) {
  CRecovery recovery;
  recovery.SetWrittenFileHandler([&](const WrittenFile& file) { report.Add(file); });
  recovery.SetNamePolicy(NamePolicy::MadeSafe);
  if (WantsDocuments(options)) recovery.Init(options.qstrDestination, &backup.session);
  // Again, since they may have been removed while the backup was read.
  if (!HasTemplates(options, recovery)) return false;
  RecoverFiles(options, backup, report);
  if (WantsDocuments(options)) RecoverDocuments(options, backup.records, recovery, report, index);
  ReportLosses(options, backup, report);
  return true;
}

int Recover(const QCommandLineParser& parser, const QStringList& arguments) {
  RecoverOptions options;
  if (const int nStatus = ReadRecoverOptions(parser, arguments, options)) return nStatus;
  // Before anything is read or written.
  std::optional<IndexPage> page;
  if (!HasTemplates(options, CRecovery()) || !LoadIndexPage(options, page)) return kExitNotWritten;
  ProgressBar scanBar(!options.bQuiet);
  OpenBackup backup(options);
  const auto isWanted = [&](CategoryNumber nNumber) { return IsWanted(options, nNumber); };
  if (const int nStatus = ReadBackup(options, isWanted, scanBar, backup)) return nStatus;
  if (const int nStatus = CheckDestination(options.qstrBackup, options.qstrDestination)) return nStatus;

  ProgressBar bar(!options.bQuiet);
  RecoveryReport report(options, bar, CountWork(options, backup.records));
  RecoveryIndex index(options.qstrDestination);
  report.SetHandler([&](const WrittenFile& file) { index.Add(file); });
  if (!RecoverAll(options, backup, report, index)) return kExitNotWritten;
  // A stopped recovery leaves the front page of an earlier one, which may be complete.
  if (page && report.Succeeded() != 0 && StopSignal() == 0)
    report.Add(page->Write(options, FactsOf(backup, report), backup.records, index));
  report.PrintTotals(backup.leftOut);
  if (!FinishOutput()) return kExitNotWritten;
  if (StopSignal() != 0) return Interrupted();
  PrintLeftOut(backup.leftOut);
  return report.Failed() != 0 ? kExitNotWritten : kExitDone;
}

}  // namespace

Command RecoverCommand() {
  return {"recover",
          "recovers the content of a backup",
          "Copies the content of a backup to a folder. The backup isn't changed.",
          {kBackupArgument, {"DESTINATION", "The folder to write to; created if missing."}},
          AddRecoverOptions,
          Recover};
}

}  // namespace orvandel
