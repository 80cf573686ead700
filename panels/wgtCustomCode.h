#pragma once

#include "panels/IBlockControl.h"

class StatementProcessBlock;
namespace Ui {
class wgtCustomCode;
}

/// The panel of a statement step: a free block of code, which may go to a source file of its own.
class wgtCustomCode : public IBlockControl
{
    Q_OBJECT
public:
    explicit wgtCustomCode(QWidget* parent = nullptr);
    ~wgtCustomCode() override;

    int stepType() const override { return step_type::Statement; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    void saveBlock() override;

public slots:
    /// The declarations of the functions that a code defines, see statement_texts.
    QString extractFunctionDeclaration(const QString& input);

private slots:
    /// Writes into the block at once; the model hears of it after the pause.
    void onTextEditTextChanged();
    void onFxButtonClicked();
    void onCheckBoxStateChanged(int state);

private:
    std::unique_ptr<Ui::wgtCustomCode> ui;
    std::shared_ptr<StatementProcessBlock> m_block;
};
