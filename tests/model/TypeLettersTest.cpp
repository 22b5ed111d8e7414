#include <gtest/gtest.h>

#include "model/TypeLetters.h"
#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

struct TypeFieldRow {
  std::uint8_t flags;
  std::uint8_t marks;
  const char* field;
};

class TypeFieldTest : public ::testing::TestWithParam<TypeFieldRow> {};

// The written field, and the bits that reading it back (by hand) gives.
TEST_P(TypeFieldTest, LetterThenFlagsInOrderAndBack) {
  Point point{.PtFlags = GetParam().flags, .PtMarks = GetParam().marks};
  EXPECT_EQ(PointTypeField(point), GetParam().field);
  Point read;
  testing::ApplyTypeLetters(GetParam().field, read);
  // Beside "L" the written field leaves "A" out: the link carries the GPS values.
  const auto kept = static_cast<std::uint8_t>((point.PtFlags & kPtLink) ? ~kPtAltGps : 0xFF);
  EXPECT_EQ(read.PtFlags & kept, point.PtFlags & kept) << GetParam().field;
  EXPECT_EQ(read.PtMarks, point.PtMarks) << GetParam().field;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, TypeFieldTest, ::testing::Values(
    TypeFieldRow{kPtXY, kMarkDummy, "D"},
    TypeFieldRow{kPtReference | kPtJoin, 0, "RJ"},
    TypeFieldRow{kPtGps | kPtAltGps, 0, "GA"},
    TypeFieldRow{kPtGps | kPtLink, 0, "GL"},
    TypeFieldRow{kPtGps | kPtIntermediate, 0, "GI"},
    TypeFieldRow{kPtXY | kPtGps | kPtAltGps, 0, "XA"},
    TypeFieldRow{kPtXY | kPtGps | kPtAltGps | kPtLink, 0, "XL"},
    TypeFieldRow{kPtBearing | kPtReference, kMarkCompass, "CF"},
    TypeFieldRow{kPtBearing | kPtGps | kPtAltGps | kPtIntermediate | kPtJoin | kPtReference,
                 kMarkShared, "BAIsJF"},
    TypeFieldRow{kPtBearing | kPtGps | kPtJoin | kPtLink | kPtReference, 0, "BJLF"}));
// clang-format on

}  // namespace
}  // namespace plotmeter
