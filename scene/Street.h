// SPDX-License-Identifier: Apache-2.0
#pragma once
// The procedural scene: a wet street at night, seen from its middle. Units are metres; x to the
// right, y up from the street, z into the image.

#include "scene/Lanterns.h"
#include "scene/SceneMath.h"

namespace scene {

class Street {
public:
    // `pixelAngle` is the size of a pixel at distance 1; it limits how small lamps are drawn.
    explicit Street(double pixelAngle);

    // The first hit from `from` along `direction`, whose z is 1.
    Sight look(const Vec3& from, const Vec3& direction) const;

private:
    void lookAtWalls(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtSkyline(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtBoard(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtRailing(const Vec3& from, const Vec3& direction, Sight& sight) const;
    Sight lookAboveStreet(const Vec3& from, const Vec3& direction) const;
    Sight lookAtStreet(const Vec3& from, const Vec3& direction, double distance) const;

    Lanterns lanterns_;
};

}  // namespace scene
