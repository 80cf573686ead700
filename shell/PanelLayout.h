#pragma once

#include "shell/documents/PanelSettings.h"

#include <QList>
#include <QString>
#include <QStringList>

struct ProcessEditParts;

/// The sizes of an editor's panels and columns: as they were kept for the applet, and those of the
/// run tab, which are nobody's wish. GUI thread only.
class PanelLayout
{
public:
    /// @p parts outlive this object.
    explicit PanelLayout(ProcessEditParts& parts) : m_parts(parts) {}

    /// Takes over what is kept in a folder, once.
    void load(const QString& folder);
    void save();
    /// Of the run tree's columns.
    void loadRunWidths();
    void keepTreeWidths(const QStringList& widths, bool isRun);
    void keepVariableWidths(const QStringList& widths);

    /// The edit tab or the run tab is in sight now.
    void showTab(bool isEdit);
    /// The user has moved an edge; it is kept when the edge is let go.
    void takeSizes();
    void saveIfMoved();

private:
    ProcessEditParts& m_parts;
    PanelSettings m_settings;
    QList<int> m_sizes; ///< to come back to from the run tab
    bool m_isRunTab = false;
};
