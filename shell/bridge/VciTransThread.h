#pragma once

#include <QMutex>
#include <QStringList>
#include <QThread>

/// Converts one applet's generated code for the VCI device. One stands idle for every applet; the
/// conversion can't be interrupted, so a cancelled thread runs to its end with nobody listening.
///
/// Belongs to the GUI thread; only the cancel flag is shared, under its mutex.
class VciTransThread : public QThread
{
    Q_OBJECT
public:
    VciTransThread(const QString& appName, QObject* parent);
    /// Waits for the conversion, without limit.
    ~VciTransThread() override;

    QString appName() const { return m_appName; }
    void setAppName(const QString& appName) { m_appName = appName; }
    /// The folder to write into; set before startConversion.
    void setTargetPath(const QString& path) { m_targetPath = path; }
    void startConversion(QStringList sequenceNames);

    /// 0 success, -1 failure, else cancelled; valid after finished().
    int result() const { return m_result; }

    void cancel();
    bool isCancelled() const;

protected:
    void run() override;

private:
    QString m_appName;
    QString m_targetPath;
    QStringList m_sequenceNames;
    int m_result = -1;
    bool m_cancelled = false;
    mutable QMutex m_mutex; ///< guards m_cancelled
};
