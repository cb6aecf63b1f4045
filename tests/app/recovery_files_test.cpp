// The files that a recovery copies, their folders and names.
#include <sys/stat.h>

#include <filesystem>

#include "tests/app/recovery_fixture.h"
#include "tests/cli/small_backup.h"

using namespace orvandel;

namespace {

using Names = std::vector<std::string>;

class RecoveryFiles : public RecoveryTest {
 protected:
  /// Paths of the reports with a name, relative to the destination.
  static Names Reported(const ReportRecorder& recorder, const std::string& strOut) {
    Names names;
    for (const Report& report : recorder.Named()) {
      EXPECT_EQ(0, report.nErrorCode) << report.strName;
      EXPECT_EQ(0u, report.strName.find(strOut + "/"));
      names.push_back(report.strName.substr(strOut.size()));
    }
    return names;
  }
  std::string Content(const std::string& strName) const { return ReadFile(Out() + strName); }
};

TEST_F(RecoveryFiles, CopiesTheTickedRowsAloneInTheirOrder) {
  for (const RecoveryStep& step : kRecoverySteps) {
    if (step.IsApps()) continue;
    for (const char* pszName : {"d.jpg", "c.jpg", "b.jpg", "a.jpg"})
      AddFile(step.nCategory, pszName, step.pszFolder + std::string(pszName));
    Selection(step.nCategory) = {{1, 0}, {3, 0}};
  }
  ReportRecorder recorder(Window());

  Recover();

  const Names expected = {"/Camera Roll/c.jpg",          "/Camera Roll/a.jpg",
                          "/Photo Stream/c.jpg",         "/Photo Stream/a.jpg",
                          "/WhatsApp Attachments/c.jpg", "/WhatsApp Attachments/a.jpg",
                          "/Message Attachments/c.jpg",  "/Message Attachments/a.jpg"};
  EXPECT_EQ(expected, Reported(recorder, Out()));
  EXPECT_EQ(expected.size(), FilesBelow(Out()).size());
  for (const std::string& strName : expected) EXPECT_EQ(strName, Content(strName));
}

TEST_F(RecoveryFiles, CopiesTheTickedFilesOfTickedApps) {
  for (const int nCategory : {2, 3}) {
    for (const char* pszApp : {"Alpha", "Beta", "Gamma"}) {
      for (const char* pszName : {"c.jpg", "b.jpg", "a.jpg"})
        AddAppFile(nCategory, pszApp, pszName, std::string(pszApp) + pszName);
    }
    AppSelection(nCategory) = {{"Gamma", {{2, 0}}}, {"Alpha", {{0, 0}, {1, 0}}}};
  }
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(Names({"/App Photos/Alpha/c.jpg", "/App Photos/Alpha/b.jpg", "/App Photos/Gamma/a.jpg",
                   "/App Video/Alpha/c.jpg", "/App Video/Alpha/b.jpg", "/App Video/Gamma/a.jpg"}),
            Reported(recorder, Out()));
  EXPECT_EQ("Gammaa.jpg", Content("/App Video/Gamma/a.jpg"));
  EXPECT_EQ(6u, FilesBelow(Out()).size());
}

TEST_F(RecoveryFiles, AFolderOfAnAppHasTheNameInTheRecord) {
  AddAppFile(2, "Key", "a.jpg", "bytes", "Name");

  Recover();

  EXPECT_EQ(Names({"App Photos/Name/a.jpg"}), FilesBelow(Out()));
}

TEST_F(RecoveryFiles, AnAppIsLookedUpByTheNarrowFormOfItsName) {
  AddAppFile(2, "Küche 猫", "ä.jpg", "bytes");

  Recover();

  EXPECT_EQ(Names({"App Photos/Küche 猫/ä.jpg"}), FilesBelow(Out()));
}

struct NameCase {
  const char* pszWhat;
  const char* pszName;
  const char* pszFirst;
  const char* pszSecond;
};
void PrintTo(const NameCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class RecoveryNames : public RecoveryTest, public testing::WithParamInterface<NameCase> {};

TEST_P(RecoveryNames, SecondAndThirdOfANameGetNumbersBeforeTheExtension) {
  for (const char* pszBytes : {"one", "two", "three"}) {
    AddFile(1, GetParam().pszName, pszBytes);
    AddAppFile(3, "App", GetParam().pszName, pszBytes);
  }
  ReportRecorder recorder(Window());

  Recover();

  for (const std::string strFolder : {"/Photo Stream/", "/App Video/App/"}) {
    EXPECT_EQ("one", ReadFile(Out() + strFolder + GetParam().pszName));
    EXPECT_EQ("two", ReadFile(Out() + strFolder + GetParam().pszFirst));
    EXPECT_EQ("three", ReadFile(Out() + strFolder + GetParam().pszSecond));
  }
  EXPECT_EQ(6u, FilesBelow(Out()).size());
  EXPECT_EQ(Out() + "/Photo Stream/" + GetParam().pszFirst, recorder.Named().at(1).strName);
}

INSTANTIATE_TEST_SUITE_P(Names, RecoveryNames,
                         testing::Values(NameCase{"Plain", "a.jpg", "a(1).jpg", "a(2).jpg"},
                                         NameCase{"WithoutExtension", "a", "a(1)", "a(2)"},
                                         NameCase{"TwoDots", "a.b.jpg", "a.b(1).jpg", "a.b(2).jpg"},
                                         NameCase{"DotInFront", ".a", "(1).a", "(2).a"},
                                         NameCase{"WithNumber", "a(1).jpg", "a(1)(1).jpg", "a(1)(2).jpg"},
                                         NameCase{"Blanks", "a b .jpg", "a b (1).jpg", "a b (2).jpg"},
                                         NameCase{"NotAscii", "ä猫.jpg", "ä猫(1).jpg", "ä猫(2).jpg"}),
                         [](const auto& info) { return std::string(info.param.pszWhat); });

TEST_F(RecoveryFiles, TheFirstFreeNumberIsTaken) {
  WriteFile(Out() + "/Camera Roll/a.jpg", "old");
  WriteFile(Out() + "/Camera Roll/a(2).jpg", "old");
  AddFile(0, "a.jpg", "one");
  AddFile(0, "a.jpg", "two");

  Recover();

  EXPECT_EQ("old", Content("/Camera Roll/a.jpg"));
  EXPECT_EQ("one", Content("/Camera Roll/a(1).jpg"));
  EXPECT_EQ("old", Content("/Camera Roll/a(2).jpg"));
  EXPECT_EQ("two", Content("/Camera Roll/a(3).jpg"));
}

TEST_F(RecoveryFiles, AFolderTakesANameLikeAFile) {
  m_folder.MakeFolder("out/Camera Roll/a.jpg");
  AddFile(0, "a.jpg", "one");

  Recover();

  EXPECT_EQ("one", Content("/Camera Roll/a(1).jpg"));
}

TEST_F(RecoveryFiles, CopiesMayBeReadAndWrittenByAll) {
  AddFile(0, "a.jpg");
  AddAppFile(2, "App", "b.jpg");
  const std::string strSource =
      QString::fromStdU16String(Records().m_vecCamera[0].wstrFilePath).toStdString();
  chmod(strSource.c_str(), 0400);
  const mode_t mask = umask(077);

  Recover();

  umask(mask);
  for (const char* pszName : {"/Camera Roll/a.jpg", "/App Photos/App/b.jpg"}) {
    struct stat info = {};
    ASSERT_EQ(0, stat((Out() + pszName).c_str(), &info)) << pszName;
    EXPECT_EQ(0777u, info.st_mode & 07777u) << pszName;
  }
}

TEST_F(RecoveryFiles, FilesOfAllSizesAreComplete) {
  std::string strLarge(5000001, '\0');
  for (size_t i = 0; i < strLarge.size(); ++i) strLarge[i] = static_cast<char>(i * i >> 7);
  AddFile(0, "large", strLarge);
  AddFile(0, "one", "1");
  Records().m_vecCamera.push_back({0, "empty", u""});
  Records().m_vecCamera.back().wstrFilePath =
      QString::fromStdString(m_folder.Write("source/empty", "")).toStdU16String();
  Selection(0)[2] = 0;

  Recover();

  EXPECT_TRUE(strLarge == Content("/Camera Roll/large"));
  EXPECT_EQ("1", Content("/Camera Roll/one"));
  EXPECT_EQ("", Content("/Camera Roll/empty"));
}

TEST_F(RecoveryFiles, ASecondRecoveryIntoTheFolderAddsNumberedCopies) {
  AddFile(0, "a.jpg", "one");
  AddFile(0, "b", "two");
  AddAppFile(2, "App", "c.gif", "three");

  Recover();
  Recover();

  EXPECT_EQ(Names({"App Photos/App/c(1).gif", "App Photos/App/c.gif", "Camera Roll/a(1).jpg",
                   "Camera Roll/a.jpg", "Camera Roll/b", "Camera Roll/b(1)"}),
            FilesBelow(Out()));
  EXPECT_EQ("one", Content("/Camera Roll/a.jpg"));
  EXPECT_EQ("one", Content("/Camera Roll/a(1).jpg"));
}

TEST_F(RecoveryFiles, ACopyWithoutASourceIsReportedAsDone) {
  AddFile(0, "gone.jpg", "");
  AddFile(0, "there.jpg");
  AddFile(0, "gone.jpg", "");
  ReportRecorder recorder(Window());
  DetailList detail;

  Recover([&](QWidget* pDialog) { detail = DetailOf(pDialog); });

  // The name wasn't taken, so both are reported under it.
  const Names expected = {"/Camera Roll/gone.jpg", "/Camera Roll/there.jpg", "/Camera Roll/gone.jpg"};
  EXPECT_EQ(expected, Reported(recorder, Out()));
  ASSERT_EQ(3u, detail.rows.size());
  for (size_t i = 0; i < 3; ++i) EXPECT_EQ(Names({Out() + expected[i], "Success"}), detail.rows[i]);
  EXPECT_EQ("  Recovery Detail\n  Sucess:3 Failed:0\n", detail.strSummary);
  EXPECT_EQ(Names({"Camera Roll/there.jpg"}), FilesBelow(Out()));
}

TEST_F(RecoveryFiles, ANameThatAFailedCopyLeftFreeIsUsedByTheNext) {
  AddFile(0, "a.jpg", "");
  AddFile(0, "a.jpg", "two");
  AddFile(0, "a.jpg", "");
  AddFile(0, "a.jpg", "four");
  ReportRecorder recorder(Window());

  Recover();

  EXPECT_EQ(
      Names({"/Camera Roll/a.jpg", "/Camera Roll/a.jpg", "/Camera Roll/a(1).jpg", "/Camera Roll/a(1).jpg"}),
      Reported(recorder, Out()));
  EXPECT_EQ("two", Content("/Camera Roll/a.jpg"));
  EXPECT_EQ("four", Content("/Camera Roll/a(1).jpg"));
}

TEST_F(RecoveryFiles, AFileInPlaceOfAFolderFailsItsCategoryAlone) {
  WriteFile(Out() + "/Camera Roll", "in the way");
  WriteFile(Out() + "/App Photos", "in the way");
  WriteFile(Out() + "/Notes", "in the way");
  AddFile(0, "a.jpg");
  AddFile(1, "b.jpg");
  AddAppFile(2, "App", "c.jpg");
  AddDocuments();
  for (const int nCategory : {4, 6, 7, 9}) Selection(nCategory).clear();
  ReportRecorder recorder(Window());
  DetailList detail;

  Recover([&](QWidget* pDialog) { detail = DetailOf(pDialog); });

  EXPECT_EQ(
      Names({"/Camera Roll/a.jpg", "/Photo Stream/b.jpg", "/App Photos/App/c.jpg", "/Notes/Notes.html"}),
      Reported(recorder, Out()));
  EXPECT_EQ("  Recovery Detail\n  Sucess:4 Failed:0\n", detail.strSummary);
  EXPECT_EQ(Names({"App Photos", "Camera Roll", "Notes", "Photo Stream/b.jpg"}), FilesBelow(Out()));
  EXPECT_EQ("in the way", Content("/Camera Roll"));
}

TEST_F(RecoveryFiles, AnUnwritableDestinationIsReportedAsDone) {
  const std::string strOut = "/proc/self";  // nothing can be created there, not even by root
  AddFile(0, "a.jpg");
  AddDocuments();
  ReportRecorder recorder(Window());
  DetailList detail;
  ModalSteps steps;
  TypeFolder(steps, strOut);
  steps.Then(
      "SCANUI",
      [&](QWidget* pDialog) {
        detail = DetailOf(pDialog);
        Click(pDialog->findChild<QPushButton*>("Cancel"));
      },
      IsFinished);

  Window().btnRecovery();

  EXPECT_EQ(Names({"/Camera Roll/a.jpg", "/Message/sms.csv", "/Contacts/Contacts.html",
                   "/CallHistory/CallHistory.html", "/Notes/Notes.html"}),
            Reported(recorder, strOut));
  EXPECT_EQ("  Recovery Detail\n  Sucess:5 Failed:0\n", detail.strSummary);
  EXPECT_FALSE(Exists(strOut + "/Camera Roll"));
}

TEST_F(RecoveryFiles, TicksStayAsTheyWere) {
  for (const RecoveryStep& step : kRecoverySteps) {
    if (step.IsApps())
      AddAppFile(step.nCategory, "App", "a.mov");
    else
      AddFile(step.nCategory, "a.mov");
  }
  AppSelection(2)["Folder"];
  AppSelection(3)["No such app"] = {{4, 4}};
  AddDocuments();
  const auto before = Ticks();

  Recover();

  EXPECT_EQ(before, Ticks());
}

}  // namespace
