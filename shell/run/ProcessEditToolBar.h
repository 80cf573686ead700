#pragma once

#include <QWidget>

class QAction;
class QFrame;
class QHBoxLayout;
class QLabel;
class QToolButton;

/// The editor's row of buttons. It knows nothing of applets: a click becomes a function number.
/// GUI thread only.
class ProcessEditToolBar : public QWidget
{
    Q_OBJECT
public:
    /// What a press asks for; the numbers are fixed.
    enum Function : int {
        Save = 0,
        ToVci = 1,
        RunCurrent = 2,
        RunMain = 3,
        SingleTest = 4,
        ContinuousTest = 5, ///< never emitted: its action emits Stop
        Pause = 6,
        Stop = 7,
        Compile = 8,
        Import = 9,
        Export = 10,
        OpenCodeFolder = 11
    };

    /// Which buttons of the run can be pressed.
    enum class State { Idle, Started, Running };

    /// The side of the editor's icons, in pixels before scaling.
    static constexpr int IconSize = 26;

    explicit ProcessEditToolBar(QWidget* parent = nullptr);

    void setState(State state);

    /// The badge that says that the compiled code is out of date, with the compile button's tip.
    void setRuntimeStaleHint(bool stale);

    /// Puts a host's widget behind the buttons, or takes it out without deleting it. The separator
    /// before the host's widgets stays once it was shown.
    void addExtraToolBarFunction(QWidget* widget);
    void removeExtraToolBarFunction(QWidget* widget);

Q_SIGNALS:
    void defaultFunctionClicked(int funcType);

private Q_SLOTS:
    void onEditWidgetRunMenuClicked();
    void onToolBtnClicked();

private:
    QToolButton* addButton(const QString& name, const QString& text, const QString& iconPath);
    void addRunButton();
    QAction* addRunAction(const QString& text, const QString& tip, const QString& iconPath);
    int runFunction() const;

    QHBoxLayout* m_layout;
    QToolButton* m_saveBtn;
    QToolButton* m_toVciBtn;
    QToolButton* m_openCodeBtn;
    QToolButton* m_importBtn;
    QToolButton* m_exportBtn;
    QToolButton* m_runBtn = nullptr;
    QToolButton* m_pauseBtn;
    QToolButton* m_stopBtn;
    QToolButton* m_compileBtn;
    QAction* m_runCurrentAct = nullptr;
    QAction* m_runMainAct = nullptr;
    QAction* m_singleTestAct = nullptr;
    QAction* m_loopTestAct = nullptr;
    QLabel* m_staleBadge;
    QWidget* m_extraWidget;
    QHBoxLayout* m_extraLayout;
    QFrame* m_extraSeparator;
};
