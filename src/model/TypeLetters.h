// The letters of a data line's type field and the point bits each stands for: one table
// read by the reader, the writer, both listings and the tests' survey builder.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "model/Survey.h"

namespace plotmeter {

// A type letter: how the point was given.
struct TypeLetter {
  char letter;
  std::uint8_t flags;
  std::uint8_t marks;
};
inline constexpr std::array<TypeLetter, 6> kTypeLetters = {{
    {'X', kPtXY, 0},
    {'B', kPtBearing, 0},
    {'C', kPtBearing, kMarkCompass},
    {'G', kPtGps, 0},
    {'R', kPtReference, 0},
    {'D', kPtXY, kMarkDummy},
}};

// A flag letter, in the order they are written: `bit` is the bit (or mark) it names, and
// `implies` the input bits it brings with it.
struct FlagLetter {
  char letter;
  std::uint8_t bit;
  std::uint8_t mark;
  std::uint8_t implies;
};
inline constexpr std::array<FlagLetter, 6> kFlagLetters = {{
    {'A', kPtAltGps, 0, kPtGps},
    {'I', kPtIntermediate, 0, 0},
    {'s', 0, kMarkShared, 0},  // only after "I"
    {'J', kPtJoin, 0, 0},
    {'L', kPtLink, 0, kPtGps},
    {'F', kPtReference, 0, 0},
}};

// The entries of a letter in either case; nullptr when it is none.
const TypeLetter* FindTypeLetter(char letter);
const FlagLetter* FindFlagLetter(char letter);

// The flag letters of the named bits and marks, in their written order.
std::string FlagLettersOf(std::uint8_t flagBits, std::uint8_t marks);

// A point's type field as the file writes it: the type letter by the first rule that
// matches, then its flags. "D" only where the dummy start is allowed.
std::string PointTypeField(const Point& point, bool dummyAllowed = true);

}  // namespace plotmeter
