#pragma once

// The two distances a run's figures are read at.

#include <QString>

#include <array>

namespace slipbook::analysis {

enum class Distance { Quarter, Eighth };
inline constexpr std::array<Distance, 2> kDistances = {Distance::Quarter, Distance::Eighth};

// "1/4 mile", "1/8 mile".
inline QString DistanceName(Distance distance) {
    return distance == Distance::Quarter ? QStringLiteral("1/4 mile") : QStringLiteral("1/8 mile");
}

}  // namespace slipbook::analysis
