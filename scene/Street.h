#pragma once
// What stands in the procedural scene: a wet street at night, seen from between its pavements.
// Metres; x to the right, y up from the street, z into the picture.

#include "scene/Lanterns.h"
#include "scene/SceneMath.h"

namespace scene {

class Street {
public:
    // `pixelAngle` is the size of a pixel at distance 1: small lamps are drawn no smaller.
    explicit Street(double pixelAngle);

    // The first thing from `from` along `direction`, whose z is 1.
    Sight look(const Vec3& from, const Vec3& direction) const;

private:
    void lookAtWalls(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtSkyline(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtBoard(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtRailing(const Vec3& from, const Vec3& direction, Sight& sight) const;
    Sight lookAboveStreet(const Vec3& from, const Vec3& direction) const;
    Sight lookAtStreet(const Vec3& from, const Vec3& direction, double distance) const;

    Lanterns m_lanterns;
};

}  // namespace scene
