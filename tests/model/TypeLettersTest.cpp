#include <gtest/gtest.h>

#include "model/TypeLetters.h"

namespace plotmeter {
namespace {

// The written field: the type letter, then the flag letters in their order. Beside "L" the
// field leaves "A" out: the link carries the GPS values. Reading letters back is the
// round trip's, through the reader.
TEST(TypeLettersTest, LetterThenFlagsInOrder) {
  // clang-format off
  const struct {
    std::uint8_t flags, marks;
    const char* field;
  } rows[] = {
      {kPtXY, kMarkDummy, "D"},
      {kPtReference | kPtJoin, 0, "RJ"},
      {kPtXY | kPtGps | kPtAltGps | kPtLink, 0, "XL"},
      {kPtBearing | kPtReference, kMarkCompass, "CF"},
      {kPtBearing | kPtGps | kPtAltGps | kPtIntermediate | kPtJoin | kPtReference, kMarkShared,
       "BAIsJF"},
      {kPtBearing | kPtGps | kPtJoin | kPtLink | kPtReference, 0, "BJLF"}};
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(PointTypeField(Point{.PtFlags = row.flags, .PtMarks = row.marks}), row.field);
  }
}

}  // namespace
}  // namespace plotmeter
