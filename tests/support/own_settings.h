#pragma once

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

namespace test_support {

/// Gives a test of the workbench settings of its own, which are empty, and folders that are nobody
/// else's.
inline void useOwnSettings(const char* testName)
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("process-edit-test"));
    QCoreApplication::setApplicationName(QString::fromLatin1(testName));
    QSettings().clear();
}

} // namespace test_support
