#include "workbench/application_icon.h"

#include "model/services/widget_bases.h"

QIcon applicationIcon(const char* name)
{
    constexpr int Size = 26;
    return StyleManager::scaledToolbarIcon(
        QStringLiteral(":/icon/应用/%1.png").arg(QString::fromLatin1(name)), Size);
}
