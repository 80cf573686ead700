#pragma once

#include "model/BaseStepProperty.h"
#include "model/compile_records.h"
#include "model/type_tables.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

#include <functional>
#include <memory>

class IProcessBlock;
class QJsonObject;
class QMimeData;
class QTreeWidgetItem;
class UdsProcessBlock;
struct ProcessEditParts;

/// The process editor: the one widget that a host embeds.
///
/// A host sets the project in the project service, constructs the widget, installs the callbacks it
/// wants, binds an applet with createCApplet, sets its paths, calls load(false), and takes the tool
/// bar and the two property panels into its own layout. The static operations work on applets with
/// no widget open.
///
/// One widget an applet at a time: what is kept by the applet's name has one place, and the first
/// of two widgets that goes takes the applet with it. Different applets may be open in several.
///
/// GUI thread only; signals are emitted on the GUI thread. Paths that end in "Path" are folders and
/// end with a separator. Callbacks are empty by default; each setter replaces the one before.
class ProcessEditWidget : public QWidget
{
    Q_OBJECT
public:
    /// @p businessName is the host's business on whose behalf the editor is opened.
    explicit ProcessEditWidget(const QString& businessName, QWidget* parent = nullptr);
    /// Removes the applet from the runtime, which ends a run of it, and from the model: what isn't
    /// saved is lost. After setProcessEditReset(false) both keep it. The services must still be
    /// there, and the application object. Parts that the host has taken into its layout don't go
    /// along: the host deletes them afterwards.
    ~ProcessEditWidget() override;

    // Parts for the host's layout; they belong to this widget until the host reparents them
    // --------
    QWidget* getToolMenuBar();
    QWidget* getControlWgt(); ///< the panel of the selected step's kind
    QWidget* getSettingWgt(); ///< the panel of what every step has
    void addExtraToolBarFunction(QWidget* widget);
    void removeExtraToolBarFunction(QWidget* widget);

    // The applet
    // --------------------------------------------------------------------------------------
    /// Binds this widget to an applet and creates it in the runtime.
    void createCApplet(const QString& appName);
    QString getCAppletName() const;
    void setProcessJsonAndVciPath(const QString& jsonPath, const QString& vciPath);
    void setSettingPath(const QString& path);
    /// Reads the document into the model and, unless @p dataOnly, shows it.
    void load(bool dataOnly);
    /// Fills the panels from the model; an applet without a sequence gets one.
    void loadDataToUI(const QString& appName, bool reserved);
    /// Writes the document, with the edits that wait in the panels. An empty path means the
    /// applet's own file. sigSave says that the file could not be written.
    void save(const QString& targetPath);
    /// The same for any applet, with a result. @p strip applies the strip callback.
    bool saveApp(const QString& appName, bool strip, const QString& targetPath);
    /// Whether a save replaces what another program has put in the document's place since it was
    /// read or written here, and keeps a copy of it; true at first. Otherwise it is refused like
    /// one that can't be written, for the host to ask: applet_documents::isOfAnother tells.
    void setReplacesOthers(bool replaces);
    /// Removes the applet from runtime and model; the widget stays.
    void resetCApplet();
    /// Drops variables and model with @p removeModel, and the custom steps unless kept.
    void clearCAppletData(bool removeModel, bool keepCustomSteps);
    /// Whether the applet goes with the widget; true at first.
    void setProcessEditReset(bool reset);
    QString getCAppletCodePath() const;
    QString getCAppletLibPath() const;

    // What is shown
    // -----------------------------------------------------------------------------------
    QString getCurrentShowSequenceId() const;
    void setCurrentShowSequence(const QString& sequenceId);
    bool currentShowSequenceIsEmpty() const;
    void clearCurrentShowSequenceData();
    /// Every edit that waits in a panel reaches the model.
    void syncAuthoringPanelsToSdk();
    void reloadVariablePanel();
    /// Appends a statement step for each text to the main flow of the shown sequence, till one
    /// can't be made. Those whose index stands in @p splitIndexes get a source file of their own.
    void addStatementStepToCurerentView(QStringList statements,
                                        const std::vector<int>& splitIndexes);
    /// Gives a variable in sight of the shown sequence a type and a value, or makes one in @p scope
    /// (a processVariableType); @p forceNew makes one in any case.
    void addVarToCurrentView(const QString& name, const QString& value, DrelVarType type, int scope,
                             bool forceNew);
    /// Adds kinds of steps to the palette, and to the applet's list in the model service. That list
    /// is the host's: it outlives the widget, so who adds it with each opening resets it first.
    void addCustomStepList(QVector<BaseStepProperty> list);
    void resetCustomStepList();
    void loadSplitterSizes();
    void saveSplitterSizes();
    /// Gives the run tree the stored widths of its columns.
    void updateProcessRunWidth();
    /// The badge that says that the compiled code is out of date; the editor never clears it.
    void setRuntimeStaleHint(bool stale);
    void setRuntimeStaleBlockUuids(const QSet<QString>& blockUuids);
    /// Handle of the run's progress in the host's display, -1 without a run.
    int getProgressHandle() const;
    /// A run and a conversion start from the tool bar only: these two do nothing.
    void runCApplet(const QString& sequenceId);
    void toVciCode();

    // Callbacks
    // ---------------------------------------------------------------------------------------
    /// Checks before a compile; any list but an empty one refuses it, silently.
    void setCompileCheckCallback(
        std::function<QList<int>(const QString& sequenceId, const QString& appName,
                                 const QString& jsonPath, bool forVci)>
            callback);
    /// May delete fields from the "logicview" object before it is written.
    void setStripSaveFieldsCallback(std::function<void(QJsonObject&)> callback);
    /// Asked before generated code of diagnostic steps is refreshed; true puts it off.
    void setShouldDeferCodeGenCallback(std::function<bool()> callback);
    /// Told the applet's name after each save.
    void setOnAuthoringSavedCallback(std::function<void(const QString&)> callback);
    /// Told the applet's name and dataOnly after each load.
    void setOnCAppletLoadedCallback(std::function<void(const QString&, bool)> callback);
    /// Called before the check and the compile, after the panels were flushed.
    void setOnCompilePrepareCallback(std::function<void()> callback);
    /// Told the outcome of each attempt, a refusal and a skip included.
    void setOnCompileFinishedCallback(std::function<void(bool)> callback);
    /// Told the applet when what is compiled no longer fits its diagnostic steps.
    void setOnRuntimeStaleCallback(std::function<void(const QString&)> callback);

    /// Rebuilds the code of a diagnostic step from its stored text.
    using UdsUpdateFunction = QString (*)(QString blockJson, QString appName, int index,
                                          QString& varInfo, QString& codeInfo);
    void setUdsUpdateCallback(UdsUpdateFunction callback);
    /// Takes over the rebuilding of many; tells the steps that changed.
    void setRefreshUdsBlocksCallback(
        std::function<void(const QString& appName, const QStringList& blockUuids,
                           UdsUpdateFunction update, QSet<QString>& changed)>
            callback);
    /// Tells which variables a diagnostic step uses, by name; for all widgets of the process.
    static void setGetUDSProcessBlockUseVarsCallback(
        std::function<bool(std::shared_ptr<UdsProcessBlock>, QMap<QString, DataCategoryType>&,
                           QMap<QString, DrelVarType>&)>
            callback);

    // Variables of steps -------------------------------------------------------------------------
    /// Records which variables the applet's steps use, so that a change of one reaches them.
    void updateUseSystemVarItemInfo(const QString& appName, bool dataOnly);
    /// No change of a variable reaches these applets any more.
    static void uninstallVarNofity(QStringList appNames);
    static void addUdsVar(std::shared_ptr<UdsProcessBlock> block, const QString& appName);
    static void updateUdsVarInfo(const QString& appName, std::shared_ptr<IProcessBlock> block);

    // Without a widget
    // --------------------------------------------------------------------------------
    static bool createAppletShell(const QString& appName);
    /// Loads the document into the model if it isn't there; whether it is there afterwards.
    static bool ensureAppPedtLoaded(const QString& appName);
    static void deleteCApplet(const QString& appName, bool force);
    /// False, with a line in the log and nothing changed, for a new name that is empty or that an
    /// applet bears. Paths that were set for the new name before don't count: the applet keeps its
    /// own, and they go.
    static bool renameCApplet(const QString& oldName, const QString& newName);
    /// Sets the document's folder and keeps the VCI path; false if a text is empty.
    static bool bindAppletScriptPath(const QString& appName, const QString& jsonPath);
    /// Empty for an applet without paths.
    static QString appletJsonPath(const QString& appName);
    static QString appletVciPath(const QString& appName);
    static void setAppletJsonAndVciPath(const QString& appName, const QString& jsonPath,
                                        const QString& vciPath);
    /// Compiles the main sequence, whose id comes back; @p onFinished is called as
    /// sdk_ui_interface::processedit::compileCApplet says.
    static bool compileProcessEdit(
        const QString& appName,
        std::function<void(compileResult, quint64, const char*, const char*)> onFinished,
        QString& sequenceId);
    static QString getBaseStepIconName(int stepType);
    static QString getUDSStepIconName(int stepType);
    static DrelVarType getDrelVarTypeByDataCategory(DataCategoryType category);

public Q_SLOTS:
    void processItemClickedSlot(int baseType, QString blockuuid);
    void currentSequenceChangedSlot(QString sequenceId);
    void onNotifyCompileResult(CAppCompileResult result, QString outputInfo);
    /// These three may be called on any thread.
    void onNotifyStateResult(QString cappname, QString seqUuid, QString blockuuid, double iProgress,
                             int result);
    void onGotoSequence(QString cappname, QString gotoSeqUuid, bool isEnd);
    void onGotoTemplateSequence(QString cappname, QString templateid, QString gotoSeqUuid,
                                bool isEnd);
    void onNotifyRunResult(QString appName, bool isSuccessed, QString outputInfo);
    void onToolWidgetButtonClickedSlot(int funcType);
    /// A double click in the palette adds its step.
    void onItemDoubleClickedSlot(QTreeWidgetItem* item, int column);
    /// The menu of the palette, at a point of its viewport.
    void contextMenuEvent(QPoint pos);
    void onLogicWidgetTabChanged(int index);
    void onRemoveSelectSequence(QStringList sequenceIdList);
    void onRemoveAllSequence();
    void onAddTemplateSequence(QStringList sequenceIdList);
    void onImportTemplateButtonClicked();
    void onExportTemplateButtonClicked();
    void onUpdateQuickStep(QStringList quickStepIdList, bool isRemove);
    void onSaveVarTreeWidthSlot(QStringList widthList);
    void onSaveProcessTreeWidthSlot(QStringList widthList, bool isRun);
    void onSplitterMoved(int pos, int index);
    /// For the host's use at project close.
    static void clearVarWidget();
    static void clearTransVciThread();
    static void clearUDSVarInfo();
    static void clearUniversalPanelBindInfo();
    static void updateUniversalPanelBindState(const QString& appName, bool isBind);

Q_SIGNALS:
    /// The document could not be written; a host may offer another place.
    void sigSave();
    void sigItemDBClickFromLoigcView();
    /// A piece of output text for the host's output pane.
    void notifyRunResultSig(bool isSuccess, QString outputInfo);
    /// 0: the edit tab is shown, else the run tab.
    void sigPrcoessMode(int mode);
    void sigRunStart();
    void sigRunFinish();
    void sigToVciFinish(bool isSuccess);
    void sigToVciStart();
    void sigCompileStart();
    void sigCompileFinish(bool isSuccess);
    void sigImportSuccess(QString appName);
    /// The document changed.
    void sigAuthoringModified();
    /// Progress of the run, 0..100; @p state is negative after a failure.
    void sigProcessPrograss(double progress, int state);

protected:
    using QWidget::contextMenuEvent;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void initUI();
    void connectSignals();
    void connectPanels();
    void connectLogicMaster();
    void connectBuild();
    /// Tells every part the applet that it works on.
    void nameParts(const QString& appName);
    void showRunVariables();
    void connectSequences();
    void connectPalette();
    static void removeQuickStep(const QString& id);
    static void updateUseSystemVarItemInfoImpl(const QString& appName, bool dataOnly, bool defer);
    void saveFromButton();
    void onVariablesUpdated(bool isHaveGlobalVar, const QStringList& names);
    /// Something to know that needs no answer.
    void tell(const QString& text);
    /// Says which steps still use names that are gone, and where the first of them is.
    void tellOfUsers(const QStringList& names, const QString& newName, const QString& sequenceId);
    void importFile(const QString& path);
    void takeDrop(const QMimeData& data);
    void showUnavailable();
    void openCodeFolder();
    void tellBlockChanged(const QString& blockUuid);
    void onAppletLog(const QString& appName, const QString& message);

    std::unique_ptr<ProcessEditParts> m;
};
