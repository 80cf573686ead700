#include "protocol/protocol.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
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
    return cutAtCharacter(text, size, MaxText);
}

} // namespace

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
    assert(size <= MaxText);
    return Writer(out, AnswerCommand)
        .number(id)
        .signedNumber(status)
        .bytes(text, cutText(text, size))
        .finish();
}

} // namespace protocol
