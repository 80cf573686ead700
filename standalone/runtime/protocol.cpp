#include "standalone/runtime/protocol.h"

#include <cmath>
#include <cstring>

namespace protocol {

namespace {

/// Writes one record; the length goes in front when all fields are known.
class Writer
{
public:
    Writer(unsigned char* out, RecordType type) : m_out(out), m_end(out + LengthBytes)
    {
        *m_end++ = type;
    }

    Writer& number(std::uint64_t value)
    {
        while (value >= 0x80) {
            *m_end++ = static_cast<unsigned char>(value | 0x80);
            value >>= 7;
        }
        *m_end++ = static_cast<unsigned char>(value);
        return *this;
    }

    Writer& signedNumber(std::int32_t value)
    {
        return number((static_cast<std::uint32_t>(value) << 1) ^
                      static_cast<std::uint32_t>(value < 0 ? -1 : 0));
    }

    Writer& bytes(const void* data, std::size_t size)
    {
        std::memcpy(m_end, data, size);
        m_end += size;
        return *this;
    }

    std::size_t finish()
    {
        // A length of fixed width keeps the fields where they are; it still reads as LEB128.
        const std::size_t size = static_cast<std::size_t>(m_end - m_out) - LengthBytes;
        m_out[0] = static_cast<unsigned char>(size | 0x80);
        m_out[1] = static_cast<unsigned char>(size >> 7);
        return size + LengthBytes;
    }

private:
    static constexpr std::size_t LengthBytes = 2;
    unsigned char* m_out;
    unsigned char* m_end;
};
static_assert(MaxPayload < (1u << 14), "a length takes two bytes");

std::size_t cutText(const char* text, std::size_t size)
{
    if (size <= MaxText)
        return size;
    size = MaxText;
    while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xc0) == 0x80)
        --size;
    return size;
}

/// Reads the fields of one record; every read past its end makes it fail for good.
class FieldReader
{
public:
    FieldReader(const unsigned char* data, std::size_t size) : m_at(data), m_end(data + size) {}

    std::uint64_t number()
    {
        std::uint64_t value = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            if (m_at == m_end)
                break;
            const unsigned char byte = *m_at++;
            value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
            if (!(byte & 0x80))
                return value;
        }
        m_failed = true;
        return 0;
    }

    int signedNumber()
    {
        const auto value = static_cast<std::uint32_t>(number());
        return static_cast<int>((value >> 1) ^ (0u - (value & 1)));
    }

    double real()
    {
        double value = 0;
        if (m_end - m_at < static_cast<std::ptrdiff_t>(sizeof value)) {
            m_failed = true;
            return 0;
        }
        std::memcpy(&value, m_at, sizeof value);
        m_at += sizeof value;
        m_failed = m_failed || !std::isfinite(value);
        return value;
    }

    /// A text behind its length.
    std::string text()
    {
        const std::uint64_t size = number();
        if (size > static_cast<std::uint64_t>(m_end - m_at)) {
            m_failed = true;
            return std::string();
        }
        std::string text(reinterpret_cast<const char*>(m_at), static_cast<std::size_t>(size));
        m_at += size;
        return text;
    }

    std::string rest()
    {
        std::string text(reinterpret_cast<const char*>(m_at),
                         static_cast<std::size_t>(m_end - m_at));
        m_at = m_end;
        return text;
    }

    bool hasMore() const { return !m_failed && m_at < m_end; }
    /// Whether all fields were there and nothing stands behind them.
    bool isDone() const { return !m_failed && m_at == m_end; }

private:
    const unsigned char* m_at;
    const unsigned char* m_end;
    bool m_failed = false;
};

} // namespace

std::size_t putText(unsigned char* out, std::uint32_t index, const char* text, std::size_t size)
{
    return Writer(out, TextRecord).number(index).bytes(text, cutText(text, size)).finish();
}

std::size_t putBlock(unsigned char* out, std::uint32_t sequence, std::uint32_t block,
                     double progress, int result)
{
    if (progress == 0.0 && result == 0)
        return Writer(out, BlockBeginRecord).number(sequence).number(block).finish();
    if (progress == 100.0)
        return Writer(out, BlockEndRecord)
            .number(sequence)
            .number(block)
            .signedNumber(result)
            .finish();
    return Writer(out, BlockRecord)
        .number(sequence)
        .number(block)
        .signedNumber(result)
        .bytes(&progress, sizeof progress)
        .finish();
}

std::size_t putSequence(unsigned char* out, std::uint32_t sequence, bool isEnd)
{
    return Writer(out, isEnd ? LeaveRecord : EnterRecord).number(sequence).finish();
}

std::size_t putTemplateSequence(unsigned char* out, std::uint32_t templateId,
                                std::uint32_t sequence, bool isEnd)
{
    return Writer(out, isEnd ? TemplateLeaveRecord : TemplateEnterRecord)
        .number(templateId)
        .number(sequence)
        .finish();
}

std::size_t putLog(unsigned char* out, int level, const char* text, std::size_t size)
{
    return Writer(out, LogRecord).signedNumber(level).bytes(text, cutText(text, size)).finish();
}

std::size_t putEnd(unsigned char* out, EndReason reason)
{
    return Writer(out, EndRecord).number(reason).finish();
}

std::size_t putRequest(unsigned char* out, std::uint32_t id, RequestKind kind, const Texts& texts)
{
    Writer writer(out, RequestRecord);
    writer.number(id).number(kind);
    for (const std::string& text : texts)
        writer.number(text.size()).bytes(text.data(), text.size());
    return writer.finish();
}

std::size_t putStart(unsigned char* out, const char* sequenceId, std::size_t size)
{
    return Writer(out, StartCommand).bytes(sequenceId, cutText(sequenceId, size)).finish();
}

std::size_t putStop(unsigned char* out)
{
    return Writer(out, StopCommand).finish();
}

std::size_t putAnswer(unsigned char* out, std::uint32_t id, int status, const char* text,
                      std::size_t size)
{
    return Writer(out, AnswerCommand)
        .number(id)
        .signedNumber(status)
        .bytes(text, cutText(text, size))
        .finish();
}

Receiver::~Receiver() = default;
void Receiver::onBlock(const std::string&, const std::string&, double, int) {}
void Receiver::onSequence(const std::string&, bool) {}
void Receiver::onTemplateSequence(const std::string&, const std::string&, bool) {}
void Receiver::onLog(int, const std::string&) {}
void Receiver::onEnd(EndReason) {}
void Receiver::onRequest(std::uint32_t, RequestKind, const Texts&) {}
void Receiver::onStart(const std::string&) {}
void Receiver::onStop() {}
void Receiver::onAnswer(std::uint32_t, int, const std::string&) {}

bool Reader::feed(const unsigned char* data, std::size_t size)
{
    if (m_corrupt)
        return false;
    if (m_rest.empty()) {
        const std::size_t used = consume(data, size);
        if (!m_corrupt)
            m_rest.assign(data + used, data + size);
    } else {
        m_rest.insert(m_rest.end(), data, data + size);
        const std::size_t used = consume(m_rest.data(), m_rest.size());
        m_rest.erase(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(used));
    }
    if (m_corrupt)
        m_rest.clear();
    return !m_corrupt;
}

/// Decodes the complete records at the start of @p data and returns how many bytes they took.
std::size_t Reader::consume(const unsigned char* data, std::size_t size)
{
    std::size_t at = 0;
    while (at < size) {
        std::size_t length = 0;
        std::size_t head = 0;
        bool whole = false;
        while (!whole && head < 2 && at + head < size) {
            const unsigned char byte = data[at + head];
            length |= static_cast<std::size_t>(byte & 0x7f) << (7 * head);
            ++head;
            whole = !(byte & 0x80);
        }
        if ((!whole && head == 2) || (whole && (length == 0 || length > MaxPayload))) {
            m_corrupt = true;
            break;
        }
        if (!whole || size - at - head < length)
            break;
        if (!decode(data + at + head, length)) {
            m_corrupt = true;
            break;
        }
        at += head + length;
    }
    return at;
}

const std::string* Reader::textAt(std::uint64_t index) const
{
    return index < m_texts.size() ? &m_texts[static_cast<std::size_t>(index)] : nullptr;
}

bool Reader::decode(const unsigned char* data, std::size_t size)
{
    FieldReader fields(data + 1, size - 1);
    const unsigned char type = data[0];
    switch (type) {
    case TextRecord: {
        const std::uint64_t index = fields.number();
        std::string text = fields.rest();
        m_textBytes += text.size();
        if (!fields.isDone() || index != m_texts.size() || index >= MaxTableTexts ||
            m_textBytes > MaxTableBytes)
            return false;
        m_texts.push_back(std::move(text));
        return true;
    }
    case BlockRecord:
    case BlockBeginRecord:
    case BlockEndRecord: {
        const std::string* sequence = textAt(fields.number());
        const std::string* block = textAt(fields.number());
        const int result = type == BlockBeginRecord ? 0 : fields.signedNumber();
        double progress = type == BlockEndRecord ? 100.0 : 0.0;
        if (type == BlockRecord)
            progress = fields.real();
        if (!fields.isDone() || !sequence || !block)
            return false;
        m_receiver.onBlock(*sequence, *block, progress, result);
        return true;
    }
    case EnterRecord:
    case LeaveRecord: {
        const std::string* sequence = textAt(fields.number());
        if (!fields.isDone() || !sequence)
            return false;
        m_receiver.onSequence(*sequence, type == LeaveRecord);
        return true;
    }
    case TemplateEnterRecord:
    case TemplateLeaveRecord: {
        const std::string* templateId = textAt(fields.number());
        const std::string* sequence = textAt(fields.number());
        if (!fields.isDone() || !templateId || !sequence)
            return false;
        m_receiver.onTemplateSequence(*templateId, *sequence, type == TemplateLeaveRecord);
        return true;
    }
    case LogRecord: {
        const int level = fields.signedNumber();
        const std::string text = fields.rest();
        if (!fields.isDone())
            return false;
        m_receiver.onLog(level, text);
        return true;
    }
    case EndRecord: {
        const std::uint64_t reason = fields.number();
        if (!fields.isDone() || (reason != Finished && reason != Stopped))
            return false;
        m_receiver.onEnd(static_cast<EndReason>(reason));
        return true;
    }
    case RequestRecord: {
        const auto id = static_cast<std::uint32_t>(fields.number());
        const std::uint64_t kind = fields.number();
        Texts texts;
        while (fields.hasMore())
            texts.push_back(fields.text());
        if (!fields.isDone() || kind < ReadVariable || kind > ShowNotice)
            return false;
        m_receiver.onRequest(id, static_cast<RequestKind>(kind), texts);
        return true;
    }
    case AnswerCommand: {
        const auto id = static_cast<std::uint32_t>(fields.number());
        const int status = fields.signedNumber();
        const std::string text = fields.rest();
        if (!fields.isDone())
            return false;
        m_receiver.onAnswer(id, status, text);
        return true;
    }
    case StartCommand:
        m_receiver.onStart(fields.rest());
        return true;
    case StopCommand:
        if (!fields.isDone())
            return false;
        m_receiver.onStop();
        return true;
    default:
        return false;
    }
}

} // namespace protocol
