#include "model/services/diagnosis.h"

// There are no diagnostic tasks in this host yet: no code for them, and no cycles to reset.

int GenerateUDSTaskCode(const QString&, const QStringList&, QString& declareCode, QString& taskCode,
                        QString& callCode)
{
    declareCode.clear();
    taskCode.clear();
    callCode.clear();
    return 0;
}

void ResetCycleTaskEnable() {}
