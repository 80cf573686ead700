#include "variables/LengthDialog.h"

#include "variables/VariablePanelTexts.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

LengthDialog::LengthDialog(const QString& name, const QString& type, int length, int greatest,
                           QWidget* parent)
    : QDialog(parent), m_length(new QSpinBox)
{
    setWindowTitle(VariablePanelTexts::tr("修改长度"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_length->setRange(1, greatest);
    m_length->setValue(length);
    m_length->selectAll();

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* form = new QFormLayout;
    form->addRow(VariablePanelTexts::tr("长度:"), m_length);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(VariablePanelTexts::tr("变量: %1 (类型: %2, 最大长度: %3)")
                                     .arg(name, type, QString::number(greatest))));
    layout->addLayout(form);
    layout->addWidget(buttons);
    m_length->setFocus();
}

int LengthDialog::length() const
{
    return m_length->value();
}

#include "moc_LengthDialog.cpp"
