#pragma once

#include <QString>
#include <QStringList>

/// Diagnosis services that the editor calls. GUI thread only.

/// Generates the code of an applet's diagnostic tasks. @p calls holds one call text a task; the
/// code for file scope, the task functions and the calls come back. 0 is success; with any other
/// value the three texts don't count.
int GenerateUDSTaskCode(const QString& appName, const QStringList& calls, QString& declareCode,
                        QString& taskCode, QString& callCode);

/// Puts the cyclic diagnostic tasks back to their start; called before every run.
void ResetCycleTaskEnable();
