#pragma once

#include "panels/IBlockControl.h"

class ForProcessBlock;
namespace Ui {
class wgtFor;
}

/// The loop of any single step, as IProcessBlock keeps it.
struct LoopRecord
{
    int type = 0; ///< 0 none, 1 fixed count, 2 custom
    bool resultInReport = false;
    int count = 10;
    QString variable = QStringLiteral("i");
    QString init;
    QString condition;
    QString increment;
};

/// The form of a counting loop: a number of rounds, or a header of three texts. As a page it edits
/// a for step. Embedded it is only the form for the loop of another panel's step: it has no block,
/// never saves, and tells of edits by lineEditTextChangedSig.
class wgtFor : public IBlockControl
{
    Q_OBJECT
public:
    explicit wgtFor(QWidget* parent = nullptr);
    ~wgtFor() override;

    int stepType() const override { return step_type::For; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    /// Writes the fields of the chosen way only; a number of rounds always counts from 0 by 1.
    void saveBlock() override;

    /// Makes it an embedded form, for good: the choice between the two ways is the owner's then.
    void setEmbedded();
    /// Fills the form, without a signal; the type and the report flag have no control here.
    void setLoopRecord(const LoopRecord& record);
    /// What the form holds; the type and the report flag as in a new record.
    LoopRecord loopRecord() const;
    /// Which of the two groups can be edited.
    void setGroupsEnabled(bool fixed, bool custom);

signals:
    /// Embedded: a text or the count was edited.
    void lineEditTextChangedSig();

private slots:
    void onRadioBtnClicked();
    void onLineEditTextChanged();

protected slots:
    void onTimer() override;

private:
    void setUpForm();

    std::unique_ptr<Ui::wgtFor> ui;
    std::shared_ptr<ForProcessBlock> m_block;
    bool m_embedded = false;
};
