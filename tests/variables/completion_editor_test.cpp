// The box that completes: when its list is there, what its keys do, and what a choice leaves.

#include "tests/support/test_program.h"
#include "variables/EntryValueTextEdit.h"
#include "variables/SuggestionList.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace {

/// A window with the box and a button, and what reaches the window of the keys.
class Window : public QWidget
{
public:
    explicit Window(const QStringList& words)
        : edit(new EntryValueTextEdit), button(new QPushButton),
          list(edit->findChild<SuggestionList*>())
    {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(edit);
        layout->addWidget(button);
        edit->setWords(words);
        show();
        activateWindow();
        edit->setFocus();
    }
    void type(const char* text) { QTest::keyClicks(edit, QString::fromUtf8(text)); }
    void press(Qt::Key key) { QTest::keyClick(edit, key); }
    QStringList listed() const
    {
        QStringList rows;
        for (int row = 0; row < list->count(); ++row)
            rows.append(list->item(row)->text());
        return list->isVisible() ? rows : QStringList();
    }
    QString current() const { return list->currentItem()->text(); }

    EntryValueTextEdit* edit;
    QPushButton* button;
    SuggestionList* list;
    int escapes = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { escapes += event->key() == Qt::Key_Escape; }
};

const QStringList words = {QStringLiteral("[local]speed"), QStringLiteral("[local]rpm"),
                           QStringLiteral("[sys]speed_max"), QStringLiteral("[sys]spare")};

} // namespace

class CompletionEditorTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        w.reset();
        w = std::make_unique<Window>(words);
        QTRY_VERIFY(w->edit->hasFocus());
    }
    void cleanup() { w.reset(); }
    void listFollowsTheTyping();
    void wordAmongOthers();
    void upAndDownWalkRound();
    void choice_data();
    void choice();
    void clickChooses();
    void escapePutsTheListAwayFirst();
    void keysWithoutAList();
    void listGoes_data();
    void listGoes();
    void sizeAndPlace();

private:
    std::unique_ptr<Window> w;
};

void CompletionEditorTest::listFollowsTheTyping()
{
    QVERIFY(!w->list->isVisible());
    w->type("s");
    QCOMPARE(w->listed(), QStringList({words[0], words[2], words[3]}));
    QVERIFY(w->list->isWindow() && w->edit->hasFocus());
    w->type("pa");
    QCOMPARE(w->listed(), QStringList({words[3]}));
    w->press(Qt::Key_Backspace);
    QCOMPARE(w->listed(), QStringList({words[0], words[2], words[3]}));
    w->type("x");
    QVERIFY(!w->list->isVisible());
    w->press(Qt::Key_Backspace);
    w->press(Qt::Key_Down);
    w->type("e");
    QCOMPARE(w->listed(), QStringList({words[0], words[2]}));
    QCOMPARE(w->current(), words[0]); // from the top again
    w->edit->setWords({QStringLiteral("[local]spe_new")});
    w->press(Qt::Key_Backspace);
    QCOMPARE(w->listed(), QStringList({QStringLiteral("[local]spe_new")}));
}

void CompletionEditorTest::wordAmongOthers()
{
    w->type("rpm + [lo");
    QCOMPARE(w->listed(), QStringList({words[0], words[1]}));
    w->press(Qt::Key_Return);
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("rpm + [[local]speed"));
}

void CompletionEditorTest::upAndDownWalkRound()
{
    w->type("spe");
    w->press(Qt::Key_Up);
    QCOMPARE(w->current(), words[2]);
    w->press(Qt::Key_Down);
    QCOMPARE(w->current(), words[0]);
    w->press(Qt::Key_Down);
    QCOMPARE(w->current(), words[2]);
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("spe"));
}

void CompletionEditorTest::choice_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Tab") << int(Qt::Key_Tab);
}

void CompletionEditorTest::choice()
{
    QFETCH(int, key);
    QSignalSpy changed(w->edit, &QTextEdit::textChanged);
    w->type("1+spe");
    w->press(Qt::Key_Down);
    changed.clear();
    w->press(Qt::Key(key));
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("1+[sys]speed_max"));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!w->list->isVisible());
    QVERIFY(w->edit->hasFocus());
    w->edit->undo();
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("1+spe"));
}

void CompletionEditorTest::clickChooses()
{
    w->type("spe");
    const QRect row = w->list->visualItemRect(w->list->item(1));
    QTest::mouseClick(w->list->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(w->edit->toPlainText(), words[2]);
    QVERIFY(!w->list->isVisible());
    w->edit->applySuggestion(nullptr);
    QCOMPARE(w->edit->toPlainText(), words[2]);
}

void CompletionEditorTest::escapePutsTheListAwayFirst()
{
    w->type("spe");
    w->press(Qt::Key_Escape);
    QVERIFY(!w->list->isVisible());
    QCOMPARE(w->escapes, 0);
    w->press(Qt::Key_Escape);
    QCOMPARE(w->escapes, 1);
}

void CompletionEditorTest::keysWithoutAList()
{
    w->type("spe");
    w->press(Qt::Key_Escape);
    w->press(Qt::Key_Return);
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("spe\n"));
    w->press(Qt::Key_Tab);
    QCOMPARE(w->edit->toPlainText(), QStringLiteral("spe\n"));
    QVERIFY(w->button->hasFocus());
}

void CompletionEditorTest::listGoes_data()
{
    QTest::addColumn<QString>("how");
    for (const char* how : {"cursor", "click", "backtab", "hide", "space"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

void CompletionEditorTest::listGoes()
{
    QFETCH(QString, how);
    w->type("a spe");
    QVERIFY(w->list->isVisible());
    if (how == QLatin1String("cursor"))
        w->press(Qt::Key_Left);
    else if (how == QLatin1String("click"))
        QTest::mouseClick(w->edit->viewport(), Qt::LeftButton, {}, QPoint(2, 2));
    else if (how == QLatin1String("backtab"))
        QTest::keyClick(w->edit, Qt::Key_Backtab, Qt::ShiftModifier);
    else if (how == QLatin1String("hide"))
        w->hide();
    else
        w->press(Qt::Key_Space);
    QVERIFY(!w->list->isVisible());
}

void CompletionEditorTest::sizeAndPlace()
{
    w->type("spe");
    const int rowHeight = w->list->sizeHintForRow(0);
    QCOMPARE(w->list->size(), QSize(250, 2 * rowHeight + 5));
    const QRect cursor = w->edit->cursorRect();
    const QPoint corner = w->edit->viewport()->mapToGlobal(cursor.topLeft());
    QCOMPARE(w->list->pos(), corner + QPoint(0, cursor.height()));

    QStringList many;
    for (int i = 0; i < 100; ++i)
        many.append(QStringLiteral("word_%1").arg(i));
    w->edit->setWords(many);
    w->edit->clear();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    w->resize(300, 100);
    w->move(screen.bottomRight() - QPoint(w->width(), w->height()));
    QCoreApplication::processEvents(); // the window has its new size and place
    w->type("word");
    QCOMPARE(w->list->size(), QSize(250, 150));
    const int top = w->edit->viewport()->mapToGlobal(w->edit->cursorRect().topLeft()).y();
    QCOMPARE(w->list->pos(), QPoint(screen.right() - 249, top - 150));
    w->press(Qt::Key_Up);
    QCOMPARE(w->current(), many.last());
    QVERIFY(w->list->viewport()->rect().contains(w->list->visualItemRect(w->list->currentItem())));
}

PE_WIDGET_TEST("completion_editor", CompletionEditorTest)
#include "completion_editor_test.moc"
