// "Info.plist" of a backup: the input is the only file in a folder.
#include "backup/discovery.h"
#include "fuzz/scratch_folder.h"

using namespace orvandel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  static const ScratchFolder folder;
  folder.Write("Info.plist", pData, nSize);
  __BACK_FILE_INFO__ first, second;

  const Problem firstProblem = ReadBackupInfo(folder.Path(), first);
  second = first;
  const Problem secondProblem = ReadBackupInfo(folder.Path(), second);

  Require(!firstProblem && !secondProblem, "a file that can be opened is read");
  Require(first.strBackupPath == folder.Path(), "the path is the given one");
  Require(!first.bEncrypted, "a backup without a contacts store isn't encrypted");
  Require(first.strDisplayName == second.strDisplayName && first.strSerialNumber == second.strSerialNumber &&
              first.strPhoneNumber == second.strPhoneNumber &&
              first.strLastBackupDate == second.strLastBackupDate &&
              first.bProductVersionAbove11 == second.bProductVersionAbove11,
          "reading again into the same record changes nothing");
  return 0;
}
