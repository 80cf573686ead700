#include "variables/wgtEntryValue.h"

#include "model/applet_name.h"
#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "variables/EntryFunctionTable.h"
#include "variables/EntryVariableTree.h"
#include "variables/entry_functions.h"
#include "variables/entry_variables.h"

#include "ui_wgtEntryValue.h"

#include <QAction>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace {

constexpr int VariablesPage = 0;
constexpr int FunctionsPage = 1;
constexpr int UserFunctions = 1; // of comboBox_Type
constexpr int Width = 960;
constexpr int Height = 640;

/// Those whose names the tree doesn't list: a loop may count a variable that is there.
std::vector<processVariable> namelessElsewhere(std::vector<processVariable> variables,
                                               const QTreeWidget& tree)
{
    const auto isListed = [&tree](const processVariable& variable) {
        return !tree.findItems(QString::fromStdString(variable.name),
                               Qt::MatchExactly | Qt::MatchCaseSensitive | Qt::MatchRecursive)
                    .isEmpty();
    };
    variables.erase(std::remove_if(variables.begin(), variables.end(), isListed), variables.end());
    return variables;
}

bool isEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

wgtEntryValue::wgtEntryValue(QWidget* parent)
    : BaseMDIWidget(nullptr, tr("选择变量或函数")), m_ui(std::make_unique<Ui::wgtEntryValue>())
{
    setParent(parent, windowFlags());
    m_ui->setupUi(this);
    setUpVariables();
    setUpFunctions();
    setUpSearch();
    // Return alone is the box's.
    m_ui->btnOk->setShortcut(Qt::CTRL + Qt::Key_Return);
    connect(m_ui->btnOk, &QPushButton::clicked, this, &wgtEntryValue::onBtnOkClicked);
    connect(m_ui->btnCancel, &QPushButton::clicked, this, &QWidget::close);
    // What is typed, or chosen otherwise, counts for more than what was clicked before.
    connect(m_ui->textEdit, &QTextEdit::textChanged, this, [this] { m_clicked = nullptr; });
    connect(m_ui->tabWidget, &QTabWidget::currentChanged, this, [this] { m_clicked = nullptr; });
}

wgtEntryValue::~wgtEntryValue() = default;

void wgtEntryValue::setUpVariables()
{
    m_variables = std::make_unique<EntryVariableTree>(*m_ui->treeVars);
    m_ui->treeVars->installEventFilter(this);
    connect(m_ui->treeVars, &QTreeWidget::itemDoubleClicked, this,
            &wgtEntryValue::itemDoubleLocalVar);
    connect(m_ui->treeVars, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        const QString text =
            item->parent() ? EntryVariableTree::valueText(*item, m_addPrefix) : QString();
        m_clicked = text.isEmpty() ? std::function<void()>() : [this, text] { insertText(text); };
    });
}

void wgtEntryValue::setUpFunctions()
{
    m_functions = std::make_unique<EntryFunctionTable>(*m_ui->tableWidget);
    m_ui->comboBox_Type->addItem(tr("小程序系统函数"), 0);
    m_ui->comboBox_Type->addItem(tr("小程序用户自定义函数"), UserFunctions);
    m_ui->tableWidget->installEventFilter(this);
    connect(m_ui->comboBox_Type, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &wgtEntryValue::initFuncTable);
    connect(m_ui->tableWidget, &QTableWidget::itemDoubleClicked, this,
            &wgtEntryValue::itemDoubleFunction);
    connect(m_ui->tableWidget, &QTableWidget::itemClicked, this, [this](QTableWidgetItem* item) {
        const int place = pickedFunction(item);
        m_clicked = place < 0 ? std::function<void()>() : [this, place] { insertFunction(place); };
    });
}

void wgtEntryValue::setUpSearch()
{
    const QStringList titles = EntryFunctionTable::columnTitles();
    for (int column = 0; column < titles.size(); ++column)
        m_ui->comboBox->addItem(titles[column], column);
    m_ui->comboBox->setCurrentIndex(entry_functions::NameColumn);

    QLineEdit* search = m_ui->searchEdit;
    search->addAction(QIcon(QStringLiteral(":/icon/功能/search.png")), QLineEdit::LeadingPosition);
    QAction* clear = search->addAction(QIcon(QStringLiteral(":/icon/功能/search_cancel.png")),
                                       QLineEdit::TrailingPosition);
    clear->setToolTip(tr("清除"));
    clear->setVisible(false);
    search->installEventFilter(this);
    connect(clear, &QAction::triggered, search, &QLineEdit::clear);
    connect(search, &QLineEdit::textChanged, clear,
            [clear](const QString& text) { clear->setVisible(!text.isEmpty()); });
    connect(search, &QLineEdit::textChanged, this, &wgtEntryValue::onSearchEditTextChangedSlot);
}

void wgtEntryValue::setCAppletName(const QString& appName)
{
    m_cappletName = appName;
    m_innerFunctions.clear();
    sdk_ui_interface::capplet::getCAppletInnerFuncs(appName, m_innerFunctions);
    m_innerFunctions.erase(
        std::remove_if(m_innerFunctions.begin(), m_innerFunctions.end(),
                       [](const auto& function) { return !entry_functions::isOffered(function); }),
        m_innerFunctions.end());
}

void wgtEntryValue::setSequenceId(const QString& sequenceId)
{
    m_sequenceId = sequenceId;
}

void wgtEntryValue::setType(EntryValType type, bool showSysUserVars, bool showSequenceVars)
{
    m_showSysUserVars = showSysUserVars;
    m_showSequenceVars = showSequenceVars;
    const bool hasVariables = type != EntryFunctions;
    m_ui->tabWidget->setTabEnabled(VariablesPage, hasVariables);
    m_ui->tabWidget->setTabEnabled(FunctionsPage, type != EntryVariables);
    m_ui->tabWidget->setCurrentIndex(hasVariables ? VariablesPage : FunctionsPage);
    m_ui->label_3->setVisible(type == EntryVariables);
    m_ui->label_type->setVisible(type == EntryVariables);
    m_ui->textEdit->setReadOnly(false);
    m_variables->setGroupShown(EntryVariableTree::SystemGroup, showSysUserVars);
    m_variables->setGroupShown(EntryVariableTree::SequenceGroup, showSequenceVars);
}

void wgtEntryValue::setData(const QString& type, const QString& data, bool basicTypesOnly)
{
    m_ui->label_type->setText(type.isEmpty() ? tr("任意类型") : type);
    m_basicTypesOnly = basicTypesOnly;
    m_completionWords.clear();
    m_variables->clear();
    const std::string appName = appletNameBytes(m_cappletName);
    initVarTableData(type, process_edit::getAllGlobalVariable());
    initVarTableData(type, process_edit::getAllCAppletVariable(appName));
    if (m_showSequenceVars) {
        initVarTableData(type,
                         process_edit::getAllSequenceVariable(appName, m_sequenceId.toStdString()));
        initVarTableData(type, namelessElsewhere(m_loopVariables, *m_ui->treeVars));
    }
    if (m_showSysUserVars)
        initSysUserVarData(type);
    m_ui->treeVars->expandAll();
    m_ui->textEdit->setWords(m_completionWords);
    m_data = data;
    initFuncTable(m_ui->comboBox_Type->currentIndex());
    const QSignalBlocker blocker(m_ui->textEdit);
    m_ui->textEdit->setPlainText(data);
}

void wgtEntryValue::initVarTableData(const QString& type, const std::vector<processVariable>& list)
{
    if (list.empty())
        return;
    // A list holds the variables of one scope; among them may be fixed ones.
    const processVariableType scope = list.front().scope;
    const auto group = scope == SequenceVariable  ? EntryVariableTree::SequenceGroup
                       : scope == ProcessVariable ? EntryVariableTree::ProcessGroup
                                                  : EntryVariableTree::GlobalGroup;
    const auto variables = entry_variables::offered(list, {type, m_basicTypesOnly});
    m_variables->add(group, variables, entry_variables::LocalOrigin);
    m_completionWords += prefixedNames(variables, entry_variables::LocalOrigin);
}

void wgtEntryValue::initSysUserVarData(const QString& type)
{
    const auto variables = entry_variables::offeredSystemVariables(type);
    m_variables->add(EntryVariableTree::SystemGroup, variables, entry_variables::SystemOrigin);
    m_completionWords += prefixedNames(variables, entry_variables::SystemOrigin);
}

void wgtEntryValue::initFuncTable(int index)
{
    using sdk_ui_interface::capplet::getCAppletUserFuncs;
    m_showsUserFunctions = index != 0;
    if (m_showsUserFunctions) {
        QList<QPair<_DrelFunction, int>> functions;
        m_userFunctions.clear();
        if (getCAppletUserFuncs(m_cappletName, functions) == 0)
            m_userFunctions = entry_functions::callableUserFunctions(functions);
    }
    const int called = m_functions->show(shownFunctions(), m_data);
    if (called >= 0)
        m_currentFunction = shownFunctions()[called];
    onSearchEditTextChangedSlot(m_ui->searchEdit->text());
}

void wgtEntryValue::setLoopVariables(const std::vector<processVariable>& variables)
{
    m_loopVariables = variables;
}

void wgtEntryValue::setCursorPosition(int position)
{
    m_cursorPosition = position;
}

void wgtEntryValue::setSingleSelectMode(bool isSingle)
{
    m_singleSelect = isSingle;
}

void wgtEntryValue::setSelectVarAddPrfix(bool isPrefixed)
{
    m_addPrefix = isPrefixed;
}

BaseMDIWidget::DialogCode wgtEntryValue::exec()
{
    if (!m_singleSelect)
        m_ui->textEdit->selectAll();
    const auto untouched = connect(m_ui->textEdit, &QTextEdit::cursorPositionChanged, this,
                                   [this] { m_cursorPosition = -1; });
    const DialogCode result = BaseMDIWidget::exec(CenterOfParent);
    disconnect(untouched);
    return result;
}

QString wgtEntryValue::getData() const
{
    return m_ui->textEdit->toPlainText();
}

QString wgtEntryValue::getType() const
{
    return QString();
}

_DrelFunction wgtEntryValue::getCurrentFu() const
{
    return m_currentFunction;
}

bool wgtEntryValue::isUserFunction() const
{
    return m_ui->comboBox_Type->currentIndex() == UserFunctions;
}

const QList<_DrelFunction>& wgtEntryValue::shownFunctions() const
{
    return m_showsUserFunctions ? m_userFunctions : m_innerFunctions;
}

void wgtEntryValue::onSearchEditTextChangedSlot(const QString& text)
{
    m_functions->filter(m_ui->comboBox->currentIndex(), text);
}

void wgtEntryValue::itemDoubleLocalVar(QTreeWidgetItem* item)
{
    if (item && item->parent())
        insertText(EntryVariableTree::valueText(*item, m_addPrefix));
}

void wgtEntryValue::itemDoubleFunction(QTableWidgetItem* item)
{
    const int place = pickedFunction(item);
    if (place >= 0)
        insertFunction(place);
}

int wgtEntryValue::pickedFunction(const QTableWidgetItem* item) const
{
    return item ? m_functions->pickedFunction(item->row()) : -1;
}

void wgtEntryValue::insertFunction(int place)
{
    m_currentFunction = shownFunctions()[place];
    insertText(entry_functions::callText(m_currentFunction));
}

void wgtEntryValue::insertText(const QString& text)
{
    const QSignalBlocker blocker(m_ui->textEdit);
    QTextCursor cursor = m_ui->textEdit->textCursor();
    if (m_singleSelect)
        cursor.select(QTextCursor::Document);
    else if (m_cursorPosition >= 0)
        cursor.setPosition(qMin(m_cursorPosition, m_ui->textEdit->toPlainText().size()));
    m_cursorPosition = -1;
    m_clicked = nullptr;
    cursor.insertText(text);
    m_ui->textEdit->setTextCursor(cursor);
}

void wgtEntryValue::onBtnOkClicked()
{
    if (const auto insert = std::exchange(m_clicked, nullptr))
        insert();
    setResult(Accepted);
    close();
}

void wgtEntryValue::onWindowShow()
{
    m_ui->textEdit->setFocus();
    // What the value calls comes into sight; before, the table had no size.
    if (const QTableWidgetItem* first = m_ui->tableWidget->item(m_ui->tableWidget->currentRow(), 0))
        m_ui->tableWidget->scrollToItem(first, QAbstractItemView::PositionAtCenter);
}

QSize wgtEntryValue::sizeHint() const
{
    return StyleManager::scale(QSize(Width, Height));
}

void wgtEntryValue::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        BaseMDIWidget::keyPressEvent(event);
}

bool wgtEntryValue::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return BaseMDIWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched == m_ui->tableWidget)
        return handleTableKey(key);
    if (watched == m_ui->searchEdit)
        return handleSearchKey(key);
    QTreeWidgetItem* variable = m_ui->treeVars->currentItem();
    if (watched != m_ui->treeVars || !isEnter(key) || !variable || !variable->parent())
        return false;
    itemDoubleLocalVar(variable);
    return true;
}

/// The rows are walked from the search field; in the table itself the arrows do nothing.
bool wgtEntryValue::handleTableKey(int key)
{
    if (isEnter(key))
        itemDoubleFunction(m_ui->tableWidget->currentItem());
    return isEnter(key) || key == Qt::Key_Up || key == Qt::Key_Down;
}

bool wgtEntryValue::handleSearchKey(int key)
{
    QTableWidgetItem* current = m_ui->tableWidget->currentItem();
    if (key == Qt::Key_Up || key == Qt::Key_Down)
        m_functions->moveCurrent(key == Qt::Key_Up ? -1 : 1);
    else if (isEnter(key) && current && !m_ui->tableWidget->isRowHidden(current->row()))
        itemDoubleFunction(current);
    else
        return isEnter(key);
    return true;
}

#include "moc_wgtEntryValue.cpp"
