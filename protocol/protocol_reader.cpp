#include "protocol/protocol_reader.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace protocol {

namespace {

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
