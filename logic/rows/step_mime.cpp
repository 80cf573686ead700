#include "logic/rows/step_mime.h"

#include "logic/rows/logic_roles.h"
#include "model/mime_types.h"

#include <QMimeData>
#include <QStandardItem>

namespace step_mime {

namespace {

void setNumber(QMimeData& data, QLatin1String type, int number)
{
    data.setData(type, QByteArray::number(number));
}

QString textOf(const QMimeData& data, QLatin1String type)
{
    constexpr int most = 4096; // texts of a row of the palette, and ids
    const QByteArray text = data.data(type);
    return text.size() <= most ? QString::fromUtf8(text) : QString();
}

} // namespace

std::unique_ptr<QMimeData> ofKind(const QString& text, int baseType, int stepType,
                                  const QString& quickStepId)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(mime_types::StepItem, text.toUtf8());
    mime_types::markAsItems(*data);
    setNumber(*data, mime_types::BaseType, baseType);
    setNumber(*data, mime_types::StepType, stepType);
    data->setData(mime_types::StepName, text.toUtf8());
    if (!quickStepId.isEmpty())
        data->setData(mime_types::QuickStepId, quickStepId.toUtf8());
    return data;
}

std::unique_ptr<QMimeData> ofRow(const QStandardItem& row)
{
    auto data = std::make_unique<QMimeData>();
    mime_types::markAsItems(*data);
    setNumber(*data, mime_types::BaseType, row.data(logic_roles::BaseType).toInt());
    setNumber(*data, mime_types::StepType, row.data(logic_roles::StepType).toInt());
    data->setData(mime_types::BlockUuid, row.data(logic_roles::BlockUuid).toString().toUtf8());
    data->setData(mime_types::DragItem, QByteArray::number(qulonglong(quintptr(&row))));
    return data;
}

std::optional<Step> read(const QMimeData& data)
{
    bool hasBase = false;
    bool hasType = false;
    bool hasItem = true;
    Step step;
    step.baseType = data.data(mime_types::BaseType).toInt(&hasBase);
    step.stepType = data.data(mime_types::StepType).toInt(&hasType);
    if (data.hasFormat(mime_types::DragItem))
        step.item = quintptr(data.data(mime_types::DragItem).toULongLong(&hasItem));
    if (!hasBase || !hasType || !hasItem)
        return std::nullopt;
    step.name = textOf(data, mime_types::StepName);
    step.quickStepId = textOf(data, mime_types::QuickStepId);
    step.blockUuid = textOf(data, mime_types::BlockUuid);
    step.appName = textOf(data, mime_types::AppletName);
    step.sequenceId = textOf(data, mime_types::SequenceId);
    return step;
}

} // namespace step_mime
