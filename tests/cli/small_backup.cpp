#include "tests/cli/small_backup.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "sample/pictures.h"
#include "sample/stores.h"
#include "tests/support.h"

namespace orvandel {

namespace {

constexpr qint64 kDate = 483786753;  // 2016-05-01T09:12:33Z, in seconds from 2001-01-01

QString ToText(const std::string& strText) {
  return QString::fromStdString(strText);
}

/// Adds files and records where they are to be recovered.
class Adder {
 public:
  Adder(BackupBuilder& backup, SmallBackup& small) : m_backup(backup), m_small(small) {}

  void Add(const char* pszDomain, const char* pszPath, const QByteArray& bytes, const char* pszTarget) {
    const QString path = m_backup.addFile(pszDomain, QString::fromUtf8(pszPath), bytes);
    m_small.files.push_back({pszTarget, path.toStdString(), bytes.toStdString()});
  }

 private:
  BackupBuilder& m_backup;
  SmallBackup& m_small;
};

QString Reserve(BackupBuilder& backup, const StorePlace& place) {
  return backup.reserveFile(place.domain, place.relativePath);
}

void AddStores(BackupBuilder& backup) {
  const bool bNew = backup.layout() == BackupBuilder::Layout::Db;
  ContactsStore contacts(Reserve(backup, store_places::contacts()), bNew);
  contacts.add({"Änne", "Berger", "Gärtnerei", "+493023125001", "aenne@example.net", "", "example.net"});
  contacts.close();

  MessageStore messages(Reserve(backup, store_places::messages()));
  const qint64 nHandle = messages.addHandle("+493023125001");
  const qint64 nChat = messages.addChat("+493023125001");
  messages.addMessage(nHandle, "Grüß dich", kDate, false, {nChat});
  messages.addMessage(nHandle, "Hallo", kDate + 60, true, {nChat});
  messages.close();

  CallStore calls(Reserve(backup, store_places::calls()));
  calls.add(1, 61, "+493023125001", static_cast<double>(kDate));
  calls.close();

  if (bNew) {
    NotesCloudStore notes(Reserve(backup, store_places::notesCloud()));
    notes.add(kDate, "Einkauf", "Brötchen");
    notes.close();
  } else {
    NotesStore notes(Reserve(backup, store_places::notes()));
    notes.add(kDate, "Einkauf", "Brötchen");
    notes.close();
  }
}

}  // namespace

SmallBackup WriteSmallBackup(const std::string& strFolder, BackupBuilder::Layout layout) {
  SmallBackup small;
  BackupBuilder backup(ToText(strFolder), layout);
  backup.writeInfo({});
  Adder adder(backup, small);
  adder.Add("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.PNG", sample_media::png(1),
            "/Camera Roll/IMG_0001.PNG");
  adder.Add("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0002.MOV", sample_media::mov(2),
            "/Camera Roll/IMG_0002.MOV");
  adder.Add("MediaDomain", "Media/PhotoStreamsData/1/100APPLE/IMG_0003.JPG", sample_media::jpeg(3),
            "/Photo Stream/IMG_0003.JPG");
  adder.Add("AppDomain-com.example.Snap", "Documents/cat.gif", sample_media::gif(4),
            "/App Photos/example.Snap/cat.GIF");
  adder.Add("AppDomain-net.example.Radio", "Documents/show.avi", sample_media::avi(5),
            "/App Video/example.Radio/show.AVI");
  adder.Add("AppDomain-net.whatsapp.WhatsApp", "Library/Media/a/b.jpg", sample_media::jpeg(6),
            "/WhatsApp Attachments/b.JPG");
  adder.Add("MediaDomain", "Library/SMS/Attachments/0a/10/laugh.gif", sample_media::gif(7),
            "/Message Attachments/laugh.GIF");
  backup.addEntry("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0009.JPG");
  AddStores(backup);
  backup.finish();
  return small;
}

std::vector<std::string> WritePhotos(const std::string& strFolder, int nPhotos, const QByteArray& bytes) {
  std::vector<std::string> paths;
  BackupBuilder backup(ToText(strFolder), BackupBuilder::Layout::Mbdb);
  backup.writeInfo({});
  for (int i = 0; i < nPhotos; ++i) {
    const QString path = QString("Media/DCIM/100APPLE/IMG_%1.JPG").arg(i, 5, 10, QChar('0'));
    paths.push_back(backup.addFile("CameraRollDomain", path, bytes).toStdString());
  }
  backup.finish();
  return paths;
}

std::string StorePathIn(const std::string& strFolder, BackupBuilder::Layout layout, const StorePlace& place) {
  const BackupBuilder backup(ToText(strFolder), layout);
  return backup.filePath(BackupBuilder::fileId(place.domain, place.relativePath)).toStdString();
}

std::map<std::string, std::string> TreeOf(const std::string& strFolder) {
  std::map<std::string, std::string> tree;
  const auto add = [&](const std::filesystem::path& path) {
    struct stat info;
    ASSERT_EQ(0, lstat(path.c_str(), &info)) << path;
    std::string strFacts = std::to_string(info.st_mode) + ' ' + std::to_string(info.st_size) + ' ' +
                           std::to_string(info.st_mtim.tv_sec) + '.' + std::to_string(info.st_mtim.tv_nsec);
    if (S_ISREG(info.st_mode)) strFacts += ' ' + ReadFile(path.string());
    tree[path.string()] = strFacts;
  };
  add(strFolder);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(strFolder)) add(entry.path());
  return tree;
}

std::vector<std::string> FilesBelow(const std::string& strFolder) {
  std::vector<std::string> files;
  if (!Exists(strFolder)) return files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(strFolder)) {
    if (!entry.is_directory()) files.push_back(entry.path().lexically_relative(strFolder).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace orvandel
