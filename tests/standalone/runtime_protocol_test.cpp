#include "protocol/protocol_reader.h"
#include "standalone/runtime/LineSplitter.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <cmath>
#include <limits>
#include <random>

namespace {

using Bytes = std::vector<unsigned char>;
using protocol::Channel;

/// Writes every record that arrives down as a line of text.
class Recorder : public protocol::Receiver
{
public:
    void onBlock(const std::string& sequence, const std::string& block, double progress,
                 int result) override
    {
        lines << QStringLiteral("block %1 %2 %3 %4")
                     .arg(QString::fromStdString(sequence), QString::fromStdString(block))
                     .arg(progress)
                     .arg(result);
    }
    void onSequence(const std::string& sequence, bool isEnd) override
    {
        lines << QStringLiteral("sequence %1 %2").arg(QString::fromStdString(sequence)).arg(isEnd);
    }
    void onTemplateSequence(const std::string& templateId, const std::string& sequence,
                            bool isEnd) override
    {
        lines << QStringLiteral("template %1 %2 %3")
                     .arg(QString::fromStdString(templateId), QString::fromStdString(sequence))
                     .arg(isEnd);
    }
    void onLog(int level, const std::string& text) override
    {
        lines << QStringLiteral("log %1 %2").arg(level).arg(QString::fromStdString(text));
    }
    void onEnd(protocol::EndReason reason) override
    {
        lines << QStringLiteral("end %1").arg(reason);
    }
    void onStart(const std::string& id) override
    {
        lines << QStringLiteral("start %1").arg(QString::fromStdString(id));
    }
    void onStop() override { lines << QStringLiteral("stop"); }
    void onRequest(std::uint32_t id, protocol::RequestKind kind,
                   const protocol::Texts& texts) override
    {
        QString line = QStringLiteral("request %1 %2").arg(id).arg(int(kind));
        for (const std::string& text : texts)
            line += u' ' + QString::fromStdString(text);
        lines << line;
    }
    void onAnswer(std::uint32_t id, int status, const std::string& text) override
    {
        lines << QStringLiteral("answer %1 %2 %3")
                     .arg(id)
                     .arg(status)
                     .arg(QString::fromStdString(text));
    }

    QStringList lines;
};

class Stream
{
public:
    template <typename Put, typename... Arguments> Stream& add(Put put, Arguments... arguments)
    {
        unsigned char record[protocol::MaxRecord];
        const std::size_t size = put(record, arguments...);
        bytes.insert(bytes.end(), record, record + size);
        return *this;
    }
    Stream& text(std::uint32_t index, const std::string& value)
    {
        return add(protocol::putText, index, value.data(), value.size());
    }
    Bytes bytes;
};

Bytes everyRecord()
{
    const std::string line = "电压 13.8";
    const std::string id = "{0a1b}";
    return Stream()
        .text(0, "seq")
        .text(1, "block")
        .text(2, "")
        .add(protocol::putBlock, 0u, 1u, 0.0, 0)
        .add(protocol::putBlock, 0u, 1u, 0.0, -1)
        .add(protocol::putBlock, 0u, 1u, 33.25, std::numeric_limits<int>::min())
        .add(protocol::putBlock, 0u, 2u, 100.0, std::numeric_limits<int>::max())
        .add(protocol::putSequence, 0u, false)
        .add(protocol::putSequence, 0u, true)
        .add(protocol::putTemplateSequence, 1u, 0u, false)
        .add(protocol::putTemplateSequence, 1u, 0u, true)
        .add(protocol::putLog, 3, line.data(), line.size(), std::size_t(0))
        .add(protocol::putRequest, 300u, protocol::AskText, protocol::Texts{line, "", id})
        .add(protocol::putEnd, protocol::Stopped)
        .bytes;
}

Bytes everyCommand()
{
    const std::string text = "电压 13.8";
    const std::string id = "{0a1b}";
    return Stream()
        .add(protocol::putStart, id.data(), id.size())
        .add(protocol::putStop)
        .add(protocol::putAnswer, 300u, -1, text.data(), text.size())
        .bytes;
}

const QStringList everyRecordLines = {QStringLiteral("block seq block 0 0"),
                                      QStringLiteral("block seq block 0 -1"),
                                      QStringLiteral("block seq block 33.25 -2147483648"),
                                      QStringLiteral("block seq  100 2147483647"),
                                      QStringLiteral("sequence seq 0"),
                                      QStringLiteral("sequence seq 1"),
                                      QStringLiteral("template block seq 0"),
                                      QStringLiteral("template block seq 1"),
                                      QStringLiteral("log 3 电压 13.8"),
                                      QStringLiteral("request 300 4 电压 13.8  {0a1b}"),
                                      QStringLiteral("end 2")};
const QStringList everyCommandLines = {QStringLiteral("start {0a1b}"), QStringLiteral("stop"),
                                       QStringLiteral("answer 300 -1 电压 13.8")};

} // namespace

class RuntimeProtocolTest : public QObject
{
    Q_OBJECT

private slots:
    void recordsSurviveEverySplit_data()
    {
        QTest::addColumn<bool>("isReport");
        QTest::newRow("reports") << true;
        QTest::newRow("commands") << false;
    }
    void recordsSurviveEverySplit()
    {
        QFETCH(bool, isReport);
        const Bytes bytes = isReport ? everyRecord() : everyCommand();
        const QStringList& lines = isReport ? everyRecordLines : everyCommandLines;
        const Channel channel = isReport ? Channel::Reports : Channel::Commands;
        for (std::size_t split = 0; split <= bytes.size(); ++split) {
            Recorder recorder;
            protocol::Reader reader(recorder, channel);
            QVERIFY(reader.feed(bytes.data(), split));
            QVERIFY(reader.feed(bytes.data() + split, bytes.size() - split));
            QCOMPARE(recorder.lines, lines);
            QVERIFY(reader.isComplete());
        }
        Recorder recorder;
        protocol::Reader reader(recorder, channel);
        for (const unsigned char byte : bytes)
            QVERIFY(reader.feed(&byte, 1));
        QCOMPARE(recorder.lines, lines);
        // The other way it is no record at all.
        protocol::Reader other(recorder, isReport ? Channel::Commands : Channel::Reports);
        QVERIFY(!other.feed(bytes.data(), bytes.size()) && other.fault());
        QCOMPARE(recorder.lines, lines);
    }

    /// What a receiver refuses is the last that it gets.
    void refusedRecord()
    {
        class Refusing : public Recorder
        {
        public:
            void onSequence(const std::string&, bool) override { reader.refuse("no"); }
            protocol::Reader reader{*this, Channel::Reports};
        };
        Refusing refusing;
        const Bytes bytes = everyRecord();
        QVERIFY(!refusing.reader.feed(bytes.data(), bytes.size()));
        QCOMPARE(refusing.lines, everyRecordLines.mid(0, 4));
        QCOMPARE(refusing.reader.fault(), "no");
    }

    void cutOffStreamIsNoticed()
    {
        const Bytes bytes = everyRecord();
        Recorder recorder;
        protocol::Reader reader(recorder, Channel::Reports);
        QVERIFY(reader.feed(bytes.data(), bytes.size() - 1));
        QVERIFY(!reader.isCorrupt());
        QVERIFY(!reader.isComplete());
    }

    void corruptStream_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty record") << QByteArray("\x00", 1);
        QTest::newRow("unknown type") << QByteArray("\x01\x7f", 2);
        QTest::newRow("oversize") << QByteArray("\xff\x7f", 2);
        QTest::newRow("length without end") << QByteArray("\xff\xff", 2);
        QTest::newRow("unannounced text") << QByteArray("\x03\x03\x00\x00", 4);
        QTest::newRow("text out of order") << QByteArray("\x03\x01\x05"
                                                         "a",
                                                         4);
        QTest::newRow("field missing") << QByteArray("\x04\x01\x00"
                                                     "a"
                                                     "z"
                                                     "\x02\x03\x00",
                                                     8);
        QTest::newRow("bytes left over") << QByteArray("\x03\x0a\x01\x00", 4);
        QTest::newRow("unknown end") << QByteArray("\x02\x0a\x07", 3);
        QTest::newRow("record behind the end") << QByteArray("\x02\x0a\x01\x02\x0a\x01", 6);
        QTest::newRow("number of more than 32 bits")
            << QByteArray("\x08\x0b\x80\x80\x80\x80\x10\x01\x00", 9);
        QTest::newRow("request with a text too many") << QByteArray("\x05\x0b\x01\x01\x00\x00", 6);
        QTest::newRow("request of an unknown kind") << QByteArray("\x04\x0b\x01\x06\x00", 5);
        QTest::newRow("number too long")
            << QByteArray("\x0c\x05\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01", 13);
    }
    void corruptStream()
    {
        QFETCH(QByteArray, bytes);
        Recorder recorder;
        protocol::Reader reader(recorder, Channel::Reports);
        QVERIFY(!reader.feed(reinterpret_cast<const unsigned char*>(bytes.constData()),
                             static_cast<std::size_t>(bytes.size())));
        QVERIFY(reader.isCorrupt());
        recorder.lines.removeAll(QStringLiteral("end 1"));
        // It stays so, whatever follows.
        const Bytes good = everyRecord();
        QVERIFY(!reader.feed(good.data(), good.size()));
        QVERIFY(recorder.lines.isEmpty());
    }

    void progressThatIsNoNumberIsCorrupt()
    {
        const Bytes bytes =
            Stream().text(0, "s").add(protocol::putBlock, 0u, 0u, std::nan(""), 0).bytes;
        Recorder recorder;
        QVERIFY(!protocol::Reader(recorder, Channel::Reports).feed(bytes.data(), bytes.size()));
    }

    /// Whatever comes, the reader must neither crash nor hand over an impossible record.
    void garbageIsHarmless()
    {
        std::mt19937 random(1);
        const Bytes good = everyRecord();
        for (int round = 0; round < 20000; ++round) {
            Bytes bytes = good;
            for (int i = 0; i < 3; ++i)
                bytes[random() % bytes.size()] = static_cast<unsigned char>(random());
            Recorder recorder;
            protocol::Reader reader(recorder, Channel::Reports);
            reader.feed(bytes.data(), bytes.size());
            QVERIFY(recorder.lines.size() <= static_cast<int>(bytes.size()));
        }
    }

    void longTextIsCutAtACharacterAndSaysSo_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("whole"); // 0: the text is all
        const QByteArray ascii(protocol::MaxText, 'x');
        QTest::newRow("fits") << ascii << 0;
        QTest::newRow("too long") << ascii + "y" << 0;
        QTest::newRow("characters") << QByteArray("电").repeated(protocol::MaxText) << 0;
        QTest::newRow("other characters")
            << "a" + QByteArray("电").repeated(protocol::MaxText) << 0;
        QTest::newRow("only the beginning") << ascii << 1000000;
        QTest::newRow("no text") << QByteArray(2 * protocol::MaxText, '\x80') << 0;
    }
    void longTextIsCutAtACharacterAndSaysSo()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, whole);
        class LastLog : public protocol::Receiver
        {
        public:
            void onLog(int, const std::string& line) override
            {
                text = QByteArray::fromStdString(line);
            }
            QByteArray text;
        };
        const Bytes bytes = Stream()
                                .add(protocol::putLog, 1, text.constData(),
                                     std::size_t(text.size()), std::size_t(whole))
                                .bytes;
        LastLog received;
        QVERIFY(protocol::Reader(received, Channel::Reports).feed(bytes.data(), bytes.size()));
        if (whole == 0 && text.size() <= int(protocol::MaxText)) {
            QCOMPARE(received.text, text);
            return;
        }
        const QByteArray mark =
            QStringLiteral("…（已截断，共 %1 字节）").arg(whole ? whole : text.size()).toUtf8();
        QVERIFY2(received.text.endsWith(mark), received.text.right(60));
        const QByteArray kept = received.text.chopped(mark.size());
        QVERIFY(text.startsWith(kept) && received.text.size() > int(protocol::MaxText) - 3);
        QVERIFY(text.startsWith('\x80') ||
                !QString::fromUtf8(kept).contains(QChar::ReplacementCharacter));
    }

    void linesOfOutput_data()
    {
        QTest::addColumn<QByteArrayList>("pieces");
        QTest::addColumn<QByteArrayList>("expected");
        const QByteArray longLine(standalone::LineSplitter::MaxLine + 1, 'x');
        QTest::newRow("two lines") << QByteArrayList{"a\nb\n"} << QByteArrayList{"a", "b"};
        QTest::newRow("split line") << QByteArrayList{"a", "b", "\n"} << QByteArrayList{"ab"};
        QTest::newRow("no line end") << QByteArrayList{"a\nb"} << QByteArrayList{"a", "b"};
        QTest::newRow("empty line") << QByteArrayList{"\n\n"} << QByteArrayList{"", ""};
        QTest::newRow("carriage return") << QByteArrayList{"a\r\n"} << QByteArrayList{"a"};
        QTest::newRow("too long") << QByteArrayList{longLine + '\n'}
                                  << QByteArrayList{longLine.left(longLine.size() - 1), "x"};
        QTest::newRow("as long as may be")
            << QByteArrayList{longLine.left(longLine.size() - 1) + '\n'}
            << QByteArrayList{longLine.left(longLine.size() - 1)};
        QTest::newRow("as long as may be, its end in two pieces")
            << QByteArrayList{longLine.left(longLine.size() - 1) + '\r', "\nb\n"}
            << QByteArrayList{longLine.left(longLine.size() - 1), "b"};
        QTest::newRow("too long, with a sign that ends none")
            << QByteArrayList{longLine.left(longLine.size() - 1) + '\r', "b"}
            << QByteArrayList{longLine.left(longLine.size() - 1), "\rb"};
        const QByteArray characters = QByteArray("电").repeated(2000);
        const int whole = int(standalone::LineSplitter::MaxLine) / 3 * 3;
        QTest::newRow("too long, of characters")
            << QByteArrayList{characters, "\n"}
            << QByteArrayList{characters.left(whole), characters.mid(whole)};
        const QByteArray bytes(standalone::LineSplitter::MaxLine + 9, '\x80');
        QTest::newRow("too long, no text")
            << QByteArrayList{bytes} << QByteArrayList{bytes.chopped(9), bytes.right(9)};
    }
    void linesOfOutput()
    {
        QFETCH(QByteArrayList, pieces);
        QFETCH(QByteArrayList, expected);
        QByteArrayList lines;
        standalone::LineSplitter splitter(
            [&](const std::string& line) { lines << QByteArray::fromStdString(line); });
        for (const QByteArray& piece : pieces)
            splitter.feed(piece.constData(), static_cast<std::size_t>(piece.size()));
        splitter.finish();
        QCOMPARE(lines, expected);
    }
};

PE_TEST("runtime_protocol_test", RuntimeProtocolTest)
#include "runtime_protocol_test.moc"
