#pragma once
// What stands in the procedural scene: a wet street at night, seen from between its pavements.
// Metres; x to the right, y up from the street, z into the picture.

#include <vector>

#include "cli/SceneMath.h"

namespace cli {

// What a line of sight meets first.
struct Sight {
    Vec3 colour;
    double distance;  // along z; infinite for the sky
};

class SceneWorld {
public:
    // `pixelAngle` is the size of a pixel at distance 1: small lamps are drawn no smaller.
    explicit SceneWorld(double pixelAngle);

    // The first thing from `from` along `direction`, whose z is 1.
    Sight look(const Vec3& from, const Vec3& direction) const;

private:
    // A flat thing across the line of sight.
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

    Vec3 lightAt(const Vec3& place, const Vec3& normal) const;
    void lookAtLamps(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtPosts(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtGarlands(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtWalls(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtSkyline(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtBoard(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtRailing(const Vec3& from, const Vec3& direction, Sight& sight) const;
    Sight lookAboveStreet(const Vec3& from, const Vec3& direction) const;
    Sight lookAtStreet(const Vec3& from, const Vec3& direction, double distance) const;

    double m_pixelAngle;
    std::vector<Lamp> m_lamps;     // everything that shines, near to far
    std::vector<Lamp> m_lighting;  // the few that light walls and street
    std::vector<Post> m_posts;
    std::vector<Garland> m_garlands;
};

}  // namespace cli
