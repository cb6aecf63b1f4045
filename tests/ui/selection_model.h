#pragma once
#include <QString>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What a data screen is built over, in plain numbers.
struct ModelContent {
  struct Record {
    bool bDeleted = false;
    bool bEmpty = false;  ///< a conversation without records
    quint32 nKey = 0;     ///< of a conversation
    quint32 uSize = 0;    ///< of a file
  };
  /// By category; the records of conversations in the order of their keys. Nothing for the two of apps.
  std::vector<Record> records[11];
  /// Sizes of the files of apps, for the categories 2 and 3.
  std::map<QString, std::vector<quint32>> apps[4];
};

/// The rules of ticks a second time, in the plainest form and without a line of the window's code, for
/// comparison with the window after each action of a user.
class SelectionModel {
 public:
  /// Where a press on a row goes.
  enum class Place { kBox, kText, kSecondColumn };
  /// A page of the screen: that of a category, or the list of an app's files.
  static constexpr int kFileList = 11;

  struct Row {
    bool bCell = true;
    int nState = 0;
    quint32 nNumber = 0;  ///< key of a conversation
    quint32 uSize = 0;
    QString qstrApp;
    std::optional<int> secondState;  ///< of the cell of column 1, once it has a box
  };
  struct Cell {
    int nCategory, nRow, nColumn;
  };
  using Map = std::map<quint32, quint32>;

  /// A screen over other records: all nodes unticked, all tables empty, the camera page on view.
  void BuildAnew(const ModelContent& content);
  /// What a scan does for a category with something to show, or without it.
  void Scan(int nCategory, bool bTick);
  void PressNode(int nCategory, bool bBox);
  /// A press on a row of the table of the category on view.
  void PressRow(int nRow, Place place);
  /// A double click on a row of the app table on view, its first press included.
  void OpenApp(int nRow, Place place);
  /// A press on a row of the file list on view.
  void PressFile(int nRow, Place place);
  /// The selected row of the app table on view moves to another one, by a key.
  void MoveTo(int nRow);

  /// Rewrites the line and Recovery by the maps. Each press does, the opening of a list does not.
  void Refresh();
  /// The rows of the page on view.
  const std::vector<Row>& RowsOnView() const { return rows[nView]; }

  int nodes[11] = {};
  std::vector<Row> rows[12];
  Map maps[11];
  std::map<QString, Map> appMaps[4];
  int nView = 0;
  int nPressed = 0;
  QString qstrPressedApp;
  std::optional<int> current;  ///< the node that presses report to
  std::optional<Cell> appCell;
  std::string strLine;
  bool bRecovery = false;

  /// How often each thing happened, by its name.
  static std::map<std::string, int> happened;

 private:
  static bool IsApps(int nCategory) { return nCategory == 2 || nCategory == 3; }
  static bool HasSize(int nCategory) {
    return nCategory == 0 || nCategory == 1 || nCategory == 5 || nCategory == 10;
  }
  void Fill(int nCategory);
  void UpdateNode(int nCategory);
  void SetNode(int nState, const std::string& strBy);
  void PressTable(int nCategory, int nRow, Place place, Map& map);
  bool HasRowIn(int nTable, bool bNought, bool bPart, bool bWhole) const;
  Map AllFilesOf(int nCategory, const QString& qstrApp) const;
  void PressAppRow(int nRow, Place place);
  quint64 Bytes() const;
  quint64 Count() const;

  ModelContent m_content;
  bool m_filled[11] = {};
  std::optional<int> m_selected;
};
