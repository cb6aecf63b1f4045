#include "tests/cli/small_backup.h"
#include "tests/ui/preview_fixture.h"

using namespace orvandel;

namespace {

class CategoryTree : public WindowTest {
 protected:
  QTreeWidget* Tree() { return WindowAccess::Tree(*m_pWindow); }
  /// Object name of the page on view.
  std::string Page() {
    return WindowAccess::PageStack(*m_pWindow)->currentWidget()->objectName().toStdString();
  }
};

TEST_F(CategoryTree, HasElevenUntickedTopLevelNodesWithCountZero) {
  OpenDataScreen();

  const QTreeWidget* pTree = Tree();

  EXPECT_EQ(kZeroLabels, Labels());
  for (int i = 0; i < pTree->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* pNode = pTree->topLevelItem(i);
    EXPECT_EQ(Qt::Unchecked, pNode->checkState(0)) << i;
    EXPECT_FALSE(pNode->icon(0).pixmap(16, 16).isNull()) << i;
    EXPECT_EQ("Calibri 10/50", FontOf(pNode->font(0))) << i;
    EXPECT_EQ(0, pNode->childCount()) << i;
    EXPECT_EQ(nullptr, pNode->parent()) << i;
  }
}

TEST_F(CategoryTree, NodesHaveTheIconsOfTheirCategories) {
  OpenDataScreen();
  const char* const icons[] = {"photo",   "photostream", "appphoto", "video",    "message",    "messageatta",
                               "contact", "phone",       "note",     "whatsapp", "whatsappatt"};

  for (int i = 0; i < 11; ++i) {
    const QIcon wanted(QString(":/image/%1.png").arg(icons[i]));

    EXPECT_FALSE(wanted.isNull()) << icons[i];
    EXPECT_EQ(wanted.pixmap(16, 16).toImage(), Node(i)->icon(0).pixmap(16, 16).toImage()) << icons[i];
  }
}

TEST_F(CategoryTree, HasItsHeaderStyleAndSize) {
  OpenDataScreen();

  const QTreeWidget* pTree = Tree();

  EXPECT_EQ(1, pTree->columnCount());
  EXPECT_EQ("", pTree->headerItem()->text(0));
  EXPECT_EQ("QTreeWidget::item{height:30px};", pTree->styleSheet());
  EXPECT_EQ(QSize(250, 430), pTree->minimumSize());
  EXPECT_TRUE(pTree->itemsExpandable());
}

TEST_F(CategoryTree, SelectingANodeShowsItsPage) {
  OpenDataScreen();
  const std::vector<std::string> tables = {"m_pCameraTable",    "m_pPhotoStreamTable",   "m_pAppPhotosTable",
                                           "m_pAppVideosTable", "m_pMessageTable",       "m_pMessAttachTable",
                                           "m_pContactsTable",  "m_pCallHistoryTable",   "m_pNotesTable",
                                           "m_pWhatsappTable",  "m_pWhatsappAttachTable"};

  for (int i = 10; i >= 0; --i) {
    ClickNode(i);

    EXPECT_EQ(Table(tables[static_cast<size_t>(i)].c_str())->parentWidget(),
              WindowAccess::PageStack(Window())->currentWidget())
        << i;
    EXPECT_EQ(Node(i), WindowAccess::CurrentTreeItem(Window())) << i;
  }
}

TEST_F(CategoryTree, AppNodesDoNotChangeTheCurrentCategory) {
  OpenDataScreen();
  std::vector<int> numbers;

  for (const int nNode : {7, 2, 3, 9, 3, 0}) {
    ClickNode(nNode);
    numbers.push_back(WindowAccess::CurrentCategory(Window()));
  }

  EXPECT_EQ(std::vector<int>({7, 7, 7, 9, 9, 0}), numbers);
}

TEST_F(CategoryTree, ALabelOfNoCategoryDoesNothing) {
  OpenDataScreen();
  QTreeWidgetItem stranger({"Voice Memos(3)"});
  const std::string strPage = Page();
  ClickNode(6);

  Window().UpdateTreeInfo(&stranger, 0, false);

  EXPECT_EQ(6, WindowAccess::CurrentCategory(Window()));
  EXPECT_EQ("contactsPage", Page());
  EXPECT_EQ("cameraPage", strPage);
}

TEST_F(CategoryTree, LabelsThatContainOthersMatchTheirOwnCategory) {
  OpenDataScreen();
  struct Case {
    const char* pszLabel;
    int nCategory;
  };
  const Case cases[] = {{"Message(7)", 4},     {"Messages Attachments(7)", 5},
                        {"WhatsApp(7)", 9},    {"WhatsApp Attachments(7)", 10},
                        {"Camera Roll(1)", 0}, {"Photo Stream(9)", 1}};

  for (const Case& one : cases) {
    QTreeWidgetItem item({one.pszLabel});

    Window().UpdateTreeInfo(&item, 5, true);

    EXPECT_EQ(one.nCategory, WindowAccess::CurrentCategory(Window())) << one.pszLabel;
  }
}

TEST_F(CategoryTree, ANodeWithoutRecordsShowsAnEmptyPageAndNoPreview) {
  struct Case {
    int nNode;
    const char* pszTable;
    const char* pszPreview;  ///< null where there is none
    bool bHidden;
  };
  const Case cases[] = {{0, "m_pCameraTable", "m_pCameraPreview", false},
                        {1, "m_pPhotoStreamTable", "m_pPhotoStreamPreview", false},
                        {2, "m_pAppPhotosTable", nullptr, false},
                        {3, "m_pAppVideosTable", nullptr, false},
                        {4, "m_pMessageTable", "m_pMessageWebView", true},
                        {5, "m_pMessAttachTable", "m_pMessAttachPreview", false},
                        {6, "m_pContactsTable", "m_pContactText", true},
                        {7, "m_pCallHistoryTable", nullptr, false},
                        {8, "m_pNotesTable", "m_pNoteText", true},
                        {9, "m_pWhatsappTable", "m_pWhatsappWebView", true},
                        {10, "m_pWhatsappAttachTable", "m_pWhatsappAttachPreview", false}};
  WriteEmptyBackup("one");
  Open();
  ScanBackup();
  // Markers that any preview would replace, even of an empty record.
  for (const Case& one : cases) {
    if (!one.pszPreview) continue;
    if (auto* pLabel = Window().findChild<QLabel*>(one.pszPreview))
      pLabel->setText("mark");
    else
      Ask(Find<ChatView>(one.pszPreview), "document.body.innerHTML='mark'");
  }

  for (const Case& one : cases) {
    ClickNode(one.nNode);

    EXPECT_EQ(kZeroLabels[static_cast<size_t>(one.nNode)], Labels()[static_cast<size_t>(one.nNode)]);
    EXPECT_EQ(Qt::Unchecked, Node(one.nNode)->checkState(0)) << one.nNode;
    EXPECT_EQ(0, Table(one.pszTable)->rowCount()) << one.nNode;
    EXPECT_TRUE(Table(one.pszTable)->isVisible()) << one.nNode;
    for (const Case& other : cases) {
      if (!other.pszPreview) continue;
      auto* pPreview = Find<QWidget>(other.pszPreview);
      EXPECT_EQ(other.nNode == one.nNode && !one.bHidden, pPreview->isVisible()) << other.pszPreview;
      if (const auto* pLabel = qobject_cast<QLabel*>(pPreview))
        EXPECT_EQ("mark", pLabel->text()) << other.pszPreview << ", " << one.nNode;
      else
        EXPECT_EQ("mark", Ask(Find<ChatView>(other.pszPreview), "document.body.innerHTML").toString())
            << other.pszPreview << ", " << one.nNode;
    }
  }
}

TEST_F(CategoryTree, SelectingANodeASecondTimeKeepsTheTicksOfItsRows) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanBackup();
  ClickNode(0);
  QTableWidget* pTable = Table("m_pCameraTable");
  const QTableWidgetItem* pFirst = pTable->item(0, 0);
  const QRect rect = pTable->visualItemRect(pFirst);

  Click(pTable->viewport(), QPoint(rect.left() + 10, rect.center().y()));
  ClickNode(1);
  ClickNode(0);

  EXPECT_EQ(pFirst, pTable->item(0, 0));
  EXPECT_EQ(Qt::Unchecked, pTable->item(0, 0)->checkState());
  EXPECT_EQ(Qt::Checked, pTable->item(1, 0)->checkState());
  EXPECT_EQ(Qt::PartiallyChecked, Node(0)->checkState(0));
}

TEST_F(CategoryTree, AClickOnTheBoxOfTheSelectedNodeReachesItsRows) {
  WriteSmallBackup(BackupPath("one"), BackupBuilder::Layout::Db);
  Open();
  ScanBackup();
  ClickNode(0);
  const QRect rect = Tree()->visualItemRect(Node(0));

  Click(Tree()->viewport(), QPoint(rect.left() + 10, rect.center().y()));

  EXPECT_EQ(Qt::Unchecked, Node(0)->checkState(0));
  EXPECT_EQ(Qt::Unchecked, Table("m_pCameraTable")->item(0, 0)->checkState());
  EXPECT_EQ(Qt::Unchecked, Table("m_pCameraTable")->item(1, 0)->checkState());
}

}  // namespace
