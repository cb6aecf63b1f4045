#pragma once
#include "tests/ui/window_fixture.h"

namespace orvandel {

/// An information box that was shown.
struct ShownBox {
  std::string strText;
  QRect geometry;
};

/// Tests of backups that are opened by their folder, with the decrypt tool or a script in its place. Each
/// test also checks that no tool is left running.
class EncryptedTest : public WindowTest {
 protected:
  ~EncryptedTest() override;

  /// Installs a shell script in place of the tool. It records its arguments and then runs the code for its
  /// mode.
  /// "$dir" is its own folder, "$1" and "$2" are the arguments.
  void WriteTool(const std::string& strCheck, const std::string& strDecrypt = "");
  /// Makes its folder the tool's folder, without a tool.
  void RemoveTool();
  std::string ToolFolder() const { return m_folder.Path("program folder"); }
  /// Content of a file that the script wrote in its folder.
  std::string Told(const std::string& strName) const { return ReadFile(ToolFolder() + "/" + strName); }
  /// Arguments of every run of the script.
  std::vector<std::vector<std::string>> Calls() const;
  /// Whether the last script, whose process id is in the file "pid", has ended.
  bool ToolHasEnded() const;

  /// Writes a backup that counts as encrypted because of its contacts store, but has no keys. It has a
  /// manifest of two photos, four files in its folder, and in a folder "more" the rest of the count. @return
  /// its path.
  std::string WriteSealedBackup(const std::string& strName, int nFiles = 4) const;
  /// A script line that writes a photo into the decrypted folder. @param nPhoto 1 or 2.
  std::string WritePhoto(int nPhoto) const;
  std::string DecryptedFolder() const { return m_folder.Path("work/VelmoraiTunesExBackupPath"); }
  /// The same as passed to the tool.
  std::string DecryptedArgument() const { return m_folder.Path("work//VelmoraiTunesExBackupPath"); }

  /// Steps of the user.
  static void ChooseFolder(ModalSteps& steps, const std::string& strFolder);
  static void CancelFolder(ModalSteps& steps);
  static void GivePassword(ModalSteps& steps, const std::string& strPassword, const char* pszButton = "OK");
  static void CloseBox(ModalSteps& steps, ShownBox& box);

  /// Presses "Select" and waits for the end.
  void Select() { Click(Find<QPushButton>("selectButton")); }
  /// The same with all steps of a user who knows the password.
  void SelectBackup(const std::string& strFolder, const std::string& strPassword);
  void ExpectHomeScreen();
  void ExpectDataScreen();
};

/// Records the window's reports caused by the tool's lines, without those of the worker itself.
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

}  // namespace orvandel
