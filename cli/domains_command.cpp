#include <QJsonObject>
#include <algorithm>
#include <map>

#include "cli/commands.h"
#include "cli/json_stream.h"
#include "cli/manifest_access.h"
#include "cli/options.h"
#include "cli/output.h"
#include "common/format.h"
#include "common/text.h"

namespace orvandel {

namespace {

struct Contents {
  qint64 nFiles = 0;
  qint64 nBytes = 0;

  /// @param nSize UINT64_MAX if unknown.
  void Add(uint64_t nSize) {
    ++nFiles;
    // Sizes are a stranger's: clamp to avoid overflow.
    if (nSize != UINT64_MAX) nBytes += static_cast<qint64>(std::min<uint64_t>(nSize, INT64_MAX - nBytes));
  }
};

using DomainMap = std::map<std::string, Contents>;

QString SizeText(qint64 nBytes) {
  return FromNarrow(GetFileSizeString(nBytes));
}

void PrintText(const DomainMap& domains, const Contents& sum) {
  for (const auto& [strDomain, contents] : domains) {
    PrintLine(Printable(FromNarrow(strDomain)) + '\t' + QString::number(contents.nFiles) + '\t' +
              SizeText(contents.nBytes));
  }
  PrintLine(QString("%1 domains, %2 files, %3")
                .arg(static_cast<qint64>(domains.size()))
                .arg(sum.nFiles)
                .arg(SizeText(sum.nBytes)));
}

void PrintJson(const DomainMap& domains, const Contents& sum) {
  JsonStream json;
  json.BeginArray("domains");
  for (const auto& [strDomain, contents] : domains) {
    json.Element(QJsonObject{
        {"domain", FromNarrow(strDomain)}, {"files", contents.nFiles}, {"bytes", contents.nBytes}});
  }
  json.EndArray();
  json.Member("files", sum.nFiles);
  json.Member("bytes", sum.nBytes);
}

int Domains(const QCommandLineParser& parser, const QStringList& arguments) {
  BackupOptions options;
  ReadBackupOptions(parser, arguments[0], options);
  std::unique_ptr<BackupReader> pReader;
  if (const int nStatus = OpenManifest(options, pReader)) return nStatus;
  DomainMap domains;
  Contents sum;
  const bool bComplete = VisitManifest(*pReader, BackupReader::Detail::Records, [&](ManifestEntry&& entry) {
    Contents& contents = domains[entry.strDomain];
    if (entry.kind != ManifestEntry::Kind::File && !pReader->IsFile(entry)) return true;
    contents.Add(entry.nSize);
    sum.Add(entry.nSize);
    return true;
  });
  options.bJson ? PrintJson(domains, sum) : PrintText(domains, sum);
  return FinishCommand(bComplete);
}

}  // namespace

Command DomainsCommand() {
  return {"domains",
          "lists the domains of a backup",
          "Lists the domains in a backup's manifest, sorted by name, with the number of their files and "
          "their size, as\n"
          "the manifest records it; and the sums.",
          {kBackupArgument},
          AddBackupOptions,
          Domains,
          "  orvandel-cli domains BACKUP\n"
          "  orvandel-cli domains BACKUP --json | jq '.domains | max_by(.bytes)'"};
}

}  // namespace orvandel
