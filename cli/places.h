#pragma once
#include <QString>

/// Chooses the folder whose sub-folders are the backups; the fixed root of the system until then.
void SetBackupRoot(const QString& qstrFolder);
