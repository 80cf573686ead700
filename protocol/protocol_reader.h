#pragma once

#include "protocol/protocol.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Takes the bytes of a channel apart: bytes in, records out. What the bytes are is not trusted.
namespace protocol {

class FieldReader;

/// Gets the records of a Reader. Texts are UTF-8 and live until the call returns.
class Receiver
{
public:
    virtual ~Receiver();
    virtual void onBlock(const std::string& sequenceId, const std::string& blockId, double progress,
                         int result);
    virtual void onSequence(const std::string& sequenceId, bool isEnd);
    virtual void onTemplateSequence(const std::string& templateId, const std::string& sequenceId,
                                    bool isEnd);
    virtual void onLog(int level, const std::string& text);
    virtual void onEnd(EndReason reason);
    virtual void onRequest(std::uint32_t id, RequestKind kind, const Texts& texts);
    virtual void onStart(const std::string& sequenceId);
    virtual void onStop();
    virtual void onAnswer(std::uint32_t id, int status, const std::string& text);
};

/// Which way a channel goes: each takes records of its own.
enum class Channel { Reports, Commands };

/// Takes a byte stream in pieces of any size apart. Memory is bounded whatever the bytes are.
class Reader
{
public:
    Reader(Receiver& receiver, Channel channel) : m_receiver(receiver), m_channel(channel) {}

    /// Hands all records that are complete to the receiver. False once the stream is corrupt; what
    /// comes after that is not looked at.
    bool feed(const unsigned char* data, std::size_t size);

    /// Called by a receiver to which a record makes no sense: the stream is corrupt from there on.
    /// @p fault stays valid as long as the reader lives.
    void refuse(const char* fault);

    bool isCorrupt() const { return m_fault != nullptr; }
    /// What is wrong with the stream, a few words for the user; null while nothing is.
    const char* fault() const { return m_fault; }
    /// Whether the stream stands between two records: false at its end means it was cut off.
    bool isComplete() const { return !m_fault && m_rest.empty(); }

private:
    std::size_t consume(const unsigned char* data, std::size_t size);
    void decode(const unsigned char* data, std::size_t size);
    const char* decodeReport(unsigned char type, FieldReader& fields);
    const char* decodeCommand(unsigned char type, FieldReader& fields);
    const std::string* textAt(std::uint32_t index) const;

    Receiver& m_receiver;
    const Channel m_channel;
    std::vector<unsigned char> m_rest;
    std::vector<std::string> m_texts;
    std::size_t m_textBytes = 0;
    bool m_hasEnded = false; ///< an end record came: none may follow
    const char* m_fault = nullptr;
};

} // namespace protocol
