#include "geometry/Area.h"

#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "geometry/PartOutlines.h"

namespace plotmeter {

namespace {

constexpr std::array<std::string_view, kAreaUnitCount> kAreaUnitNames = {
    "Sq. Meters",     "Hectares",  "Acres",   "Sq. Feet",
    "Sq. Kilometers", "Sq. Miles", "Squares", "Sq. Chains"};

// One cell of the conversion table: multiply or divide by the factor.
struct Conversion {
  bool divide = false;
  double factor = 1;
};

constexpr Conversion Times(double factor) { return {false, factor}; }
constexpr Conversion Over(double factor) { return {true, factor}; }
constexpr Conversion kSame{};

// Rows: Meters, Kilometers, Feet, Miles, Chains. Columns: the area units in list order.
// The factors are the program's own, odd ones included (kilometres to acres and to
// square chains, feet to square miles, and several miles and chains cells are not the
// physical ratios); displayed areas must match them, so they stay exactly as they are.
constexpr std::array<std::array<Conversion, kAreaUnitCount>, kUnitCount - 1> kConversions = {{
    // Meters
    {kSame, Over(10000), Times(0.000247105381613712), Times(10.7639104167097), Over(1e6),
     Times(3.86102158771425e-7), Times(0.107639104167097), Times(0.00247105381613712)},
    // Kilometers
    {Times(1e6), Times(100), Times(24710.5381613712), Times(10763910.4167097), kSame,
     Over(2.589988110336), Times(107639.104167097), Times(247105.381613712)},
    // Feet
    {Over(10.7639104167097), Over(107639.104167097), Over(43560), kSame, Over(10763910.4167097),
     Over(2.78784e8), Over(100), Over(4356)},
    // Miles
    {Times(258998.81088), Times(25.899881088), Times(640), Times(2.78784e8), Times(2.589988110336),
     kSame, Times(2787840), Times(6400)},
    // Chains
    {Times(4046.85642240001), Over(24.7105381613712), Over(10), Times(43560),
     Over(2471.05381467165), Over(6400), Times(435.6), kSame},
}};

// The signed area of the triangle (p0, pk, pk1), from single-precision
// co-ordinates in double precision.
double TriangleArea(const Point& p0, const Point& pk, const Point& pk1) {
  double x0 = p0.X, y0 = p0.Y, xk = pk.X, yk = pk.Y, xk1 = pk1.X, yk1 = pk1.Y;
  return 0.5 * (x0 * (yk - yk1) + xk * (yk1 - y0) + xk1 * (y0 - yk));
}

std::vector<int> MainOutline(const Survey& survey) {
  PointRange range = DatasetPoints(survey, survey.FindDataset(kDatasetMain));
  std::vector<int> outline;
  for (int i = range.begin; i < range.end; ++i) outline.push_back(i);
  return outline;
}

}  // namespace

std::string_view AreaUnitName(int index) {
  return index >= 0 && index < kAreaUnitCount ? kAreaUnitNames[index] : "";
}

double OutlineArea(const Survey& survey, std::span<const int> outline) {
  std::vector<const Point*> points;
  points.reserve(outline.size());
  for (int i : outline) {
    if (i >= 0 && i < survey.PointCount()) points.push_back(&survey.Points[i]);
  }
  // The closing line from the last point back to the first needs no term of its own.
  double sum = 0;
  for (std::size_t k = 1; k + 1 < points.size(); ++k) {
    sum += TriangleArea(*points[0], *points[k], *points[k + 1]);
  }
  return std::fabs(sum);
}

double ConvertArea(double area, int unitOfMeasure, int areaUnit) {
  if (unitOfMeasure <= kUnitNotSpecified || unitOfMeasure >= kUnitCount) return area;
  if (areaUnit < 0 || areaUnit >= kAreaUnitCount) return area;
  const Conversion& conversion = kConversions[unitOfMeasure - 1][areaUnit];
  return conversion.divide ? area / conversion.factor : area * conversion.factor;
}

void ComputeArea(const Survey& survey, ProcessingState& state, int areaUnit) {
  std::array<double, 3>& areas = state.SegmentAreas;
  areas.fill(OutlineArea(survey, MainOutline(survey)));
  state.AreaState &= static_cast<std::uint8_t>(~kSegmentsSwapped);
  if (state.AreaState & kAreaSegmentCount) {
    areas[1] = OutlineArea(survey, state.PartOutlines[0]);
    areas[2] = OutlineArea(survey, state.PartOutlines[1]);
    if (areas[1] > areas[0]) {
      std::swap(areas[0], areas[1]);
      state.AreaState |= kSegmentsSwapped;
    }
  }
  for (double& area : areas) area = ConvertArea(area, survey.UnitOfMeasure, areaUnit);
  state.ProcessState |= kAreaComputed;
}

}  // namespace plotmeter
