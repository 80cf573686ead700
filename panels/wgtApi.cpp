#include "panels/wgtApi.h"

#include "model/DrelFunction.h"
#include "model/blocks/ApiProcessBlock.h"
#include "model/services/process_edit.h"
#include "panels/DelayedWrite.h"
#include "panels/ParamValueItem.h"
#include "panels/api_values.h"
#include "panels/value_picker.h"
#include "ui_wgtApi.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextDocument>

namespace {

enum Column { TypeColumn, ValueColumn, DescriptionColumn };

QTableWidgetItem* newFixedItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    item->setToolTip(Qt::convertFromPlainText(text)); // which wraps
    return item;
}

} // namespace

wgtApi::wgtApi(QWidget* parent) : IBlockControl(parent), ui(std::make_unique<Ui::wgtApi>())
{
    ui->setupUi(this);
    ui->tableWidget->horizontalHeader()->setSectionResizeMode(DescriptionColumn,
                                                              QHeaderView::Stretch);
    connect(ui->btnFunc, &QAbstractButton::clicked, this, &wgtApi::onBtnFuncClicked);
    connect(ui->btnReturn, &QAbstractButton::clicked, this, &wgtApi::onBtnReturnClicked);
    connect(ui->returnValue, &QLineEdit::textEdited, this, &wgtApi::saveBlock);
    connect(ui->tableWidget, &QTableWidget::cellDoubleClicked, this, &wgtApi::onCellDoubleClicked);
    ui->tableWidget->installEventFilter(this);
}

wgtApi::~wgtApi() = default;

void wgtApi::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    m_block = std::dynamic_pointer_cast<ApiProcessBlock>(block);
    if (!m_block)
        return;
    const QSignalBlocker blockers[] = {QSignalBlocker(ui->returnValue),
                                       QSignalBlocker(ui->editFunCall)};
    m_functionSource = m_block->userFunction;
    showText(ui->returnValue, m_block->returnVariable);
    showText(ui->editFunCall, m_block->callText);
    ui->tableWidget->setRowCount(0);
    m_returnType = QString::fromStdString(m_block->returnType);
    if (m_returnType == QLatin1String("void"))
        ui->btnReturn->setEnabled(false); // till a function with a result is picked
    for (const ApiProcessBlock::Parameter& parameter : m_block->parameters()) {
        addRow(QString::fromStdString(parameter.type),
               QString::fromStdString(parameter.description))
            ->setValue(QString::fromStdString(parameter.value));
    }
}

/// What is being typed waits, too.
bool wgtApi::isTimerActive() const
{
    for (int row = 0; row < ui->tableWidget->rowCount(); ++row) {
        const ParamValueItem* value = valueAt(row);
        if (value && value->isEditing())
            return true;
    }
    return false;
}

void wgtApi::saveBlock()
{
    m_timer->stop();
    if (!m_block)
        return;
    std::vector<ApiProcessBlock::Parameter> parameters;
    for (int row = 0; row < ui->tableWidget->rowCount(); ++row) {
        const auto textOf = [&](int column) {
            return ui->tableWidget->item(row, column)->text().toStdString();
        };
        ParamValueItem* value = valueAt(row);
        if (value) {
            const QSignalBlocker blocker(value); // it is being written
            value->setEditing(false);
        }
        parameters.push_back({textOf(TypeColumn),
                              value ? value->value().toStdString() : std::string(),
                              textOf(DescriptionColumn)});
    }
    handBack(m_block, [&] {
        m_block->returnVariable = ui->returnValue->text().toStdString();
        m_block->callText = ui->editFunCall->text().toStdString();
        m_block->returnType = m_returnType.toLocal8Bit().toStdString();
        m_block->userFunction = m_functionSource;
        m_block->setParameters(parameters);
    });
}

void wgtApi::onBtnFuncClicked()
{
    const auto picked =
        value_picker::pickFunction(this, m_cappletName, m_sequenceId, ui->editFunCall->text());
    if (!picked)
        return;
    initTable(picked->function);
    const auto result =
        api_values::suggestedReturn(picked->function, process_edit::getAllGlobalVariable());
    if (result)
        ui->returnValue->setText(*result);
    ui->editFunCall->setText(picked->text);
    if (!picked->text.isEmpty())
        m_functionSource = picked->isUserFunction;
    saveBlock();
}

void wgtApi::initTable(const _DrelFunction& function)
{
    ui->btnReturn->setEnabled(api_values::returnsAValue(function));
    ui->tableWidget->setRowCount(0);
    for (const ApiProcessBlock::Parameter& each : api_values::parametersOf(function))
        addRow(QString::fromStdString(each.type), QString::fromStdString(each.description));
    m_returnType = api_values::returnTypeOf(function);
}

void wgtApi::onBtnReturnClicked()
{
    value_picker::Request request;
    request.appName = m_cappletName;
    request.sequenceId = m_sequenceId;
    request.stepId = stepIdOf(m_block);
    request.offer = value_picker::Offer::Variables;
    request.type = m_returnType;
    request.text = ui->returnValue->text();
    if (const auto picked = value_picker::pick(this, request)) {
        ui->returnValue->setText(*picked);
        saveBlock();
    }
}

void wgtApi::onCellDoubleClicked(int row, int column)
{
    ParamValueItem* value = column == ValueColumn ? valueAt(row) : nullptr;
    if (value)
        value->setEditing(true);
}

/// The keys of the table: Delete takes the current row's value away, F2 edits it.
bool wgtApi::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != ui->tableWidget || event->type() != QEvent::KeyPress)
        return IBlockControl::eventFilter(watched, event);
    ParamValueItem* value = valueAt(ui->tableWidget->currentRow());
    if (!value)
        return false;
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Delete:
        value->clear();
        return true;
    case Qt::Key_F2:
        value->setEditing(true);
        return true;
    default:
        return false;
    }
}

void wgtApi::goOnFrom(int row, bool isForward)
{
    const int next = row + (isForward ? 1 : -1);
    if (ParamValueItem* value = valueAt(next)) {
        ui->tableWidget->setCurrentCell(next, ValueColumn);
        value->setEditing(true);
    } else {
        ui->tableWidget->setFocus();
    }
}

ParamValueItem* wgtApi::valueAt(int row) const
{
    return qobject_cast<ParamValueItem*>(ui->tableWidget->cellWidget(row, ValueColumn));
}

ParamValueItem* wgtApi::addRow(const QString& type, const QString& description)
{
    const int row = ui->tableWidget->rowCount();
    ui->tableWidget->insertRow(row);
    ui->tableWidget->setItem(row, TypeColumn, newFixedItem(type));
    ui->tableWidget->setItem(row, DescriptionColumn, newFixedItem(description));
    auto* value = new ParamValueItem(type, m_cappletName, m_sequenceId);
    ui->tableWidget->setCellWidget(row, ValueColumn, value);
    connect(value, &ParamValueItem::sigEditFinish, this, &wgtApi::saveBlock);
    connect(value, &ParamValueItem::sigTab, this,
            [this, row](bool isForward) { goOnFrom(row, isForward); });
    return value;
}

#include "moc_wgtApi.cpp"
