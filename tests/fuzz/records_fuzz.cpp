// Damages what children say for as long as it is left running; see fuzz_program.h.

#include "tests/fuzz/fuzz_program.h"
#include "tests/fuzz/records.h"

QString fuzz_program::faultOf(const QByteArray& input)
{
    return records::faultOf(input);
}

QByteArray fuzz_program::input(std::uint32_t seed)
{
    return records::damaged(seed);
}
