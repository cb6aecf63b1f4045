#pragma once
#include <QString>

/// Why the private work folder could not be created, with its place; empty when it is there.
QString WorkFolderProblem();

/// Chooses the folder whose sub-folders are the backups; the fixed root of the system until then.
void SetBackupRoot(const QString& qstrFolder);
