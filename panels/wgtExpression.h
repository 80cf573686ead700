#pragma once

#include "panels/IBlockControl.h"

class ExpressionProcessBlock;
namespace Ui {
class wgtExpression;
}

/// The panel of an expression step: an assignment of the form y = f(x1, x2, ...). Both texts are
/// taken as they are.
class wgtExpression : public IBlockControl
{
    Q_OBJECT
public:
    explicit wgtExpression(QWidget* parent = nullptr);
    ~wgtExpression() override;

    int stepType() const override { return step_type::Expression; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    void saveBlock() override;

private slots:
    void onBtnLeftValueClicked();
    void onBtnRightValueClicked();
    void onLineEditTextChanged(const QString& text);
    void onTextEditTextChanged();

private:
    std::unique_ptr<Ui::wgtExpression> ui;
    std::shared_ptr<ExpressionProcessBlock> m_block;
};
