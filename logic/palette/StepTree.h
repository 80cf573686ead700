#pragma once

#include "model/BaseStepProperty.h"

#include <QTreeWidget>
#include <QVector>

#include <memory>

class IProcessBlock;

/// The palette: the kinds of steps in their folders, and the quick steps in the last one. Items
/// bear the roles of logic_roles.h. GUI thread only.
class StepTree : public QTreeWidget
{
    Q_OBJECT
public:
    explicit StepTree(QWidget* parent = nullptr);

    /// Makes the item of a kind with all kinds below it; null for a kind that the palette hides.
    /// Without a parent it becomes a top item: the last one, or with @p insert the last but one; an
    /// insertion into an empty palette places nothing and gives null.
    QTreeWidgetItem* createStepItem(const BaseStepProperty& property, QTreeWidgetItem* parent,
                                    bool insert);

    /// Fills the palette from the default table and the quick steps.
    void initStepList();

    /// Puts an owner's kinds before the quick steps and registers them with the model service.
    /// @p owner is the applet's name.
    void addCustomStepList(const QString& owner, const QVector<BaseStepProperty>& list);

    /// Takes an owner's kinds away again and fills the palette anew.
    void resetCustomStepList(const QString& owner);

    /// The folder of the quick steps, or null: then the palette shows none.
    QTreeWidgetItem* getQuickStepToplevelItem() const;

public slots:
    void onUpdateQuickStep(QStringList quickStepIdList, bool isRemove);

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    /// Of the first item: the kind or the quick step that it stands for.
    QMimeData* mimeData(const QList<QTreeWidgetItem*> items) const override;

private:
    void addQuickStep(const std::shared_ptr<IProcessBlock>& block, QTreeWidgetItem* folder);
};
