#pragma once

#include "panels/IBlockControl.h"

#include <QString>

#include <memory>

class ApiProcessBlock;
class ParamValueItem;
struct _DrelFunction;
namespace Ui {
class wgtApi;
}

/// The panel of a step that calls a function: which one, a value for each of its parameters, and
/// the variable that takes the result. Every accepted change is written at once.
class wgtApi : public IBlockControl
{
    Q_OBJECT
public:
    explicit wgtApi(QWidget* parent = nullptr);
    ~wgtApi() override;

    int stepType() const override { return step_type::Api; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    void saveBlock() override;
    bool isTimerActive() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void onBtnReturnClicked();
    void onBtnFuncClicked();
    /// Rows for the parameters of a function, with values to begin with.
    void initTable(const _DrelFunction& function);
    void onCellDoubleClicked(int row, int column);

private:
    void goOnFrom(int row, bool isForward);
    ParamValueItem* valueAt(int row) const;
    ParamValueItem* addRow(const QString& type, const QString& description);

    std::unique_ptr<Ui::wgtApi> ui;
    std::shared_ptr<ApiProcessBlock> m_block;
    QString m_returnType;          ///< keyword
    bool m_functionSource = false; ///< the function is one of the applet's user
};
