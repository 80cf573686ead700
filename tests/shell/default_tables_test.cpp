#include "shell/documents/default_tables.h"

#include "model/services/process_edit.h"
#include "standalone/host/Host.h"
#include "tests/shell/EditorFixture.h"
#include "tests/support/test_program.h"

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

/// A host whose tables lie elsewhere, one of them missing.
class DefaultTablesTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { closeEditor(); }
    void foundWhereTheHostSays();
    void missingTableIsNamed();

private:
    QTemporaryDir m_tables;
    QStringList m_errors;
};

void DefaultTablesTest::init()
{
    const QString shipped = QFileInfo(default_tables::stepTable()).path();
    if (m_errors.isEmpty()) {
        const QString name = QStringLiteral("/defaultVariable.json");
        QVERIFY(QFile::copy(shipped + name, m_tables.path() + name));
        default_tables::setFolder(m_tables.path());
    }
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    openEditor();
    for (const auto& error : errors)
        m_errors << error.first().toString();
}

void DefaultTablesTest::foundWhereTheHostSays()
{
    const auto variables = process_edit::getAllGlobalVariable();
    QVERIFY(std::any_of(variables.begin(), variables.end(),
                        [](const auto& variable) { return variable.name == "global_ret"; }));
}

/// Once, though every editor looks at the tables; the empty palette says it too.
void DefaultTablesTest::missingTableIsNamed()
{
    const QString file = m_tables.filePath(QStringLiteral("defaultStep.json"));
    QCOMPARE(m_errors.filter(file).size(), 1);
    const auto* palette = find<QWidget>(m_editor.get(), "treeWidget");
    const auto* hint = find<QLabel>(palette, "emptyHint");
    QTRY_VERIFY(hint->isVisible());
    QVERIFY2(hint->text().contains(file), qPrintable(hint->text()));
}

PE_WIDGET_TEST("default_tables_test", DefaultTablesTest)
#include "default_tables_test.moc"
