// SPDX-License-Identifier: Apache-2.0
#pragma once
// All light sources of the street: lamps on posts, garlands of bulbs, traffic, and a lantern near
// the camera. Units are metres; x to the right, y up from the street, z into the image.

#include <vector>

#include "scene/SceneMath.h"

namespace scene {

inline constexpr double kWall = 9.0;  // distance of each wall from the middle of the street

// What a line of sight hits first.
struct Sight {
    Vec3 colour;
    double distance;  // along z; infinite for the sky
};

// The colours of bulbs and neon signs, which repeat; takes any number.
Vec3 bulbColour(int number);

class Lanterns {
public:
    // `pixelAngle` is the size of a pixel at distance 1; it limits how small lamps are drawn.
    explicit Lanterns(double pixelAngle);

    // Replaces `sight` if a lamp, a garland or a post is nearer along `direction`, whose z is 1.
    void look(const Vec3& from, const Vec3& direction, Sight& sight) const;
    // The light that falls on a surface, including that of the sky.
    Vec3 lightAt(const Vec3& place, const Vec3& normal) const;

private:
    // A flat disc facing the camera.
    struct Lamp {
        Vec3 place;
        double radius;
        Vec3 light;
    };
    struct Post {
        double x, z, top, radius;
    };
    // A wire with coloured bulbs from wall to wall.
    struct Garland {
        double z, height, sag;
        double bulb;  // radius
        int firstColour;
        double wireAt(double x) const;
    };

    void addStreetLamps();
    void addGarlands();
    void addTraffic();
    void addLamp(const Vec3& place, double radius, const Vec3& light);

    void lookAtLamps(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtPosts(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtGarlands(const Vec3& from, const Vec3& direction, Sight& sight) const;

    double pixelAngle_;
    std::vector<Lamp> lamps_;     // all light sources, near to far
    std::vector<Lamp> lighting_;  // the few that illuminate walls and street
    std::vector<Post> posts_;
    std::vector<Garland> garlands_;
};

}  // namespace scene
