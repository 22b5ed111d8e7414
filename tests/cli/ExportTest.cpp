// `plotmeter-cli export` run in-process: the documents are read back as a GIS and a globe
// viewer would read them, and the exported GPS outline is measured on the WGS 84 ellipsoid.
#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

using Json = nlohmann::json;

const std::string kPaddock = std::string(PLOTMETER_EXAMPLES_DIR) + "/paddock-gps.csv";

// Not tied to GPS; tab-separated, so that its tag can hold a comma that CSV must quote.
constexpr const char* kBlock =
    "9\t#0092\t1\t0\t0\t58\nH\tM\tLot \"A\", north\n1\tX\t\t\t0\t0\n2\tX\t\t\t40\t0\n"
    "3\tX\t\t\t40\t30\n";

// A 100 m square tied to GPS at its first corner, traversed either way.
std::string GpsSquare(const std::string& longitude, const std::string& latitude, bool clockwise) {
  const char* corners = clockwise ? "2,X,,,0,100\n3,X,,,100,100\n4,X,,,100,0\n"
                                  : "2,X,,,100,0\n3,X,,,100,100\n4,X,,,0,100\n";
  return "44,#0092,1,0,0,58\nH,M,Square\n1,XL,,,0,0," + longitude + "," + latitude + "\n" + corners;
}

// One hectare divided 0.7 to 0.3, a fence from its second corner, a well.
constexpr const char* kDividedLot =
    "44,#0092,1,0,0,58\nH,M,Block\n1,XJL,,,0,0,148.5 E,35.3 S\n2,X,,,100,0\n3,XJ,,,100,100\n"
    "4,X,,,0,100\nH,S,Split\n5,R,1\n6,X,,,70,30\nH,L,Fence & gate\n7,R,2\n8,X,,,150,0\n"
    "H,P,Well\n9,X,,,50,50\n";

// The rows of a CSV text whose fields are not quoted; each line ends in CR LF.
std::vector<std::vector<std::string>> Rows(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line.ends_with('\r')) << line;
    std::istringstream fields(line.substr(0, line.size() - 1) + ",");
    auto& row = rows.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) row.push_back(field);
  }
  return rows;
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

TEST_F(ExportTest, MapsNeedASurveyTiedToGps) {
  const std::string block = folder_.Write("block.csv", kBlock);
  for (const char* format : {"geojson", "kml"}) {
    EXPECT_EQ(Run({"export", block, "--to", format}), 1) << format;
    EXPECT_EQ(out_.str(), "");
    EXPECT_EQ(err_.str(),
              "[Export Abort]\nThe survey is not tied to GPS: none of its points has GPS values.\n"
              "GeoJSON and KML need them, through a GPS link point; --to csv exports the plane "
              "co-ordinates.\n\n");
  }
  // Every point as a row; a field holding a comma or a quote is quoted.
  EXPECT_EQ(Run({"export", block, "--to", "csv"}), 0);
  const std::string tag = "\"Lot \"\"A\"\", north\",";
  EXPECT_EQ(out_.str(),
            "Point,Type,Dataset,Dataset Type,Tag,X,Y,Bearing,Length,GPS Longitude,GPS Latitude\r\n"
            "1,X,1,M," +
                tag + "0,0,0,0,,\r\n2,X,1,M," + tag + "40,0,90,40,,\r\n3,X,1,M," + tag +
                "40,30,0,30,,\r\n");
}

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
  // Every point, with its GPS values, in the CSV.
  EXPECT_EQ(Run({"export", kPaddock, "--to", "csv"}), 0);
  const auto rows = Rows(out_.str());
  ASSERT_EQ(rows.size(), 7u);
  EXPECT_EQ(std::vector<std::string>(rows[1].begin(), rows[1].begin() + 6),
            (std::vector<std::string>{"1", "XL", "1", "M", "Back paddock", "0"}));
  EXPECT_DOUBLE_EQ(std::stod(rows[1][9]), 148.5);
  EXPECT_DOUBLE_EQ(std::stod(rows[1][10]), -(35 + 20.0 / 60));
  EXPECT_EQ(std::vector<std::string>(rows[6].begin(), rows[6].begin() + 5),
            (std::vector<std::string>{"6", "G", "2", "P", "Trough"}));
  EXPECT_DOUBLE_EQ(std::stod(rows[6][9]), 148 + 30.1 / 60);
}

TEST_F(ExportTest, DividedPlotLinesAndPointsInGeoJsonAndKml) {
  const std::string file = folder_.Write("lot.csv", kDividedLot);
  ASSERT_EQ(Run({"export", file, "--to", "geojson"}), 0) << err_.str();
  const Json features = Json::parse(out_.str())["features"];
  struct Expected {
    std::string type, dataset, tag;
    double area;  // hectares; 0 for none
  };
  const Expected expected[] = {{"Polygon", "M", "Block", 1.0},
                               {"Polygon", "S", "Split", 0.7},
                               {"Polygon", "S", "Split", 0.3},
                               {"LineString", "L", "Fence & gate", 0},
                               {"Point", "P", "Well", 0}};
  ASSERT_EQ(features.size(), std::size(expected));
  for (std::size_t k = 0; k < features.size(); ++k) {
    const Json& properties = features[k]["properties"];
    EXPECT_EQ(features[k]["geometry"]["type"], expected[k].type) << k;
    EXPECT_EQ(properties["dataset"], expected[k].dataset) << k;
    EXPECT_EQ(properties["tag"], expected[k].tag) << k;
    EXPECT_NEAR(properties.value("area", 0.0), expected[k].area, 1e-9) << k;
  }
  EXPECT_EQ(features[1]["properties"]["part"], 1);

  ASSERT_EQ(Run({"export", file, "--to", "kml"}), 0);
  const std::string kml = out_.str();
  EXPECT_TRUE(
      kml.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<kml xmlns=\"http://www.opengis.net/kml/2.2\">"));
  EXPECT_NE(kml.find("<name>Fence &amp; gate</name>"), std::string::npos);
  const auto coordinates = KmlCoordinates(kml);
  ASSERT_EQ(coordinates.size(), features.size());
  for (std::size_t k = 0; k < features.size(); ++k) {
    const Json& positions = features[k]["geometry"]["coordinates"];
    EXPECT_EQ(coordinates[k], k < 3    ? positions[0]
                              : k == 4 ? Json::array({positions})
                                       : positions)
        << k;
  }
}

TEST_F(ExportTest, SeveralFilesMakeOneDocumentThatNamesEachFile) {
  const std::string square = folder_.Write("square.csv", GpsSquare("148.5 E", "35.3 S", false));
  const std::string block = folder_.Write("block.csv", kBlock);
  const std::string out = folder_.Path("all.geojson");
  EXPECT_EQ(Run({"export", square, block, kPaddock, "--to", "geojson", "-o", out}), 1);
  EXPECT_EQ(out_.str(), "");
  EXPECT_TRUE(err_.str().starts_with(block + ": [Export Abort]\n")) << err_.str();
  const Json document = Json::parse(testing::TestFolder::Contents(out));
  std::set<std::string> files;
  for (const Json& feature : document["features"]) {
    files.insert(feature["properties"]["file"].get<std::string>());
  }
  EXPECT_EQ(files, (std::set<std::string>{square, kPaddock}));

  EXPECT_EQ(Run({"export", square, block, "--to", "csv"}), 0);
  const auto rows = Rows(out_.str());
  ASSERT_EQ(rows.size(), 1u + 4 + 3);
  EXPECT_EQ(rows[0][0], "File");
  EXPECT_EQ(rows[1][0], square);
  EXPECT_EQ(rows[7][0], block);
}

TEST_F(ExportTest, OutIsWrittenWholeOrLeftAlone) {
  const std::string square = folder_.Write("square.csv", GpsSquare("148.5 E", "35.3 S", false));
  const std::string kept = testing::TestFolder::Contents(square);
  const std::string out = folder_.Path("out.kml");
  EXPECT_EQ(Run({"export", folder_.Write("block.csv", kBlock), "--to", "kml", "-o", out}), 1);
  EXPECT_FALSE(std::filesystem::exists(out));
  const std::string unwritable = folder_.Path("missing/out.csv");
  EXPECT_EQ(Run({"export", square, "--to", "csv", "-o", unwritable}), 1);
  EXPECT_EQ(err_.str(),
            "[Write File Abort]\nCannot open file - check is not being used by another "
            "program.\n" +
                unwritable + ": No such file or directory\n\n");

  const std::vector<std::vector<std::string>> usage = {
      {"export", square},
      {"export", square, "--to", "shp"},
      {"export", square, "--to", "csv", "-o", square}};
  for (const auto& args : usage) {
    EXPECT_EQ(Run(args), 2) << ::testing::PrintToString(args);
    EXPECT_TRUE(err_.str().starts_with("plotmeter-cli: ")) << err_.str();
  }
  EXPECT_EQ(testing::TestFolder::Contents(square), kept);
}

}  // namespace
}  // namespace plotmeter
