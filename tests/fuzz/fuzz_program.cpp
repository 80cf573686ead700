#include "tests/fuzz/fuzz_program.h"

#include <cstdio>
#include <cstdlib>

namespace {

/// Stops the process at a fault, as the fuzzer wants it.
void check(const QByteArray& input)
{
    const QString fault = fuzz_program::faultOf(input);
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
        check(fuzz_program::input(seed));
    }
    std::printf("\n%lu inputs\n", done);
    return 0;
}

#endif
