#pragma once

#include "model/type_tables.h"

#include <QString>
#include <QVector>

/// System variables: shared by the whole workbench, owned by its variable service.
enum VarErrorCode : int { VarOk = 0, VarNotFound = 1 };

/// What happened to a system variable.
enum Operation : int { VarAdded = 1, VarChanged = 2, VarRemoved = 3, VarValueChanged = 4 };

/// The definition of a system variable, as a change of it carries it.
struct SystemVarDef
{
    QString name;
    int kind = 1; ///< 1: a user's variable
    DataCategoryType category = NoCategory;
};

namespace system_variate {

/// A system variable with its present value.
struct SystemVarInfo
{
    QString name;
    QString description;
    int kind = 1; ///< 1: a user's variable, the only kind that steps may use
    DataCategoryType category = NoCategory;
    QString value;
    int precision = 6; ///< decimals of a double
};

/// All names; false if the service can't answer. Any thread.
bool GetVariateNameSet(QVector<QString>& names);
/// One variable; anything but VarOk leaves @p info as it was. Any thread.
VarErrorCode GetVariate(const QString& name, SystemVarInfo& info);

} // namespace system_variate

/// The registration behind IUIVariateListener: a listener is known to the variable service from its
/// construction to its destruction, which returns when nobody is inside the listener. The service
/// defines the members of both classes.
class IVariateListener
{
public:
    IVariateListener();
    IVariateListener(const IVariateListener&) = delete;
    IVariateListener& operator=(const IVariateListener&) = delete;
    virtual ~IVariateListener();

    /// Called by the variable service, on a thread of its own.
    void notify(Operation operation, const SystemVarDef& variable);

private:
    virtual void onVariateDirectChange(Operation operation, SystemVarDef variable) = 0;
};

/// Base of listeners in a user interface. onVariateDirectChange is called on a thread of the
/// variable service and must not touch a widget. The editor's only one lives to the end of the
/// process; a service has stopped calling by then.
class IUIVariateListener : public IVariateListener
{
public:
    IUIVariateListener();
    ~IUIVariateListener() override;
};
