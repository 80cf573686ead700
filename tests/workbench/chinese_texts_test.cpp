// What the toolkit says is Chinese, with and without Qt's own catalogue on the machine.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "workbench/chinese_texts.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTranslator>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

template <class Field> QStringList menuTexts(Field& field)
{
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts << action->text();
    return texts;
}

QStringList textsOf(const QWidget& dialog)
{
    QStringList texts;
    for (const auto* button : dialog.findChildren<QAbstractButton*>())
        texts << button->text() << button->toolTip();
    for (const auto* label : dialog.findChildren<QLabel*>())
        texts << label->text();
    for (const auto* action : dialog.findChildren<QAction*>())
        texts << action->text();
    for (const auto* tree : dialog.findChildren<QTreeView*>()) {
        for (int column = 0; column < tree->header()->count(); ++column)
            texts << tree->model()->headerData(column, Qt::Horizontal).toString();
    }
    return texts;
}

} // namespace

class ChineseTextsTest : public QObject
{
    Q_OBJECT
private slots:
    void toolkitSpeaksChinese();
};

void ChineseTextsTest::toolkitSpeaksChinese()
{
    const rows::Table<QString> table{
        {"Qt's catalogue", QLibraryInfo::location(QLibraryInfo::TranslationsPath)},
        {"no catalogue", text("/nowhere")}};
    for (const auto& [row, catalogues] : table) {
        const rows::Named named(row);
        // Each row speaks for itself: what the one before has installed goes.
        for (auto* translator : qApp->findChildren<QTranslator*>())
            delete translator;
        chinese_texts::install(catalogues);

        QStringList texts;
        QDialogButtonBox buttons;
        for (int bit = QDialogButtonBox::FirstButton; bit <= QDialogButtonBox::LastButton;
             bit *= 2) {
            if (auto* button = buttons.addButton(QDialogButtonBox::StandardButton(bit)))
                texts << button->text();
        }
        QVERIFY(texts.size() >= 18);
        QLineEdit line;
        QPlainTextEdit page;
        texts << menuTexts(line) << menuTexts(page);
        QMessageBox box(QMessageBox::Warning, QString(), QString(), QMessageBox::Ok);
        box.setDetailedText(text("一"));
        QInputDialog input;
        input.setLabelText(text("一"));
        input.setOkButtonText(input.okButtonText());
        texts << textsOf(box) << textsOf(input);
        QFileDialog files;
        files.setOption(QFileDialog::DontUseNativeDialog);
        files.setNameFilter(QString());
        texts << textsOf(files);
        QVERIFY(texts.size() > 60);

        // Mnemonics and keys stay in Latin letters.
        const QRegularExpression keys(text("\\(&.\\)|\t.*$"));
        for (QString said : qAsConst(texts)) {
            said.remove(keys);
            QVERIFY2(!said.contains(QRegularExpression(text("[A-Za-z]"))), qPrintable(said));
        }
    }
}

PE_WIDGET_TEST("chinese_texts", ChineseTextsTest)
#include "chinese_texts_test.moc"
