#include "tests/fuzz/record_check.h"
#include "tests/fuzz/record_generator.h"
#include "tests/support/test_program.h"

#include <QtTest>

/// What children say by the thousand, as it should be and damaged. The seeds are fixed;
/// records_fuzz goes on with others.
class RecordsMutated : public QObject
{
    Q_OBJECT
private slots:
    void wholeStreamsAreTaken()
    {
        for (std::uint32_t seed = 0; seed < 500; ++seed) {
            record_generator::Random random(seed);
            const QByteArray stream = record_generator::stream(random);
            QVERIFY2(record_check::isWhole(stream), qPrintable(QString::number(seed)));
            const QString fault = record_check::faultOf(stream);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
        }
    }

    void damagedStreamsEndAtTheirFault()
    {
        int whole = 0;
        constexpr int Count = 10000;
        for (std::uint32_t seed = 0; seed < Count; ++seed) {
            record_generator::Random random(seed);
            const QByteArray stream = record_generator::stream(random);
            const QByteArray damaged = record_generator::damaged(stream, random);
            const QString fault = record_check::faultOf(damaged);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
            whole += record_check::isWhole(damaged);
            QCoreApplication::sendPostedEvents(); // questions that nobody has seen
        }
        // Most faults show, and some damage is as good a text as any.
        QVERIFY2(whole > Count / 100 && whole < Count / 2, qPrintable(QString::number(whole)));
    }
};

PE_TEST("records_mutated", RecordsMutated)
#include "records_mutated.moc"
