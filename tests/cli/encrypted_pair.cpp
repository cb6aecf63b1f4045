#include "tests/cli/encrypted_pair.h"

#include "sample/demo_backup.h"
#include "tests/cli/recovery_output.h"
#include "tests/cli/small_backup.h"
#include "tests/decrypt/cryptography.h"

namespace orvandel {

namespace {

constexpr int kRounds = 20;
constexpr char kManifest[] = "Manifest.db";

BackupKeys KeysOf(const BackupAge& age) {
  return BackupKeys({kPassword, age.age, kRounds, DemoOptions().seed});
}

}  // namespace

std::map<std::string, std::string> RecoveredTree(const std::string& strOut) {
  std::map<std::string, std::string> files;
  for (const std::string& strFile : FilesBelow(strOut)) {
    const std::string strName = WithoutStamps("/" + strFile);
    EXPECT_EQ(0u, files.count(strName)) << strName;
    files[strName] = ReadFile(strOut + "/" + strFile);
  }
  return files;
}

void ExpectSameTree(const std::map<std::string, std::string>& expected,
                    const std::map<std::string, std::string>& tree) {
  for (const auto& [strName, strBytes] : expected) {
    const auto it = tree.find(strName);
    if (it == tree.end())
      ADD_FAILURE() << strName << " is missing";
    else
      EXPECT_TRUE(strBytes == it->second) << strName << " differs";
  }
  for (const auto& [strName, strBytes] : tree) EXPECT_EQ(1u, expected.count(strName)) << strName;
}

EncryptedPair::EncryptedPair(const BackupAge& age, int nPhotos) : m_age(age) {
  DemoOptions options;
  options.layout = age.layout;
  options.age = age.age;
  options.rounds = kRounds;
  options.messages = 60;
  options.photos = nPhotos;
  writeDemoBackup(QString::fromStdString(Plain()), options);
  options.password = kPassword;
  writeDemoBackup(QString::fromStdString(Backup()), options);
  m_folder.Write("password", std::string(kPassword) + "\n");
}

std::string EncryptedPair::PathIn(const std::string& strBackup, const std::string& strId) const {
  return strBackup + "/" + (IsSharded() ? strId.substr(0, 2) + "/" : "") + strId;
}

std::vector<std::string> EncryptedPair::WithPassword(std::vector<std::string> arguments) const {
  arguments.insert(arguments.end(), {"--password-file", m_folder.Path("password")});
  return arguments;
}

EncryptedPair::Photo EncryptedPair::SomePhoto() const {
  const QJsonObject scan = RunCommand({"scan", Plain(), "--json", "--manifest", "-q"}).Object();
  std::map<std::string, int> uses;
  std::vector<Photo> photos;
  for (const QJsonValue value : scan["cameraRoll"].toArray()) {
    const QString path = value.toObject()["path"].toString();
    Photo photo;
    photo.strId = path.mid(path.lastIndexOf('/') + 1).toStdString();
    photo.strName = value.toObject()["name"].toString().toStdString();
    ++uses[photo.strName];
    photos.push_back(photo);
  }
  for (Photo& photo : photos) {
    if (uses[photo.strName] > 1 || photo.strName.find(".JPG") == std::string::npos) continue;
    for (const QJsonValue value : scan["manifest"].toArray()) {
      if (value.toObject()["id"].toString().toStdString() != photo.strId) continue;
      photo.strDeviceName = value.toObject()["name"].toString().toStdString();
      return photo;
    }
  }
  ADD_FAILURE() << "there is no photo with a name of its own";
  return {};
}

std::string EncryptedPair::KeyOf(const std::string& strId, unsigned int nClass) const {
  const BackupKeys keys = KeysOf(m_age);
  const QByteArray name = QByteArray::fromStdString(strId);
  return (nClass ? keys.wrappedKey(name, nClass) : keys.wrappedKey(name)).toStdString();
}

void EncryptedPair::ChangeManifest(const std::function<void(std::string& strBytes)>& change) const {
  const std::string strPath = Backup() + (IsSharded() ? "/Manifest.db" : "/Manifest.mbdb");
  std::string strBytes = ReadFile(strPath);
  const bool bEncrypted = m_age.age == Encryption::Age::From102;
  const Bytes key = ToBytes(KeysOf(m_age).key(kManifest).toStdString());
  if (bEncrypted) {
    auto* pBytes = reinterpret_cast<unsigned char*>(strBytes.data());
    CbcDecryptor(SecretOf(key)).Decrypt(pBytes, pBytes, strBytes.size());
  }
  change(strBytes);
  WriteFile(strPath, bEncrypted ? Encrypt(key, strBytes, false) : strBytes);
}

void EncryptedPair::ReplaceKey(const std::string& strId, const std::string& strKey) const {
  const std::string strOld = KeyOf(strId);
  ChangeManifest([&](std::string& strBytes) {
    const size_t nKey = strBytes.find(strOld);
    ASSERT_NE(std::string::npos, nKey);
    ASSERT_EQ(static_cast<char>(strOld.size()), strBytes[nKey - 1]) << "no length before the key";
    strBytes[nKey - 1] = static_cast<char>(strKey.size());
    // In "Manifest.db" nothing may move.
    strBytes.replace(nKey, IsSharded() ? strKey.size() : strOld.size(), strKey);
  });
}

void EncryptedPair::DestroyRecord(const std::string& strId) const {
  const std::string strKey = KeyOf(strId);
  ChangeManifest([&](std::string& strBytes) {
    const size_t nKey = strBytes.find(strKey);
    ASSERT_NE(std::string::npos, nKey);
    const size_t nStart = strBytes.rfind("bplist00", nKey);
    ASSERT_NE(std::string::npos, nStart);
    strBytes.replace(nStart, 8, "garbage!");
  });
}

}  // namespace orvandel
