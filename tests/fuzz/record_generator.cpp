#include "tests/fuzz/records.h"

#include "protocol/protocol.h"

#include <iterator>
#include <limits>
#include <random>
#include <string>

using namespace protocol;

namespace records {

namespace {

using Random = std::mt19937;

std::uint32_t upTo(Random& random, std::uint32_t count)
{
    return std::uint32_t(random()) % count; // std's distributions differ between libraries
}

std::string anyText(Random& random)
{
    static const std::string pieces[] = {"步骤", "a", std::string(1, '\0'), "\xff", "\n", "{0a1b}"};
    std::string text;
    for (std::uint32_t left = upTo(random, 6); left > 0; --left)
        text += pieces[upTo(random, std::uint32_t(std::size(pieces)))];
    if (upTo(random, 50) == 0)
        text.append(upTo(random, 2 * std::uint32_t(MaxText)), 'x');
    return text;
}

int anyNumber(Random& random)
{
    static const int numbers[] = {
        0, 1, -1, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
    return numbers[upTo(random, std::uint32_t(std::size(numbers)))];
}

Texts textsOf(RequestKind kind, Random& random)
{
    Texts texts(textCount(kind));
    for (std::string& text : texts)
        text = anyText(random).substr(0, MaxText / 4);
    return texts;
}

QByteArray stream(Random& random)
{
    static const double progresses[] = {0.0, 100.0, 33.25, -1.0, 1e300, 99.0};
    QByteArray bytes;
    unsigned char out[MaxRecord];
    const auto add = [&](std::size_t size) {
        bytes.append(reinterpret_cast<const char*>(out), int(size));
    };
    const auto addText = [&](std::uint32_t index) {
        const std::string text = anyText(random);
        add(putText(out, index, text.data(), text.size()));
    };
    std::uint32_t texts = 0;
    std::uint32_t requests = 0;
    addText(texts++);
    for (std::uint32_t left = upTo(random, 30); left > 0; --left) {
        const std::uint32_t first = upTo(random, texts);
        const std::uint32_t second = upTo(random, texts);
        switch (upTo(random, 6)) {
        case 0:
            addText(texts++);
            break;
        case 1:
            add(putBlock(out, first, second,
                         progresses[upTo(random, std::uint32_t(std::size(progresses)))],
                         anyNumber(random)));
            break;
        case 2:
            add(putSequence(out, first, random() % 2));
            break;
        case 3:
            add(putTemplateSequence(out, first, second, random() % 2));
            break;
        case 4: {
            const std::string text = anyText(random);
            add(putLog(out, anyNumber(random), text.data(), text.size()));
            break;
        }
        default: {
            const auto kind = random() % 2 ? ReadVariable : WriteVariable;
            add(putRequest(out, ++requests, kind, textsOf(kind, random)));
        }
        }
    }
    if (upTo(random, 4) == 0) {
        const auto kind = RequestKind(AskYesNo + upTo(random, 3));
        add(putRequest(out, ++requests, kind, textsOf(kind, random)));
    }
    add(putEnd(out, random() % 2 ? Finished : Stopped));
    return bytes;
}

} // namespace

QByteArray whole(std::uint32_t seed)
{
    Random random(seed);
    return stream(random);
}

QByteArray damaged(std::uint32_t seed)
{
    Random random(seed);
    QByteArray bytes = stream(random);
    for (std::uint32_t left = 1 + upTo(random, 4); left > 0 && !bytes.isEmpty(); --left) {
        const int at = int(upTo(random, std::uint32_t(bytes.size())));
        const int other = int(upTo(random, std::uint32_t(bytes.size())));
        const int length = 1 + int(upTo(random, 20));
        switch (upTo(random, 7)) {
        case 0:
            bytes[at] = char(random());
            break;
        case 1:
            bytes[at] = char(bytes[at] ^ (1 << upTo(random, 8)));
            break;
        case 2:
            bytes.remove(at, length);
            break;
        case 3:
            bytes.insert(at, bytes.mid(other, length));
            break;
        case 4:
            bytes.insert(at, QByteArray(length, random() % 2 ? '\xff' : '\x00'));
            break;
        case 5:
            bytes = bytes.mid(at) + bytes.left(at);
            break;
        default:
            bytes.truncate(at);
        }
    }
    return bytes;
}

} // namespace records
