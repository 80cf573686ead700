#include "tests/fuzz/documents.h"
#include "tests/support/test_program.h"

#include "base/document_text.h"

#include <QJsonDocument>
#include <QtTest>

/// Documents by the thousand, whole and damaged: no crash, no loss, and what was read once is read
/// and written the same ever after. The seeds are fixed; document_fuzz goes on with others.
class DocumentsMutated : public QObject
{
    Q_OBJECT
private slots:
    void wholeDocumentsComeBackByteForByte()
    {
        for (std::uint32_t seed = 0; seed < 500; ++seed) {
            const QByteArray text = documents::whole(seed);
            const QString fault = documents::faultOf(text);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
            // The generator writes through the model; the bare library must agree on every byte.
            QCOMPARE(QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact), text);
            const auto parts = document_text::split({text.constData(), std::size_t(text.size())});
            std::string joined;
            QVERIFY(document_text::join(parts.members, joined));
            QCOMPARE(QByteArray::fromStdString(joined), QJsonDocument::fromJson(text).toJson());
            QVERIFY(document_text::split(joined).members == parts.members);
        }
    }

    void damagedDocumentsAreReadAsFarAsTheyGo()
    {
        for (std::uint32_t seed = 0; seed < 10000; ++seed) {
            const QString fault = documents::faultOf(documents::damaged(seed));
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: ").arg(seed) + fault));
        }
    }
};

PE_TEST("documents_mutated", DocumentsMutated)
#include "documents_mutated.moc"
