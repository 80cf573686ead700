#pragma once

#include "model/compile_records.h"
#include "model/services/system_variate.h"

#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVector>

#include <memory>

class ProcessEditVariateListener;

/// The only road by which threads of the compiler, the runner, the runtime's log and the variable
/// service enter the editor: each of their callbacks becomes one signal here, emitted on the
/// calling thread. Who receives it chooses between a direct and a queued connection.
///
/// Lives to the end of the process. The first call of instance() comes on the GUI thread, from
/// LogicMaster's constructor; after that any thread may call it.
class ProcessEditNotifyTool : public QObject
{
    Q_OBJECT
public:
    static ProcessEditNotifyTool* instance();
    ~ProcessEditNotifyTool() override;

Q_SIGNALS:
    void compileFinishSignal(CAppCompileResult result);
    /// @p result: 1 ended, 2 stopped, 3 crashed.
    void runFinishSignal(QString appName, QString sequenceId, int result);
    void runStateSignal(QString cappname, QString seqUuid, QString blockuuid, double iProgress,
                        int result);
    void gotoSequenceSignal(QString cappname, QString gotoSeqUuid, bool isEnd);
    void gotoTemplateSequenceSignal(QString cappname, QString templateid, QString gotoSeqUuid,
                                    bool isEnd);
    void cAppletLogSignal(QString appName, int level, QString message);
    /// Applets with diagnostic steps whose variables changed their type.
    void systemUdsVarChange(QStringList updateAppName);
    /// Applet and sequence, each pair one sequence that uses a changed system variable.
    void systemVarChange(QVector<QPair<QString, QString>> vecUpdateBlock);

private:
    ProcessEditNotifyTool();
    void onSystemVariateChange(Operation operation, SystemVarDef variable);

    std::unique_ptr<ProcessEditVariateListener> m_listener;
};
