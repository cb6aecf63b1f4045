// orvandel-sample: writes a generated backup for demonstrations, tests and measurements.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <exception>
#include <map>

#include "sample/demo_backup.h"

using namespace orvandel;

namespace {

constexpr int kWrongUsage = 1;
constexpr int kNotWritten = 4;

int complain(const QString& text, int status) {
  std::fprintf(stderr, "orvandel-sample: %s\n", qPrintable(text));
  return status;
}

struct NumberOption {
  const char *name, *description;
  int DemoOptions::*member;
};

const NumberOption kNumbers[] = {
    {"photos", "Pictures and films of the camera roll.", &DemoOptions::photos},
    {"messages", "Messages, over all conversations.", &DemoOptions::messages},
    {"contacts", "People in the address book.", &DemoOptions::contacts},
    {"entries", "Fill the manifest up to this many entries.", &DemoOptions::entries},
    {"seed", "Different seeds give different backups.", &DemoOptions::seed},
};

using Age = Encryption::Age;
using Layout = BackupBuilder::Layout;

/// Parses --age. @return an error message; null on success.
QString readAge(const QCommandLineParser& parser, DemoOptions& options) {
  static const std::map<QString, Age> kAges = {
      {"9", Age::BeforeIos10}, {"10.0", Age::Ios10}, {"10.2", Age::From102}};
  if (!parser.isSet("age")) return {};
  const auto age = kAges.find(parser.value("age"));
  if (age == kAges.end()) return "--age is 9, 10.0 or 10.2, not \"" + parser.value("age") + "\"";
  const auto layout = age->second == Age::BeforeIos10 ? Layout::Mbdb : Layout::Db;
  if (parser.isSet("layout") && options.layout != layout)
    return "--age " + age->first + " doesn't match --layout " + parser.value("layout");
  // 10.0 and 10.1 are releases of iOS 10.
  const bool isIos10 = options.ios == 10 && age->second == Age::Ios10;
  if (options.ios && !isIos10 && iosVersion(options.ios).age != age->second)
    return "--age " + age->first + " doesn't match --ios " + parser.value("ios");
  options.age = age->second;
  options.layout = layout;
  return {};
}

/// Parses the options of encryption. @return an error message; null on success.
QString readEncryption(const QCommandLineParser& parser, DemoOptions& options) {
  if (!parser.isSet("encrypted")) {
    for (const char* name : {"rounds", "age"}) {
      if (parser.isSet(name)) return QString("--%1 requires --encrypted").arg(name);
    }
    return {};
  }
  options.password = parser.value("encrypted").toUtf8();
  if (options.password.isEmpty()) return "--encrypted requires a password";
  bool ok = false;
  options.rounds = parser.value("rounds").toInt(&ok);
  if (!ok || options.rounds < 1)
    return "--rounds takes a number from 1 on, not \"" + parser.value("rounds") + "\"";
  return readAge(parser, options);
}

/// Parses --layout and --ios. @return an error message; null on success.
QString readSystem(const QCommandLineParser& parser, DemoOptions& options) {
  const QString layout = parser.value("layout");
  if (layout != "db" && layout != "mbdb") return "--layout is mbdb or db, not \"" + layout + "\"";
  const auto wanted = layout == "db" ? Layout::Db : Layout::Mbdb;
  options.layout = wanted;
  if (!parser.isSet("ios")) return {};
  bool ok = false;
  const int ios = parser.value("ios").toInt(&ok);
  if (!ok || ios < kFirstIos || ios > kLastIos) {
    return QString("--ios takes a version from %1 to %2, not \"%3\"")
        .arg(kFirstIos)
        .arg(kLastIos)
        .arg(parser.value("ios"));
  }
  options.setIos(ios);
  if (parser.isSet("layout") && options.layout != wanted)
    return "--ios " + parser.value("ios") + " doesn't match --layout " + layout;
  return {};
}

/// Parses the options. @return an error message; null on success.
QString readOptions(const QCommandLineParser& parser, DemoOptions& options) {
  const QString problem = readSystem(parser, options);
  if (!problem.isNull()) return problem;
  constexpr int kMost = 100000000;
  for (const NumberOption& number : kNumbers) {
    const QString text = parser.value(number.name);
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < 0 || value > kMost) {
      return QString("--%1 takes a number from 0 to %2, not \"%3\"").arg(number.name).arg(kMost).arg(text);
    }
    options.*number.member = value;
  }
  options.omitFiles = parser.isSet("omit-files");
  return readEncryption(parser, options);
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName("orvandel-sample");
  QCoreApplication::setApplicationVersion(ORVANDEL_VERSION);

  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Writes a generated backup of a device. The same arguments give the same bytes.\n"
      "Exit status: 0 success; 1 wrong usage; 4 something can't be written.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("FOLDER", "The backup's own folder; missing or empty.");
  parser.addOption({"layout", "Format of the manifest: mbdb or db.", "layout", "db"});
  parser.addOption({"ios",
                    QString("Write what this version of the system writes, %1 to %2: encryption, manifest, "
                            "places and columns of stores, HEIC photos, WhatsApp chats.")
                        .arg(kFirstIos)
                        .arg(kLastIos),
                    "N"});
  parser.addOption({"omit-files",
                    "Leave no entry without its file, as on devices: omit the entries that have none, and "
                    "give those of --entries a tiny one."});
  DemoOptions options;
  for (const NumberOption& number : kNumbers) {
    parser.addOption({number.name, number.description, "N", QString::number(options.*number.member)});
  }
  parser.addOption({"encrypted", "Encrypt the backup with this password.", "PASSWORD"});
  parser.addOption(
      {"rounds",
       "With --encrypted: rounds of the password's derivation. Devices have 10000 up to 10.1 and "
       "10000000 from 10.2 on.",
       "N", QString::number(options.rounds)});
  parser.addOption(
      {"age",
       "With --encrypted: the system that wrote it, 9, 10.0 or 10.2. Without it, 9 with --layout mbdb, else "
       "10.2.",
       "VERSION"});
  parser.process(app);

  const QStringList folders = parser.positionalArguments();
  if (folders.size() != 1) return complain("exactly one FOLDER is required (see --help)", kWrongUsage);
  const QString problem = readOptions(parser, options);
  if (!problem.isNull()) return complain(problem, kWrongUsage);
  const QString folder = QDir::cleanPath(folders.first());
  const QFileInfo place(folder);
  if (place.exists() && !place.isDir()) return complain(folder + ": is a file, not a folder", kWrongUsage);
  if (place.exists() &&
      !QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
    return complain(folder + ": the folder isn't empty, nothing was written", kWrongUsage);
  }

  try {
    const DemoSummary summary = writeDemoBackup(folder, options);
    std::printf(
        "%s: %lld entries, %d photos, %d messages in %d conversations, %d contacts, %d calls, %d notes\n",
        qPrintable(folder), static_cast<long long>(summary.entries), options.photos, summary.messages,
        summary.conversations, options.contacts, summary.calls, summary.notes);
  } catch (const std::exception& error) {
    return complain(QString::fromUtf8(error.what()), kNotWritten);
  }
  return 0;
}
