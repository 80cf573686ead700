// Questions of an applet as real dialogs: answered by a person, or gone with the run.

#include "standalone/host/AppletQuestions.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

using standalone::AppletQuestion;
using standalone::AppletQuestions;

class RuntimeQuestionsTest : public QObject
{
    Q_OBJECT

private slots:
    void answered();
    void leftByTheWayOut();
    void closed();

private:
    /// Does something as soon as a dialog is there.
    template <class Dialog> void whenShown(std::function<void(Dialog&)> action)
    {
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, timer, [timer, action] {
            if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
                timer->deleteLater();
                action(*dialog);
            }
        });
        timer->start(5);
    }

    quint64 ask(AppletQuestion::Kind kind, const QString& question = text("?"))
    {
        const auto take = [this](AppletQuestions::Outcome outcome, const QString& value) {
            m_answers << QString::number(outcome) + u' ' + value;
        };
        return AppletQuestions::instance().ask({kind, text("t"), question, text("值")}, take);
    }

    QStringList m_answers;
};

void RuntimeQuestionsTest::answered()
{
    whenShown<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    ask(AppletQuestion::YesNo);
    QTRY_COMPARE(m_answers.join(u'|'), text("1 "));

    whenShown<QInputDialog>([](QInputDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(text("值"));
        dialog.accept();
    });
    ask(AppletQuestion::Text);
    QTRY_COMPARE(m_answers.join(u'|'), text("1 |1 值"));
}

/// What an applet says is shown as it is, and whatever it asks, the run can be stopped instead.
void RuntimeQuestionsTest::leftByTheWayOut()
{
    for (const auto kind : {AppletQuestion::YesNo, AppletQuestion::Text, AppletQuestion::Notice}) {
        m_answers.clear();
        const QString asked = text("数组 a[<i>] <img src=\"x\">");
        bool isPlain = false;
        whenShown<QDialog>([&](QDialog& dialog) {
            for (const auto* label : dialog.findChildren<QLabel*>())
                isPlain =
                    isPlain || (label->text() == asked && label->textFormat() == Qt::PlainText);
            for (auto* button : dialog.findChildren<QPushButton*>()) {
                if (button->text() == text("停止运行"))
                    return button->click();
            }
            dialog.reject();
        });
        ask(kind, asked);
        QTRY_COMPARE(m_answers.join(u'|'), text("2 "));
        QVERIFY(isPlain);
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void RuntimeQuestionsTest::closed()
{
    m_answers.clear();
    auto& questions = AppletQuestions::instance();
    const quint64 id = ask(AppletQuestion::YesNo);
    bool wasShown = false;
    whenShown<QMessageBox>([&](QMessageBox&) {
        wasShown = true;
        questions.close(id);
        questions.close(id);
    });
    QTRY_VERIFY(wasShown && !QApplication::activeModalWidget());
    questions.close(ask(AppletQuestion::Notice)); // before it is shown
    QCoreApplication::processEvents();
    QVERIFY(!QApplication::activeModalWidget() && m_answers.isEmpty());
}

PE_WIDGET_TEST("runtime_questions_test", RuntimeQuestionsTest)
#include "runtime_questions_test.moc"
