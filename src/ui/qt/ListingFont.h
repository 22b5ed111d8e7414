// The fixed-pitch font of the listing and of the list legend's codes, so that columns
// and codes line up.
#pragma once

#include <QFont>

namespace plotmeter::qt {

// Courier New where it is installed, otherwise the system's fixed-pitch font, otherwise
// the first family that is fixed-pitch.
QFont ListingFont();

}  // namespace plotmeter::qt
