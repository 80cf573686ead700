// The box that completes: when its list is there, what its keys do, and what a choice leaves.

#include "tests/support/test_program.h"
#include "tests/support/text.h"
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
    {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(edit);
        layout->addWidget(button);
        edit->setWords(words);
        show();
        activateWindow();
        edit->setFocus();
    }
    void type(const char* keys) { QTest::keyClicks(edit, text(keys)); }
    void press(Qt::Key key) { QTest::keyClick(edit, key); }
    QStringList listed() const
    {
        QStringList rows;
        for (int row = 0; row < list->count(); ++row)
            rows.append(list->item(row)->text());
        return list->isVisible() ? rows : QStringList();
    }
    QString current() const { return list->currentItem()->text(); }

    EntryValueTextEdit* edit = new EntryValueTextEdit;
    QPushButton* button = new QPushButton;
    SuggestionList* list = edit->findChild<SuggestionList*>();
    int escapes = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { escapes += event->key() == Qt::Key_Escape; }
};

const QStringList words = lines("[local]speed\n[local]rpm\n[sys]speed_max\n[sys]spare");

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
    void upAndDownWalkRound();
    void choice();
    void clickChooses();
    void keysWithoutAList();
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
    w->edit->setWords({text("[local]spe_new")});
    w->press(Qt::Key_Backspace);
    QCOMPARE(w->listed(), QStringList({text("[local]spe_new")}));
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
    QCOMPARE(w->edit->toPlainText(), text("spe"));
    w->press(Qt::Key_Down);
    w->press(Qt::Key_Return);
    QCOMPARE(w->edit->toPlainText(), words[0]);
}

void CompletionEditorTest::choice()
{
    QSignalSpy changed(w->edit, &QTextEdit::textChanged);
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab}) {
        w->edit->clear();
        w->type("1+spe");
        w->press(Qt::Key_Down);
        changed.clear();
        w->press(key);
        QCOMPARE(w->edit->toPlainText(), text("1+[sys]speed_max"));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!w->list->isVisible());
        QVERIFY(w->edit->hasFocus());
        w->edit->undo();
        QCOMPARE(w->edit->toPlainText(), text("1+spe"));
    }
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

void CompletionEditorTest::keysWithoutAList()
{
    w->type("spe");
    w->press(Qt::Key_Escape); // puts the list away first
    QVERIFY(!w->list->isVisible());
    QCOMPARE(w->escapes, 0);
    w->press(Qt::Key_Escape);
    QCOMPARE(w->escapes, 1);
    w->press(Qt::Key_Return);
    QCOMPARE(w->edit->toPlainText(), text("spe\n"));
    w->press(Qt::Key_Tab);
    QCOMPARE(w->edit->toPlainText(), text("spe\n"));
    QVERIFY(w->button->hasFocus());
}

void CompletionEditorTest::listGoes()
{
    const std::function<void()> ways[] = {
        [this] { w->press(Qt::Key_Left); }, [this] { w->press(Qt::Key_Space); },
        [this] { QTest::mouseClick(w->edit->viewport(), Qt::LeftButton, {}, QPoint(2, 2)); },
        [this] { QTest::keyClick(w->edit, Qt::Key_Backtab, Qt::ShiftModifier); },
        [this] { w->hide(); }};
    for (const auto& way : ways) {
        init();
        w->type("a spe");
        QVERIFY(w->list->isVisible());
        way();
        QVERIFY2(!w->list->isVisible(), qPrintable(QString::number(&way - ways)));
    }
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
