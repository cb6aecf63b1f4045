// A scan with the decrypt tool, once the password is known.
#include <gmock/gmock.h>

#include <QProgressBar>
#include <algorithm>
#include <filesystem>

#include "tests/app/encrypted_fixture.h"

using namespace orvandel;

namespace {

constexpr char kAccept[] = "echo Count:0; exec sleep 60";
constexpr char kPassword[] = "secret";

std::string Says(const std::string& strLine) {
  return "echo '" + strLine + "'\n";
}

class EncryptedScan : public EncryptedTest {
 protected:
  /// Opens an encrypted backup of a number of files, with a script as the tool.
  void OpenAndSelect(const std::string& strDecrypt, int nFiles = 10) {
    WriteTool(kAccept, strDecrypt);
    const std::string strBackup = WriteSealedBackup("one", nFiles);
    Open();
    SelectBackup(strBackup, kPassword);
    ExpectDataScreen();
  }
  /// The reports of such a scan from the tool's lines.
  std::vector<int> ProgressOf(const std::string& strDecrypt, int nFiles = 10) {
    WriteTool(kAccept, strDecrypt);
    const std::string strBackup = WriteSealedBackup("one", nFiles);
    Open();
    const ToolProgress progress(Window());
    SelectBackup(strBackup, kPassword);
    ExpectDataScreen();
    return progress.values;
  }
  void ExpectPhotos(int nCount) {
    std::vector<std::string> labels = kZeroLabels;
    labels[0] = "Camera Roll(" + std::to_string(nCount) + ")";
    EXPECT_EQ(labels, Labels());
  }
};

TEST_F(EncryptedScan, ReadsWhatTheToolHasWritten) {
  OpenAndSelect(WritePhoto(1) + WritePhoto(2) + Says("Count:4"));

  ExpectPhotos(2);
  EXPECT_EQ("IMG_0001.JPG", Cells(Table("m_pCameraTable"), 0)[0]);
  EXPECT_EQ("IMG_0002.JPG", Cells(Table("m_pCameraTable"), 1)[0]);
}

TEST_F(EncryptedScan, CountsMoveTheBarFromOneToEleven) {
  std::string strCounts;
  for (int i = 0; i <= 20; ++i) strCounts += Says("Count:" + std::to_string(i));

  const std::vector<int> values = ProgressOf(strCounts, 20);

  // n * 10 / 20 + 1 in integers.
  EXPECT_EQ(std::vector<int>({1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11}), values);
}

TEST_F(EncryptedScan, CountAboveTheTotalGivesEleven) {
  EXPECT_EQ(std::vector<int>({10, 11, 11, 11, 11}),
            ProgressOf(Says("Count:9") + Says("Count:10") + Says("Count:11") + Says("Count:5000000000") +
                       Says("Count:99999999999999999999")));
}

TEST_F(EncryptedScan, OnlyTheDigitsDirectlyAfterTheWordCount) {
  EXPECT_EQ(std::vector<int>({6, 8, 1, 3}), ProgressOf(Says("files 3, Count:5 of 9") + Says("Count:7,9") +
                                                       Says("Count:") + Says("Count:2 Count:9")));
}

TEST_F(EncryptedScan, NegativeNumbersEndNeitherProgramNorDialog) {
  const std::vector<int> values =
      ProgressOf(Says("Count:-99999999999999999999") + Says("Count:-922337203685477580") + Says("Count:5"));

  ASSERT_EQ(3u, values.size());
  EXPECT_LE(values[0], 1);
  EXPECT_LE(values[1], 1);
  EXPECT_EQ(6, values[2]);
}

TEST_F(EncryptedScan, OtherLinesAreIgnored) {
  EXPECT_EQ(std::vector<int>({2, 3}),
            ProgressOf(Says("hello") + Says("count:9") + Says("Count 9") + Says("") + Says("Count:1") +
                       Says("wrong password") + Says("Count:2")));
}

TEST_F(EncryptedScan, ReadsStandardErrorAlongWithTheOutput) {
  EXPECT_EQ(std::vector<int>({2, 3, 4}),
            ProgressOf("echo Count:1; echo Count:2 >&2; echo 'a file: is broken' >&2; echo Count:3\n"));
}

TEST_F(EncryptedScan, LineThatComesInPiecesIsReadAsOne) {
  // The pauses make the pieces arrive separately.
  EXPECT_EQ(std::vector<int>({11}),
            ProgressOf("printf 'Cou'; sleep 0.2; printf 'nt:1'; sleep 0.2; printf '0\\n'; printf 'Count:5'"));
}

TEST_F(EncryptedScan, BarShowsTheCounts) {
  WriteTool(kAccept, "echo Count:5; until [ -e \"$dir/go\" ]; do sleep 0.01; done");
  const std::string strBackup = WriteSealedBackup("one", 10);
  Open();
  ModalSteps steps;
  ChooseFolder(steps, strBackup);
  GivePassword(steps, kPassword);
  std::string strText;
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        strText = TextOf(pDialog->findChild<QLabel*>("m_pTextLabel"));
        WriteFile(ToolFolder() + "/go", "");
      },
      [](QWidget* pDialog) { return pDialog->findChild<QProgressBar*>("progressBar")->value() == 6; });

  Select();

  ExpectDataScreen();
  EXPECT_EQ("  Current Process: 6%\n  Scanning takes a while, please wait...\n", strText);
}

TEST_F(EncryptedScan, HundredThousandLinesAreAllProcessed) {
  const std::vector<int> values = ProgressOf("seq -f Count:%.0f 100000\n");

  ASSERT_EQ(100000u, values.size());
  EXPECT_EQ(2, values[0]);
  EXPECT_EQ(10, values[8]);
  EXPECT_EQ(99991, std::count(values.begin(), values.end(), 11));
}

TEST_F(EncryptedScan, EmptiesTheDecryptedFolderFirstAndLeavesItsFolders) {
  WriteTool(kAccept, "ls -A \"$2\" >\"$dir/found\"\n" + WritePhoto(1));
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  WriteFile(DecryptedFolder() + "/left", "of another backup");
  WriteFile(DecryptedFolder() + "/folder/kept", "stays");

  SelectBackup(strBackup, kPassword);

  EXPECT_EQ("folder\n", Told("found"));
  EXPECT_TRUE(Exists(DecryptedFolder() + "/folder/kept"));
  ExpectPhotos(1);
}

TEST_F(EncryptedScan, SecondScanBeginsWithAnEmptyFolder) {
  OpenAndSelect("ls -A \"$2\" >>\"$dir/found\"; [ -e \"$dir/again\" ] || " + WritePhoto(1));
  const std::vector<std::string> first = Labels();
  WriteFile(ToolFolder() + "/again", "");

  Window().btnSlotScan();

  EXPECT_EQ("Camera Roll(1)", first[0]);
  EXPECT_EQ("", Told("found"));
  ExpectPhotos(0);
  ASSERT_EQ(3u, Calls().size()) << "the second scan asks for no password";
  EXPECT_EQ(Calls()[1], Calls()[2]);
}

TEST_F(EncryptedScan, RemovesTheProcessOfTheCheckBeforeTheToolRuns) {
  WriteTool(kAccept, Says("Count:1"));
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  std::vector<QProcess*> processes;
  QObject::connect(&Window(), &DRUI::ScanProcessCallBack, &Window(),
                   [&] { processes.push_back(WindowAccess::DecryptProcess(Window())); });

  SelectBackup(strBackup, kPassword);

  EXPECT_FALSE(processes.empty());
  EXPECT_THAT(processes, testing::Each(nullptr));
}

TEST_F(EncryptedScan, WrongPasswordEndsItWithAllCountsZeroAndNoMessage) {
  OpenAndSelect(WritePhoto(1) + Says("Count:1") + Says("Wrong password") + "exec sleep 60");

  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(-110, WindowAccess::DecryptStatus(Window()));
  EXPECT_TRUE(ToolHasEnded());
}

TEST_F(EncryptedScan, WrongPasswordInTheLastLineIsNotMissed) {
  for (int i = 0; i < 20; ++i) {
    WriteTool(kAccept, WritePhoto(1) + "seq -f Count:%.0f 200; echo 'Count:9 Wrong password'");
    const std::string strBackup = BackupPath("one");
    if (i == 0) WriteSealedBackup("one");
    Open();

    SelectBackup(strBackup, kPassword);

    ASSERT_EQ(kZeroLabels, Labels()) << i;
  }
}

TEST_F(EncryptedScan, AfterAWrongPasswordTheNextScanBeginsAnew) {
  OpenAndSelect("if [ -e \"$dir/again\" ]; then " + WritePhoto(1) + "else echo 'Wrong password'; fi");
  ASSERT_EQ(kZeroLabels, Labels());
  WriteFile(ToolFolder() + "/again", "");

  Window().btnSlotScan();

  ExpectPhotos(1);
  EXPECT_EQ(0, WindowAccess::DecryptStatus(Window()));
}

TEST_F(EncryptedScan, CrashOfTheToolKeepsTheFilesInTheFolder) {
  for (const char* pszEnd : {"kill -SEGV $$", "kill -KILL $$", "exit 1"}) {
    OpenAndSelect(WritePhoto(1) + Says("Count:3") + pszEnd);
    ExpectPhotos(1);
    std::filesystem::remove_all(BackupPath("one"));
  }
}

TEST_F(EncryptedScan, MissingToolMeansARightPasswordAndAnEmptyFolder) {
  RemoveTool();
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  WriteFile(DecryptedFolder() + "/left", "of another backup");

  SelectBackup(strBackup, kPassword);

  ExpectDataScreen();
  EXPECT_EQ(kZeroLabels, Labels());
  EXPECT_EQ(kPassword, WindowAccess::BackupPassword(Window()));
  EXPECT_TRUE(NamesIn(DecryptedFolder()).empty());
}

TEST_F(EncryptedScan, ToolThatCanNotStartIsLikeAMissingOne) {
  m_folder.Write("program folder/Velmora Orvandel", "#!/bin/sh\n");  // not executable
  SetProgramFolder(ToolFolder());
  const std::string strBackup = WriteSealedBackup("one");
  Open();

  SelectBackup(strBackup, kPassword);

  ExpectDataScreen();
  EXPECT_EQ(kZeroLabels, Labels());
}

TEST_F(EncryptedScan, RowOfTheListAsksNothingAndGivesNoPassword) {
  WriteTool(kAccept, Says("Wrong password"));
  const std::string strBackup = WriteSealedBackup("one");
  Open();

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(kZeroLabels, Labels());
  ASSERT_EQ(1u, Calls().size());
  EXPECT_EQ(std::vector<std::string>({strBackup, DecryptedArgument()}), Calls()[0]);
}

TEST_F(EncryptedScan, RowOfTheListWithoutACountLeavesTheBarAlone) {
  WriteTool(kAccept, WritePhoto(1) + Says("Count:0") + Says("Count:1") + Says("Count:9"));
  WriteSealedBackup("one");
  Open();
  const ToolProgress progress(Window());

  ScanBackup();

  ExpectDataScreen();
  EXPECT_EQ(0, WindowAccess::TotalFileCount(Window()));
  EXPECT_TRUE(progress.values.empty());
  ExpectPhotos(1);
}

TEST_F(EncryptedScan, RowOfTheListUsesTheEarlierPasswordAndCount) {
  WriteTool(kAccept, WritePhoto(1) + Says("Count:1"));
  const std::string strOther = m_folder.Path("other");
  std::filesystem::rename(WriteSealedBackup("other", 20), strOther);
  const std::string strBackup = WriteSealedBackup("one");
  Open();
  SelectBackup(strOther, kPassword);
  WindowAccess::ScreenStack(Window())->setCurrentWidget(WindowAccess::HomeScreen(Window()));
  WriteTool(kAccept, WritePhoto(1) + Says("Count:4"));
  const ToolProgress progress(Window());

  ScanBackup();

  ASSERT_EQ(3u, Calls().size());
  EXPECT_EQ(std::vector<std::string>({strBackup, DecryptedArgument(), kPassword}), Calls()[2]);
  EXPECT_EQ(20, WindowAccess::TotalFileCount(Window()));
  EXPECT_EQ(std::vector<int>({3}), progress.values) << "4 * 10 / 20 + 1";
  ExpectPhotos(1);
}

}  // namespace
