#include "model/GpsText.h"

#include <cmath>

#include "model/ValueText.h"

namespace plotmeter {

namespace {

constexpr double kMaxLatitude = 90;
constexpr double kMaxLongitude = 180;
constexpr double kFullCircle = 360;

// The two hemisphere letters of an axis, the positive one first.
struct Hemispheres {
  char positive;
  char negative;
};
constexpr Hemispheres kLatitudeLetters = {'N', 'S'};
constexpr Hemispheres kLongitudeLetters = {'E', 'W'};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char ToUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// +1 or -1 for a hemisphere letter of the axis, 0 for any other character.
int LetterSign(char c, Hemispheres letters) {
  c = ToUpper(c);
  if (c == letters.positive) return 1;
  if (c == letters.negative) return -1;
  return 0;
}

bool HasLetter(std::string_view text) {
  for (char c : text) {
    if (IsLetter(c)) return true;
  }
  return false;
}

// A last letter straight after a digit is the seconds word "s" when the angle is written
// with word markers ("27d42m50s"); otherwise it is the hemisphere ("33.5S").
bool EndsInHemisphereLetter(std::string_view text, Hemispheres letters) {
  if (text.size() < 2 || LetterSign(text.back(), letters) == 0) return false;
  char before = text[text.size() - 2];
  if (!IsDigit(before) && before != '.') return true;
  return !HasLetter(text.substr(0, text.size() - 1));
}

// Signed degrees, positive towards `letters.positive`, no further from 0 than `limit`.
std::optional<double> ParseSignedGpsAngle(const Survey& survey, std::string_view text,
                                          Hemispheres letters, double limit) {
  text = Trim(text);
  int sign = 0;
  if (!text.empty() && LetterSign(text.front(), letters) != 0) {
    sign = LetterSign(text.front(), letters);
    text = Trim(text.substr(1));
  }
  if (EndsInHemisphereLetter(text, letters)) {
    if (sign != 0) return std::nullopt;  // two hemisphere letters
    sign = LetterSign(text.back(), letters);
    text = Trim(text.substr(0, text.size() - 1));
  }
  if (text.empty()) return std::nullopt;
  // A letter and a sign together would contradict each other.
  if (sign != 0 && (text.front() == '-' || text.front() == '+')) return std::nullopt;
  AngleReading reading = ReadAngle(text, survey.DegreeChar, survey.SubValueSeparator, true);
  if (reading.notNumber || reading.over60) return std::nullopt;
  double degrees = sign < 0 ? -reading.degrees : reading.degrees;
  if (std::fabs(degrees) > limit) return std::nullopt;
  return degrees == 0 ? 0.0 : degrees;  // no -0
}

}  // namespace

std::optional<double> ParseGpsLatitude(const Survey& survey, std::string_view text) {
  return ParseSignedGpsAngle(survey, text, kLatitudeLetters, kMaxLatitude);
}

std::optional<double> ParseGpsLongitude(const Survey& survey, std::string_view text) {
  std::optional<double> degrees =
      ParseSignedGpsAngle(survey, text, kLongitudeLetters, kMaxLongitude);
  if (degrees && *degrees < 0) *degrees += kFullCircle;
  return degrees;
}

}  // namespace plotmeter
