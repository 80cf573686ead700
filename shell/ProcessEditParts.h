#pragma once

#include "shell/PanelLayout.h"
#include "shell/ProcessEditWidget.h"
#include "shell/ShownDocument.h"
#include "ui_ProcessEditWidget.h"

#include <QString>

#include <functional>
#include <memory>

class AppletStorage;
class BuildController;
class LoadingUI;
class ProcessEditToolBar;
class WidgetBuildView;
class wgtCommonControl;
class wgtGeneralSetting;

/// What a ProcessEditWidget is made of. Widgets belong to their parents.
struct ProcessEditParts
{
    static constexpr int PaletteTab = 0; ///< of the left tab widget
    static constexpr int TemplateTab = 1;

    Ui::ProcessEditWidgetClass ui;
    LoadingUI* loading = nullptr;
    wgtCommonControl* commonControl = nullptr;
    wgtGeneralSetting* generalSetting = nullptr;
    ProcessEditToolBar* toolBar = nullptr;

    QString appName;
    QString businessName;
    bool resetOnDestruction = true;

    ShownDocument shown{*this};
    PanelLayout layout{*this};

    AppletStorage* storage = nullptr; ///< child of the widget, as the controller
    std::unique_ptr<WidgetBuildView> buildView;
    BuildController* build = nullptr;

    std::function<bool()> shouldDeferCodeGen;
    std::function<void(const QString&, bool)> onCAppletLoaded;
    std::function<void(const QString&)> onRuntimeStale;
    ProcessEditWidget::UdsUpdateFunction udsUpdate = nullptr;
    std::function<void(const QString&, const QStringList&, ProcessEditWidget::UdsUpdateFunction,
                       QSet<QString>&)>
        refreshUdsBlocks;
};
