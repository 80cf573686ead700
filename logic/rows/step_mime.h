#pragma once

#include <QString>

#include <memory>
#include <optional>

class QMimeData;
class QStandardItem;

/// Steps on their way by drag and drop: the palette's kinds and quick steps, and rows of a tree.
namespace step_mime {

/// What a drag says of itself; nothing of it is checked but its form.
struct Step
{
    int baseType = 0;
    int stepType = 0;
    QString name;        ///< as the palette shows it
    QString quickStepId; ///< empty: none
    QString blockUuid;   ///< of a row
    quintptr item = 0;   ///< of a row, where it stood; may point anywhere
    QString appName;     ///< where it is from; empty: not said
    QString sequenceId;

    bool isRow() const { return item != 0 || !blockUuid.isEmpty(); }
};

/// A new step; with an id it is that quick step.
std::unique_ptr<QMimeData> ofKind(const QString& text, int baseType, int stepType,
                                  const QString& quickStepId);
/// The row whose item of column 0 this is.
std::unique_ptr<QMimeData> ofRow(const QStandardItem& row);

/// Nothing for what is no step.
std::optional<Step> read(const QMimeData& data);

} // namespace step_mime
