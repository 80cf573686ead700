// A long walk over everything that changes a document in the editor; then each change that was
// announced is undone, and made again. INVERT_WALK_SEED sets the way.

#include "edits/DocumentEdits.h"
#include "logic/LogicView.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"
#include "sequences/wgtSequenceTable.h"
#include "tests/logic/drop_rows.h"
#include "tests/shell/EditorFixture.h"
#include "tests/support/test_program.h"
#include "variables/VariableClipboard.h"
#include "variables/VariableEditor.h"
#include "variables/variable_rows.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTableWidget>
#include <QTreeView>
#include <QtTest>

#include <algorithm>

namespace processedit = sdk_ui_interface::processedit;

class ChangesInvertTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init();
    void changes_invert();

private:
    void act();
    void addStep();
    void changeRows();
    void editPanel();
    void changeVariables();
    void changeSequences();
    void changeLibraries();

    QByteArray document() const;
    template <class List> auto any(const List& list)
    {
        return list.isEmpty() ? typename List::value_type() : list[m_random.bounded(list.size())];
    }
    CustonStandModel* rows() const
    {
        return qobject_cast<CustonStandModel*>(m_view->editModel(m_view->currentSequenceId()));
    }
    QStandardItem* anyRow(bool withFlows);
    QString word() { return text("w%1").arg(m_random.bounded(1000)); }

    QRandomGenerator m_random{7};
    LogicView* m_view = nullptr;
    wgtSequenceTable* m_sequences = nullptr;
    VariableEditor* m_variables = nullptr;
};

void ChangesInvertTest::init()
{
    openEditor();
    m_view = m_editor->findChild<LogicView*>();
    m_sequences = m_editor->findChild<wgtSequenceTable*>();
    m_variables = m_editor->findChild<VariableEditor*>();
    bool isNumber = false;
    const int seed = qEnvironmentVariableIntValue("INVERT_WALK_SEED", &isNumber);
    m_random.seed(isNumber ? quint32(seed) : 7);
}

QByteArray ChangesInvertTest::document() const
{
    const std::string name = m_name.toLocal8Bit().toStdString();
    QByteArray text = processedit::generateProcessJson(m_name).toUtf8();
    text += QByteArray::fromStdString(process_json_edit::generateAppAndSequenceVariableJson(name));
    for (const processVariable& variable : process_edit::getAllGlobalVariable())
        text += QByteArray::fromStdString(variable.uuid + variable.name + variable.value + ' ');
    text += processedit::generateTemplateJsonStr().toUtf8();
    for (const auto& step : processedit::getQuickStepInfo())
        text += QByteArray::fromStdString(step->uuid + step->name + ' ');
    return text;
}

QStandardItem* ChangesInvertTest::anyRow(bool withFlows)
{
    QVector<QStandardItem*> found;
    QVector<QStandardItem*> pending;
    for (int flow = EndFlow; flow >= InitialFlow && rows(); --flow)
        pending.append(rows()->rowOf(QString::number(flow)));
    while (!pending.isEmpty()) {
        QStandardItem* row = pending.takeLast();
        if (withFlows || row->parent())
            found.append(row);
        for (int i = row->rowCount() - 1; i >= 0; --i)
            pending.append(row->child(i));
    }
    return any(found);
}

void ChangesInvertTest::addStep()
{
    static const QVector<int> types{step_type::Delay, step_type::If,        step_type::Else,
                                    step_type::For,   step_type::While,     step_type::Break,
                                    step_type::Goto,  step_type::Statement, step_type::Expression};
    if (m_random.bounded(20) == 0)
        m_view->appendStatements({word(), word()}, {1});
    else
        m_view->addStep(BasicStep, any(types), QString(), false, false);
}

void ChangesInvertTest::changeRows()
{
    const QStandardItem* row = anyRow(false);
    const int choice = m_random.bounded(100);
    if (!row || choice < 30) {
        if (QStandardItem* toggled = anyRow(true))
            toggled->setCheckState(toggled->checkState() ? Qt::Unchecked : Qt::Checked);
    } else if (choice < 60) {
        m_view->removeRowSlot();
    } else if (choice < 62) {
        m_view->removeAllRows();
    } else {
        const auto uuid = [](const QStandardItem* item) {
            return item->data(logic_roles::BlockUuid).toString();
        };
        bool isTaken = false; // most places refuse
        for (int tries = 0; tries < 20 && !isTaken; ++tries) {
            const QStandardItem* target = anyRow(true);
            isTaken = drop_rows::drop(*rows(), uuid(row), uuid(target),
                                      m_random.bounded(-1, target->rowCount() + 1));
        }
    }
}

void ChangesInvertTest::editPanel()
{
    const QStandardItem* row = anyRow(false);
    if (!row)
        return;
    m_editor->processItemClickedSlot(row->data(logic_roles::BaseType).toInt(),
                                     row->data(logic_roles::BlockUuid).toString());
    QWidget* panel = m_random.bounded(2)
                         ? static_cast<QWidget*>(m_editor->findChild<wgtGeneralSetting*>())
                         : m_editor->findChild<wgtCommonControl*>();
    QVector<QWidget*> fields;
    for (QWidget* field : panel->findChildren<QWidget*>()) {
        if (field->isEnabled() &&
            (qobject_cast<QLineEdit*>(field) || qobject_cast<QPlainTextEdit*>(field) ||
             qobject_cast<QCheckBox*>(field)))
            fields.append(field);
    }
    QWidget* field = any(fields);
    if (auto* line = qobject_cast<QLineEdit*>(field)) {
        line->setText(word());
        emit line->textEdited(line->text());
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(field)) {
        text->setPlainText(word());
    } else if (auto* box = qobject_cast<QCheckBox*>(field)) {
        box->toggle();
    }
    m_editor->syncAuthoringPanelsToSdk();
}

void ChangesInvertTest::changeVariables()
{
    auto* tree = find<QWidget>("widget_para")->findChild<QTreeView*>(text("treeView"));
    const QAbstractItemModel* sheet = tree->model();
    if (!sheet || sheet->rowCount() < 3)
        return;
    const QModelIndex group = sheet->index(m_random.bounded(3), 0);
    const QModelIndex from = sheet->index(m_random.bounded(3), 0);
    const int count = sheet->rowCount(from);
    const QModelIndex row = count ? sheet->index(m_random.bounded(count), 0, from) : QModelIndex();
    const QString uuid = variable_rows::uuidOf(row);
    switch (row.isValid() ? m_random.bounded(6) : 0) {
    case 0:
    case 1:
        m_variables->add(group);
        break;
    case 2: {
        VariableClipboard clipboard;
        clipboard.copy({uuid});
        m_variables->paste(clipboard, group, 0);
        break;
    }
    case 3:
        m_variables->move({uuid}, group, 0);
        break;
    case 4:
        m_variables->give(word(), text("5"), DrelS32, processVariableType(m_random.bounded(3)),
                          m_random.bounded(2) != 0);
        break;
    default:
        m_variables->remove({row});
    }
}

void ChangesInvertTest::changeSequences()
{
    auto* table = m_sequences->findChild<QTableWidget*>();
    const int choice = m_random.bounded(40);
    const int row = table->rowCount() ? m_random.bounded(table->rowCount()) : -1;
    if (row < 0 || (choice < 6 && table->rowCount() < 8)) {
        m_sequences->addSequenceSlot();
    } else if (choice < 9) {
        table->selectRow(row);
        m_sequences->removeSelectedSequence();
    } else if (choice == 9) {
        m_sequences->removeAllSequence();
    } else if (choice < 20) {
        table->item(row, 2 * m_random.bounded(2))->setText(word());
    } else if (choice < 25) {
        table->findChildren<QCheckBox*>().value(row)->setChecked(true);
    } else {
        table->selectRow(row);
    }
}

/// What the project keeps beside the document. Templates have no view yet that changes them.
void ChangesInvertTest::changeLibraries()
{
    const auto templates = processedit::getAllProcessTemplate();
    const auto quickSteps = processedit::getQuickStepInfo();
    const auto anyOf = [&](const auto& list) {
        return list[m_random.bounded(quint32(list.size()))];
    };
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    switch (m_random.bounded(5)) {
    case 0:
        if (tree->selectionModel())
            tree->selectAll();
        m_view->onQucikAddSlot();
        break;
    case 1:
        for (const auto& step : quickSteps.mid(1))
            DocumentEdits::instance().removeQuickStepInfo(QString::fromStdString(step->uuid));
        break;
    case 2:
        m_sequences->addSequenceToTemplate();
        break;
    case 3:
        if (!templates.empty())
            DocumentEdits::instance().renameProcessTemplate(
                QString::fromStdString(anyOf(templates).id), word());
        break;
    default:
        if (templates.size() > 4)
            DocumentEdits::instance().removeProcessTemplate(
                QString::fromStdString(anyOf(templates).id));
    }
}

void ChangesInvertTest::act()
{
    if (const QStandardItem* row = anyRow(true))
        m_view->findChild<QTreeView*>(text("treeView"))->setCurrentIndex(row->index());
    const int choice = m_random.bounded(100);
    if (choice < 30)
        addStep();
    else if (choice < 55)
        changeRows();
    else if (choice < 75)
        editPanel();
    else if (choice < 87)
        changeVariables();
    else if (choice < 94)
        changeSequences();
    else
        changeLibraries();
}

void ChangesInvertTest::changes_invert()
{
    constexpr int Acts = 3000;
    DocumentEdits& edits = DocumentEdits::instance();
    QVector<DocumentChange> changes;
    const auto listening = connect(&edits, &DocumentEdits::changed, this,
                                   [&](const DocumentChange& change) { changes.append(change); });
    const QByteArray first = document();
    for (int i = 0; i < Acts; ++i)
        act();
    m_editor->syncAuthoringPanelsToSdk();
    disconnect(listening);
    const QByteArray last = document();
    // A walk that went nowhere has shown nothing.
    QMap<QPair<int, int>, int> kinds;
    for (const DocumentChange& change : qAsConst(changes)) {
        for (const DocumentChange::Item& item : change.items)
            ++kinds[{int(item.part), int(item.kind)}];
    }
    QCOMPARE(kinds.size(),
             5 + 3 + 3 + 2 + 3); // of steps, sequences, variables, quick steps, templates
    QVERIFY(*std::min_element(kinds.begin(), kinds.end()) >= 10);

    for (auto change = changes.crbegin(); change != changes.crend(); ++change)
        QVERIFY(edits.undo(*change));
    QCOMPARE(document(), first);
    for (const DocumentChange& change : qAsConst(changes))
        QVERIFY(edits.redo(change));
    QCOMPARE(document(), last);
}

PE_WIDGET_TEST("changes_invert", ChangesInvertTest)
#include "changes_invert_test.moc"
