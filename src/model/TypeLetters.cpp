#include "model/TypeLetters.h"

namespace plotmeter {

namespace {

char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

char TypeLetterOf(const Point& point, bool dummyAllowed) {
  const std::uint8_t input = point.PtFlags & kPtInputMask;
  if ((point.PtMarks & kMarkDummy) && dummyAllowed) return 'D';
  if (input == kPtReference) return 'R';
  if ((input & (kPtXY | kPtBearing | kPtGps)) == kPtGps) return 'G';
  if (input & kPtXY) return 'X';
  return (point.PtMarks & kMarkCompass) ? 'C' : 'B';
}

}  // namespace

const TypeLetter* FindTypeLetter(char letter) {
  for (const TypeLetter& entry : kTypeLetters) {
    if (entry.letter == Upper(letter)) return &entry;
  }
  return nullptr;
}

const FlagLetter* FindFlagLetter(char letter) {
  for (const FlagLetter& entry : kFlagLetters) {
    if (Upper(entry.letter) == Upper(letter)) return &entry;
  }
  return nullptr;
}

std::string FlagLettersOf(std::uint8_t flagBits, std::uint8_t marks) {
  std::string text;
  for (const FlagLetter& entry : kFlagLetters) {
    const bool named = entry.bit != 0 ? (flagBits & entry.bit) != 0
                                      : (marks & entry.mark) && (flagBits & kPtIntermediate);
    if (named) text += entry.letter;
  }
  return text;
}

// "L" implies GPS values, so "A" beside it says nothing more; "F" is the reference of a
// bearing, which an "R" point's own bit is not.
std::string PointTypeField(const Point& point, bool dummyAllowed) {
  std::uint8_t flags = point.PtFlags;
  if (flags & kPtLink) flags &= ~kPtAltGps;
  if (!(flags & kPtBearing)) flags &= ~kPtReference;
  return TypeLetterOf(point, dummyAllowed) + FlagLettersOf(flags, point.PtMarks);
}

}  // namespace plotmeter
