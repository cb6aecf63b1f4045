#pragma once
#include <QString>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvandel {

/// The records behind a data screen, in plain numbers.
struct ModelContent {
  struct Record {
    bool bDeleted = false;
    bool bEmpty = false;  ///< a conversation without records
    quint32 nKey = 0;     ///< of a conversation
    quint32 uSize = 0;    ///< of a file
  };
  /// By category; the records of conversations in the order of their keys. Empty for the two app categories.
  std::vector<Record> records[11];
  /// Sizes of the files of apps, for the categories 2 and 3.
  std::map<QString, std::vector<quint32>> apps[4];
};

/// Reference model of the tick rules, independent of the window's code, for comparison with the window after
/// each user action.
class SelectionModel {
 public:
  /// Target of a press on a row.
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

  /// A screen for other records: all nodes unticked, all tables empty, the camera page visible.
  void BuildAnew(const ModelContent& content);
  /// The effect of a scan on a category with or without records.
  void Scan(int nCategory, bool bTick);
  void PressNode(int nCategory, bool bBox);
  /// A press on a row of the visible category's table.
  void PressRow(int nRow, Place place);
  /// A double click on a row of the visible app table, including its first press.
  void OpenApp(int nRow, Place place);
  /// A press on a row of the visible file list.
  void PressFile(int nRow, Place place);
  /// A key moves the selection in the visible app table to another row.
  void MoveTo(int nRow);

  /// Updates the line and the Recovery button from the maps, as each press does, but not the opening of a
  /// list.
  void Refresh();
  /// The rows of the visible page.
  const std::vector<Row>& RowsOnView() const { return rows[nView]; }

  int nodes[11] = {};
  std::vector<Row> rows[12];
  Map maps[11];
  std::map<QString, Map> appMaps[4];
  int nView = 0;
  int nPressed = 0;
  QString qstrPressedApp;
  std::optional<int> current;  ///< the node that presses update
  std::optional<Cell> appCell;
  std::string strLine;
  bool bRecovery = false;

  /// Number of occurrences of each event, by name.
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

}  // namespace orvandel
