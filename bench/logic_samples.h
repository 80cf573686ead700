#pragma once

#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QString>
#include <QStringList>

/// A sequence of many steps for the benchmarks of the logic view: branches, loops and plain steps,
/// nested two deep, as a hand-made test procedure has them.
namespace logic_samples {

struct Sample
{
    QString appName;
    QString sequenceId;
    QStringList blockUuids; ///< in the order of the rows
};

class Builder
{
public:
    explicit Builder(int steps) : m_left(steps)
    {
        m_sample.appName = QStringLiteral("bench_%1").arg(steps);
        sdk_ui_interface::processedit::removeApp(m_sample.appName);
        m_sample.sequenceId = sdk_ui_interface::processedit::createSeuqence(
            m_sample.appName, QStringLiteral("Sequence_0"));
        const QString flow = QStringLiteral("1");
        while (m_left > 0) {
            for (int i = 0; i < 4; ++i)
                add(flow, step_type::Statement);
            const QString branch = add(flow, step_type::If);
            add(branch, step_type::Delay);
            const QString loop = add(branch, step_type::For);
            add(loop, step_type::Expression);
            add(loop, step_type::Statement);
            add(branch, step_type::EndFor);
            add(flow, step_type::EndIf);
        }
    }

    const Sample& sample() const { return m_sample; }

    /// Adds an if with so many plain steps to the initial flow; gives its uuid.
    QString addBranch(int steps)
    {
        const QString flow = QStringLiteral("0");
        m_left = steps + 2;
        const QString branch = add(flow, step_type::If);
        while (m_left > 1)
            add(branch, step_type::Delay);
        add(flow, step_type::EndIf);
        return branch;
    }

private:
    QString add(const QString& parent, int stepType)
    {
        using namespace sdk_ui_interface::processedit;
        if (m_left-- <= 0)
            return parent;
        const QString uuid =
            createProcess(m_sample.appName, m_sample.sequenceId, parent, BasicStep, stepType, -1);
        const auto block = getProcess(m_sample.appName, uuid);
        block->name = "step " + std::to_string(m_sample.blockUuids.size());
        block->property.hasChildren = step_kinds::isOpener(stepType);
        m_sample.blockUuids.append(uuid);
        return uuid;
    }

    Sample m_sample;
    int m_left;
};

} // namespace logic_samples
