// `plotmeter-cli export` run in-process: the documents are read back as a GIS and a globe
// viewer would read them, and the exported GPS outline is measured on the WGS 84 ellipsoid.
// Their exact texts are the goldens in tests/golden/export.
#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

using Json = nlohmann::json;

const std::string kPaddock = std::string(PLOTMETER_EXAMPLES_DIR) + "/paddock-gps.csv";

// The export goldens' data files: a block not tied to GPS; a hectare tied to GPS, divided
// 0.7 to 0.3, with a fence from its second corner and a well.
const std::string kBlock = PLOTMETER_GOLDEN_DIR "/export/block.csv";
const std::string kDividedLot = PLOTMETER_GOLDEN_DIR "/export/lot.csv";

// A 100 m square tied to GPS at its first corner, traversed either way.
std::string GpsSquare(const std::string& longitude, const std::string& latitude, bool clockwise) {
  const char* corners = clockwise ? "2,X,,,0,100\n3,X,,,100,100\n4,X,,,100,0\n"
                                  : "2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n";
  return "44,#0092,1,0,0,58\nH,M,Square\n1,XL,,,0,0," + longitude + "," + latitude + "\n" + corners;
}

// The positions of each <coordinates> element, in order, as GeoJSON gives them.
std::vector<Json> KmlCoordinates(const std::string& kml) {
  std::vector<Json> elements;
  for (std::size_t at = kml.find("<coordinates>"); at != std::string::npos;
       at = kml.find("<coordinates>", at + 1)) {
    const std::size_t begin = at + 13;
    std::istringstream tuples(kml.substr(begin, kml.find("</coordinates>", at) - begin));
    Json& positions = elements.emplace_back(Json::array());
    for (std::string tuple; tuples >> tuple;) {
      const std::size_t comma = tuple.find(',');
      positions.push_back({std::stod(tuple.substr(0, comma)), std::stod(tuple.substr(comma + 1))});
    }
  }
  return elements;
}

// Square metres on the WGS 84 ellipsoid, positive for a counter-clockwise ring.
double GeodesicArea(const Json& ring) {
  GeographicLib::PolygonArea polygon(GeographicLib::Geodesic::WGS84());
  for (std::size_t k = 0; k + 1 < ring.size(); ++k) polygon.AddPoint(ring[k][1], ring[k][0]);
  double perimeter = 0, area = 0;
  polygon.Compute(false, true, perimeter, area);
  return area;
}

class ExportTest : public ::testing::Test {
 protected:
  int Run(std::vector<std::string> args) {
    out_.str("");
    err_.str("");
    return RunCli(args, out_, err_);
  }

  testing::TestFolder folder_;
  std::ostringstream out_, err_;
};

TEST_F(ExportTest, RingsAreClosedCounterClockwiseAndWithinTheLongitudeRange) {
  struct Row {
    std::string longitude, latitude;
    bool clockwise;
    double firstLongitude;
  };
  const Row rows[] = {{"148.5 E", "35.3 S", false, 148.5},
                      {"148.5 E", "35.3 S", true, 148.5},
                      {"70.25 W", "33.5 N", true, -70.25},
                      {"179.9995 E", "35.3 S", false, 179.9995}};  // across the 180 meridian
  for (const Row& row : rows) {
    const std::string file =
        folder_.Write("square.csv", GpsSquare(row.longitude, row.latitude, row.clockwise));
    ASSERT_EQ(Run({"export", file, "--to", "geojson"}), 0) << err_.str();
    const Json ring = Json::parse(out_.str())["features"][0]["geometry"]["coordinates"][0];
    ASSERT_EQ(ring.size(), 5u) << row.longitude;
    EXPECT_EQ(ring.front(), ring.back());
    EXPECT_DOUBLE_EQ(ring[0][0].get<double>(), row.firstLongitude);
    for (const Json& position : ring) EXPECT_LE(std::fabs(position[0].get<double>()), 180);
    EXPECT_NEAR(GeodesicArea(ring), 10000, 50) << row.longitude;
  }
}

TEST_F(ExportTest, GpsExampleAreaAgreesWithTheEllipsoidAndItsPointsHaveGpsValues) {
  ASSERT_EQ(Run({"area", kPaddock, "--unit", "Sq. Meters", "--json"}), 0);
  const double programArea = Json::parse(out_.str())["areas"][0];
  ASSERT_EQ(Run({"export", kPaddock, "--to", "geojson"}), 0);
  const Json features = Json::parse(out_.str())["features"];
  ASSERT_EQ(features.size(), 2u);
  const Json& plot = features[0]["properties"];
  EXPECT_EQ(plot["tag"], "Back paddock");
  EXPECT_EQ(plot["areaUnit"], "Hectares");
  EXPECT_NEAR(plot["area"].get<double>() * 10000, programArea, 1e-6);
  EXPECT_NEAR(GeodesicArea(features[0]["geometry"]["coordinates"][0]) / programArea, 1, 0.005);
  EXPECT_EQ(features[1]["geometry"]["type"], "Point");
  EXPECT_EQ(features[1]["properties"]["number"], 6);
}

// The KML places each feature where the GeoJSON does.
TEST_F(ExportTest, DividedPlotKmlAgreesWithGeoJson) {
  ASSERT_EQ(Run({"export", kDividedLot, "--to", "geojson"}), 0) << err_.str();
  const Json features = Json::parse(out_.str())["features"];
  ASSERT_EQ(features.size(), 5u);
  ASSERT_EQ(Run({"export", kDividedLot, "--to", "kml"}), 0);
  const auto coordinates = KmlCoordinates(out_.str());
  ASSERT_EQ(coordinates.size(), features.size());
  for (std::size_t k = 0; k < features.size(); ++k) {
    const Json& positions = features[k]["geometry"]["coordinates"];
    EXPECT_EQ(coordinates[k], k < 3    ? positions[0]
                              : k == 4 ? Json::array({positions})
                                       : positions)
        << k;
  }
}

// Several files make one document that goes on past a refused file: the golden
// geojson-of-several-files-past-a-refused-one. Here, OUT as a file.
TEST_F(ExportTest, OutIsWrittenWholeOrLeftAlone) {
  const std::string square = folder_.Write("square.csv", GpsSquare("148.5 E", "35.3 S", false));
  const std::string kept = testing::TestFolder::Contents(square);
  const std::string out = folder_.Path("out.kml");
  EXPECT_EQ(Run({"export", kBlock, "--to", "kml", "-o", out}), 1);
  EXPECT_FALSE(std::filesystem::exists(out));
  ASSERT_EQ(Run({"export", square, "--to", "kml"}), 0);
  const std::string kml = out_.str();
  EXPECT_EQ(Run({"export", square, "--to", "kml", "-o", out}), 0);
  EXPECT_EQ(out_.str() + err_.str(), "");
  EXPECT_EQ(testing::TestFolder::Contents(out), kml);
  // OUT the same as an input is a usage error; the input stays as it was.
  EXPECT_EQ(Run({"export", square, "--to", "csv", "-o", square}), 2);
  EXPECT_TRUE(err_.str().starts_with("plotmeter-cli: ")) << err_.str();
  EXPECT_EQ(testing::TestFolder::Contents(square), kept);
}

}  // namespace
}  // namespace plotmeter
