#include "tests/fuzz/records.h"
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
            const QByteArray stream = records::whole(seed);
            QVERIFY2(records::isWhole(stream), qPrintable(QString::number(seed)));
            const QString fault = records::faultOf(stream);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
        }
    }

    void damagedStreamsEndAtTheirFault()
    {
        int whole = 0;
        constexpr int Count = 10000;
        for (std::uint32_t seed = 0; seed < Count; ++seed) {
            const QByteArray damaged = records::damaged(seed);
            const QString fault = records::faultOf(damaged);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
            whole += records::isWhole(damaged);
            QCoreApplication::sendPostedEvents(); // questions that nobody has seen
        }
        // Most faults show, and some damage is as good a text as any.
        QVERIFY2(whole > Count / 100 && whole < Count / 2, qPrintable(QString::number(whole)));
    }
};

PE_TEST("records_mutated", RecordsMutated)
#include "records_mutated.moc"
