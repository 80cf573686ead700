// Damages documents for as long as it is left running.
//
// With clang, coverage guides it:
//   cmake --preset fuzz && cmake --build build/fuzz --target document_fuzz
//   build/fuzz/bin/document_fuzz -max_len=20000 CORPUS_FOLDER
// It stops at Ctrl-C or at the first fault, whose document it leaves as a file beside it; with that
// file as its argument it does that document again.
//
// With any other compiler (cmake -DPROCESS_EDIT_FUZZ=ON), it takes its documents from seeds:
//   document_fuzz [FIRST_SEED [COUNT]]
// Ctrl-C ends it with the number of documents done; a fault ends it with the seed.
#include "tests/fuzz/document_check.h"

#include <cstdio>
#include <cstdlib>

namespace {

/// Stops the process at a fault, as the fuzzer wants it.
void check(const QByteArray& document)
{
    const QString fault = document_check::faultOf(document);
    if (fault.isEmpty())
        return;
    std::fprintf(stderr, "%s\n", qPrintable(fault));
    std::abort();
}

} // namespace

#ifdef PE_COVERAGE_FUZZER

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    check(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}

#else

#include "tests/fuzz/document_generator.h"

#include <csignal>

namespace {
volatile std::sig_atomic_t isStopped = 0;
}

int main(int argc, char** argv)
{
    std::signal(SIGINT, [](int) { isStopped = 1; });
    std::signal(SIGTERM, [](int) { isStopped = 1; });
    const auto first = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    const auto count = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0;
    unsigned long done = 0;
    for (; !isStopped && (count == 0 || done < count); ++done) {
        const auto seed = static_cast<std::uint32_t>(first + done);
        std::fprintf(stderr, "\rseed %u", seed);
        document_generator::Random random(seed);
        const QByteArray whole = document_generator::document(random);
        check(document_generator::damaged(whole, random));
    }
    std::printf("\n%lu documents\n", done);
    return 0;
}

#endif
