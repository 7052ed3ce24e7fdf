// Painting a fingerprint picture with cairo, as an SVG or a PNG file.
#pragma once

#include <string>

#include "cli/plot.hpp" // for PlotStyle, tresk::Fingerprint

// Draws the fingerprint into a .svg or .png file (chosen by the extension, in any case).
// Returns "" on success, otherwise a message.
std::string DrawFingerprint(const tresk::Fingerprint& fingerprint, const std::string& picturePath,
                            const PlotStyle& style);
