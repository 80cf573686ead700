#include "tests/fuzz/records.h"

#include "protocol/protocol_reader.h"
#include "standalone/runtime/AppletRequests.h"
#include "standalone/runtime/RunCommands.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

using namespace protocol;

namespace records {

namespace {

/// A run without its child: takes records as AppletRun does, and writes each down as records.
class Listener : public Receiver
{
public:
    bool feed(const QByteArray& bytes, int pieceSize)
    {
        for (int at = 0; at < bytes.size(); at += pieceSize) {
            const QByteArray piece = bytes.mid(at, pieceSize);
            if (!reader.feed(reinterpret_cast<const unsigned char*>(piece.constData()),
                             std::size_t(piece.size())))
                return false;
        }
        return true;
    }

    void onBlock(const std::string& sequence, const std::string& block, double progress,
                 int result) override
    {
        isInBounds = isInBounds && std::isfinite(progress);
        text(sequence);
        text(block);
        add(putBlock(m_out, m_texts - 2, m_texts - 1, progress, result));
    }
    void onSequence(const std::string& sequence, bool isEnd) override
    {
        text(sequence);
        add(putSequence(m_out, m_texts - 1, isEnd));
    }
    void onTemplateSequence(const std::string& templateId, const std::string& sequence,
                            bool isEnd) override
    {
        text(templateId);
        text(sequence);
        add(putTemplateSequence(m_out, m_texts - 2, m_texts - 1, isEnd));
    }
    void onLog(int level, const std::string& line) override
    {
        add(putLog(m_out, level, line.data(), bounded(line)));
    }
    void onEnd(EndReason reason) override
    {
        isInBounds = isInBounds && (reason == Finished || reason == Stopped);
        add(putEnd(m_out, reason));
    }
    void onRequest(std::uint32_t id, RequestKind kind, const Texts& texts) override
    {
        isInBounds = isInBounds && texts.size() == textCount(kind);
        add(putRequest(m_out, id, kind, texts));
        if (const char* fault = m_requests.take(id, kind, texts))
            reader.refuse(fault);
    }
    // The other way's.
    void onStart(const std::string&) override { isInBounds = false; }
    void onStop() override { isInBounds = false; }
    void onAnswer(std::uint32_t, int, const std::string&) override { isInBounds = false; }

    Reader reader{*this, Channel::Reports};
    QByteArray records; ///< of what was taken, every text declared where it is used
    bool isInBounds = true;

private:
    /// What the encoders would cut is a byte or two that a child may use all the same.
    std::size_t bounded(const std::string& value)
    {
        isInBounds = isInBounds && value.size() <= MaxPayload;
        return std::min(value.size(), MaxText);
    }
    void text(const std::string& value)
    {
        add(putText(m_out, m_texts++, value.data(), bounded(value)));
    }
    void add(std::size_t size)
    {
        isInBounds = isInBounds && size <= MaxRecord;
        records.append(reinterpret_cast<const char*>(m_out), int(size));
    }

    std::shared_ptr<standalone::RunCommands> m_commands =
        std::make_shared<standalone::RunCommands>(); // without a child they go nowhere
    standalone::AppletRequests m_requests{"checked", m_commands};
    unsigned char m_out[MaxRecord];
    std::uint32_t m_texts = 0;
};

} // namespace

bool isWhole(const QByteArray& bytes)
{
    Listener listener;
    return listener.feed(bytes, bytes.size() + 1) && listener.reader.isComplete();
}

QString faultOf(const QByteArray& bytes)
{
    Listener whole;
    const bool isGood = whole.feed(bytes, bytes.size() + 1);
    if (isGood == whole.reader.isCorrupt() || isGood == (whole.reader.fault() != nullptr))
        return QStringLiteral("fed and corrupt disagree");
    if (!whole.isInBounds)
        return QStringLiteral("a record out of bounds");
    const QByteArray before = whole.records;
    if (!isGood && (whole.feed(bytes, bytes.size() + 1) || whole.records != before))
        return QStringLiteral("read on behind a fault");

    for (const int size : {1, 7, 4096}) {
        Listener pieces;
        if (pieces.feed(bytes, size) != isGood ||
            QByteArray(pieces.reader.fault()) != QByteArray(whole.reader.fault()) ||
            pieces.reader.isComplete() != whole.reader.isComplete())
            return QStringLiteral("in pieces of %1 it ends otherwise").arg(size);
        if (pieces.records != whole.records)
            return QStringLiteral("in pieces of %1 it is something else").arg(size);
    }

    // The last request may be the one that was refused.
    Listener again;
    const bool isTakenAgain = again.feed(whole.records, whole.records.size() + 1);
    if (!isTakenAgain && isGood)
        return QStringLiteral("what was taken is refused: %1")
            .arg(QString::fromUtf8(again.reader.fault()));
    if (again.records != whole.records)
        return QStringLiteral("no fixed point");
    return QString();
}

} // namespace records
