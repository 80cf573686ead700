#include "shell/bridge/LogicMaster.h"

#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "variables/wgtLocalVariable.h"

#include <QMutexLocker>

#include <algorithm>

QStringList LogicMaster::retypeUdsVariable(const SystemVarDef& variable)
{
    const DrelVarType type = varTypeFromDataCategory(variable.category);
    if (type == DrelNoType)
        return {};
    const QString keyword = QString::fromStdString(varTypeKeyword(type));
    QStringList changed;
    QMutexLocker lock(&m_udsMutex);
    for (auto applet = m_udsVarInfo.begin(); applet != m_udsVarInfo.end(); ++applet) {
        for (auto& block : *applet) {
            for (UdsVarStruct& use : block) {
                if (use.name != variable.name || use.kind != 1)
                    continue;
                use.type = keyword;
                if (!changed.contains(applet.key()))
                    changed.append(applet.key());
            }
        }
    }
    return changed;
}

QVector<QPair<QString, QString>> LogicMaster::usersOfSystemVariable(const QString& name) const
{
    QVector<QPair<QString, QString>> users;
    QMutexLocker lock(&m_udsMutex);
    for (auto applet = m_udsVarUse.cbegin(); applet != m_udsVarUse.cend(); ++applet) {
        for (auto sequence = applet->cbegin(); sequence != applet->cend(); ++sequence) {
            const bool isUser =
                std::any_of(sequence->cbegin(), sequence->cend(),
                            [&name](const QSet<QString>& names) { return names.contains(name); });
            if (isUser)
                users.append({applet.key(), sequence.key()});
        }
    }
    return users;
}

void LogicMaster::refreshUsers(const QVector<QPair<QString, QString>>& users) const
{
    QMap<QString, QStringList> sequences;
    for (const auto& [appName, sequenceId] : users) {
        process_edit::updateProcessSysVar(appletNameBytes(appName), sequenceId.toStdString());
        sequences[appName].append(sequenceId);
    }
    for (auto it = sequences.cbegin(); it != sequences.cend(); ++it) {
        if (auto* panel = qobject_cast<wgtLocalVariable*>(variablePanel(it.key())))
            panel->refreshSequences(it.value());
    }
}

void LogicMaster::setVariableUse(const QString& appName,
                                 const QMap<QString, VariableUse>& bySequence)
{
    QMutexLocker lock(&m_udsMutex);
    m_udsVarUse.insert(appName, bySequence);
}

void LogicMaster::setVariableUse(const QString& appName, const QString& sequenceId,
                                 const QString& blockUuid, const QSet<QString>& names)
{
    QMutexLocker lock(&m_udsMutex);
    VariableUse& uses = m_udsVarUse[appName][sequenceId];
    if (names.isEmpty())
        uses.remove(blockUuid);
    else
        uses.insert(blockUuid, names);
}

QMap<QString, LogicMaster::VariableUse> LogicMaster::variableUse(const QString& appName) const
{
    QMutexLocker lock(&m_udsMutex);
    return m_udsVarUse.value(appName);
}

QStringList LogicMaster::blocksThatUseVariables(const QString& appName,
                                                const QString& sequenceId) const
{
    QMutexLocker lock(&m_udsMutex);
    return m_udsVarUse.value(appName).value(sequenceId).keys();
}

void LogicMaster::removeVariableUse(const QString& appName, const QStringList& sequenceIds)
{
    QMutexLocker lock(&m_udsMutex);
    const auto applet = m_udsVarUse.find(appName);
    if (applet == m_udsVarUse.end())
        return;
    for (const QString& id : sequenceIds)
        applet->remove(id);
}

void LogicMaster::addUdsVariables(const QString& appName, const QString& blockUuid,
                                  const std::vector<UdsVarStruct>& variables)
{
    QMutexLocker lock(&m_udsMutex);
    std::vector<UdsVarStruct>& known = m_udsVarInfo[appName][blockUuid];
    known.insert(known.end(), variables.begin(), variables.end());
}

void LogicMaster::removeUdsVariables(const QString& appName, const QString& blockUuid)
{
    QMutexLocker lock(&m_udsMutex);
    const auto applet = m_udsVarInfo.find(appName);
    if (applet != m_udsVarInfo.end())
        applet->remove(blockUuid);
}

QStringList LogicMaster::udsBlocks(const QString& appName) const
{
    QMutexLocker lock(&m_udsMutex);
    return m_udsVarInfo.value(appName).keys();
}

void LogicMaster::forgetVariableUse(const QStringList& appNames)
{
    QMutexLocker lock(&m_udsMutex);
    for (const QString& appName : appNames) {
        m_udsVarInfo.remove(appName);
        m_udsVarUse.remove(appName);
    }
}

void LogicMaster::clearUdsVariables()
{
    QMutexLocker lock(&m_udsMutex);
    m_udsVarInfo.clear();
}
