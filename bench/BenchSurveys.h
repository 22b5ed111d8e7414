// Survey files for the benchmarks.
#pragma once

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

namespace plotmeter {

// A main perimeter of `count` points round a circle of 500 m, in metres: even points by
// co-ordinates, odd points by bearing and length from the point before.
inline std::string SurveyFile(int count) {
  std::ostringstream file;
  file << "// Unit of Measure is Meters\n44,#0092,1,0,0,92,Bench plot\n/ Main Dataset Header\n"
       << "H,M,Boundary\n";
  double previousX = 0, previousY = 0;
  for (int i = 0; i < count; ++i) {
    double angle = 2 * std::numbers::pi * i / count;
    double x = 500 * std::cos(angle), y = 500 * std::sin(angle);
    if (i % 2 == 1) {
      double dx = x - previousX, dy = y - previousY;
      double bearing = std::atan2(dx, dy) * 180 / std::numbers::pi;
      if (bearing < 0) bearing += 360;
      file << i + 1 << ",B,,," << bearing << ',' << std::hypot(dx, dy) << ",,\n";
    } else {
      file << i + 1 << ",X,,," << x << ',' << y << ",,\n";
    }
    previousX = x;
    previousY = y;
  }
  file << "/End data\n";
  return file.str();
}

}  // namespace plotmeter
