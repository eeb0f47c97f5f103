#pragma once

#include "bench/stopwatch.h"

#include <functional>
#include <string>

/// All that is measured, ours and what it is compared with, each under a name: once prepared, it
/// can be done again and again, and is the same each time.
namespace Operations {

/// Does it once more and returns the processor time that counts, in seconds.
using Operation = std::function<double()>;

/// Prepares an operation on so many rows or bytes.
using Maker = std::function<Operation(int size)>;

/// Makes an operation known. For initialisers: the result means nothing.
bool add(const std::string &name, const Maker &maker);

/// Prepares the operation of that name, which must be known.
Operation make(const std::string &name, int size);

/// Ends the program unless an operation did what it was to do: figures of anything else are worth
/// nothing.
void require(bool isSuccess);

/// The operation whose whole time counts.
template <typename Action>
Operation timed(Action action)
{
    return [action]() mutable {
        Stopwatch stopwatch;
        stopwatch.start();
        action();
        return stopwatch.stop();
    };
}

} // namespace Operations
