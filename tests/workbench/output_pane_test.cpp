#include "tests/workbench/WorkbenchFixture.h"

#include "logic/LogicView.h"
#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"
#include "workbench/OutputPane.h"

#include <QDesktopServices>
#include <QLabel>
#include <QScrollBar>
#include <QTextBlock>
#include <QTreeView>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

/// Errors of a compile as the user meets them: lines in the output, and the way back to the steps.
class OutputPaneTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void errorsLeadToTheirSteps();
    void causeIsInSight();
    void linesKeepTheirOwnLook();
    void firstLinesLeadToTheRecord();
    void recordOfARunIsOpened();

public:
    Q_INVOKABLE void keepUrl(const QUrl& url) { m_opened << url; }

private:
    static void setCode(const char* app, const char* sequence, const char* step, const char* code);

    QList<QUrl> m_opened; ///< by the desktop
};

void OutputPaneTest::setCode(const char* app, const char* sequence, const char* step,
                             const char* code)
{
    const auto block = std::dynamic_pointer_cast<StatementProcessBlock>(
        processedit::getProcess(text(app), text(step)));
    QVERIFY(block);
    block->setCustomCode(code);
    processedit::updateProcess(text(app), text(sequence), block);
}

void OutputPaneTest::errorsLeadToTheirSteps()
{
    const char* identity = "3c918c23-f0ae-4069-98f8-309fc57353bd";
    const char* answered = "3aa0b717-6e3c-4922-8bf9-ed99e1b50530"; // three rows deep
    const char* calibration = "c9a1b9c6-f144-4e76-9caa-4e4cb25356a1";
    const char* checksum = "714a2d60-e024-4236-a07b-e97dbad85926";
    openWindow("ecu_check");
    setCode("ecu_check", identity, answered, "int n = 1;\nqzqzq(n);");
    setCode("ecu_check", calibration, checksum, "if (qz2) {\n}\n");
    QSignalSpy finished(m_window.get(), &MainWindow::attemptFinished);
    m_person->pressTool("compileBtn");
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, Patience);
    QCOMPARE(finished[0][0].toBool(), false);
    QCOMPARE(activity()->text(), text("编译失败"));

    const QStringList lines = output()->toPlainText().split(u'\n');
    const int at = lines.indexOf(QRegularExpression(
        text("\\d\\d:\\d\\d:\\d\\d  出错步骤: 序列“read_identity”, 步骤“收到应答”, 语句第 2 行: "
             "‘qzqzq’ was not declared in this scope")));
    QVERIFY2(at >= 0, qPrintable(lines.join(u'\n')));
    QVERIFY(lines[at + 1].startsWith(
        text("出错步骤: 序列“check_calibration”, 步骤“计算校验和”, 语句第 1 行: ‘qz2’")));

    auto* view = m_window->editor()->findChild<LogicView*>();
    const auto isLedTo = [&](int line, const char* sequence, const char* step) {
        Person::doubleClickLine(output(), line);
        const QTreeView* tree = m_person->steps();
        const QModelIndex row = tree->currentIndex();
        return view->currentSequenceId() == text(sequence) && view->currentStepId() == text(step) &&
               tree->viewport()->rect().contains(tree->visualRect(row).center());
    };
    QVERIFY(isLedTo(at, identity, answered));
    QVERIFY(isLedTo(at + 1, calibration, checksum));
    // The compiler's own lines lead nowhere.
    QVERIFY(isLedTo(at + 2, calibration, checksum));
    // A step that went in the meantime is no harm.
    processedit::removeProcess(text("ecu_check"), text(identity), text(answered));
    view->addNewModelSlot(text(identity));
    Person::doubleClickLine(output(), at);
    QCOMPARE(view->currentSequenceId(), text(identity));
}

// Of a crash and of a failed compile: what explains the cause is folded, and nothing of it is lost.
void OutputPaneTest::causeIsInSight()
{
    OutputPane pane(text("nothing"));
    pane.resize(500, 160);
    pane.show();
    const auto shown = [&pane] {
        QStringList lines;
        for (QTextBlock block = pane.document()->begin(); block.isValid(); block = block.next()) {
            if (block.isVisible())
                lines << block.text().remove(QRegularExpression(text("^[\\d:]+  ")));
        }
        return lines;
    };
    const auto isInSight = [&pane](const char* words) {
        QTextCursor end(pane.document());
        end.movePosition(QTextCursor::End);
        const QTextCursor cursor =
            pane.document()->find(text(words), end, QTextDocument::FindBackward);
        return !cursor.isNull() && cursor.block().isVisible() &&
               pane.viewport()->rect().contains(pane.cursorRect(cursor).center());
    };
    const QStringList lines =
        text("信号中断|正在执行: c|此前执行的步骤 (由近及远):|  b|  a|运行崩溃").split(u'|');
    for (int i = 0; i < 20; ++i)
        pane.append(text("earlier"), false);
    pane.append(lines.mid(0, 5).join(u'\n'), false);
    pane.append(lines[5], true);
    QCOMPARE(shown().mid(20), (QStringList{lines[0], lines[1], text("▸ ") + lines[2], lines[5]}));
    QVERIFY(isInSight("信号中断"));
    QVERIFY(pane.toPlainText().contains(text("\n  a\n")));

    // A click opens the details and closes them again.
    const auto click = [&pane](const char* words) {
        const QTextCursor cursor = pane.document()->find(
            text(words), QTextCursor(pane.document()->lastBlock()), QTextDocument::FindBackward);
        const QPoint spot = pane.cursorRect(cursor).center() - QPoint(4, 0);
        QTest::mouseClick(pane.viewport(), Qt::LeftButton, {}, spot);
    };
    click("此前执行");
    QCOMPARE(shown().mid(22, 3), (QStringList{text("▾ ") + lines[2], lines[3], lines[4]}));
    click("此前执行");
    QCOMPARE(shown().size(), 24);

    // A long error begins at its top, however far up one has read.
    QString words;
    for (int i = 0; i < 40; ++i)
        words += text("a.cpp:%1: error: words\n").arg(i);
    pane.verticalScrollBar()->setValue(0);
    pane.append(text("第一处 [s/1]\n第二处 [s/2]\n") + words +
                    text("\n编译用时1.5秒\nmain编译失败\n"),
                true);
    QCOMPARE(shown().mid(24).join(u'|'),
             text("第一处|第二处|▸ 编译器的原文 (41 行):|编译用时1.5秒|main编译失败"));
    QVERIFY(isInSight("第一处") && isInSight("编译失败"));
    pane.append(words, true); // without places nothing can stand for it
    QVERIFY(isInSight("a.cpp:0:") && !isInSight("a.cpp:39:"));
    // What comes then doesn't take the reader away, until the next run begins.
    pane.append(text("later"), false);
    QVERIFY(!isInSight("later"));
    pane.followEnd();
    QVERIFY(isInSight("later"));
    pane.append(text("the next"), false);
    QVERIFY(isInSight("the next"));
}

void OutputPaneTest::linesKeepTheirOwnLook()
{
    OutputPane pane(text("nothing"));
    pane.append(text("wrong [s/1]"), true);
    pane.setTextCursor(QTextCursor(pane.document()->lastBlock())); // as a click leaves it
    pane.append(text("  fine  <b>&amp;"), false);
    pane.append(text("still used [s/2]"), false);
    const auto format = [&pane](int line) {
        QTextCursor cursor(pane.document()->findBlockByNumber(line));
        cursor.movePosition(QTextCursor::EndOfBlock);
        return cursor.charFormat();
    };
    QVERIFY(format(0).fontUnderline() && format(0).foreground().color().red() > 150);
    QVERIFY(!format(1).fontUnderline() && !format(1).hasProperty(QTextFormat::ForegroundBrush));
    QVERIFY(format(2).fontUnderline() && !format(2).hasProperty(QTextFormat::ForegroundBrush));
    QVERIFY(pane.toPlainText().contains(text("    fine  <b>&amp;\n")));
}

void OutputPaneTest::firstLinesLeadToTheRecord()
{
    OutputPane pane(text("nothing"));
    pane.resize(500, 160);
    pane.show();
    QSignalSpy files(&pane, &OutputPane::recordActivated);
    QSignalSpy steps(&pane, &OutputPane::stepActivated);
    int said = 0;
    const auto say = [&pane, &said](int lines, const char* record) {
        for (int line = 0; line < lines; ++line)
            pane.append(text("line %1 [s/1]").arg(said++), false, text(record));
    };
    const auto first = [&pane] { return pane.document()->firstBlock().text(); };
    const auto number = [&pane](int line) {
        return pane.document()->findBlockByNumber(line).text().section(u' ', -1).toInt();
    };
    say(20000, "/a.log");
    QVERIFY(first().endsWith(text("line 0")));
    // Nobody who reads is taken away from his line.
    pane.verticalScrollBar()->setValue(10000);
    say(2000, "/a.log");
    const int gone = said - (pane.blockCount() - 1);
    QVERIFY(gone >= 1000 && pane.blockCount() >= 20000);
    QCOMPARE(first(), text("… %1 行已省略, 完整日志: /a.log").arg(gone));
    QCOMPARE(number(1), gone);
    QCOMPARE(number(pane.verticalScrollBar()->value()), 10000);
    Person::doubleClickLine(&pane, 0);
    QCOMPARE(files, QList<QList<QVariant>>({{text("/a.log")}}));
    Person::doubleClickLine(&pane, 1); // the others lead where they led
    QCOMPARE(steps.count(), 1);
    QCOMPARE(files.count(), 1);

    // Of another run, whose record could not be written.
    pane.followEnd();
    const int before = said;
    say(25000, "");
    const int goneOfIt = said - (pane.blockCount() - 1) - before;
    QVERIFY(goneOfIt > 0);
    QCOMPARE(first(), text("… %1 行已省略").arg(goneOfIt));
    QCOMPARE(number(1), before + goneOfIt);
    QCOMPARE(pane.verticalScrollBar()->value(), pane.verticalScrollBar()->maximum());
    Person::doubleClickLine(&pane, 0);
    QCOMPARE(files.count(), 1);
}

void OutputPaneTest::recordOfARunIsOpened()
{
    openWindow("crash");
    setCode("crash", "77aa0ff8-0394-4df2-91eb-46f913f6dfee", "e71618b8-b41b-448e-8488-fff4af7d5cc2",
            "for (int i = 0; i < 25000; ++i) log_info(\"line %d\", i);");
    QSignalSpy ended(m_window->editor(), &ProcessEditWidget::sigRunFinish);
    m_person->pressRunMain();
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, Patience);

    const QString said = output()->document()->firstBlock().text();
    const QString record = said.section(text(", 完整日志: "), 1);
    QVERIFY2(record.startsWith(path("CApplet/crash_log/")), qPrintable(said));
    const QByteArray content = test_support::content(record);
    for (int line = 0, at = 0; line < 25000; ++line) {
        at = content.indexOf("line " + QByteArray::number(line) + '\n', at);
        QVERIFY2(at >= 0, qPrintable(QString::number(line)));
    }
    QDesktopServices::setUrlHandler(text("file"), this, "keepUrl");
    Person::doubleClickLine(output(), 0);
    QCOMPARE(m_opened, QList<QUrl>({QUrl::fromLocalFile(record)}));
    QVERIFY(QFile::remove(record));
    Person::doubleClickLine(output(), 0);
    QDesktopServices::unsetUrlHandler(text("file"));
    QCOMPARE(m_opened.size(), 1);
    QVERIFY(status().contains(record));
}

PE_WIDGET_TEST("output_pane_test", OutputPaneTest)
#include "output_pane_test.moc"
