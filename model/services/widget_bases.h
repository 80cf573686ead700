#pragma once

#include <QIcon>
#include <QKeySequence>
#include <QSize>
#include <QString>
#include <QWidget>

class QEventLoop;
class QLabel;
class QProgressBar;

/// The host's widget bases and style: the host's services define every member, and compile what moc
/// makes of this header (it stands among the sources of a target with AUTOMOC). GUI thread only.

namespace data_gather_interface {
/// Names one of the host's windows.
struct FunctionId
{
    QString id;
};
} // namespace data_gather_interface

/// The business on whose behalf a window is opened; opaque to the editor, may be null.
class IBusiness;

/// The host's edit shortcuts. Each returns whether it did something; the defaults do nothing.
class IShortcutHandler
{
public:
    virtual ~IShortcutHandler() = default;
    virtual bool onSelectAll() { return false; }
    virtual bool onPaste() { return false; }
    virtual bool onCopy() { return false; }
    virtual bool onCut() { return false; }
    virtual bool onRedo() { return false; }
    virtual bool onUndo() { return false; }
    virtual bool onDelete() { return false; }
};

/// Base of the host's modal windows. Whoever made one deletes it, and it may stand on the stack: it
/// never deletes itself, neither when it is closed nor at the end of exec, and a host must not do
/// so either. With a parent it goes with that at the latest.
class BaseMDIWidget : public QWidget, public IShortcutHandler
{
    Q_OBJECT
public:
    enum DialogCode { Rejected = 0, Accepted = 1 };
    enum ShowPosBehavior { CenterOfParent = 0, CenterOfScreen = 1 };

    BaseMDIWidget(IBusiness* business, const QString& title);
    ~BaseMDIWidget() override;

    /// Shows the window modally and returns when it is closed or hidden, with the result that was
    /// set since the call, or Rejected.
    DialogCode exec(ShowPosBehavior position);
    void setResult(int result);
    void hideCloseButton();

    virtual void onVedioHelpBtnClicked();
    virtual void onWindowRenamed(const QString& name);
    virtual void setShowFromAction(bool shown);
    void setVisible(bool visible) override;
    virtual void setWindowId(const QString& id);
    virtual void onShortcutChanged(const QString& name, const QKeySequence& oldKeys,
                                   const QKeySequence& newKeys);
    virtual void onShortcutTriggered(const QString& name, const QKeySequence& keys);
    virtual void onWindowHide();
    virtual void onWindowShow();
    virtual data_gather_interface::FunctionId getWindowID();

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    IBusiness* m_business;
    QString m_windowId;
    QEventLoop* m_loop = nullptr; ///< while exec runs
    int m_result = Rejected;
};

/// Sizes and icons for the screen's DPI; sizes go in at 96 DPI.
class StyleManager
{
public:
    static int scale(int size);
    static QSize scale(QSize size);
    static int scaleToolbarSize(int size);
    static int scaleToolbarHeight(int height);
    static QSize toolbarButtonIconSize(int size);
    /// The icon of a resource path at @p size; null for an empty path.
    static QIcon scaledToolbarIcon(const QString& path, int size);
    static QIcon scaledToolbarIcon(const QIcon& icon, int size);
};

/// A modal overlay over its parent, which it follows in size.
class LoadingUI : public QWidget
{
    Q_OBJECT
public:
    explicit LoadingUI(QWidget* parent);
    void showLoading(QString text, QString title);
    void hideLoading();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_title;
    QLabel* m_text;
};
