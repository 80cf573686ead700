// A document that is damaged, as its user meets it: what is said, what can be chosen, and that
// neither the document nor its backup is lost whatever is chosen.

#include "model/dialogs/user_dialogs.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/folders.h"
#include "tests/support/own_settings.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "workbench/MainWindow.h"

#include <QComboBox>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace processedit = sdk_ui_interface::processedit;

class DamagedDocumentsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { user_dialogs::setHandler({}); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void wholeOnesAskNothing();
    void choices_data();
    void choices();

private:
    QString path(const char* suffix = "") const
    {
        return m_folder->filePath(text("CApplet/ecu_check/processInfo.pedt") + text(suffix));
    }
    static QByteArray read(const QString& file)
    {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("missing");
    }
    static void write(const QString& file, const QByteArray& content)
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(content) == content.size());
    }
    static int steps()
    {
        int count = 0;
        for (const SequenceInfo& sequence :
             processedit::getAllSequenceByAppName(QStringLiteral("ecu_check")))
            count += int(processedit::getAllProcessBySequenceID(
                             QStringLiteral("ecu_check"), QString::fromStdString(sequence.id),
                             IProcessBlock::ProcessBlockBelong(0))
                             .size());
        return count;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_whole;
    QList<user_dialogs::Message> m_asked;
    QString m_choice; ///< the beginning of what is chosen
};

void DamagedDocumentsTest::initTestCase()
{
    test_support::useOwnSettings("damaged_documents");
}

void DamagedDocumentsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), m_folder->path()));
    m_whole = read(path());
    m_asked.clear();
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        m_asked << message;
        for (const QString& choice : message.choices) {
            if (choice.startsWith(m_choice))
                return user_dialogs::Answer{user_dialogs::Button::Ok, choice};
        }
        return user_dialogs::Answer();
    });
}

void DamagedDocumentsTest::wholeOnesAskNothing()
{
    MainWindow window;
    window.openProject(ProjectFolder(m_folder->path()));
    window.openApplet(text("ecu_check"));
    QVERIFY(m_asked.isEmpty() && window.editor());
}

void DamagedDocumentsTest::choices_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("backup"); // "-": none, "=": the whole document
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("said");
    const QByteArray cut =
        read(QStringLiteral(PE_EXAMPLE "/CApplet/ecu_check/processInfo.pedt")).left(12000);
    const QByteArray foreign =
        read(QStringLiteral(PE_EXAMPLE "/CApplet/ecu_check/processInfo.pedt"))
            .replace("retry", "\xff\xfetry");
    const char* const part = "打开可读取的部分";
    const char* const nothing = "不打开";
    const char* const fromBackup = "使用 ";
    const auto row = [](const char* name, const QByteArray& document, const char* backup,
                        const char* choice, const char* said) {
        QTest::newRow(name) << document << QByteArray(backup) << text(choice) << text(said);
    };
    row("cut, the part", cut, "=", part, "可以读取其中的 \\d 个序列、\\d+ 个步骤");
    row("cut, the backup", cut, "=", fromBackup, "行 \\d+ 列 \\d+");
    row("cut, left", cut, "=", nothing, "ecu_check");
    row("cut, closed", cut, "=", "no such button", "ecu_check");
    row("cut, without a backup", cut, "-", part, "个步骤");
    row("cut, the backup too", cut, "{\"logicview\":", part, "个步骤");
    row("empty, the backup", "", "=", fromBackup, "0 个序列、0 个步骤");
    row("empty, the part", "", "=", part, "0 个序列、0 个步骤");
    row("no document at all", "MZ\x90", "=", fromBackup, "0 个序列");
    row("no object", "[1, 2]", "=", fromBackup, "不是对象");
    row("not UTF-8", foreign, "=", part, "含有非UTF-8字符");
}

void DamagedDocumentsTest::choices()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, backup);
    QFETCH(QString, choice);
    QFETCH(QString, said);
    m_choice = choice;
    write(path(), document);
    if (backup == "=")
        backup = m_whole;
    if (backup != "-")
        write(path(".bak"), backup);
    MainWindow window;
    window.openProject(ProjectFolder(m_folder->path()));
    window.openApplet(text("ecu_check"));

    QCOMPARE(m_asked.size(), 1);
    QVERIFY2(m_asked.first().text.contains(QRegularExpression(said)),
             qPrintable(m_asked.first().text));
    QCOMPARE(m_asked.first().choices.size(), backup == m_whole ? 3 : 2);
    QCOMPARE(read(path(".damaged")), document);
    if (choice.startsWith(text("使用"))) {
        QVERIFY(window.editor() && steps() > 20);
        QCOMPARE(read(path()), m_whole);
    } else if (choice.startsWith(text("打开"))) {
        QVERIFY(window.editor() && window.isVisible() == false);
    } else {
        QVERIFY(!window.editor());
        QCOMPARE(window.findChild<QComboBox*>(text("appletBox"))->currentIndex(), -1);
        QCOMPARE(read(path()), document);
        return;
    }

    // Twice: the second save would replace what the first has made the backup.
    for (int save = 0; save < 2; ++save) {
        processedit::createProcess(text("ecu_check"), window.editor()->getCurrentShowSequenceId(),
                                   text("1"), BasicStep, step_type::Statement, -1);
        window.editor()->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Save);
    }
    QVERIFY(read(path()) != document);
    QCOMPARE(read(path(".damaged")), document);
    QCOMPARE(read(path(".bak")), read(path()));
    const bool isRestored = choice.startsWith(text("使用"));
    const QByteArray kept = backup == "-" || isRestored ? QByteArray("missing") : backup;
    QCOMPARE(read(path(".bak.good")), kept);
}

PE_WIDGET_TEST("damaged_documents", DamagedDocumentsTest)
#include "damaged_documents_test.moc"
