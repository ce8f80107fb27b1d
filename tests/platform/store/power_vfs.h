// An SQLite VFS that remembers what was synced: a power cut puts the files back to that, with some of the writes since.
#pragma once

#include <cstdint>
#include <random>

namespace power {

// From now on SQLite's files go through it.
void install();

enum class Fault { None, Error, Full, Cut };

// The n-th write, truncation or sync from now on (counted from 1) fails: once, or, at a cut, with all that follow it.
void failAt(int n, Fault fault);
bool hasFailed();

// After the databases were closed: the files as a disk may hold them. Each 512 bytes of a write that was not synced
// are there or not, in any order.
void restore(std::mt19937& random);

}  // namespace power
