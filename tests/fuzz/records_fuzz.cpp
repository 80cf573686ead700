// Damages what children say for as long as it is left running; see fuzz_program.h.
#include "tests/fuzz/fuzz_program.h"
#include "tests/fuzz/record_check.h"
#include "tests/fuzz/record_generator.h"

QString fuzz_program::faultOf(const QByteArray& input)
{
    return record_check::faultOf(input);
}

QByteArray fuzz_program::input(std::uint32_t seed)
{
    record_generator::Random random(seed);
    const QByteArray whole = record_generator::stream(random);
    return record_generator::damaged(whole, random);
}
