#include "tests/decrypt/tool_fixture.h"

#include <algorithm>

namespace orvandel {

void DecryptTool::ExpectFiles(const KnownBackup& known, const std::vector<std::string>& without) const {
  std::vector<std::string> names;
  for (const auto& [strId, strBytes] : known.files) {
    if (std::count(without.begin(), without.end(), strId) > 0) continue;
    names.push_back(strId);
    EXPECT_TRUE(strBytes == ReadFile(Out() + "/" + strId)) << strId << " of " << strBytes.size() << " bytes";
  }
  EXPECT_EQ(names, NamesIn(Out()));
}

}  // namespace orvandel
