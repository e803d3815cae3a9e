// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/Lens.h"

#include <cmath>

namespace pictures {

double Lens::gain() const {
    const double aperture = focalLength / fStop;
    const double magnified = breathing ? 1.0 - focalLength / focus : 1.0;
    return aperture * focalLength / magnified;
}

double Lens::blurDiameter(double distance) const {
    return gain() * std::fabs(1.0 / focus - 1.0 / distance);
}

}  // namespace pictures
