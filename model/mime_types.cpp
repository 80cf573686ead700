#include "model/mime_types.h"

#include <QMimeData>

void mime_types::markAsItems(QMimeData& data)
{
    data.setData(QStringLiteral("application/x-qstandarditemmodeldatalist"), {});
    data.setData(QStringLiteral("application/x-qabstractitemmodeldatalist"), {});
}
