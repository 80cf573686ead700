#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

class CustonStandModel;
class QStandardItemModel;

/// The loaded sequences of an applet for the edit tab: of each its rows and the model of its break
/// point table. Owns both. GUI thread only.
class EditSheets : public QObject
{
    Q_OBJECT
public:
    explicit EditSheets(QObject* parent) : QObject(parent) {}

    /// The applet that is loaded from, or the new name of the one that is loaded.
    void setAppName(const QString& appName);

    /// Loads a sequence in place of what there was of it. Null if the applet has none of that id.
    CustonStandModel* load(const QString& sequenceId);
    /// False if it was not loaded.
    bool remove(const QString& sequenceId);

    QStringList sequenceIds() const { return m_editModels.keys(); }
    CustonStandModel* model(const QString& sequenceId) const; ///< null if it is not loaded
    QStandardItemModel* table(const QString& sequenceId) const;

    /// The blocks whose rows bear the mark to be compiled again, now and when they are loaded.
    void setStale(const QSet<QString>& blockUuids);

    /// Writes the texts of rows anew: of one block, of blocks of whatever sequences, and of all
    /// that jump to a step of the sequence.
    void refreshRow(const QString& sequenceId, const QString& blockUuid) const;
    void refreshRows(const QSet<QString>& blockUuids) const;
    void refreshJumps(const QString& sequenceId) const;
    /// Of all that call a sequence, in every sequence.
    void refreshCalls() const;

private:
    QString m_appName;
    QHash<QString, CustonStandModel*> m_editModels; ///< by sequence
    QHash<QString, QStandardItemModel*> m_editTableModels;
    QSet<QString> m_staleUuids;
};
