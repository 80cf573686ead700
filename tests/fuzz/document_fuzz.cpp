// Damages documents for as long as it is left running; see fuzz_program.h.

#include "tests/fuzz/documents.h"
#include "tests/fuzz/fuzz_program.h"

QString fuzz_program::faultOf(const QByteArray& input)
{
    return documents::faultOf(input);
}

QByteArray fuzz_program::input(std::uint32_t seed)
{
    return documents::damaged(seed);
}
