#include <QFileInfo>
#include <QMenu>
#include <QSignalSpy>

#include "tests/ui/url_recorder.h"
#include "tests/ui/window_fixture.h"
#include "ui/urls.h"

using namespace orvandel;

namespace {

class Menu : public WindowTest {
 protected:
  /// Size of a button: that of its picture divided by 1.3, truncated.
  static QSize ButtonSize() {
    const QPixmap picture(":/image/help.png");
    return QSize(static_cast<int>(picture.width() / 1.3), static_cast<int>(picture.height() / 1.3));
  }
  QString Url(CURLConfig::Slot slot) const { return CURLConfig::GetInstance()->GetUrl(slot); }
  /// The page that the Help button opens, with or without a guide beside the tests.
  QString Help() const {
    return HelpPage(Url(CURLConfig::kOnlineHelp), QCoreApplication::applicationDirPath()).toString();
  }
  QAction* Action(int nPlace) { return WindowAccess::MenuButton(*m_pWindow)->menu()->actions().at(nPlace); }

  QWidget m_parent;
  UrlRecorder m_browser;
};

TEST_F(Menu, KindOneIsTheHelpButton) {
  Open();

  QPushButton* pButton = Window().CreateButton(1, 955, &m_parent);

  ASSERT_NE(nullptr, pButton);
  EXPECT_EQ(&m_parent, pButton->parentWidget());
  EXPECT_EQ(QPoint(955, 20), pButton->pos());
  EXPECT_EQ(ButtonSize(), pButton->size());
  EXPECT_EQ(ButtonSize(), pButton->iconSize());
  EXPECT_FALSE(pButton->icon().isNull());
  EXPECT_EQ("Calibri 10/75", FontOf(pButton));
  EXPECT_TRUE(pButton->isFlat());
  EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
  EXPECT_EQ(nullptr, pButton->menu());
  EXPECT_EQ("", pButton->styleSheet());
}

TEST_F(Menu, KindThreeIsTheMenuButton) {
  Open();

  QPushButton* pButton = Window().CreateButton(3, 900, &m_parent);

  ASSERT_NE(nullptr, pButton);
  EXPECT_EQ(WindowAccess::MenuButton(Window()), pButton);
  EXPECT_EQ(&m_parent, pButton->parentWidget());
  EXPECT_EQ(QPoint(900, 20), pButton->pos());
  EXPECT_EQ(ButtonSize(), pButton->size());
  EXPECT_EQ(ButtonSize(), pButton->iconSize());
  EXPECT_EQ("Calibri 10/75", FontOf(pButton));
  EXPECT_TRUE(pButton->isFlat());
  EXPECT_EQ(Qt::PointingHandCursor, pButton->cursor().shape());
  EXPECT_EQ("QPushButton::menu-indicator{image:None;}", pButton->styleSheet());
  EXPECT_NE(nullptr, pButton->menu());
}

TEST_F(Menu, UnknownKindsGiveNoButton) {
  Open();

  for (const int nKind : {0, 2, 4, -1, 1000}) EXPECT_EQ(nullptr, Window().CreateButton(nKind, 0, &m_parent));

  EXPECT_TRUE(m_parent.children().isEmpty());
}

TEST_F(Menu, HoldsItsActionsInOrder) {
  Open();
  Window().InitMenu(&m_parent);
  const char* const texts[] = {"Help", "Support", "Language"};
  const char* const icons[] = {"help", "support", "language"};

  const QList<QAction*> actions = WindowAccess::MenuButton(Window())->menu()->actions();

  ASSERT_EQ(3, actions.size());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(texts[i], actions[i]->text());
    EXPECT_EQ(texts[i], actions[i]->data().toString());
    const QImage wanted = QIcon(QString(":/image/%1.png").arg(icons[i])).pixmap(16, 16).toImage();
    EXPECT_FALSE(wanted.isNull()) << icons[i];
    EXPECT_EQ(wanted, actions[i]->icon().pixmap(16, 16).toImage()) << icons[i];
    for (int j = 0; j < i; ++j)
      EXPECT_NE(actions[j]->icon().pixmap(16, 16).toImage(), wanted) << icons[i] << " and " << icons[j];
  }
}

TEST_F(Menu, ActionsOpenTheirPages) {
  Open();
  Window().InitMenu(&m_parent);

  for (int i = 0; i < 3; ++i) Action(i)->trigger();

  EXPECT_EQ(QStringList({Help(), Url(CURLConfig::kSupport)}), m_browser.m_opened);
}

TEST_F(Menu, AnActionOfAnotherNameDoesNothing) {
  Open();
  QAction action("Help");
  action.setData("Elsewhere");

  Window().SetMenuStatus(&action);

  EXPECT_TRUE(m_browser.m_opened.isEmpty());
}

TEST_F(Menu, IsOnNoScreen) {
  OpenDataScreen();

  const auto buttons = Window().findChildren<QPushButton*>("helpButton");

  EXPECT_EQ(2, buttons.size()) << "one on each screen";
  EXPECT_EQ(nullptr, Window().findChild<QPushButton*>("menuButton"));
}

TEST_F(Menu, TheHelpButtonOpensTheHelp) {
  Open();

  Click(Find<QPushButton>("helpButton"));

  EXPECT_EQ(QStringList({Help()}), m_browser.m_opened);
}

TEST(HelpPage, IsTheGuideInPlaceOfAPlaceholder) {
  const TemporaryFolder folder;
  const std::string strGuide = folder.Write("guide.html", "<p>");

  const QUrl page =
      HelpPage(QUrl("https://orvandel.example/help.html"), QString::fromStdString(folder.Path("")));

  EXPECT_EQ("file", page.scheme());
  EXPECT_EQ(QFileInfo(QString::fromStdString(strGuide)), QFileInfo(page.toLocalFile()));
}

TEST(HelpPage, IsOnlineWithARealAddress) {
  const TemporaryFolder folder;
  folder.Write("guide.html", "<p>");
  const QUrl online("https://help.example.org/guide.html");

  EXPECT_EQ(online, HelpPage(online, QString::fromStdString(folder.Path(""))));
}

TEST(HelpPage, IsOnlineWithoutAGuide) {
  const TemporaryFolder folder;
  const QUrl online("https://orvandel.example/help.html");

  EXPECT_EQ(online, HelpPage(online, QString::fromStdString(folder.Path(""))));
}

TEST(HelpPage, OfTheProgramIsTheGuide) {
  const TemporaryFolder folder;
  folder.Write("guide.html", "<p>");
  const QUrl online(CURLConfig::GetInstance()->GetUrl(CURLConfig::kOnlineHelp));

  EXPECT_TRUE(HelpPage(online, QString::fromStdString(folder.Path(""))).isLocalFile());
}

TEST_F(Menu, SlotsOpenAboutSupportAndAnyPage) {
  Open();

  Window().btnAboutSlot();
  Window().btnSupportSlot();
  Window().btnOpenUrl("https://example.net/page?a=b");

  EXPECT_EQ(QStringList({Url(CURLConfig::kAbout), Url(CURLConfig::kSupport), "https://example.net/page?a=b"}),
            m_browser.m_opened);
}

TEST(Urls, AreOneInstanceWithFiveDistinctPages) {
  QStringList pages;

  for (int i = 0; i < CURLConfig::kSlotCount; ++i)
    pages << CURLConfig::GetInstance()->GetUrl(static_cast<CURLConfig::Slot>(i));

  EXPECT_EQ(CURLConfig::GetInstance(), CURLConfig::GetInstance());
  EXPECT_EQ(5, pages.size());
  EXPECT_EQ(0, pages.removeDuplicates());
  for (const QString& qstrPage : pages) EXPECT_TRUE(QUrl(qstrPage, QUrl::StrictMode).isValid());
}

}  // namespace
