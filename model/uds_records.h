#pragma once

#include <QString>
#include <QVector>

/// One variable that a diagnostic step uses.
struct UdsVarStruct
{
    QString name;
    QString type; ///< type keyword, empty if unknown
    int kind = 0; ///< 1 a system variable, 0 a variable of the applet
};

/// What goes to the diagnosis service's editor of one step and comes back from it.
struct UDSProcessInfo
{
    QString name;     ///< step name; empty on return: the kind's own name
    QString text;     ///< what the description column shows
    QString json;     ///< the step's configuration, opaque to the editor
    QString callCode; ///< generated code, as in UdsProcessBlock
    QString taskCode;
    QString declareCode;
    QVector<UdsVarStruct> variables; ///< the variables that the step binds
};
