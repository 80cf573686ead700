#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The records that travel between the editor and the child process of a run. Shared by both, so
/// no Qt here.
///
/// A record is a length (LEB128, 1..MaxPayload), a type byte and the type's fields. Numbers are
/// LEB128, signed ones zigzag coded; a double is its eight bytes in machine order, since both ends
/// run on one machine. Identifiers are sent once, as a text record, and then by their index.
namespace protocol {

constexpr std::size_t MaxPayload = 8192;
/// Bytes that any record but a text or a log line fits into.
constexpr std::size_t MaxSmallRecord = 48;
/// Bytes that every record fits into, its length included.
constexpr std::size_t MaxRecord = MaxPayload + 3;
/// Longest text of one record in bytes; what is longer is cut at a character's border.
constexpr std::size_t MaxText = MaxPayload - 16;
/// How much of a UTF-8 text fits into @p most bytes without a part of a character; all @p most of
/// them if these are no UTF-8.
std::size_t cutAtCharacter(const char* text, std::size_t size, std::size_t most);
/// Bounds of the table of texts that a reader keeps: some hundred thousand identifiers.
constexpr std::size_t MaxTableTexts = 1u << 18;
constexpr std::size_t MaxTableBytes = 16u << 20;

enum RecordType : unsigned char {
    TextRecord = 1,
    BlockRecord = 2,      ///< any progress and result
    BlockBeginRecord = 3, ///< progress 0, result 0
    BlockEndRecord = 4,   ///< progress 100
    EnterRecord = 5,
    LeaveRecord = 6,
    TemplateEnterRecord = 7,
    TemplateLeaveRecord = 8,
    LogRecord = 9,
    EndRecord = 10,
    RequestRecord = 11,
    StartCommand = 32,
    StopCommand = 33,
    AnswerCommand = 34
};

/// What the applet asks the editor for, and the texts that come with it.
enum RequestKind : unsigned char {
    ReadVariable = 1,  ///< name
    WriteVariable = 2, ///< name, value
    AskYesNo = 3,      ///< title, text
    AskText = 4,       ///< title, text, the value to begin with
    ShowNotice = 5     ///< title, text
};
/// A status of an answer; the text that comes with it is a value or tells why.
enum AnswerStatus : int { Refused = -1, Done = 0 };

/// The texts of a request, as many as its kind has. Together they fit into MaxText.
using Texts = std::vector<std::string>;
std::size_t textCount(RequestKind kind);

/// How a run ended by itself. A channel that closes without one of them tells of a crash.
enum EndReason : unsigned char { Finished = 1, Stopped = 2 };

/// Encoders. Each writes one record to @p out and returns its size in bytes. @p out has room for
/// MaxSmallRecord, those with a text for MaxRecord.
std::size_t putText(unsigned char* out, std::uint32_t index, const char* text, std::size_t size);
std::size_t putBlock(unsigned char* out, std::uint32_t sequence, std::uint32_t block,
                     double progress, int result);
std::size_t putSequence(unsigned char* out, std::uint32_t sequence, bool isEnd);
std::size_t putTemplateSequence(unsigned char* out, std::uint32_t templateId,
                                std::uint32_t sequence, bool isEnd);
/// A text that is cut says so at its end. @p whole is its length in bytes if @p text is only its
/// beginning; 0: it is all of it.
std::size_t putLog(unsigned char* out, int level, const char* text, std::size_t size,
                   std::size_t whole = 0);
std::size_t putEnd(unsigned char* out, EndReason reason);
std::size_t putRequest(unsigned char* out, std::uint32_t id, RequestKind kind, const Texts& texts);
std::size_t putStart(unsigned char* out, const char* sequenceId, std::size_t size);
std::size_t putStop(unsigned char* out);
/// @p size is at most MaxText: half an answer is none.
std::size_t putAnswer(unsigned char* out, std::uint32_t id, int status, const char* text,
                      std::size_t size);

} // namespace protocol
