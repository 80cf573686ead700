#include "shell/documents/PanelSettings.h"
#include "tests/support/test_program.h"

#include <QtTest>

class PanelSettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void closedFileReadsAndWritesNothing();
    void storedIsReadByTheNext();
    void readsUnquotedCommas();
    void emptyListWritesNothing();
};

void PanelSettingsTest::closedFileReadsAndWritesNothing()
{
    PanelSettings settings;
    settings.open(QString());
    settings.setSplitterSizes({1, 2, 3});
    QVERIFY(!settings.isOpen());
    QVERIFY(settings.splitterSizes().isEmpty());
}

void PanelSettingsTest::storedIsReadByTheNext()
{
    QTemporaryDir folder;
    {
        PanelSettings settings;
        settings.open(folder.path());
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("settings.ini"))));
        settings.setSplitterSizes({200, 700, 300});
        settings.setTreeWidths({QStringLiteral("10"), QStringLiteral("20")}, false);
        settings.setTreeWidths({QStringLiteral("30"), QStringLiteral("40")}, true);
    }
    PanelSettings settings;
    settings.open(folder.path() + QLatin1Char('/'));
    QCOMPARE(settings.splitterSizes(), QList<int>({200, 700, 300}));
    QCOMPARE(settings.editTreeWidths(), QList<int>({10, 20}));
    QCOMPARE(settings.runTreeWidths(), QList<int>({30, 40}));
    QVERIFY(settings.variableWidths().isEmpty());
}

void PanelSettingsTest::readsUnquotedCommas()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Widget]\nWidgetWidth=1,2,3\nVarWidgetWidth=\"4,5\"\n");
    file.close();
    PanelSettings settings;
    settings.open(folder.path());
    QCOMPARE(settings.splitterSizes(), QList<int>({1, 2, 3}));
    QCOMPARE(settings.variableWidths(), QList<int>({4, 5}));
}

void PanelSettingsTest::emptyListWritesNothing()
{
    QTemporaryDir folder;
    PanelSettings settings;
    settings.open(folder.path());
    settings.setVariableWidths({QStringLiteral("7")});
    settings.setVariableWidths({});
    QCOMPARE(settings.variableWidths(), QList<int>({7}));
}

PE_TEST("panel_settings_test", PanelSettingsTest)
#include "panel_settings_test.moc"
