#include "shell/PanelLayout.h"

#include "shell/ProcessEditParts.h"

namespace {

const QList<int> runTabSizes{0, 700, 300};

} // namespace

void PanelLayout::load(const QString& folder)
{
    if (m_settings.isOpen())
        return;
    m_settings.open(folder);
    const QList<int> sizes = m_settings.splitterSizes();
    if (sizes.size() >= m_parts.ui.splitter->count()) {
        m_sizes = sizes;
        m_parts.ui.splitter->setSizes(sizes);
    }
    m_parts.ui.widget_para->setColumnWidths(m_settings.variableWidths());
    m_parts.ui.center_wgt->setEditColumnWidths(m_settings.editTreeWidths());
    loadRunWidths();
}

void PanelLayout::save()
{
    takeSizes();
    m_settings.setSplitterSizes(m_sizes);
}

void PanelLayout::loadRunWidths()
{
    m_parts.ui.center_wgt->setRunColumnWidths(m_settings.runTreeWidths());
}

void PanelLayout::keepTreeWidths(const QStringList& widths, bool isRun)
{
    m_settings.setTreeWidths(widths, isRun);
}

void PanelLayout::keepVariableWidths(const QStringList& widths)
{
    m_settings.setVariableWidths(widths);
}

void PanelLayout::showTab(bool isEdit)
{
    QSplitter* splitter = m_parts.ui.splitter;
    if (!isEdit && !m_isRunTab) {
        m_isRunTab = true;
        m_sizes = splitter->sizes();
        splitter->setSizes(runTabSizes);
        m_parts.ui.attribute_tab->setCurrentIndex(0);
        splitter->handle(1)->setEnabled(false);
    } else if (isEdit && m_isRunTab) {
        splitter->setSizes(m_sizes);
        splitter->handle(1)->setEnabled(true);
        m_isRunTab = false;
    }
    splitter->refresh();
}

void PanelLayout::takeSizes()
{
    if (!m_isRunTab)
        m_sizes = m_parts.ui.splitter->sizes();
}

void PanelLayout::saveIfMoved()
{
    if (!m_isRunTab && m_parts.ui.splitter->sizes() != m_settings.splitterSizes())
        save();
}
