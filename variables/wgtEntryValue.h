#pragma once

#include "model/DrelFunction.h"
#include "model/process_records.h"
#include "model/services/widget_bases.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class EntryFunctionTable;
class EntryVariableTree;
class QTableWidgetItem;
class QTreeWidgetItem;

namespace Ui {
class wgtEntryValue;
}

/// What a wgtEntryValue offers.
enum EntryValType : int { EntryVariables = 0, EntryVariablesAndFunctions = 1, EntryFunctions = 2 };

/// The modal dialog in which a value is put together: a variable, a call of a function, or an
/// expression of one's own. A double click on a variable or a function, or Return, inserts its text
/// into the box at the bottom, which completes the names of variables while one types. OK also
/// takes what was clicked last, if nothing was inserted or typed since. The dialog changes nothing
/// but its own text.
///
/// It is made for one use, and called in this order:
/// @code
/// wgtEntryValue dialog(parent);
/// dialog.setCAppletName(appName);
/// dialog.setSequenceId(sequenceId);
/// dialog.setType(EntryVariablesAndFunctions, false, true);
/// dialog.setData(QStringLiteral("u32"), text, false);
/// if (dialog.exec() == BaseMDIWidget::Accepted)
///     text = dialog.getData();
/// @endcode
///
/// Variables are asked from the model service and the variable service, functions from the applet
/// runtime. Every list may be empty; a service that fails gives an empty list without a message.
/// GUI thread only.
class wgtEntryValue : public BaseMDIWidget
{
    Q_OBJECT
public:
    /// @p parent, which may be null, owns the dialog if it isn't deleted before.
    explicit wgtEntryValue(QWidget* parent = nullptr);
    ~wgtEntryValue() override;

    /// The applet whose variables and functions are offered. Asks the runtime for the functions
    /// that are its own.
    void setCAppletName(const QString& appName);
    /// The sequence whose variables are offered; empty: none.
    void setSequenceId(const QString& sequenceId);

    /// What can be picked: the page of anything else is disabled. The groups of system and of
    /// sequence variables are there only if they are asked for. Only with EntryVariables the type
    /// given to setData is shown to the user.
    void setType(EntryValType type, bool showSysUserVars, bool showSequenceVars);

    /// Variables that are in sight though no service has them: offered with the sequence's, but
    /// for those of a name that is there.
    void setLoopVariables(const std::vector<processVariable>& variables);

    /// Fills the dialog. @p type is the keyword of the type that the value has to be of, compared
    /// as a text: "int" doesn't offer variables of "s32". Empty offers every variable, "void*"
    /// every one but system variables. @p data is the text that the box starts with; a function
    /// that it calls becomes the current one. With @p basicTypesOnly only variables of types that a
    /// diagnosis data item can carry are offered.
    void setData(const QString& type, const QString& data, bool basicTypesOnly);

    /// With @p isSingle a pick replaces the whole text; else, which is how it starts, it is
    /// inserted at the cursor.
    void setSingleSelectMode(bool isSingle);
    /// Where the first pick goes while the text is as it was given: behind @p position characters
    /// of it. Negative, which is how it starts: in place of all of it, since all is selected.
    void setCursorPosition(int position);
    /// With @p isPrefixed a variable is inserted with its origin, "[local]name" or "[sys]name";
    /// else, which is how it starts, by its name.
    void setSelectVarAddPrfix(bool isPrefixed);

    /// Runs the dialog in the centre of its parent until it is closed: Accepted for OK, Rejected
    /// for Escape and the window's own button. All of the text is selected at first, unless a pick
    /// replaces it anyway.
    DialogCode exec();

    /// The box's text, also after a rejection.
    QString getData() const;
    /// Always empty; the type of a value is the caller's to know.
    QString getType() const;
    /// A copy of the function picked last, or of the one that the text given to setData calls; all
    /// zeros if there is none.
    _DrelFunction getCurrentFu() const;
    /// Whether the user has chosen the source of the applet's user's functions.
    bool isUserFunction() const;

    /// Lists the functions of a source: 0 the runtime's own, anything else those of the applet's
    /// user, which are asked for anew.
    void initFuncTable(int index);

protected:
    void onWindowShow() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QSize sizeHint() const override;

private Q_SLOTS:
    void onSearchEditTextChangedSlot(const QString& text);
    void itemDoubleLocalVar(QTreeWidgetItem* item);
    void itemDoubleFunction(QTableWidgetItem* item);
    void onBtnOkClicked();

private:
    void setUpVariables();
    void setUpFunctions();
    void setUpSearch();
    void initVarTableData(const QString& type, const std::vector<processVariable>& list);
    void initSysUserVarData(const QString& type);
    const QList<_DrelFunction>& shownFunctions() const;
    bool handleTableKey(int key);
    bool handleSearchKey(int key);
    /// The place of a function in shownFunctions, picked by its row; negative for none.
    int pickedFunction(const QTableWidgetItem* item) const;
    void insertFunction(int place);
    void insertText(const QString& text);

    std::unique_ptr<Ui::wgtEntryValue> m_ui;
    std::unique_ptr<EntryVariableTree> m_variables;
    std::unique_ptr<EntryFunctionTable> m_functions;
    _DrelFunction m_currentFunction = {};
    QList<_DrelFunction> m_innerFunctions;
    QList<_DrelFunction> m_userFunctions;
    bool m_showsUserFunctions = false; ///< which of the two the table lists
    QString m_cappletName;
    QString m_sequenceId;
    QString m_data; ///< as given to setData
    bool m_showSysUserVars = false;
    bool m_showSequenceVars = true;
    bool m_basicTypesOnly = false;
    bool m_addPrefix = false;
    bool m_singleSelect = false;
    int m_cursorPosition = -1;
    std::function<void()> m_clicked; ///< inserts what was clicked last; empty: it is none any more
    std::vector<processVariable> m_loopVariables;
    QStringList m_completionWords;
};
