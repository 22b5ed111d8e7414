#include <gtest/gtest.h>

#include "model/TypeLetters.h"
#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

// The written field, and the bits that reading it back (by hand) gives. Beside "L" the
// written field leaves "A" out: the link carries the GPS values.
TEST(TypeLettersTest, LetterThenFlagsInOrderAndBack) {
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
    Point point{.PtFlags = row.flags, .PtMarks = row.marks}, read;
    EXPECT_EQ(PointTypeField(point), row.field);
    testing::ApplyTypeLetters(row.field, read);
    const auto kept = static_cast<std::uint8_t>((point.PtFlags & kPtLink) ? ~kPtAltGps : 0xFF);
    EXPECT_EQ(read.PtFlags & kept, point.PtFlags & kept) << row.field;
    EXPECT_EQ(read.PtMarks, point.PtMarks) << row.field;
  }
}

}  // namespace
}  // namespace plotmeter
