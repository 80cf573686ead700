#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

class varStandModel;
struct processTemplateInfo;

/// The models of an applet's sequences, which it owns. One whose variables have changed elsewhere
/// is outdated, and filled anew when it is asked for: a change that all sequences see costs nothing
/// for those that are not on screen. GUI thread only.
class VariableSheets : public QObject
{
    Q_OBJECT
public:
    explicit VariableSheets(QObject* parent = nullptr);

    void setCAppletName(const QString& appName) { m_appName = appName; }

    bool contains(const QString& sequenceId) const { return m_sheets.contains(sequenceId); }
    QStringList sequenceIds() const { return m_sheets.keys(); }
    /// The model of a sequence with its variables as they are; made if there is none.
    varStandModel* sheet(const QString& sequenceId);
    /// The variables of a sequence that a template holds; filled anew by each call.
    varStandModel* templateSheet(const processTemplateInfo& owner, const QString& sequenceId);
    /// Lets models be filled anew when they are next asked for. Ids without a model don't matter.
    void setOutdated(const QStringList& sequenceIds);
    bool isOutdated(const QString& sequenceId) const;
    void remove(const QString& sequenceId);

signals:
    /// Of any of the models; see varStandModel.
    void dropEnd(QModelIndex parent, int row, QStringList list, int beforeDropRow);

private:
    struct Sheet
    {
        varStandModel* model = nullptr;
        bool isOutdated = true;
    };
    varStandModel* makeModel();

    QHash<QString, Sheet> m_sheets; ///< by sequence id
    varStandModel* m_templateModel = nullptr;
    QString m_appName;
};
