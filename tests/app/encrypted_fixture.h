#pragma once
#include "tests/ui/window_fixture.h"

/// An information box as it came up.
struct ShownBox {
  std::string strText;
  QRect geometry;
};

/// Tests of backups that are opened by their folder, with the decrypt tool or a script in its place. Each
/// test also watches that no tool is left running.
class EncryptedTest : public WindowTest {
 protected:
  ~EncryptedTest() override;

  /// Puts a script in place of the tool. It notes its arguments and goes on with what its mode calls for, in
  /// the language of sh. "$dir" is its own folder, "$1" and "$2" are the arguments.
  void WriteTool(const std::string& strCheck, const std::string& strDecrypt = "");
  /// Makes its folder the tool's without a tool being there.
  void RemoveTool();
  std::string ToolFolder() const { return m_folder.Path("program folder"); }
  /// Something that the script has written into a file in its folder.
  std::string Told(const std::string& strName) const { return ReadFile(ToolFolder() + "/" + strName); }
  /// Arguments of all runs of the script.
  std::vector<std::vector<std::string>> Calls() const;
  /// Whether the script that ran last, with the number in its file "pid", has ended.
  bool ToolHasEnded() const;

  /// Writes a backup that counts as encrypted for its contacts store, without anything that a key would fit.
  /// It has a manifest of two photos, four files in its folder, and as many in a folder "more" as make up the
  /// count. @return its path.
  std::string WriteSealedBackup(const std::string& strName, int nFiles = 4) const;
  /// The line of a script that writes one of the photos into the decrypted folder. @param nPhoto 1 or 2.
  std::string WritePhoto(int nPhoto) const;
  std::string DecryptedFolder() const { return m_folder.Path("work/VelmoraiTunesExBackupPath"); }
  /// The same as the tool gets it.
  std::string DecryptedArgument() const { return m_folder.Path("work//VelmoraiTunesExBackupPath"); }

  /// Steps of the user.
  static void ChooseFolder(ModalSteps& steps, const std::string& strFolder);
  static void CancelFolder(ModalSteps& steps);
  static void GivePassword(ModalSteps& steps, const std::string& strPassword, const char* pszButton = "OK");
  static void CloseBox(ModalSteps& steps, ShownBox& box);

  /// Presses "Select" and waits for all that follows.
  void Select() { Click(Find<QPushButton>("selectButton")); }
  /// Presses it with all steps of a user who knows the password.
  void SelectBackup(const std::string& strFolder, const std::string& strPassword);
  void ExpectHomeScreen();
  void ExpectDataScreen();
};

/// What the tool's lines make the window report: the worker's own reports aren't among them.
class ToolProgress {
 public:
  explicit ToolProgress(DRUI& window);
  ~ToolProgress() { QObject::disconnect(m_connection); }
  ToolProgress(const ToolProgress&) = delete;
  ToolProgress& operator=(const ToolProgress&) = delete;

  std::vector<int> values;

 private:
  QMetaObject::Connection m_connection;
};
