#pragma once

class QByteArray;

/// One fuzz target per program: takes any bytes and checks what must hold for them.
///
/// The fuzzer calls it with bytes of its own making (fuzz/entry.cpp), the tests with every file of
/// the target's corpus (fuzz/replay.cpp). It keeps nothing from one call to the next that could
/// change the outcome of a later one.
void fuzz(const QByteArray &input);

namespace Fuzz {

/// Aborts, by which the fuzzer and the tests see a failure, unless @p holds.
/// @param claim  what should have held, for people
void demand(bool holds, const char *claim);

} // namespace Fuzz
