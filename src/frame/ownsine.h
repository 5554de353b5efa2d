// Sine and cosine that are the same bits on every machine: those of the C library may differ in the last bit from
// system to system and from processor to processor, and where a sample or a position lies between two values, that bit
// decides.
#pragma once

// An angle in radians, up to an eighth of a turn to either side, and what it lost when it was rounded.
struct OwnAngle {
    double value;
    double lost;
};

double ownSineOf(const OwnAngle& angle);
double ownCosineOf(const OwnAngle& angle);

// Of an angle in radians up to 1e18, right to 1e-16.
double ownSine(double radians);
