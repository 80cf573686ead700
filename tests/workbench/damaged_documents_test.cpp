// A document that is damaged, as its user meets it: what is said, what can be chosen, and that
// neither the document nor its backup is lost whatever is chosen.

#include "tests/workbench/WorkbenchFixture.h"

#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "shell/run/ProcessEditToolBar.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"

#include <QComboBox>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

class DamagedDocumentsTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void wholeOnesAskNothing();
    void choices_data();
    void choices();

private:
    QString path(const char* suffix = "") const { return document("ecu_check") + text(suffix); }
    QByteArray read(const char* suffix = "") const
    {
        return QFile::exists(path(suffix)) ? test_support::content(path(suffix)) : "missing";
    }
    void saveWithAStepMore() const;
};

void DamagedDocumentsTest::saveWithAStepMore() const
{
    ProcessEditWidget* editor = m_window->editor();
    processedit::createProcess(text("ecu_check"), editor->getCurrentShowSequenceId(), text("1"),
                               BasicStep, step_type::Statement, -1);
    editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Save);
}

void DamagedDocumentsTest::wholeOnesAskNothing()
{
    openWindow("ecu_check");
    QVERIFY(m_asked.isEmpty() && m_window->editor());
}

void DamagedDocumentsTest::choices_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("backup"); // "-": none, "=": the whole document
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("said");
    const QByteArray whole =
        test_support::content(text(PE_EXAMPLE "/CApplet/ecu_check/processInfo.pedt"));
    const QByteArray cut = whole.left(12000);
    const QByteArray foreign = QByteArray(whole).replace("retry", "\xff\xfetry");
    const char* const part = "打开可读取的部分";
    const char* const fromBackup = "使用 ";
    const auto row = [](const char* name, const QByteArray& document, const char* backup,
                        const char* choice, const char* said) {
        QTest::newRow(name) << document << QByteArray(backup) << text(choice) << text(said);
    };
    row("cut, the part", cut, "=", part, "可以读取其中的 \\d 个序列、\\d+ 个步骤");
    row("cut, the backup", cut, "=", fromBackup, "行 \\d+ 列 \\d+");
    row("cut, left", cut, "=", "不打开", "ecu_check");
    row("cut, closed", cut, "=", "no such button", "ecu_check");
    row("cut, without a backup", cut, "-", part, "个步骤");
    row("cut, the backup too", cut, "{\"logicview\":", part, "个步骤");
    row("empty, the backup", "", "=", fromBackup, "0 个序列、0 个步骤");
    row("no object, the part", "[1, 2]", "=", part, "不是对象");
    row("not UTF-8", foreign, "=", part, "含有非UTF-8字符");
}

void DamagedDocumentsTest::choices()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, backup);
    QFETCH(QString, choice);
    QFETCH(QString, said);
    m_value = choice;
    const QByteArray whole = read();
    QVERIFY(test_support::putFile(path(), document));
    if (backup == "=")
        backup = whole;
    if (backup != "-")
        QVERIFY(test_support::putFile(path(".bak"), backup));
    openWindow("ecu_check");

    QCOMPARE(m_asked.size(), 1);
    QVERIFY2(m_asked.first().text.contains(QRegularExpression(said)),
             qPrintable(m_asked.first().text));
    QCOMPARE(m_asked.first().choices.size(), backup == whole ? 3 : 2);
    QCOMPARE(read(".damaged"), document);
    const bool isRestored = choice.startsWith(text("使用"));
    if (!isRestored && !choice.startsWith(text("打开"))) {
        QVERIFY(!m_window->editor());
        QCOMPARE(find<QComboBox>("appletBox")->currentIndex(), -1);
        QCOMPARE(read(), document);
        return;
    }
    QVERIFY(m_window->editor());
    QCOMPARE(read(), isRestored ? whole : document);
    if (isRestored)
        QVERIFY(editRows().size() > 20);

    // Twice: the second save would replace what the first has made the backup.
    saveWithAStepMore();
    saveWithAStepMore();
    QVERIFY(read() != document);
    QCOMPARE(read(".damaged"), document);
    QCOMPARE(read(".bak"), read());
    QCOMPARE(read(".bak.good"), backup == "-" || isRestored ? QByteArray("missing") : backup);
}

PE_WIDGET_TEST("damaged_documents", DamagedDocumentsTest)
#include "damaged_documents_test.moc"
