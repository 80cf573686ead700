#pragma once

#include <QString>
#include <QStringList>

/// A project on disk: a folder whose applets are the folders "CApplet/<name>" with a document in
/// each. Names are C identifiers of at most 64 characters, since folders and code bear them.
///
/// "project.json" tells the order of the applets. It may be missing, and an applet that it doesn't
/// name stands behind the others, in alphabetical order.
class ProjectFolder
{
public:
    ProjectFolder() = default;
    explicit ProjectFolder(const QString& path);

    /// Absolute, without a trailing slash.
    QString path() const { return m_path; }
    QString name() const;
    /// Empty if the folder is a readable project; else what is wrong with it.
    QString complaint() const;

    /// In the project's order.
    QStringList applets() const;
    bool hasApplet(const QString& name) const { return applets().contains(name); }
    /// The folder of an applet's document, with a trailing slash.
    QString appletFolder(const QString& name) const;

    /// Each returns an empty text, or what was wrong; then nothing changed.
    QString createApplet(const QString& name) const;
    QString renameApplet(const QString& oldName, const QString& newName) const;
    /// The applet's folder goes to the trash, or is deleted where there is none. What was generated
    /// for it goes too, here and when it is renamed; files of anybody else beside that stay. The
    /// records of its runs go where it goes, and when it is renamed their folder is, too.
    QString removeApplet(const QString& name) const;

    /// The applet that was opened last in this project on this machine.
    QString lastApplet() const;
    void setLastApplet(const QString& name) const;

private:
    QString complaintAboutName(const QString& name) const;
    void removeOutput(const QString& name) const;
    QString recordFolder(const QString& name) const;

    /// Writes the order anew, with @p newName in the place of @p oldName; an empty old name
    /// appends, an empty new one leaves out. A project that can't be written keeps the order it
    /// has, which the log tells.
    void keepOrder(const QString& oldName, const QString& newName) const;

    QString m_path;
};
