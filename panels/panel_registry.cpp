#include "panels/panel_registry.h"

#include "panels/wgtApi.h"
#include "panels/wgtCustomCode.h"
#include "panels/wgtDoWhile.h"
#include "panels/wgtElseIf.h"
#include "panels/wgtExpression.h"
#include "panels/wgtFor.h"
#include "panels/wgtIf.h"
#include "panels/wgtWhile.h"

namespace {

template <class Panel> IBlockControl* make(const QString& objectName)
{
    auto* panel = new Panel;
    panel->setObjectName(objectName);
    return panel;
}

} // namespace

QVector<IBlockControl*> makeBlockPanels()
{
    return {
        make<wgtElseIf>(QStringLiteral("elseif_page")),
        make<wgtApi>(QStringLiteral("api_wgt")),
        make<wgtExpression>(QStringLiteral("expression")),
        make<wgtFor>(QStringLiteral("for_page")),
        make<wgtWhile>(QStringLiteral("while_page")),
        make<wgtDoWhile>(QStringLiteral("dowhile")),
        make<wgtIf>(QStringLiteral("if_page")),
        make<wgtCustomCode>(QStringLiteral("custom_edit_page")),
    };
}
