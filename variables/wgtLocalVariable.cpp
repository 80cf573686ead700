#include "variables/wgtLocalVariable.h"

#include "model/colour_rules.h"
#include "model/dialogs/EmptyHint.h"
#include "model/services/log.h"
#include "variables/TreeState.h"
#include "variables/VariableEditor.h"
#include "variables/VariableSheets.h"
#include "variables/varStandModel.h"
#include "variables/varTreeDelegate.h"
#include "variables/varTreeViewStyle.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

using variable_rows::ColumnCount;

namespace {

const QList<int> defaultWidths{170, 100, 100, 130}; // until the user has set others

QTreeView* makeTree(const QString& name)
{
    auto* tree = new QTreeView;
    tree->setObjectName(name);
    tree->setStyleSheet(
        QStringLiteral("QTreeView{border:none;outline:0;alternate-background-color:%1;"
                       "selection-background-color:transparent}")
            .arg(colour_rules::alternateRow(tree->palette()).name()));
    tree->setAlternatingRowColors(true);
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setUniformRowHeights(true);
    return tree;
}

/// The view makes a new selection model for each model and leaves the old one behind.
void setTreeModel(QTreeView* tree, QAbstractItemModel* model)
{
    QItemSelectionModel* const earlier = tree->selectionModel();
    const bool changes = tree->model() != model;
    tree->setModel(model);
    if (changes)
        delete earlier;
    tree->expandAll();
}

} // namespace

wgtLocalVariable::wgtLocalVariable(QWidget* parent)
    : QWidget(parent), m_pages(new QStackedWidget),
      m_treeView(makeTree(QStringLiteral("treeView"))),
      m_runTree(makeTree(QStringLiteral("runTreeView"))), m_delegate(new varTreeDelegate(this)),
      m_sheets(new VariableSheets(this)), m_editor(new VariableEditor(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_pages->setObjectName(QStringLiteral("stackedWidget"));
    m_pages->addWidget(m_treeView);
    m_pages->addWidget(m_runTree);
    m_runTree->raise(); // hidden as it is: who looks for any tree of the panel finds the one in use
    m_runTree->setSelectionMode(QAbstractItemView::NoSelection);
    layout->addWidget(m_pages);
    setUpTree();
    connectTree();
    connect(m_sheets, &VariableSheets::dropEnd, this, &wgtLocalVariable::onDropEnd);
    connect(m_editor, &VariableEditor::sigShared, this, &wgtLocalVariable::onShared);
    connect(m_editor, &VariableEditor::sigNamesGone, this, &wgtLocalVariable::sigNamesGone);
    connect(m_editor, &VariableEditor::sigModified, this, &wgtLocalVariable::sigModified);
}

// An editor that goes with its tree says so, and must find the panel whole.
wgtLocalVariable::~wgtLocalVariable()
{
    m_edited = QPersistentModelIndex();
    delete m_treeView;
}

void wgtLocalVariable::setUpTree()
{
    auto* style = new varTreeViewStyle;
    style->setParent(m_treeView);
    m_treeView->setStyle(style);
    m_treeView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_treeView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_treeView->setDragDropMode(QAbstractItemView::InternalMove);
    m_treeView->setDefaultDropAction(Qt::MoveAction);
    m_treeView->setDropIndicatorShown(true);
    m_treeView->setContextMenuPolicy(Qt::CustomContextMenu);
    new EmptyHint(m_treeView, tr("没有序列，无法添加变量"));
    m_treeView->installEventFilter(this);
    m_treeView->viewport()->installEventFilter(this);
}

void wgtLocalVariable::connectTree()
{
    // Before the view hears of it: its way of closing gives the focus away while the editor can
    // still commit, which would bring back what Escape has taken back.
    connect(m_delegate, &QAbstractItemDelegate::closeEditor, this,
            &wgtLocalVariable::onCloseEditor);
    m_treeView->setItemDelegate(m_delegate);
    // Queued: a dialog must not come up in the middle of a press.
    connect(
        m_delegate, &varTreeDelegate::lengthButtonClicked, this, [this](const QModelIndex& index) {
            QMetaObject::invokeMethod(
                this, [this, row = QPersistentModelIndex(index)] { onLengthButtonClicked(row); },
                Qt::QueuedConnection);
        });
    connect(m_treeView, &QTreeView::doubleClicked, this,
            &wgtLocalVariable::onTreeViewDoubleClicked);
    connect(m_treeView, &QTreeView::clicked, this, &wgtLocalVariable::onTreeViewClicked);
    connect(m_treeView, &QWidget::customContextMenuRequested, this,
            &wgtLocalVariable::showContextMenu);
    connect(m_treeView->header(), &QHeaderView::sectionResized, this,
            &wgtLocalVariable::onSectionResized);
}

void wgtLocalVariable::setCAppletName(const QString& appName)
{
    m_sheets->setCAppletName(appName);
    m_editor->setCAppletName(appName);
}

void wgtLocalVariable::setReadOnly(bool isReadOnly)
{
    m_readOnly = isReadOnly;
}

void wgtLocalVariable::setCompositeEditor(CompositeEditor editor)
{
    m_compositeEditor = std::move(editor);
}

void wgtLocalVariable::reloadSequenceVariables(const QString& sequenceId)
{
    flushPending();
    m_sheets->setOutdated({sequenceId});
    m_sequenceId = sequenceId;
    showModel(m_sheets->sheet(sequenceId));
}

void wgtLocalVariable::showSequence(const QString& sequenceId)
{
    if (sequenceId.isEmpty() && !m_sheets->contains(sequenceId))
        return;
    flushPending();
    m_sequenceId = sequenceId;
    showModel(m_sheets->sheet(sequenceId));
}

void wgtLocalVariable::showRunSequence(const QString& sequenceId,
                                       const std::shared_ptr<const processTemplateInfo>& owner)
{
    varStandModel* model = nullptr;
    if (!sequenceId.isEmpty())
        model = owner ? m_sheets->templateSheet(*owner, sequenceId) : m_sheets->sheet(sequenceId);
    setTreeModel(m_runTree, model);
    applyWidths(m_runTree);
    choosePage();
}

void wgtLocalVariable::choosePage()
{
    const bool isRun = m_runTree->model() && !m_edited.isValid();
    m_pages->setCurrentWidget(isRun ? m_runTree : m_treeView);
}

void wgtLocalVariable::refreshSequences(const QStringList& sequenceIds)
{
    m_sheets->setOutdated(sequenceIds.isEmpty() ? m_sheets->sequenceIds() : sequenceIds);
    refreshShown();
}

void wgtLocalVariable::refreshShown()
{
    if (m_edited.isValid() || !m_sheets->isOutdated(m_sequenceId))
        return;
    const TreeState state(*m_treeView);
    m_sheets->sheet(m_sequenceId);
    state.restore(*m_treeView);
}

void wgtLocalVariable::onShared(bool isHaveGlobalVar, const QStringList& names)
{
    QStringList others = m_sheets->sequenceIds();
    others.removeOne(m_sequenceId); // whose rows have followed already
    m_sheets->setOutdated(others);
    emit sigUpdateVariable(isHaveGlobalVar, names);
}

void wgtLocalVariable::removeSequenceModels(const QStringList& sequenceIds)
{
    for (const QString& id : sequenceIds) {
        if (id == m_sequenceId) {
            m_edited = QPersistentModelIndex(); // its variable is gone
            showModel(nullptr);
            m_sequenceId.clear();
        }
        m_sheets->remove(id);
    }
}

void wgtLocalVariable::removeAllModels()
{
    removeSequenceModels(m_sheets->sequenceIds());
}

void wgtLocalVariable::addVarToCurrentView(const QString& name, const QString& value,
                                           DrelVarType type, int scope, bool forceNew)
{
    if (!variable_rules::namePattern().match(name).hasMatch()) {
        sdk_ui_interface::log::log_error(QStringLiteral("[流程编辑] 变量名称不符合规则: ") + name);
        return;
    }
    m_editor->give(name, value, type, processVariableType(scope), forceNew);
}

void wgtLocalVariable::showModel(varStandModel* model)
{
    m_editor->setSheet(model, model ? m_sequenceId : QString());
    setTreeModel(m_treeView, model);
    applyWidths(m_treeView);
}

void wgtLocalVariable::applyWidths(QTreeView* tree)
{
    const QList<int>& widths = m_columnWidths.isEmpty() ? defaultWidths : m_columnWidths;
    const QSignalBlocker blocker(tree->header());
    for (int column = 0; column < ColumnCount; ++column) {
        if (widths.at(column) > 0)
            tree->setColumnWidth(column, widths.at(column));
    }
}

void wgtLocalVariable::setColumnWidths(const QList<int>& widths)
{
    if (widths.size() < ColumnCount)
        return;
    m_columnWidths = widths;
    applyWidths(m_treeView);
}

void wgtLocalVariable::onSectionResized(int logicalIndex, int, int)
{
    const QHeaderView* header = m_treeView->header();
    // While a model is put on the view its columns come one by one; and the last one follows the
    // width of the panel by itself.
    if (header->count() != ColumnCount || !m_treeView->isVisible() ||
        logicalIndex == ColumnCount - 1)
        return;
    m_columnWidths.clear();
    QStringList widths;
    for (int column = 0; column < ColumnCount; ++column) {
        m_columnWidths.append(header->sectionSize(column));
        widths.append(QString::number(header->sectionSize(column)));
    }
    emit sigUpdateVarTreeWidth(widths);
}

#include "moc_wgtLocalVariable.cpp"
