#pragma once

#include <QTableWidget>

/// A table with rows high enough for widgets in its cells. The heights follow the contents. GUI
/// thread only.
class ProcessEditTableWidget : public QTableWidget
{
    Q_OBJECT
public:
    explicit ProcessEditTableWidget(QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
