#pragma once

#include "shell/PanelSettings.h"
#include "ui_ProcessEditWidget.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class AppletLogFeed;
class BuildController;
class LatestProgress;
class LoadingUI;
class ProcessEditToolBar;
class RunReportGate;
class WidgetBuildView;
class wgtCommonControl;
class wgtGeneralSetting;

/// What a ProcessEditWidget is made of. Widgets belong to their parents.
struct ProcessEditParts
{
    Ui::ProcessEditWidgetClass ui;
    LoadingUI* loading = nullptr;
    wgtCommonControl* commonControl = nullptr;
    wgtGeneralSetting* generalSetting = nullptr;
    ProcessEditToolBar* toolBar = nullptr;

    QString appName;
    QString businessName;
    bool resetOnDestruction = true;

    PanelSettings settings;
    QList<int> splitterSizes; ///< to come back to from the run tab
    bool inRunTab = false;

    std::shared_ptr<RunReportGate> gate;
    std::shared_ptr<AppletLogFeed> logFeed;
    LatestProgress* progress = nullptr; ///< child of the widget
    std::unique_ptr<WidgetBuildView> buildView;
    BuildController* build = nullptr; ///< child of the widget

    std::function<void(QJsonObject&)> stripSaveFields;
    std::function<bool()> shouldDeferCodeGen;
    std::function<void(const QString&)> onAuthoringSaved;
    std::function<void(const QString&, bool)> onCAppletLoaded;
    std::function<void(const QString&)> onRuntimeStale;
};
