#include "protocol/protocol_reader.h"
#include "standalone/runtime/LineSplitter.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

#include <cmath>
#include <limits>

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
        say("block", sequence, block, progress, result);
    }
    void onSequence(const std::string& sequence, bool isEnd) override
    {
        say("sequence", sequence, isEnd);
    }
    void onTemplateSequence(const std::string& templateId, const std::string& sequence,
                            bool isEnd) override
    {
        say("template", templateId, sequence, isEnd);
    }
    void onLog(int level, const std::string& line) override { say("log", level, line); }
    void onEnd(protocol::EndReason reason) override { say("end", int(reason)); }
    void onStart(const std::string& id) override { say("start", id); }
    void onStop() override { say("stop"); }
    void onRequest(std::uint32_t id, protocol::RequestKind kind,
                   const protocol::Texts& texts) override
    {
        say("request", id, int(kind));
        for (const std::string& each : texts)
            lines.last() += u' ' + QString::fromStdString(each);
    }
    void onAnswer(std::uint32_t id, int status, const std::string& answer) override
    {
        say("answer", id, status, answer);
    }

    QStringList lines;

private:
    static QString shown(const std::string& value) { return QString::fromStdString(value); }
    static QString shown(const char* value) { return QString::fromUtf8(value); }
    template <class Number> static QString shown(Number value) { return QString::number(value); }
    template <class... Parts> void say(const Parts&... parts)
    {
        lines << QStringList{shown(parts)...}.join(u' ');
    }
};

class LastLog : public protocol::Receiver
{
public:
    void onLog(int, const std::string& said) override { line = QByteArray::fromStdString(said); }
    QByteArray line;
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

const QStringList everyRecordLines = lines("block seq block 0 0\n"
                                           "block seq block 0 -1\n"
                                           "block seq block 33.25 -2147483648\n"
                                           "block seq  100 2147483647\n"
                                           "sequence seq 0\nsequence seq 1\n"
                                           "template block seq 0\ntemplate block seq 1\n"
                                           "log 3 电压 13.8\n"
                                           "request 300 4 电压 13.8  {0a1b}\nend 2");
const QStringList everyCommandLines = lines("start {0a1b}\nstop\nanswer 300 -1 电压 13.8");

} // namespace

/// What goes over the channels between the editor and its child, and the child's output.
class RuntimeProtocolTest : public QObject
{
    Q_OBJECT

private slots:
    void recordsSurviveEverySplit()
    {
        for (const bool isReport : {true, false}) {
            const Bytes bytes = isReport ? everyRecord() : everyCommand();
            const QStringList& expected = isReport ? everyRecordLines : everyCommandLines;
            const Channel channel = isReport ? Channel::Reports : Channel::Commands;
            for (std::size_t split = 0; split <= bytes.size(); ++split) {
                Recorder recorder;
                protocol::Reader reader(recorder, channel);
                QVERIFY(reader.feed(bytes.data(), split));
                QVERIFY(reader.feed(bytes.data() + split, bytes.size() - split));
                QCOMPARE(recorder.lines, expected);
                QVERIFY(reader.isComplete());
            }
            // The other way it is no record at all.
            Recorder recorder;
            protocol::Reader other(recorder, isReport ? Channel::Commands : Channel::Reports);
            QVERIFY(!other.feed(bytes.data(), bytes.size()) && other.fault());
            QCOMPARE(recorder.lines, QStringList());
        }
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

    void corruptStream()
    {
        const auto bytes = [](const char* hex) { return QByteArray::fromHex(hex); };
        const Bytes noNumber =
            Stream().text(0, "s").add(protocol::putBlock, 0u, 0u, std::nan(""), 0).bytes;
        const rows::Table<QByteArray> table{
            {"empty record", bytes("00")},
            {"unknown type", bytes("01 7f")},
            {"oversize", bytes("ff 7f")},
            {"length without end", bytes("ff ff")},
            {"unannounced text", bytes("03 03 00 00")},
            {"text out of order", bytes("03 01 05 61")},
            {"field missing", bytes("04 01 00 61 7a 02 03 00")},
            {"bytes left over", bytes("03 0a 01 00")},
            {"unknown end", bytes("02 0a 07")},
            {"record behind the end", bytes("02 0a 01 02 0a 01")},
            {"number of more than 32 bits", bytes("08 0b 80 80 80 80 10 01 00")},
            {"request with a text too many", bytes("05 0b 01 01 00 00")},
            {"request of an unknown kind", bytes("04 0b 01 06 00")},
            {"number too long", bytes("0c 05 ff ff ff ff ff ff ff ff ff ff 01")},
            {"progress that is no number",
             QByteArray(reinterpret_cast<const char*>(noNumber.data()), int(noNumber.size()))}};
        for (const auto& [row, corrupt] : table) {
            const rows::Named named(row);
            Recorder recorder;
            protocol::Reader reader(recorder, Channel::Reports);
            QVERIFY(!reader.feed(reinterpret_cast<const unsigned char*>(corrupt.constData()),
                                 std::size_t(corrupt.size())));
            QVERIFY(reader.isCorrupt());
            recorder.lines.removeAll(text("end 1"));
            // It stays so, whatever follows.
            const Bytes good = everyRecord();
            QVERIFY(!reader.feed(good.data(), good.size()));
            QVERIFY(recorder.lines.isEmpty());
        }
    }

    void longTextIsCutAtACharacterAndSaysSo()
    {
        const QByteArray ascii(protocol::MaxText, 'x');
        const QByteArray characters = QByteArray("电").repeated(protocol::MaxText);
        const rows::Table<QByteArray, int> table{
            // the text, and how long the whole is; 0: the text is all
            {"fits", ascii, 0},
            {"too long", ascii + "y", 0},
            {"characters", characters, 0},
            {"other characters", "a" + characters, 0},
            {"only the beginning", ascii, 1000000},
            {"no text", QByteArray(2 * protocol::MaxText, '\x80'), 0}};
        for (const auto& [row, said, whole] : table) {
            const rows::Named named(row);
            const Bytes bytes = Stream()
                                    .add(protocol::putLog, 1, said.constData(),
                                         std::size_t(said.size()), std::size_t(whole))
                                    .bytes;
            LastLog received;
            QVERIFY(protocol::Reader(received, Channel::Reports).feed(bytes.data(), bytes.size()));
            if (whole == 0 && said.size() <= int(protocol::MaxText)) {
                QCOMPARE(received.line, said);
                continue;
            }
            const QByteArray mark =
                text("…（已截断，共 %1 字节）").arg(whole ? whole : said.size()).toUtf8();
            QVERIFY2(received.line.endsWith(mark), received.line.right(60));
            const QByteArray kept = received.line.chopped(mark.size());
            QVERIFY(said.startsWith(kept) && received.line.size() > int(protocol::MaxText) - 3);
            QVERIFY(said.startsWith('\x80') ||
                    !QString::fromUtf8(kept).contains(QChar::ReplacementCharacter));
        }
    }

    void linesOfOutput()
    {
        const int most = int(standalone::LineSplitter::MaxLine);
        const QByteArray longest(most, 'x');
        const QByteArray characters = QByteArray("电").repeated(2000);
        const QByteArray bytes(most + 9, '\x80');
        const rows::Table<QByteArrayList, QByteArrayList> table{
            {"two lines, the last without an end", {"a\nb"}, {"a", "b"}},
            {"split line", {"a", "b", "\n"}, {"ab"}},
            {"empty lines", {"\n\n"}, {"", ""}},
            {"carriage return", {"a\r\n"}, {"a"}},
            {"too long", {longest + "x\n"}, {longest, "x"}},
            {"as long as may be", {longest + '\n'}, {longest}},
            {"its end in two pieces", {longest + '\r', "\nb\n"}, {longest, "b"}},
            {"with a sign that ends none", {longest + '\r', "b"}, {longest, "\rb"}},
            {"too long, of characters",
             {characters, "\n"},
             {characters.left(most / 3 * 3), characters.mid(most / 3 * 3)}},
            {"too long, no text", {bytes}, {bytes.left(most), bytes.mid(most)}}};
        for (const auto& [row, pieces, expected] : table) {
            const rows::Named named(row);
            QByteArrayList found;
            standalone::LineSplitter splitter(
                [&](const std::string& line) { found << QByteArray::fromStdString(line); });
            for (const QByteArray& piece : pieces)
                splitter.feed(piece.constData(), std::size_t(piece.size()));
            splitter.finish();
            QCOMPARE(found, expected);
        }
    }
};

PE_TEST("runtime_protocol_test", RuntimeProtocolTest)
#include "runtime_protocol_test.moc"
