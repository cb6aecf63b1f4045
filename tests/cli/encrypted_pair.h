#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/cli/command.h"
#include "tests/decrypt/encrypted_backup.h"
#include "tests/support.h"

namespace orvandel {

/// Contents by path below the destination, both without time stamps.
std::map<std::string, std::string> RecoveredTree(const std::string& strOut);

/// Expects equal trees, and names the files that differ.
void ExpectSameTree(const std::map<std::string, std::string>& expected,
                    const std::map<std::string, std::string>& tree);

/// A backup of a well-used device, encrypted with kPassword, and unencrypted beside it under the same name.
class EncryptedPair {
 public:
  /// @param nPhotos as DemoOptions::photos.
  explicit EncryptedPair(const BackupAge& age, int nPhotos = 40);

  std::string Plain() const { return m_folder.Path("plain/backup"); }
  std::string Backup() const { return m_folder.Path("encrypted/backup"); }
  /// A path that may be written.
  std::string Path(const std::string& strName) const { return m_folder.Path(strName); }
  /// Path of a file of the encrypted backup.
  std::string PathOf(const std::string& strId) const { return PathIn(Backup(), strId); }
  std::string PathIn(const std::string& strBackup, const std::string& strId) const;

  /// Arguments with those that give the password.
  std::vector<std::string> WithPassword(std::vector<std::string> arguments) const;
  CommandResult Run(const std::vector<std::string>& arguments) const {
    return RunCommand(WithPassword(arguments));
  }

  /// A photo of the camera roll whose name no other file has.
  struct Photo {
    std::string strId;
    std::string strName;        ///< "IMG_0001.JPG"
    std::string strDeviceName;  ///< "CameraRollDomain-Media/DCIM/100APPLE/IMG_0001.JPG"
  };
  Photo SomePhoto() const;

  /// Changes the bytes of the encrypted backup's manifest, which are decrypted and encrypted again for it.
  void ChangeManifest(const std::function<void(std::string& strBytes)>& change) const;
  /// Replaces a file's wrapped key in the manifest. @param strKey 43 or 44 bytes.
  void ReplaceKey(const std::string& strId, const std::string& strKey) const;
  /// Overwrites the start of a file's record. Only with "Manifest.db".
  void DestroyRecord(const std::string& strId) const;

  /// Class and wrapped key of a file. @param nClass 0 for its own.
  std::string KeyOf(const std::string& strId, unsigned int nClass = 0) const;

  const BackupAge& Age() const { return m_age; }

 private:
  bool IsSharded() const { return m_age.layout == BackupBuilder::Layout::Db; }

  BackupAge m_age;
  TemporaryFolder m_folder;
};

}  // namespace orvandel
