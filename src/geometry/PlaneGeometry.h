// Bearings, lengths and positions in the survey's plane: the arithmetic that every way
// of giving a point shares. Bearings are degrees clockwise from north (+Y).
#pragma once

namespace plotmeter {

// π as the program takes it everywhere: the single-precision value.
inline constexpr float kPi = 3.1415927f;

struct PlanePoint {
  float x = 0;
  float y = 0;
};

struct BearingLength {
  float bearing = 0;  // degrees
  float length = 0;
};

// The float nearest to `value`, or an infinity of its sign when it lies beyond the float
// range: a plain conversion of such a value is undefined behaviour.
float NarrowToFloat(double value);

bool IsFinite(PlanePoint p);

// The point `length` away from `origin` at `bearing` degrees. Each product is rounded to
// single precision before it is added to the origin, as the traverse has always done.
PlanePoint PointAtBearing(PlanePoint origin, double bearing, float length);

// The bearing and length of the line from `from` to `to` by the arctangent rule: the
// angle is atan(dx / dy), plus π when dy is negative, and the length is dx divided by the
// sine of that angle rather than a square root, so that results agree with files made
// before. A line along an axis (dx or dy is 0, where the quotient or the sine would fail)
// gets exactly 0, 90, 180 or 270 and its one difference taken positive. Equal points give
// 0 and 0.
BearingLength LineBearingLength(PlanePoint from, PlanePoint to);

}  // namespace plotmeter
