#pragma once
#include <string>
#include <vector>

/// One entry of a backup's manifest.
struct __MBDB_FILE__ {
  std::string strFileName;  ///< domain, "-", relative path; narrow
  std::string strFileId;    ///< 40 lower-case hexadecimal digits: the file's name in the backup
};

namespace orvandel {

/// All entries of a manifest, in its order.
using Catalogue = std::vector<__MBDB_FILE__>;

}  // namespace orvandel
