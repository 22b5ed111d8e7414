#include "model/NumberFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

namespace plotmeter {

namespace {

// What a digit-placeholder pattern asks for. The integer part is always shown in full;
// leading "#"s add nothing, the "0"s set the least number of integer digits.
struct NumberPattern {
  int minIntegerDigits = 0;
  bool grouped = false;
  int minDecimals = 0;
  int maxDecimals = 0;
};

NumberPattern ReadPattern(std::string_view pattern) {
  NumberPattern result;
  bool afterPoint = false;
  for (char c : pattern) {
    if (c == '.') {
      afterPoint = true;
    } else if (afterPoint) {
      if (c == '0') ++result.minDecimals;
      if (c == '0' || c == '#') ++result.maxDecimals;
    } else if (c == '0') {
      ++result.minIntegerDigits;
    } else if (c == ',') {
      result.grouped = true;
    }
  }
  return result;
}

// A decimal number as digits and the place of the decimal point: the value is
// 0.<digits> x 10^pointPos. No leading zeros in `digits`; empty means zero.
struct DecimalDigits {
  bool negative = false;
  std::string digits;
  int pointPos = 0;
};

// Splits the shortest round-trip scientific form ("-d.ddde+XX") into digits and point.
DecimalDigits FromScientific(std::string_view text) {
  DecimalDigits result;
  std::size_t i = 0;
  if (i < text.size() && text[i] == '-') {
    result.negative = true;
    ++i;
  }
  int exponent = 0;
  for (; i < text.size(); ++i) {
    char c = text[i];
    if (c >= '0' && c <= '9') {
      result.digits.push_back(c);
    } else if (c == 'e' || c == 'E') {
      std::size_t start = i + 1;
      if (start < text.size() && text[start] == '+') ++start;
      std::from_chars(text.data() + start, text.data() + text.size(), exponent);
      break;
    }
  }
  result.pointPos = exponent + 1;
  std::size_t firstNonZero = result.digits.find_first_not_of('0');
  if (firstNonZero == std::string::npos) {
    result.digits.clear();
    result.pointPos = 0;
  } else {
    result.digits.erase(0, firstNonZero);
    result.pointPos -= static_cast<int>(firstNonZero);
  }
  return result;
}

template <typename T>
DecimalDigits ShortestDigits(T value) {
  char buffer[64];
  auto [end, ec] =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  return FromScientific(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
}

// Rounds half away from zero so that at most `decimals` digits follow the point.
void RoundToDecimals(DecimalDigits& number, int decimals) {
  long keep = static_cast<long>(number.pointPos) + decimals;
  if (keep >= static_cast<long>(number.digits.size())) return;
  if (keep < 0) {
    number.digits.clear();
    number.pointPos = 0;
    return;
  }
  bool roundUp = number.digits[static_cast<std::size_t>(keep)] >= '5';
  number.digits.resize(static_cast<std::size_t>(keep));
  if (roundUp) {
    std::size_t i = number.digits.size();
    while (i > 0 && number.digits[i - 1] == '9') number.digits[--i] = '0';
    if (i == 0) {
      number.digits.insert(number.digits.begin(), '1');
      ++number.pointPos;
    } else {
      ++number.digits[i - 1];
    }
  }
  while (!number.digits.empty() && number.digits.back() == '0') number.digits.pop_back();
  if (number.digits.empty()) number.pointPos = 0;
}

std::string IntegerText(const DecimalDigits& number, int minDigits) {
  std::string text;
  if (number.pointPos > 0) {
    auto whole = static_cast<std::size_t>(number.pointPos);
    text = number.digits.substr(0, std::min(whole, number.digits.size()));
    text.append(whole - text.size(), '0');
  }
  if (static_cast<int>(text.size()) < minDigits) {
    text.insert(0, static_cast<std::size_t>(minDigits) - text.size(), '0');
  }
  return text;
}

std::string FractionText(const DecimalDigits& number, int minDecimals) {
  std::string text;
  if (number.pointPos < 0) text.assign(static_cast<std::size_t>(-number.pointPos), '0');
  if (number.pointPos < static_cast<int>(number.digits.size())) {
    text += number.digits.substr(static_cast<std::size_t>(std::max(number.pointPos, 0)));
  }
  if (static_cast<int>(text.size()) < minDecimals) {
    text.append(static_cast<std::size_t>(minDecimals) - text.size(), '0');
  }
  return text;
}

std::string GroupThousands(const std::string& integer) {
  std::string text;
  for (std::size_t i = 0; i < integer.size(); ++i) {
    if (i > 0 && (integer.size() - i) % 3 == 0) text.push_back(',');
    text.push_back(integer[i]);
  }
  return text;
}

std::string Compose(DecimalDigits number, std::string_view pattern) {
  NumberPattern format = ReadPattern(pattern);
  RoundToDecimals(number, format.maxDecimals);
  std::string integer = IntegerText(number, format.minIntegerDigits);
  if (format.grouped) integer = GroupThousands(integer);
  std::string fraction = FractionText(number, format.minDecimals);
  // A value that rounds to zero is shown without a sign.
  std::string text = (number.negative && !number.digits.empty()) ? "-" : "";
  text += integer;
  if (!fraction.empty()) text += "." + fraction;
  return text;
}

template <typename T>
std::string NonFiniteText(T value) {
  if (std::isnan(value)) return "NaN";
  return value < 0 ? "-Infinity" : "Infinity";
}

}  // namespace

std::string FormatNumber(double value, std::string_view pattern) {
  if (!std::isfinite(value)) return NonFiniteText(value);
  return Compose(ShortestDigits(value), pattern);
}

std::string FormatNumber(float value, std::string_view pattern) {
  if (!std::isfinite(value)) return NonFiniteText(value);
  return Compose(ShortestDigits(value), pattern);
}

std::string FormatNumber(int value, std::string_view pattern) {
  return Compose(ShortestDigits(static_cast<double>(value)), pattern);
}

std::string FormatText(std::string_view text, std::string_view pattern) {
  auto width = static_cast<std::size_t>(std::count(pattern.begin(), pattern.end(), '@'));
  std::string result;
  if (text.size() < width) result.assign(width - text.size(), ' ');
  result += text;
  return result;
}

}  // namespace plotmeter
