#pragma once

#include "shell/run/BuildController.h"

#include <QString>
#include <QStringList>

struct ProcessEditParts;

/// What an editor shows of its applet: the sequence that all panels are about, the step in the
/// panels, the variables beside it. What is being typed is taken over before anything else comes in
/// sight. GUI thread only.
class ShownDocument
{
public:
    /// @p parts outlive this object.
    explicit ShownDocument(ProcessEditParts& parts) : m_parts(parts) {}

    /// Shows an applet as the model has it, its main sequence first; one without a sequence gets
    /// one.
    void fill(const QString& appName);
    /// Every edit that waits in a panel reaches the model.
    void flushPanels();

    // Sequences ----------------------------------------------------------------------------------
    QString sequenceId() const;
    EditPlace place() const;
    void goTo(const EditPlace& place);
    /// In all panels and the table, whoever asks for it.
    void showSequence(const QString& sequenceId);
    bool isSequenceEmpty() const;
    void clearSequence();
    void removeSequences(const QStringList& sequenceIds);
    void removeAllSequences();

    // Steps --------------------------------------------------------------------------------------
    /// Shows a row's step in the panels; one of a sequence that isn't shown any more does nothing.
    void showStep(int baseType, const QString& blockUuid);
    /// Brings the rows up to date of steps that use any of these names.
    void refreshUsersOf(const QStringList& names);

    // Variables ----------------------------------------------------------------------------------
    void reloadVariables();
    /// Those of the sequence that runs in sight, where that is another one than the edited.
    void showRunVariables();

    /// The edit tab or the run tab is in sight now.
    void showTab(bool isEdit);

private:
    void showNoStep();

    ProcessEditParts& m_parts;
    bool m_isShowing = false; ///< a sequence that was asked for
};
