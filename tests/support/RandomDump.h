// RandomDump.h - random layout trees in the dump form of LayoutDump.h, for the formats'
// round-trip tests and the walks' differential tests.
#pragma once

#include <random>
#include <string>

namespace qent::test {

// What the trees may hold.
enum class RandomTrees {
  // Every class, id, text, field and attribute of the pools, including what some format
  // cannot say (box kinds, font codes beyond the named ones, plain fragments).
  Any,
  // Only what the JSON layout format writes and reads back: the document it writes for
  // such a tree must survive a round trip unchanged.
  JsonFaithful,
};

// A tree of up to seven levels under a Content root; the pools hold the awkward cases:
// unusable and repeated ids, ";", quotes, control and astral characters, attribute keys
// that are hOCR properties, HTML attributes, JSON members or neither, huge, reversed and
// zero geometry, numbers that need the shortest round-trip form.
std::string randomDump(std::mt19937& random, RandomTrees kind = RandomTrees::Any);

}  // namespace qent::test
