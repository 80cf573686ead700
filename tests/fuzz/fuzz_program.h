#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// What a fuzzer is about; fuzz_program.cpp is the rest of each. A fuzzer's program defines both.
///
/// With clang, coverage guides it:
///   cmake --preset fuzz && cmake --build --preset fuzz
///   build/fuzz/bin/document_fuzz -max_len=20000 CORPUS_FOLDER
///   build/fuzz/bin/records_fuzz CORPUS_FOLDER
/// It stops at Ctrl-C or at the first fault, whose input it leaves as a file beside it; with that
/// file as its argument it does that input again.
///
/// With any other compiler (cmake -DPROCESS_EDIT_FUZZ=ON), it takes its inputs from seeds:
///   records_fuzz [FIRST_SEED [COUNT]]
/// Ctrl-C ends it with the number of inputs done; a fault ends it with the seed.
namespace fuzz_program {

/// Does with the bytes what the editor would; empty if all is well.
QString faultOf(const QByteArray& input);
/// The same number gives the same input everywhere.
QByteArray input(std::uint32_t seed);

} // namespace fuzz_program
