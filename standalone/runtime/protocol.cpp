#include "standalone/runtime/protocol.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

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
    return cutAtCharacter(text, size, MaxText);
}

constexpr char BadFields[] = "记录的字段不完整或超出范围";
constexpr char UnknownText[] = "记录引用了没有声明的标识";

} // namespace

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
            if (shift == 63 && byte > 1)
                break;
            value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
            if (!(byte & 0x80))
                return value;
        }
        m_failed = true;
        return 0;
    }

    std::uint32_t smallNumber()
    {
        const std::uint64_t value = number();
        m_failed = m_failed || value > std::numeric_limits<std::uint32_t>::max();
        return static_cast<std::uint32_t>(value);
    }

    int signedNumber()
    {
        const std::uint32_t value = smallNumber();
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

std::size_t textCount(RequestKind kind)
{
    switch (kind) {
    case ReadVariable:
        return 1;
    case AskText:
        return 3;
    default:
        return 2;
    }
}

std::size_t cutAtCharacter(const char* text, std::size_t size, std::size_t most)
{
    constexpr std::size_t LongestRest = 3; // of a character, behind its first byte
    if (size <= most)
        return size;
    std::size_t end = most;
    while (end > 0 && most - end < LongestRest &&
           (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
        --end;
    const bool isBorder = (static_cast<unsigned char>(text[end]) & 0xc0) != 0x80;
    return isBorder && end > 0 ? end : most;
}

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

std::size_t putLog(unsigned char* out, int level, const char* text, std::size_t size,
                   std::size_t whole)
{
    Writer writer(out, LogRecord);
    writer.signedNumber(level);
    whole = std::max(whole, size);
    if (whole <= MaxText)
        return writer.bytes(text, size).finish();
    char mark[64];
    const auto markSize = static_cast<std::size_t>(
        std::snprintf(mark, sizeof mark, "…（已截断，共 %zu 字节）", whole));
    const std::size_t kept = cutAtCharacter(text, size, MaxText - markSize);
    return writer.bytes(text, kept).bytes(mark, markSize).finish();
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
    if (m_fault)
        return false;
    if (m_rest.empty()) {
        const std::size_t used = consume(data, size);
        if (!m_fault)
            m_rest.assign(data + used, data + size);
    } else {
        m_rest.insert(m_rest.end(), data, data + size);
        const std::size_t used = consume(m_rest.data(), m_rest.size());
        m_rest.erase(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(used));
    }
    if (m_fault)
        m_rest.clear();
    return !m_fault;
}

void Reader::refuse(const char* fault)
{
    if (!m_fault)
        m_fault = fault;
}

/// Decodes the complete records at the start of @p data and returns how many bytes they took.
std::size_t Reader::consume(const unsigned char* data, std::size_t size)
{
    std::size_t at = 0;
    while (at < size && !m_fault) {
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
            refuse("记录的长度超出范围");
            break;
        }
        if (!whole || size - at - head < length)
            break;
        decode(data + at + head, length);
        at += head + length;
    }
    return at;
}

const std::string* Reader::textAt(std::uint32_t index) const
{
    return index < m_texts.size() ? &m_texts[index] : nullptr;
}

void Reader::decode(const unsigned char* data, std::size_t size)
{
    FieldReader fields(data + 1, size - 1);
    const bool isReport = m_channel == Channel::Reports;
    const char* fault = m_hasEnded ? "运行结束之后还有记录"
                        : isReport ? decodeReport(data[0], fields)
                                   : decodeCommand(data[0], fields);
    if (fault)
        refuse(fault);
}

/// What is wrong with a record, or null: then the receiver has it.
const char* Reader::decodeReport(unsigned char type, FieldReader& fields)
{
    switch (type) {
    case TextRecord: {
        const std::uint32_t index = fields.smallNumber();
        std::string text = fields.rest();
        if (!fields.isDone() || index != m_texts.size())
            return BadFields;
        m_textBytes += text.size();
        if (index >= MaxTableTexts || m_textBytes > MaxTableBytes)
            return "标识的数量超过上限";
        m_texts.push_back(std::move(text));
        return nullptr;
    }
    case BlockRecord:
    case BlockBeginRecord:
    case BlockEndRecord: {
        const std::string* sequence = textAt(fields.smallNumber());
        const std::string* block = textAt(fields.smallNumber());
        const int result = type == BlockBeginRecord ? 0 : fields.signedNumber();
        double progress = type == BlockEndRecord ? 100.0 : 0.0;
        if (type == BlockRecord)
            progress = fields.real();
        if (!fields.isDone())
            return BadFields;
        if (!sequence || !block)
            return UnknownText;
        m_receiver.onBlock(*sequence, *block, progress, result);
        return nullptr;
    }
    case EnterRecord:
    case LeaveRecord: {
        const std::string* sequence = textAt(fields.smallNumber());
        if (!fields.isDone())
            return BadFields;
        if (!sequence)
            return UnknownText;
        m_receiver.onSequence(*sequence, type == LeaveRecord);
        return nullptr;
    }
    case TemplateEnterRecord:
    case TemplateLeaveRecord: {
        const std::string* templateId = textAt(fields.smallNumber());
        const std::string* sequence = textAt(fields.smallNumber());
        if (!fields.isDone())
            return BadFields;
        if (!templateId || !sequence)
            return UnknownText;
        m_receiver.onTemplateSequence(*templateId, *sequence, type == TemplateLeaveRecord);
        return nullptr;
    }
    case LogRecord: {
        const int level = fields.signedNumber();
        const std::string text = fields.rest();
        if (!fields.isDone())
            return BadFields;
        m_receiver.onLog(level, text);
        return nullptr;
    }
    case EndRecord: {
        const std::uint64_t reason = fields.number();
        if (!fields.isDone() || (reason != Finished && reason != Stopped))
            return BadFields;
        m_hasEnded = true;
        m_receiver.onEnd(static_cast<EndReason>(reason));
        return nullptr;
    }
    case RequestRecord: {
        const std::uint32_t id = fields.smallNumber();
        const std::uint64_t kind = fields.number();
        Texts texts;
        while (fields.hasMore())
            texts.push_back(fields.text());
        if (!fields.isDone() || kind < ReadVariable || kind > ShowNotice ||
            texts.size() != textCount(static_cast<RequestKind>(kind)))
            return BadFields;
        m_receiver.onRequest(id, static_cast<RequestKind>(kind), texts);
        return nullptr;
    }
    default:
        return "未知的记录类型";
    }
}

const char* Reader::decodeCommand(unsigned char type, FieldReader& fields)
{
    switch (type) {
    case StartCommand:
        m_receiver.onStart(fields.rest());
        return nullptr;
    case StopCommand:
        if (!fields.isDone())
            return BadFields;
        m_receiver.onStop();
        return nullptr;
    case AnswerCommand: {
        const std::uint32_t id = fields.smallNumber();
        const int status = fields.signedNumber();
        const std::string text = fields.rest();
        if (!fields.isDone())
            return BadFields;
        m_receiver.onAnswer(id, status, text);
        return nullptr;
    }
    default:
        return "未知的记录类型";
    }
}

} // namespace protocol
