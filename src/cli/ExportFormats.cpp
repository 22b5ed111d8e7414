#include "cli/ExportFormats.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <string_view>

namespace plotmeter {

namespace {

// The shortest text that reads back as the same number.
template <typename Number>
std::string NumberText(Number value) {
  std::array<char, 32> buffer{};
  auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return std::string(buffer.data(), result.ptr);
}

// ---- CSV ----

// RFC 4180: a field holding a comma, a quote or a line break is quoted, its quotes doubled.
std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (char c : text) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  return quoted + '"';
}

void AddCsvRow(const std::vector<std::string>& fields, std::string& text) {
  for (std::size_t k = 0; k < fields.size(); ++k) {
    if (k > 0) text += ',';
    text += CsvField(fields[k]);
  }
  text += "\r\n";
}

std::vector<std::string> CsvFields(const ExportPoint& point) {
  return {std::to_string(point.number),
          point.type,
          std::to_string(point.dataset),
          std::string(1, point.datasetType),
          point.datasetTag,
          NumberText(point.x),
          NumberText(point.y),
          NumberText(point.bearing),
          NumberText(point.length),
          point.gps ? NumberText(point.gps->longitude) : "",
          point.gps ? NumberText(point.gps->latitude) : ""};
}

std::string CsvText(const std::vector<ExportedSurvey>& surveys) {
  const bool named = !surveys.front().file.empty();
  std::vector<std::string> heading = {
      "Point", "Type",    "Dataset", "Dataset Type",  "Tag",         "X",
      "Y",     "Bearing", "Length",  "GPS Longitude", "GPS Latitude"};
  if (named) heading.insert(heading.begin(), "File");
  std::string text;
  AddCsvRow(heading, text);
  for (const ExportedSurvey& survey : surveys) {
    for (const ExportPoint& point : survey.points) {
      std::vector<std::string> fields = CsvFields(point);
      if (named) fields.insert(fields.begin(), survey.file);
      AddCsvRow(fields, text);
    }
  }
  return text;
}

// ---- GeoJSON ----

using Json = nlohmann::ordered_json;

Json Position(const LonLat& position) {
  return Json::array({position.longitude, position.latitude});
}

Json Positions(const std::vector<LonLat>& positions) {
  Json array = Json::array();
  for (const LonLat& position : positions) array.push_back(Position(position));
  return array;
}

Json GeometryJson(const ExportFeature& feature) {
  switch (feature.geometry) {
    case Geometry::kPolygon:
      return {{"type", "Polygon"}, {"coordinates", Json::array({Positions(feature.positions)})}};
    case Geometry::kLineString:
      return {{"type", "LineString"}, {"coordinates", Positions(feature.positions)}};
    case Geometry::kPoint:
      break;
  }
  return {{"type", "Point"}, {"coordinates", Position(feature.positions.front())}};
}

Json Properties(const ExportedSurvey& survey, const ExportFeature& feature) {
  Json properties = Json::object();
  if (!survey.file.empty()) properties["file"] = survey.file;
  properties["dataset"] = std::string(1, feature.datasetType);
  properties["tag"] = feature.tag;
  if (feature.part) properties["part"] = feature.part;
  if (feature.number) properties["number"] = feature.number;
  if (feature.area) {
    properties["area"] = *feature.area;
    properties["areaUnit"] = survey.areaUnit;
  }
  return properties;
}

// One feature a line, between the collection's opening and closing lines.
std::string GeoJsonText(const std::vector<ExportedSurvey>& surveys) {
  std::string text = "{\"type\":\"FeatureCollection\",\"features\":[";
  const char* separator = "\n";
  for (const ExportedSurvey& survey : surveys) {
    for (const ExportFeature& feature : survey.features) {
      const Json object = {{"type", "Feature"},
                           {"geometry", GeometryJson(feature)},
                           {"properties", Properties(survey, feature)}};
      // A file name that is not UTF-8 still gives valid JSON.
      text += separator + object.dump(-1, ' ', false, Json::error_handler_t::replace);
      separator = ",\n";
    }
  }
  return text + "\n]}\n";
}

// ---- KML ----

// Text escaped for XML; control characters that XML 1.0 cannot hold are left out.
std::string Xml(std::string_view text) {
  std::string escaped;
  for (char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r') {
          escaped += c;
        }
    }
  }
  return escaped;
}

std::string KmlCoordinates(const std::vector<LonLat>& positions) {
  std::string text = "<coordinates>";
  for (std::size_t k = 0; k < positions.size(); ++k) {
    if (k > 0) text += ' ';
    text += NumberText(positions[k].longitude) + "," + NumberText(positions[k].latitude);
  }
  return text + "</coordinates>";
}

std::string KmlGeometry(const ExportFeature& feature) {
  const std::string coordinates = KmlCoordinates(feature.positions);
  switch (feature.geometry) {
    case Geometry::kPolygon:
      return "<Polygon><tessellate>1</tessellate><outerBoundaryIs><LinearRing>" + coordinates +
             "</LinearRing></outerBoundaryIs></Polygon>";
    case Geometry::kLineString:
      return "<LineString><tessellate>1</tessellate>" + coordinates + "</LineString>";
    case Geometry::kPoint:
      break;
  }
  return "<Point>" + coordinates + "</Point>";
}

// The tag, or what the feature is when it has none.
std::string KmlName(const ExportFeature& feature) {
  std::string name = feature.tag;
  if (feature.part) {
    name += (name.empty() ? "Part " : " part ") + std::to_string(feature.part);
  } else if (name.empty() && feature.number) {
    name = "Point " + std::to_string(feature.number);
  } else if (name.empty()) {
    name = feature.geometry == Geometry::kPolygon ? "Perimeter" : "Line";
  }
  return name;
}

std::string KmlData(std::string_view name, const std::string& value) {
  return "<Data name=\"" + std::string(name) + "\"><value>" + Xml(value) + "</value></Data>";
}

std::string KmlPlacemark(const ExportedSurvey& survey, const ExportFeature& feature) {
  std::string data = KmlData("dataset", std::string(1, feature.datasetType));
  data += KmlData("tag", feature.tag);
  if (feature.part) data += KmlData("part", std::to_string(feature.part));
  if (feature.number) data += KmlData("number", std::to_string(feature.number));
  if (feature.area) {
    data += KmlData("area", NumberText(*feature.area));
    data += KmlData("areaUnit", survey.areaUnit);
  }
  return "<Placemark><name>" + Xml(KmlName(feature)) + "</name><styleUrl>#plot</styleUrl>" +
         "<ExtendedData>" + data + "</ExtendedData>" + KmlGeometry(feature) + "</Placemark>\n";
}

// Lines and outlines in red, the plots lightly filled.
constexpr const char* kKmlStyle =
    "<Style id=\"plot\"><LineStyle><color>ff0000ff</color><width>2</width></LineStyle>"
    "<PolyStyle><color>400000ff</color></PolyStyle></Style>\n";

std::string KmlText(const std::vector<ExportedSurvey>& surveys) {
  const bool named = !surveys.front().file.empty();
  std::string title = named ? "" : surveys.front().fileTag;
  if (title.empty()) title = "Plotmeter";
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document><name>" +
      Xml(title) + "</name>\n" + kKmlStyle;
  for (const ExportedSurvey& survey : surveys) {
    if (named) text += "<Folder><name>" + Xml(survey.file) + "</name>\n";
    for (const ExportFeature& feature : survey.features) text += KmlPlacemark(survey, feature);
    if (named) text += "</Folder>\n";
  }
  return text + "</Document>\n</kml>\n";
}

}  // namespace

bool NeedsGps(ExportFormat format) { return format != ExportFormat::kCsv; }

std::string ExportText(ExportFormat format, const std::vector<ExportedSurvey>& surveys) {
  if (surveys.empty()) return "";
  switch (format) {
    case ExportFormat::kGeoJson:
      return GeoJsonText(surveys);
    case ExportFormat::kKml:
      return KmlText(surveys);
    case ExportFormat::kCsv:
      break;
  }
  return CsvText(surveys);
}

}  // namespace plotmeter
