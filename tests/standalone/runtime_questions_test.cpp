// Questions of an applet as real dialogs: answered by a person, or gone with the run.

#include "standalone/host/AppletQuestions.h"
#include "tests/support/rows.h"
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
    void closedBeforeShown();

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

    QStringList m_answers;
    const AppletQuestions::Answer m_take = [this](AppletQuestions::Outcome outcome,
                                                  const QString& value) {
        m_answers << QString::number(outcome) + u' ' + value;
    };
};

void RuntimeQuestionsTest::answered()
{
    auto& questions = AppletQuestions::instance();
    whenShown<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    questions.ask({AppletQuestion::YesNo, QStringLiteral("t"), QStringLiteral("?"), QString()},
                  m_take);
    QTRY_COMPARE(m_answers, QStringList{QStringLiteral("1 ")});
    whenShown<QInputDialog>([](QInputDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(QStringLiteral("值"));
        dialog.accept();
    });
    questions.ask({AppletQuestion::Text, QStringLiteral("t"), QStringLiteral("?"), QString()},
                  m_take);
    QTRY_COMPARE(m_answers.size(), 2);
    QCOMPARE(m_answers.last(), QStringLiteral("1 值"));
}

/// What an applet says is shown as it is, and whatever it asks, the run can be stopped instead.
void RuntimeQuestionsTest::leftByTheWayOut()
{
    const rows::Table<int> table{{"yes or no", int(AppletQuestion::YesNo)},
                                 {"text", int(AppletQuestion::Text)},
                                 {"notice", int(AppletQuestion::Notice)}};
    for (const auto& [row, kind] : table) {
        const rows::Named named(row);
        m_answers.clear();
        const QString text = QStringLiteral("数组 a[<i>] <img src=\"x\">");
        bool isPlain = false;
        whenShown<QDialog>([&](QDialog& dialog) {
            for (const auto* label : dialog.findChildren<QLabel*>())
                isPlain =
                    isPlain || (label->text() == text && label->textFormat() == Qt::PlainText);
            for (auto* button : dialog.findChildren<QPushButton*>()) {
                if (button->text() == QStringLiteral("停止运行"))
                    return button->click();
            }
            dialog.reject();
        });
        AppletQuestions::instance().ask(
            {AppletQuestion::Kind(kind), QStringLiteral("t"), text, QStringLiteral("值")}, m_take);
        QTRY_COMPARE(m_answers.join(u'|'), QStringLiteral("2 "));
        QVERIFY(isPlain);
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void RuntimeQuestionsTest::closed()
{
    m_answers.clear();
    auto& questions = AppletQuestions::instance();
    const quint64 id = questions.ask(
        {AppletQuestion::YesNo, QStringLiteral("t"), QStringLiteral("?"), QString()}, m_take);
    bool wasShown = false;
    whenShown<QMessageBox>([&](QMessageBox&) {
        wasShown = true;
        questions.close(id);
        questions.close(id);
    });
    QTRY_VERIFY(wasShown && !QApplication::activeModalWidget());
    QCoreApplication::processEvents();
    QVERIFY(m_answers.isEmpty());
}

void RuntimeQuestionsTest::closedBeforeShown()
{
    m_answers.clear();
    auto& questions = AppletQuestions::instance();
    const quint64 id = questions.ask(
        {AppletQuestion::Notice, QStringLiteral("t"), QStringLiteral("?"), QString()}, m_take);
    questions.close(id);
    QCoreApplication::processEvents();
    QVERIFY(!QApplication::activeModalWidget() && m_answers.isEmpty());
}

PE_WIDGET_TEST("runtime_questions_test", RuntimeQuestionsTest)
#include "runtime_questions_test.moc"
