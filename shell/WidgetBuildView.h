#pragma once

#include "shell/BuildController.h"

class QWidget;
struct ProcessEditParts;

/// The build road's view of a ProcessEditWidget: forwards to its parts.
class WidgetBuildView : public BuildView
{
public:
    /// Both outlive this object.
    WidgetBuildView(ProcessEditParts& parts, QWidget* window);

    EditPlace place() const override;
    void showSequence(const QString& sequenceId) override;
    void goTo(const EditPlace& place) override;
    void flushPanels() override;
    void showEditTab() override;
    void setPanelsEnabled(bool enabled) override;
    void setToolBarState(ProcessEditToolBar::State state) override;
    void setRunMode(bool running, const QString& appName, const QString& sequenceId) override;
    void updateRunTreeWidth() override;
    void finishRunRow(bool success) override;
    void setReportingApp(const QString& appName) override;
    void hideWaiting() override;
    void saveAll() override;
    void warn(const QString& title, const QString& text) override;
    bool ask(const QString& title, const QString& text) override;

private:
    ProcessEditParts& m_parts;
    QWidget* m_window;
};
