#include "shell/documents/default_tables.h"

#include "model/services/process_edit.h"
#include "tests/shell/EditorFixture.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

/// A host whose tables lie elsewhere, one of them missing.
class DefaultTablesTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init() {} // the tables first
    void tablesAreFoundOrNamed();
};

void DefaultTablesTest::tablesAreFoundOrNamed()
{
    const QTemporaryDir tables;
    const QString shipped = QFileInfo(default_tables::stepTable()).path();
    const QString present = text("/defaultVariable.json");
    QVERIFY(QFile::copy(shipped + present, tables.path() + present));
    default_tables::setFolder(tables.path());
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    openEditor();
    const auto second = makeEditor(); // every editor looks at the tables
    const auto variables = process_edit::getAllGlobalVariable();
    QVERIFY(std::any_of(variables.begin(), variables.end(),
                        [](const auto& variable) { return variable.name == "global_ret"; }));
    const QString missing = tables.filePath(text("defaultStep.json"));
    QCOMPARE(errors.size(), 1);
    QVERIFY(errors[0][0].toString().contains(missing));
    // The empty palette says it too.
    const auto* hint = find<QLabel>(find<QWidget>("treeWidget"), "emptyHint");
    QTRY_VERIFY(hint->isVisible());
    QVERIFY2(hint->text().contains(missing), qPrintable(hint->text()));
}

PE_WIDGET_TEST("default_tables_test", DefaultTablesTest)
#include "default_tables_test.moc"
