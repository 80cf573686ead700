// Damages documents for as long as it is left running; see fuzz_program.h.
#include "tests/fuzz/document_check.h"
#include "tests/fuzz/document_generator.h"
#include "tests/fuzz/fuzz_program.h"

QString fuzz_program::faultOf(const QByteArray& input)
{
    return document_check::faultOf(input);
}

QByteArray fuzz_program::input(std::uint32_t seed)
{
    document_generator::Random random(seed);
    const QByteArray whole = document_generator::document(random);
    return document_generator::damaged(whole, random);
}
